// Arithmetic that is defined for every operand and gives the same results on every platform.
//
// Operations that C++ leaves undefined or to the implementation follow 64-bit Arm: integers wrap in
// their width, integer division by zero gives 0, and floating point converts to an integer by
// truncation, saturated at the integer's range, with 0 for NaN. Inside the documented ranges this
// is ordinary arithmetic, and formulas read as such.

#pragma once

#include <cfloat>
#include <cmath>
#include <compare>
#include <concepts>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace mezzo::arithmetic {

// Intermediate results in a wider type would round twice and change last digits.
static_assert(FLT_EVAL_METHOD == 0);

/// A signed two's-complement integer whose operators are defined for every operand.
template <std::signed_integral Int>
class Defined {
 public:
  constexpr Defined(Int inValue) : fValue(inValue) {}

  /// Widens without loss.
  template <std::signed_integral Narrow>
  requires(sizeof(Narrow) < sizeof(Int)) constexpr Defined(Defined<Narrow> inValue)
      : fValue(inValue.GetValue()) {}

  /// Keeps the low bits.
  template <std::signed_integral Wide>
  requires(sizeof(Wide) > sizeof(Int)) constexpr explicit Defined(Defined<Wide> inValue)
      : fValue(static_cast<Int>(inValue.GetValue())) {}

  constexpr Int GetValue() const { return fValue; }

  friend constexpr Defined operator+(Defined inLeft, Defined inRight) {
    return MakeFromBits(inLeft.GetBits() + inRight.GetBits());
  }
  friend constexpr Defined operator-(Defined inLeft, Defined inRight) {
    return MakeFromBits(inLeft.GetBits() - inRight.GetBits());
  }
  friend constexpr Defined operator*(Defined inLeft, Defined inRight) {
    return MakeFromBits(inLeft.GetBits() * inRight.GetBits());
  }
  friend constexpr Defined operator/(Defined inDividend, Defined inDivisor) {
    if constexpr (sizeof(Int) > sizeof(std::uint32_t)) {
      // Processors divide 32 bits faster than 64, and most operands fit.
      const auto getLow = [](Defined inValue) {
        return static_cast<std::uint32_t>(inValue.GetBits());
      };
      const bool isShort = (inDividend.GetBits() | inDivisor.GetBits()) >> 32 == 0;
      if (isShort && getLow(inDivisor) != 0) return Int{getLow(inDividend) / getLow(inDivisor)};
    }
    if (inDivisor.fValue == 0) return 0;
    if (inDivisor.fValue == -1) return -inDividend;
    return inDividend.fValue / inDivisor.fValue;
  }
  friend constexpr Defined operator%(Defined inDividend, Defined inDivisor) {
    return inDividend - inDividend / inDivisor * inDivisor;
  }
  constexpr Defined operator-() const { return MakeFromBits(Unsigned{0} - GetBits()); }

  // clang-tidy 14 takes the zero of a three-way comparison for a null pointer.
  friend constexpr auto operator<=>(Defined, Defined) = default;  // NOLINT(modernize-use-nullptr)

 private:
  using Unsigned = std::make_unsigned_t<Int>;

  constexpr Unsigned GetBits() const { return static_cast<Unsigned>(fValue); }
  static constexpr Defined MakeFromBits(Unsigned inBits) { return static_cast<Int>(inBits); }

  Int fValue;
};

using Int32 = Defined<std::int32_t>;
using Int64 = Defined<std::int64_t>;

/// The smallest integer has no positive magnitude and stays unchanged.
template <std::signed_integral Int>
constexpr Defined<Int> GetMagnitude(Defined<Int> inValue) {
  return inValue < 0 ? -inValue : inValue;
}

/// Truncates toward zero and saturates; NaN gives 0.
template <std::signed_integral Int>
Int TruncateTo(double inValue) {
  using Limits = std::numeric_limits<Int>;
  // The magnitude of the smallest integer is a power of two, so the double is exact.
  constexpr double kBeyond = -static_cast<double>(Limits::min());
  if (std::fabs(inValue) < kBeyond) [[likely]]
    return static_cast<Int>(inValue);
  if (std::isnan(inValue)) return 0;
  return inValue < 0 ? Limits::min() : Limits::max();
}

/// The fractional part, with the number's sign: `std::fmod(inValue, 1.0)` without its loop.
inline double GetFraction(double inValue) {
  return inValue - std::trunc(inValue);
}

}  // namespace mezzo::arithmetic
