/// \file
/// UTF-8, as in the terminal, to and from the library's UTF-16.
#pragma once

#include "Messages.h"

#include <plinth/string/UTF16String.h>

#include <boost/locale/encoding_utf.hpp>

#include <string>
#include <string_view>

namespace mezzo::tool {

/// \exception UserError when the text is not valid UTF-8.
inline plinth::UTF16String DecodeUTF8(std::string_view inText) {
  try {
    const std::u16string text = boost::locale::conv::utf_to_utf<char16_t>(
        inText.data(), inText.data() + inText.size(), boost::locale::conv::stop);
    return {text.begin(), text.end()};
  } catch (const boost::locale::conv::conversion_error&) {
    throw UserError("not valid UTF-8");
  }
}

/// Leaves out unpaired surrogates.
inline std::string EncodeUTF8(const plinth::UTF16String& inText) {
  return boost::locale::conv::utf_to_utf<char>(inText.data(), inText.data() + inText.size());
}

}  // namespace mezzo::tool
