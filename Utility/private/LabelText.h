// Writes a label straight into the caller's string.
//
// A stream or a buffer in between would cost more than the conversion itself. So a label is
// composed twice by the same code: once to count its code units, once in place, in a string that
// has exactly their number. Where the string cannot grow, it keeps its text.

#pragma once

#include <plinth/string/UTF16String.h>

#include <array>
#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace mezzo::utility::label {

template <class Int>
using UnsignedOf = std::conditional_t<(sizeof(Int) > 4), std::uint64_t, std::uint32_t>;

/// The number without its sign; also that of the smallest integer, which only an unsigned type
/// holds.
template <std::signed_integral Int>
constexpr UnsignedOf<Int> MagnitudeOf(Int inValue) {
  const auto bits = static_cast<UnsignedOf<Int>>(inValue);
  return inValue < 0 ? UnsignedOf<Int>{0} - bits : bits;
}

inline constexpr auto kPowersOfTen = [] {
  std::array<std::uint64_t, 20> powers{1};
  for (std::size_t power = 1; power < powers.size(); ++power)
    powers[power] = 10 * powers[power - 1];
  return powers;
}();

constexpr std::uint64_t PowerOfTen(int inExponent) {
  return kPowersOfTen[static_cast<std::size_t>(inExponent)];
}

template <std::unsigned_integral Int>
constexpr int DigitCount(Int inValue) {
  // 1233 / 4096 is the decimal logarithm of 2: the estimate is right or one too high.
  const int estimate = static_cast<int>(std::bit_width(inValue | Int{1})) * 1233 >> 12;
  return estimate + ((inValue | Int{1}) >= PowerOfTen(estimate) ? 1 : 0);
}

/// Tells whether a number has so many digits, which is faster than to count them.
template <std::unsigned_integral Int>
constexpr bool HasDigits(Int inValue, std::size_t inCount) {
  return inCount >= 1 && inCount < kPowersOfTen.size() &&
         (inValue | Int{1}) >= kPowersOfTen[inCount - 1] && inValue < kPowersOfTen[inCount];
}

/// The two digits of every number below 100.
inline constexpr auto kDigitPairs = [] {
  std::array<char16_t, 200> pairs{};
  for (std::size_t value = 0; value < 100; ++value) {
    pairs[2 * value] = static_cast<char16_t>(u'0' + value / 10);
    pairs[2 * value + 1] = static_cast<char16_t>(u'0' + value % 10);
  }
  return pairs;
}();

/// Counts the code units of a label.
class Counter {
 public:
  constexpr void Unit(char16_t) { ++fCount; }
  constexpr void Digit(std::uint32_t) { ++fCount; }
  constexpr void Pair(std::uint32_t) { fCount += 2; }
  template <std::unsigned_integral Int>
  constexpr void Digits(Int, int inCount) {
    fCount += inCount;
  }
  constexpr std::size_t Count() const { return static_cast<std::size_t>(fCount); }

 private:
  int fCount = 0;
};

/// Writes the code units of a label.
class Writer {
 public:
  explicit Writer(char16_t* outUnits) : fNext(outUnits) {}

  void Unit(char16_t inUnit) { *fNext++ = inUnit; }

  /// \param inValue 0 to 9.
  void Digit(std::uint32_t inValue) { PutDigit(fNext++, inValue); }

  /// \param inValue 0 to 99.
  void Pair(std::uint32_t inValue) {
    PutPair(fNext, inValue);
    fNext += 2;
  }

  /// Writes a number of at most so many digits, with zeros in front where it has fewer.
  template <std::unsigned_integral Int>
  void Digits(Int inValue, int inCount) {
    char16_t* end = fNext += inCount;
    int left = inCount;
    const auto putFour = [&] {
      const auto four = static_cast<std::uint32_t>(inValue % 10000);
      PutPair(end -= 2, four % 100);
      PutPair(end -= 2, four / 100);
      inValue /= 10000;
      left -= 4;
    };
    while (left > 8) putFour();
    if (left > 4) putFour();
    const auto rest = static_cast<std::uint32_t>(inValue);
    if (left == 1) {
      PutDigit(end - 1, rest);
    } else if (left == 2) {
      PutPair(end - 2, rest);
    } else {
      PutPair(end - 2, rest % 100);
      if (left == 3) {
        PutDigit(end - 3, rest / 100);
      } else {
        PutPair(end - 4, rest / 100);
      }
    }
  }

