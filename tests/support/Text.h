// UTF-16 text in tests: made from literals, shown as ASCII with escapes.
#pragma once

#include <plinth/string/UTF16String.h>

#include <cstdio>
#include <string>
#include <string_view>

namespace mezzo::test {

/// One code unit for each byte.
inline plinth::UTF16String Wide(std::string_view inText) {
  plinth::UTF16String wide;
  for (const char unit : inText) wide += static_cast<unsigned char>(unit);
  return wide;
}

/// Printable ASCII as it is, `"` and `\` behind a backslash, every other code unit as \uXXXX.
inline std::string Shown(std::u16string_view inText) {
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

}  // namespace mezzo::test
