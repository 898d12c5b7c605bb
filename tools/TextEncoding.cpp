#include "TextEncoding.h"

#include "InputError.h"

#include <boost/locale/encoding_utf.hpp>

namespace mezzo::tool {

using boost::locale::conv::utf_to_utf;

plinth::UTF16String FromUTF8(std::string_view inText) {
  try {
    const std::u16string text = utf_to_utf<char16_t>(inText.data(), inText.data() + inText.size(),
                                                     boost::locale::conv::stop);
    return {text.begin(), text.end()};
  } catch (const boost::locale::conv::conversion_error&) {
    throw InputError("not valid UTF-8");
  }
}

std::string ToUTF8(const plinth::UTF16String& inText) {
  return utf_to_utf<char>(inText.data(), inText.data() + inText.size());
}

}  // namespace mezzo::tool