 private:
  static void PutDigit(char16_t* outUnit, std::uint32_t inValue) {
    *outUnit = static_cast<char16_t>(u'0' + inValue);
  }
  static void PutPair(char16_t* outUnits, std::uint32_t inValue) {
    std::memcpy(outUnits, &kDigitPairs[2 * std::size_t{inValue}], 2 * sizeof(char16_t));
  }

  char16_t* fNext;
};

/// Writes a number of at most a fixed count of digits, with zeros in front where it has fewer.
template <int kCount, class Sink>
constexpr void WriteDigits(Sink& ioSink, std::uint32_t inValue) {
  if constexpr (kCount == 1) {
    ioSink.Digit(inValue);
  } else if constexpr (kCount == 2) {
    ioSink.Pair(inValue);
  } else {
    WriteDigits<kCount - 2>(ioSink, inValue / 100);
    ioSink.Pair(inValue % 100);
  }
}

/// An integer in decimal, measured once for both passes over its label.
template <std::signed_integral Int>
class Number {
 public:
  /// \param inWidth fills a shorter number up with zeros, which stand before the sign of a negative
  ///     one, as a stream with that fill writes it.
  constexpr explicit Number(Int inValue, int inWidth = 1)
      : fMagnitude(MagnitudeOf(inValue)), fIsNegative(inValue < 0) {
    if (fIsNegative) [[unlikely]] {
      fDigits = DigitCount(fMagnitude);
      fFill = inWidth - fDigits - 1;
    } else {
      fDigits = fMagnitude < PowerOfTen(inWidth) ? inWidth : DigitCount(fMagnitude);
    }
  }

  template <class Sink>
  constexpr void Write(Sink& ioSink) const {
    if (fIsNegative) [[unlikely]] {
      for (int unit = 0; unit < fFill; ++unit) ioSink.Unit(u'0');
      ioSink.Unit(u'-');
    }
    ioSink.Digits(fMagnitude, fDigits);
  }

 private:
  UnsignedOf<Int> fMagnitude;
  int fDigits = 0;
  int fFill = 0;
  bool fIsNegative = false;
};

/// Writes a label over a text of the same length, which it has nearly always while a display runs.
/// \return false, with nothing written, for a text of another length.
template <class Compose>
[[gnu::always_inline]] inline bool Overwrite(plinth::UTF16String& outString,
                                             const Compose& inCompose) {
  Counter counter;
  inCompose(counter);
  if (outString.size() != counter.Count()) return false;
  Writer writer(outString.data());
  inCompose(writer);
  return true;
}

/// Replaces a text by the label that `inCompose` writes into the sink it is given.
template <class Compose>
[[gnu::always_inline]] inline void Replace(plinth::UTF16String& outString,
                                           const Compose& inCompose) {
  if (Overwrite(outString, inCompose)) [[likely]]
    return;
  Counter counter;
  inCompose(counter);
  outString.resize(counter.Count());
  Overwrite(outString, inCompose);
}

/// Replaces a text by any number.
template <std::signed_integral Int>
[[gnu::noinline]] void ReplaceByAnyNumber(plinth::UTF16String& outString, Int inValue) {
  Replace(outString, [number = Number(inValue)](auto& sink) { number.Write(sink); });
}

/// Replaces a text by a number. That over one of the same length needs no call and saves no
/// register.
template <std::signed_integral Int>
void ReplaceByNumber(plinth::UTF16String& outString, Int inValue) {
  const auto magnitude = static_cast<UnsignedOf<Int>>(inValue);
  if (inValue < 0 || !HasDigits(magnitude, outString.size())) {
    return ReplaceByAnyNumber(outString, inValue);
  }
  Writer(outString.data()).Digits(magnitude, static_cast<int>(outString.size()));
}

}  // namespace mezzo::utility::label
