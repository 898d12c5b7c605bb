#include <plinth/string/UTF16StringStream.h>

#include <algorithm>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <iterator>
#include <limits>
#include <string_view>

namespace plinth {

namespace {

constexpr int kPrecision = 6;

/// Writes in general notation, like "%.6g" in the C locale.
/// \return the end of the text.
char* WriteGeneral(char* outFirst, [[maybe_unused]] char* inLast, double inNumber) {
#ifdef __cpp_lib_to_chars
  return std::to_chars(outFirst, inLast, inNumber, std::chars_format::general, kPrecision).ptr;
#else
  // Some versions of libc++ lack the function, and others have it without the macro.
  char text[32];
  const int length = std::snprintf(text, sizeof text, "%.*g", kPrecision, inNumber);
  const std::string_view number(text, static_cast<std::size_t>(length));
  const std::string_view point = std::localeconv()->decimal_point;
  const std::size_t whole = std::min(number.find(point), number.size());
  char* end = std::copy_n(text, whole, outFirst);
  if (whole == number.size()) return end;
  *end++ = '.';
  return std::copy(number.begin() + static_cast<std::ptrdiff_t>(whole + point.size()), number.end(),
                   end);
#endif
}

}  // namespace

template <class Iterator>
oUTF16StringStream& oUTF16StringStream::Append(Iterator inFirst, Iterator inLast) {
  const auto padding = fWidth - std::distance(inFirst, inLast);
  fWidth = 0;
  if (padding > 0) fText.insert(fText.end(), static_cast<std::size_t>(padding), fFill);
  fText.insert(fText.end(), inFirst, inLast);
  return *this;
}

oUTF16StringStream& oUTF16StringStream::operator<<(int inNumber) {
  char digits[std::numeric_limits<int>::digits10 + 2];  // a sign and digits10 + 1 digits
  return Append(digits, std::to_chars(std::begin(digits), std::end(digits), inNumber).ptr);
}

oUTF16StringStream& oUTF16StringStream::operator<<(double inNumber) {
  static constexpr std::string_view kNotANumber = "nan";
  // The sign of a NaN result differs between platforms.
  if (std::isnan(inNumber)) return Append(kNotANumber.begin(), kNotANumber.end());
  char digits[kPrecision + 7];  // sign, point, exponent "e-308"
  return Append(digits, WriteGeneral(std::begin(digits), std::end(digits), inNumber));
}

oUTF16StringStream& oUTF16StringStream::operator<<(const UTF16String& inText) {
  return Append(inText.begin(), inText.end());
}

UTF16String oUTF16StringStream::str() const {
  return UTF16String(view());
}

}  // namespace plinth
