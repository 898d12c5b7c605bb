// Walks through a text and reads its numbers in place.
//
// `plinth::string::StringToNumber` reads whole strings only, so a number in the middle of a text
// would have to be copied out for it. The cursor reads the grammar of our stand-in for it without
// the copy; a test holds the two together. A host whose parser reads otherwise shows that in sample
// counts only.

#pragma once

#include <plinth/string/StringConversion.h>
#include <plinth/string/UTF16String.h>
#include <plinth/utility/Cast.h>

#include <fast_float/fast_float.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace mezzo::utility {

/// The options under which the host's number parser is always called.
inline constexpr unsigned short kParserFlags = 6;

class TextCursor {
 public:
  explicit TextCursor(const plinth::UTF16String& inText)
      : fUnit(inText.data()), fEnd(fUnit + inText.size()) {}

  bool IsAtEnd() const { return fUnit == fEnd; }

  /// The number of units to the end, reported where it does not fit. The test in front spares every
  /// field of every text the call.
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

  /// Moves to the next unit of that kind.
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

  /// Reads the decimal fraction that begins here with a "."; 0 where there is none.
  double ReadFraction() const {
    double value = 0.0;
    std::array<char, 48> digits;
    std::size_t count = 0;
    for (const char16_t* unit = fUnit; count < digits.size() && unit != fEnd; ++unit) {
      // A unit outside ASCII ends a number like any other that is no part of one.
      digits[count++] = *unit < 0x80 ? static_cast<char>(*unit) : ' ';
    }
    if (count == digits.size()) {
      const plinth::UTF16String text(fUnit, fEnd);
      plinth::string::StringToNumber(value, text, kParserFlags);
    } else {
      fast_float::from_chars(digits.data(), digits.data() + count, value);
    }
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
