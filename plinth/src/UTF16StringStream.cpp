#include <plinth/string/UTF16StringStream.h>

#include <charconv>
#include <cmath>
#include <iterator>
#include <limits>

namespace plinth {

template <class Iterator>
oUTF16StringStream& oUTF16StringStream::Append(Iterator inFirst, Iterator inLast) {
  const auto padding = fWidth - std::distance(inFirst, inLast);
  fWidth = 0;
  if (padding > 0) fText.insert(fText.end(), static_cast<std::size_t>(padding), fFill);
  fText.insert(fText.end(), inFirst, inLast);
  return *this;
}

oUTF16StringStream& oUTF16StringStream::operator<<(int inNumber) {
  char digits[std::numeric_limits<int>::digits10 + 2];  // one more digit than always fits, a sign
  return Append(digits, std::to_chars(std::begin(digits), std::end(digits), inNumber).ptr);
}

oUTF16StringStream& oUTF16StringStream::operator<<(double inNumber) {
  static constexpr int kPrecision = 6;
  static constexpr std::string_view kNotANumber = "nan";
  // Platforms disagree on the sign and kind of a result that is not a number.
  if (std::isnan(inNumber)) return Append(kNotANumber.begin(), kNotANumber.end());
  char digits[kPrecision + 7];  // sign, point, exponent "e-308"
  return Append(digits, std::to_chars(std::begin(digits), std::end(digits), inNumber,
                                      std::chars_format::general, kPrecision)
                            .ptr);
}

oUTF16StringStream& oUTF16StringStream::operator<<(const UTF16String& inText) {
  return Append(inText.begin(), inText.end());
}

UTF16String oUTF16StringStream::str() const {
  return UTF16String(view());
}

}  // namespace plinth
