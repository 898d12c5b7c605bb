// Arithmetic that is defined for every operand and the same on every platform.
//
// What C++ leaves undefined or to the machine follows 64-bit Arm, the library's home: overflow
// wraps in the stated width, division by zero gives 0, a floating-point number turns into an
// integer by truncation that saturates at the integer's range, and not a number gives 0. Inside the
// documented ranges these functions are the plain operators.

#pragma once

#include <cmath>
#include <concepts>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace mezzo::arithmetic {

template <std::signed_integral Int>
constexpr Int Add(Int inLeft, Int inRight) {
  using Unsigned = std::make_unsigned_t<Int>;
  return static_cast<Int>(static_cast<Unsigned>(inLeft) + static_cast<Unsigned>(inRight));
}

template <std::signed_integral Int>
constexpr Int Subtract(Int inLeft, Int inRight) {
  using Unsigned = std::make_unsigned_t<Int>;
  return static_cast<Int>(static_cast<Unsigned>(inLeft) - static_cast<Unsigned>(inRight));
}

template <std::signed_integral Int>
constexpr Int Multiply(Int inLeft, Int inRight) {
  using Unsigned = std::make_unsigned_t<Int>;
  return static_cast<Int>(static_cast<Unsigned>(inLeft) * static_cast<Unsigned>(inRight));
}

/// \param[out] outProduct receives the product, wrapped.
/// \return true where it did not wrap.
template <std::signed_integral Int>
constexpr bool MultiplyFits(Int inLeft, Int inRight, Int& outProduct) {
  return !__builtin_mul_overflow(inLeft, inRight, &outProduct);
}

template <std::signed_integral Int>
constexpr Int Negate(Int inValue) {
  return Subtract(Int{0}, inValue);
}

/// The smallest integer has no positive magnitude and stays as it is.
template <std::signed_integral Int>
constexpr Int Magnitude(Int inValue) {
  return inValue < 0 ? Negate(inValue) : inValue;
}

template <std::signed_integral Int>
constexpr Int Divide(Int inDividend, Int inDivisor) {
  if (inDivisor == 0) return 0;
  if (inDivisor == -1) return Negate(inDividend);
  return inDividend / inDivisor;
}

template <std::signed_integral Int>
constexpr Int Remainder(Int inDividend, Int inDivisor) {
  return Subtract(inDividend, Multiply(Divide(inDividend, inDivisor), inDivisor));
}

/// What a double outside an integer's range turns into.
template <std::signed_integral Int>
constexpr Int Saturate(double inValue) {
  if (inValue != inValue) return 0;
  return inValue < 0 ? std::numeric_limits<Int>::min() : std::numeric_limits<Int>::max();
}

/// Truncates toward zero.
template <std::signed_integral Int>
Int TruncateTo(double inValue) {
  // The smallest integer's magnitude is a power of two, which a double holds exactly.
  constexpr double kBeyond = -static_cast<double>(std::numeric_limits<Int>::min());
  return std::fabs(inValue) < kBeyond ? static_cast<Int>(inValue) : Saturate<Int>(inValue);
}

/// From here on, 2^52, every double is a whole number.
inline constexpr double kAllWhole = 4503599627370496.0;

/// Rounds toward minus infinity, without the library call that `std::floor` is on older processors.
inline double Floor(double inValue) {
  if (!(std::fabs(inValue) < kAllWhole)) return inValue;
  const auto truncated = static_cast<double>(static_cast<std::int64_t>(inValue));
  return truncated > inValue ? truncated - 1.0 : truncated;
}

/// The part behind the decimal point, with the sign of the number: `std::fmod(inValue, 1.0)`
/// without its loop.
inline double Fraction(double inValue) {
  if (!(std::fabs(inValue) < kAllWhole)) return inValue - inValue;
  return inValue - static_cast<double>(static_cast<std::int64_t>(inValue));
}

}  // namespace mezzo::arithmetic
