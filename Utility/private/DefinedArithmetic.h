// Arithmetic that is defined for every operand and the same on every platform.
//
// What C++ leaves undefined or to the machine follows 64-bit Arm, the library's home: integers wrap
// in their width, division by zero gives 0, a floating-point number turns into an integer by
// truncation that saturates at the integer's range, and not a number gives 0. Inside the documented
// ranges all of it is plain arithmetic, and formulas read as such.

#pragma once

#include <cfloat>
#include <cmath>
#include <compare>
#include <concepts>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace mezzo::arithmetic {

// Intermediate results of a wider type round twice, which changes last digits.
static_assert(FLT_EVAL_METHOD == 0);

/// A signed integer in two's complement whose operators are defined for every operand.
template <std::signed_integral Int>
class Defined {
 public:
  constexpr Defined(Int inValue) : fValue(inValue) {}

  /// Widens without loss.
  template <std::signed_integral Narrow>
  requires(sizeof(Narrow) < sizeof(Int)) constexpr Defined(Defined<Narrow> inValue)
      : fValue(inValue.Value()) {}

  /// Takes the low bits.
  template <std::signed_integral Wide>
  requires(sizeof(Wide) > sizeof(Int)) constexpr explicit Defined(Defined<Wide> inValue)
      : fValue(static_cast<Int>(inValue.Value())) {}

  constexpr Int Value() const { return fValue; }

  friend constexpr Defined operator+(Defined inLeft, Defined inRight) {
    return FromBits(inLeft.Bits() + inRight.Bits());
  }
  friend constexpr Defined operator-(Defined inLeft, Defined inRight) {
    return FromBits(inLeft.Bits() - inRight.Bits());
  }
  friend constexpr Defined operator*(Defined inLeft, Defined inRight) {
    return FromBits(inLeft.Bits() * inRight.Bits());
  }
  friend constexpr Defined operator/(Defined inDividend, Defined inDivisor) {
    if constexpr (sizeof(Int) > sizeof(std::uint32_t)) {
      // Processors divide 32 bits faster than 64, and nearly all operands have no more.
      const auto low = [](Defined value) { return static_cast<std::uint32_t>(value.Bits()); };
      const bool isShort = (inDividend.Bits() | inDivisor.Bits()) >> 32 == 0;
      if (isShort && low(inDivisor) != 0) return Int{low(inDividend) / low(inDivisor)};
    }
    if (inDivisor.fValue == 0) return 0;
    if (inDivisor.fValue == -1) return -inDividend;
    return inDividend.fValue / inDivisor.fValue;
  }
  friend constexpr Defined operator%(Defined inDividend, Defined inDivisor) {
    return inDividend - inDividend / inDivisor * inDivisor;
  }
  constexpr Defined operator-() const { return FromBits(Unsigned{0} - Bits()); }

  // clang-tidy 14 takes the zero of a three-way comparison for a null pointer.
  friend constexpr auto operator<=>(Defined, Defined) = default;  // NOLINT(modernize-use-nullptr)

 private:
  using Unsigned = std::make_unsigned_t<Int>;

  constexpr Unsigned Bits() const { return static_cast<Unsigned>(fValue); }
  static constexpr Defined FromBits(Unsigned inBits) { return static_cast<Int>(inBits); }

  Int fValue;
};

using Int32 = Defined<std::int32_t>;
using Int64 = Defined<std::int64_t>;

/// The smallest integer has no positive magnitude and stays as it is.
template <std::signed_integral Int>
constexpr Defined<Int> Magnitude(Defined<Int> inValue) {
  return inValue < 0 ? -inValue : inValue;
}

/// Truncates toward zero and saturates.
template <std::signed_integral Int>
Int TruncateTo(double inValue) {
  using Limits = std::numeric_limits<Int>;
  // The smallest integer's magnitude is a power of two, which a double holds exactly.
  constexpr double kBeyond = -static_cast<double>(Limits::min());
  if (std::fabs(inValue) < kBeyond) [[likely]]
    return static_cast<Int>(inValue);
  if (std::isnan(inValue)) return 0;
  return inValue < 0 ? Limits::min() : Limits::max();
}

/// The part behind the decimal point, with the sign of the number: `std::fmod(inValue, 1.0)`
/// without its loop.
inline double Fraction(double inValue) {
  return inValue - std::trunc(inValue);
}

}  // namespace mezzo::arithmetic
