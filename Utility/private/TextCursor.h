// Walks through a text and reads its numbers in place.
//
// `plinth::string::StringToNumber` reads whole strings only, so a number in the middle of a text
// would have to be copied out for it. The cursor reads the same grammar without the copy; a test
// holds the two together.

#pragma once

#include <plinth/string/UTF16String.h>
#include <plinth/utility/Cast.h>

#include <fast_float/fast_float.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace mezzo::utility {

class TextCursor {
 public:
  explicit TextCursor(const plinth::UTF16String& inText)
      : fUnit(inText.data()), fEnd(fUnit + inText.size()) {}

  bool IsAtEnd() const { return fUnit == fEnd; }

  /// The number of units to the end. A count past the int range goes through the checked cast,
  /// which reports it; testing first saves the call.
  int UnitsLeft() const {
    const std::ptrdiff_t count = fEnd - fUnit;
    if (count <= std::numeric_limits<int>::max()) [[likely]]
      return static_cast<int>(count);
    return plinth::utility::NumericCast<int, long>(static_cast<long>(count));
  }

  /// Moves to the next digit or to the end.
  /// \return true when a "." was passed.
  bool SkipToDigit() {
    bool passesDot = false;
    for (; fUnit != fEnd && !IsDigit(*fUnit); ++fUnit) passesDot |= *fUnit == u'.';
    return passesDot;
  }

  /// Moves to the next occurrence of a unit.
  /// \return false at the end, when there is none.
  bool SkipTo(char16_t inUnit) {
    while (fUnit != fEnd && *fUnit != inUnit) ++fUnit;
    return fUnit != fEnd;
  }

  void Skip() { ++fUnit; }

  /// Reads a run of digits, which may be empty, and moves behind it; saturated.
  int ReadDigits() { return static_cast<int>(ReadMagnitude(kLargestInt)); }

  /// Reads an optionally signed integer behind blanks and moves behind it; saturated, 0 where there
  /// is none.
  int ReadInteger() {
    while (SkipOver(u' ') || SkipOver(u'\t')) {
    }
    if (SkipOver(u'-')) return static_cast<int>(0u - ReadMagnitude(kLargestInt + 1));
    SkipOver(u'+');
    return ReadDigits();
  }

  /// Reads the decimal fraction that begins here with a "."; 0 where there is none. Of a number of
  /// more than a thousand characters, those behind are left out: no double needs so many.
  double ReadFraction() const {
    std::array<char, 1024> number;
    number[0] = '.';
    std::size_t count = 1;
    for (const char16_t* unit = fUnit + 1; unit != fEnd && *unit < 0x80 && count < number.size();
         ++unit)
      number[count++] = static_cast<char>(*unit);
    double value = 0.0;
    fast_float::from_chars(number.data(), number.data() + count, value);
    return value;
  }

 private:
  static constexpr std::uint32_t kLargestInt = std::numeric_limits<int>::max();

  static bool IsDigit(char16_t inUnit) { return static_cast<std::uint32_t>(inUnit) - u'0' < 10; }

  bool SkipOver(char16_t inUnit) {
    if (fUnit == fEnd || *fUnit != inUnit) return false;
    ++fUnit;
    return true;
  }

  /// \param inLimit the largest result; a larger number saturates there.
  std::uint32_t ReadMagnitude(std::uint32_t inLimit) {
    std::uint64_t value = 0;
    // The NUL at a string's end is no digit, so the end needs no test of its own.
    const char16_t* unit = fUnit;
    for (std::uint32_t digit; (digit = static_cast<std::uint32_t>(*unit) - u'0') < 10; ++unit) {
      if (value <= inLimit) value = 10 * value + digit;
    }
    fUnit = unit;
    return value <= inLimit ? static_cast<std::uint32_t>(value) : inLimit;
  }

  const char16_t* fUnit;
  const char16_t* fEnd;
};

}  // namespace mezzo::utility
