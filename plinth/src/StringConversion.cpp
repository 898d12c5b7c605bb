#include <plinth/string/StringConversion.h>

#include <fast_float/fast_float.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string_view>
#include <type_traits>

namespace plinth::string {

namespace {

bool IsDigit(char16_t inUnit) {
  return inUnit >= u'0' && inUnit <= u'9';
}

template <class Magnitude>
Magnitude GetDigit(char16_t inUnit) {
  return static_cast<Magnitude>(inUnit - u'0');
}

/// Walks through the code units of a text. At the end it sees NUL, which is part of no number.
class Cursor {
 public:
  explicit Cursor(std::u16string_view inText) : fNext(inText.data()), fEnd(fNext + inText.size()) {}

  char16_t GetUnit() const { return fNext == fEnd ? u'\0' : *fNext; }
  void Advance() { ++fNext; }

  bool Skip(char16_t inUnit) {
    const bool found = GetUnit() == inUnit;
    if (found) Advance();
    return found;
  }

  void SkipBlanks() {
    while (Skip(u' ') || Skip(u'\t')) {
    }
  }

  /// \param[out] outNumber receives the number; overflow wraps.
  template <class Magnitude>
  std::u16string_view TakeDigits(Magnitude& outNumber) {
    const char16_t* unit = fNext;
    Magnitude number = 0;
    for (; unit != fEnd && IsDigit(*unit); ++unit)
      number = number * 10 + GetDigit<Magnitude>(*unit);
    outNumber = number;
    const std::u16string_view digits(fNext, static_cast<std::size_t>(unit - fNext));
    fNext = unit;
    return digits;
  }

  /// \return true if a minus sign was skipped.
  bool TakeSign() {
    const bool negative = Skip(u'-');
    if (!negative) Skip(u'+');
    return negative;
  }

 private:
  const char16_t* fNext;
  const char16_t* fEnd;
};

/// Parses an optional sign and digits; overflow saturates. Inlined, so that the cursor stays in
/// registers.
/// \return true if there were digits and no overflow.
template <class Int>
[[gnu::always_inline]] inline bool ReadSignedInteger(Int& outNumber, Cursor& ioCursor) {
  using Magnitude = std::make_unsigned_t<Int>;
  const bool isNegative = ioCursor.TakeSign();
  Magnitude magnitude = 0;
  const std::u16string_view digits = ioCursor.TakeDigits(magnitude);
  bool fits = true;
  if (digits.size() > std::numeric_limits<Int>::digits10) {
    const Magnitude limit =
        static_cast<Magnitude>(std::numeric_limits<Int>::max()) + (isNegative ? 1U : 0U);
    magnitude = 0;
    for (const char16_t unit : digits) {
      fits = fits && magnitude <= (limit - GetDigit<Magnitude>(unit)) / 10;
      magnitude = fits ? magnitude * 10 + GetDigit<Magnitude>(unit) : limit;
    }
  }
  outNumber = static_cast<Int>(isNegative ? Magnitude{0} - magnitude : magnitude);
  return !digits.empty() && fits;
}

/// A decimal number: its sign, significant digits and exponent of ten.
///
/// Doubles and the midpoints between them have at most 768 significant digits. Any further digits
/// matter only if one of them is not zero, so a fixed-size buffer suffices for every text.
class DecimalNumber {
 public:
  explicit DecimalNumber(bool inNegative) {
    if (inNegative) *fEnd++ = '-';
    fDigits = fEnd;
  }

  /// \return true if there was a digit.
  bool ReadDigits(Cursor& ioCursor, bool inFraction) {
    const bool found = IsDigit(ioCursor.GetUnit());
    for (; IsDigit(ioCursor.GetUnit()); ioCursor.Advance()) {
      const bool isAccepted = Accept(static_cast<char>(ioCursor.GetUnit()));
      fExponent += (isAccepted ? 0 : 1) - (inFraction ? 1 : 0);
    }
    return found;
  }

  void AddExponent(std::int64_t inExponent) { fExponent += inExponent; }

  double ToDouble() {
    if (fEnd == fDigits) *fEnd++ = '0';
    if (fTruncated) {
      *fEnd++ = '1';
      --fExponent;
    }
    *fEnd++ = 'e';
    const auto exponent = std::clamp<std::int64_t>(fExponent, -kExponentLimit, kExponentLimit);
    fEnd = std::to_chars(fEnd, std::end(fText), exponent).ptr;
    double value = 0.0;  // out of range: zero or an infinity
    fast_float::from_chars(fText, fEnd, value);
    return value;
  }

 private:
  static constexpr int kMaxDigits = 770;
  static constexpr std::int64_t kExponentLimit = 99999;

  /// \return false for a digit that no longer fits. The caller then corrects the exponent.
  bool Accept(char inDigit) {
    if (fEnd == fDigits && inDigit == '0') return true;  // a leading zero
    if (fEnd - fDigits == kMaxDigits) {
      fTruncated = fTruncated || inDigit != '0';
      return false;
    }
    *fEnd++ = inDigit;
    return true;
  }

  char fText[kMaxDigits + 16]{};  // a sign, the digits, '1', "e-99999"
  char* fEnd = fText;
  const char* fDigits;
  bool fTruncated = false;
  std::int64_t fExponent = 0;
};

/// Parses an exponent, if there is one. An "e" without digits is not an exponent.
std::int64_t ReadExponent(Cursor inCursor) {
  long long exponent = 0;
  if (inCursor.Skip(u'e') || inCursor.Skip(u'E')) ReadSignedInteger(exponent, inCursor);
  // The limit is so large that no number of digits can make up for an exponent beyond it, and so
  // small that its sum with a number of digits does not overflow.
  constexpr long long kLimit = 1LL << 62;
  return std::clamp(exponent, -kLimit, kLimit);
}

template <class Int>
bool ReadInteger(Int& outNumber, const UTF16String& inText) {
  Cursor cursor(inText);
  cursor.SkipBlanks();
  return ReadSignedInteger(outNumber, cursor);
}

}  // namespace

UTF16String AsciiToUTF16(const char* inText, std::size_t inLength) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(inText);
  return UTF16String(bytes, bytes + inLength);
}

bool StringToNumber(int& outNumber, const UTF16String& inText,
                    utility::Flags<unsigned short>) noexcept {
  return ReadInteger(outNumber, inText);
}

bool StringToNumber(long long& outNumber, const UTF16String& inText,
                    utility::Flags<unsigned short>) noexcept {
  return ReadInteger(outNumber, inText);
}

bool StringToNumber(double& outNumber, const UTF16String& inText,
                    utility::Flags<unsigned short>) noexcept {
  Cursor cursor(inText);
  cursor.SkipBlanks();
  DecimalNumber number(cursor.TakeSign());
  const bool hasWhole = number.ReadDigits(cursor, false);
  const bool hasFraction = cursor.Skip(u'.') && number.ReadDigits(cursor, true);
  const bool found = hasWhole || hasFraction;
  if (found) number.AddExponent(ReadExponent(cursor));
  outNumber = found ? number.ToDouble() : 0.0;
  return found && std::isfinite(outNumber);
}

}  // namespace plinth::string
