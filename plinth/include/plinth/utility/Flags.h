/// \file
/// Flags: a set of option bits.
#pragma once

namespace plinth::utility {

/// Option bits in an integer of type `T`. A `T` converts to `Flags<T>` implicitly.
template <class T>
class Flags {
 public:
  /// \param inValue the bits.
  constexpr Flags(T inValue) noexcept : fValue(inValue) {}

  /// \return the bits.
  constexpr T GetValue() const noexcept { return fValue; }

 private:
  T fValue;
};

}  // namespace plinth::utility
