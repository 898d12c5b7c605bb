#include <plinth/utility/Guid.h>

#include <boost/uuid/string_generator.hpp>
#include <boost/uuid/uuid.hpp>

#include <algorithm>
#include <stdexcept>

namespace plinth::utility {

namespace {

constexpr std::size_t kHyphenatedLength = 36;
constexpr std::size_t kBracedLength = kHyphenatedLength + 2;
constexpr std::size_t kBareLength = 32;

using Bytes = std::array<std::uint8_t, 16>;

/// Boost's parser also accepts bare digits in braces. Checking the length first leaves the three
/// forms.
Bytes ParseGuid(const char* inText, std::size_t inLength) {
  if (inLength != kHyphenatedLength && inLength != kBracedLength && inLength != kBareLength)
    throw std::runtime_error("invalid uuid string");
  const boost::uuids::uuid uuid = boost::uuids::string_generator()(inText, inText + inLength);
  Bytes bytes;
  std::copy(uuid.begin(), uuid.end(), bytes.begin());
  return bytes;
}

/// Code units outside ASCII become NUL, which is invalid in every form.
Bytes ParseGuid(const UTF16String& inText) {
  std::array<char, kBracedLength> ascii;
  const std::size_t length = inText.size();
  if (length <= ascii.size()) {
    std::transform(inText.begin(), inText.end(), ascii.begin(), [](char16_t inUnit) {
      return inUnit < 0x80 ? static_cast<char>(inUnit) : '\0';
    });
  }
  return ParseGuid(ascii.data(), length);
}

}  // namespace

Guid::Guid(const char* inText, std::size_t inLength) : fBytes(ParseGuid(inText, inLength)) {}

Guid::Guid(const UTF16String& inText) : fBytes(ParseGuid(inText)) {}

UTF16String Guid::AsString() const {
  static constexpr char16_t kDigits[] = u"0123456789abcdef";
  UTF16String text;
  text.reserve(kHyphenatedLength);
  for (std::size_t index = 0; index < fBytes.size(); ++index) {
    if (index == 4 || index == 6 || index == 8 || index == 10) text += u'-';
    text += kDigits[fBytes[index] >> 4];
    text += kDigits[fBytes[index] & 0xF];
  }
  return text;
}

}  // namespace plinth::utility
