// The text of a display while it is composed.
//
// A display's text is short. It is composed on the stack and handed over to the caller's string in
// one step, so that what the string held before makes no difference, and a string that cannot grow
// keeps its text.

#pragma once

#include <plinth/string/UTF16String.h>

#include <array>
#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace mezzo::utility {

class DisplayText {
 public:
  DisplayText() = default;
  DisplayText(const DisplayText&) = delete;
  DisplayText& operator=(const DisplayText&) = delete;

  DisplayText& Unit(char16_t inUnit) {
    *fEnd++ = inUnit;
    return *this;
  }

  /// Writes an integer in decimal.
  /// \param inWidth fills a shorter number up with zeros. They stand before the sign of a negative
  ///     one, as a stream with that fill writes it.
  template <std::signed_integral Int>
  [[gnu::always_inline]] DisplayText& Number(Int inValue, int inWidth = 1) {
    const auto magnitude = static_cast<std::make_unsigned_t<Int>>(inValue);
    // As unsigned, a negative number is beyond every width, so one test sorts out both.
    fEnd = magnitude < PowerOfTen(inWidth) ? PutDigits(fEnd, magnitude, inWidth)
                                           : PutNumber(fEnd, inValue, inWidth);
    return *this;
  }

  /// Replaces the caller's text.
  void AssignTo(plinth::UTF16String& outString) const {
    const auto count = static_cast<std::size_t>(fEnd - fUnits);
    outString.resize(count);
    std::memcpy(outString.data(), fUnits, count * sizeof(char16_t));
  }

 private:
  /// Five numbers of 32 bits, each behind a separator; the longest display has no more.
  static constexpr std::size_t kMostUnits = 64;

  static constexpr std::array<std::uint64_t, 20> kPowersOfTen = [] {
    std::array<std::uint64_t, 20> powers{1};
    for (std::size_t power = 1; power < powers.size(); ++power)
      powers[power] = 10 * powers[power - 1];
    return powers;
  }();

  /// The two digits of every number below 100.
  static constexpr std::array<char16_t, 200> kPairs = [] {
    std::array<char16_t, 200> pairs{};
    for (std::size_t value = 0; value < 100; ++value) {
      pairs[2 * value] = static_cast<char16_t>(u'0' + value / 10);
      pairs[2 * value + 1] = static_cast<char16_t>(u'0' + value % 10);
    }
    return pairs;
  }();

  static std::uint64_t PowerOfTen(int inExponent) {
    return kPowersOfTen[static_cast<std::size_t>(inExponent)];
  }

  template <std::unsigned_integral Int>
  static int DigitCount(Int inValue) {
    // 1233 / 4096 is just above the decimal logarithm of 2: the estimate is right or one too low.
    const int estimate = static_cast<int>(std::bit_width(inValue | Int{1})) * 1233 >> 12;
    return estimate + ((inValue | Int{1}) >= PowerOfTen(estimate) ? 1 : 0);
  }

  /// Writes a number of at most `inCount` digits, with zeros in front where it has fewer.
  template <std::unsigned_integral Int>
  [[gnu::always_inline]] static char16_t* PutDigits(char16_t* outUnits, Int inValue, int inCount) {
    char16_t* unit = outUnits + inCount;
    for (; unit - outUnits >= 2; inValue /= 100) {
      std::memcpy(unit -= 2, &kPairs[static_cast<std::size_t>(2 * (inValue % 100))],
                  2 * sizeof(char16_t));
    }
    if (unit != outUnits) *outUnits = static_cast<char16_t>(u'0' + inValue);
    return outUnits + inCount;
  }

  /// Writes any number.
  template <std::signed_integral Int>
  [[gnu::noinline]] static char16_t* PutNumber(char16_t* outUnits, Int inValue, int inWidth) {
    auto magnitude = static_cast<std::make_unsigned_t<Int>>(inValue);
    if (inValue >= 0) return PutDigits(outUnits, magnitude, DigitCount(magnitude));
    magnitude = 0 - magnitude;
    const int count = DigitCount(magnitude);
    for (int fill = inWidth - count - 1; fill > 0; --fill) *outUnits++ = u'0';
    *outUnits++ = u'-';
    return PutDigits(outUnits, magnitude, count);
  }

  char16_t fUnits[kMostUnits];
  char16_t* fEnd = fUnits;
};

}  // namespace mezzo::utility
