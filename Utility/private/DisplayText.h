// Writing buffer: composes a display's text.
//
// The text of a display is short. It is composed on the stack and assigned to the caller's string
// in one step. A string that cannot grow keeps its former text.

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

  DisplayText& Put(char16_t inUnit) {
    *fEnd++ = inUnit;
    return *this;
  }

  /// Appends an integer in decimal.
  /// \param inWidth minimum width; shorter numbers are filled with zeros on the left, in front of
  ///     the sign, like a standard stream whose fill character is '0'.
  template <std::signed_integral Int>
  requires(sizeof(Int) >= sizeof(std::int32_t))  // not a narrow character
      [[gnu::always_inline]] DisplayText& Put(Int inValue, int inWidth = 1) {
    const auto bits = static_cast<std::make_unsigned_t<Int>>(inValue);
    // A negative number converts to a large unsigned one, so one comparison covers both cases.
    fEnd = bits < GetPowerOfTen(inWidth) ? WriteDigits(fEnd, bits, inWidth)
                                         : WriteNegativeOrLong(fEnd, inValue, inWidth);
    return *this;
  }

  /// Replaces the caller's text.
  /// \exception std::bad_alloc if the string cannot grow; it then keeps its text.
  void AssignTo(plinth::UTF16String& outString) const {
    const auto count = static_cast<std::size_t>(fEnd - fUnits);
    outString.resize(count);
    std::memcpy(outString.data(), fUnits, count * sizeof(char16_t));
  }

 private:
  /// The longest display has five 32-bit numbers of up to 11 code units, each with a separator.
  static constexpr std::size_t kCapacity = 64;

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

  static std::uint64_t GetPowerOfTen(int inExponent) {
    return kPowersOfTen[static_cast<std::size_t>(inExponent)];
  }

  template <std::unsigned_integral Int>
  static int CountDigits(Int inValue) {
    // 1233 / 4096 is just below log10(2): the estimate is right or one too low.
    const int estimate = static_cast<int>(std::bit_width(inValue | Int{1})) * 1233 >> 12;
    return estimate + ((inValue | Int{1}) >= GetPowerOfTen(estimate) ? 1 : 0);
  }

  /// Writes exactly `inCount` digits, with leading zeros.
  template <std::unsigned_integral Int>
  [[gnu::always_inline]] static char16_t* WriteDigits(char16_t* outUnits, Int inValue,
                                                      int inCount) {
    char16_t* unit = outUnits + inCount;
    for (; unit - outUnits >= 2; inValue /= 100) {
      std::memcpy(unit -= 2, &kPairs[static_cast<std::size_t>(2 * (inValue % 100))],
                  2 * sizeof(char16_t));
    }
    if (unit != outUnits) *outUnits = static_cast<char16_t>(u'0' + inValue);
    return outUnits + inCount;
  }

  /// Writes a number that is negative or has more than `inWidth` digits.
  template <std::signed_integral Int>
  [[gnu::noinline]] static char16_t* WriteNegativeOrLong(char16_t* outUnits, Int inValue,
                                                         int inWidth) {
    auto magnitude = static_cast<std::make_unsigned_t<Int>>(inValue);
    if (inValue >= 0) return WriteDigits(outUnits, magnitude, CountDigits(magnitude));
    magnitude = 0 - magnitude;
    const int count = CountDigits(magnitude);
    for (int fill = inWidth - count - 1; fill > 0; --fill) *outUnits++ = u'0';
    *outUnits++ = u'-';
    return WriteDigits(outUnits, magnitude, count);
  }

  char16_t fUnits[kCapacity];
  char16_t* fEnd = fUnits;
};

}  // namespace mezzo::utility
