// UTF-16 text in tests: made from literals, shown as ASCII with escapes.
#pragma once

#include <plinth/string/UTF16String.h>

#include <cstdio>
#include <string>
#include <string_view>

namespace mezzo::test {

/// One code unit for each byte.
inline plinth::UTF16String Widen(std::string_view inText) {
  plinth::UTF16String wide;
  for (const char unit : inText) wide += static_cast<unsigned char>(unit);
  return wide;
}

/// Printable ASCII as it is, `"` and `\` after a backslash, every other code unit as \uXXXX.
inline std::string Show(std::u16string_view inText) {
  std::string shown;
  for (const char16_t unit : inText) {
    if (unit == u'"' || unit == u'\\') shown += '\\';
    if (unit >= 0x20 && unit < 0x7f) {
      shown += static_cast<char>(unit);
    } else {
      char escaped[8];
      std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(unit));
      shown += escaped;
    }
  }
  return shown;
}

/// A text as results show it.
inline std::string Quote(std::u16string_view inText) {
  return '"' + Show(inText) + '"';
}

inline plinth::UTF16String Unquote(const std::string& inField) {
  plinth::UTF16String text;
  for (std::size_t i = 1; i + 1 < inField.size(); ++i) {
    if (inField[i] == '\\' && inField[++i] == 'u') {
      text += static_cast<char16_t>(std::stoi(inField.substr(i + 1, 4), nullptr, 16));
      i += 4;
    } else {
      text += static_cast<char16_t>(inField[i]);
    }
  }
  return text;
}

}  // namespace mezzo::test
