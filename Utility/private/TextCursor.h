// Reading cursor: walks through a text and reads its numbers without allocation.
//
// `plinth::string::StringToNumber` takes a whole string, so a number inside a text would have to be
// copied to another string first. The cursor reads the same grammar; a test compares the two.

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

  /// Counts the code units to the end. NumericCast takes longer, and is needed only to report a
  /// count that overflows int.
  int CountUnitsLeft() const {
    const std::ptrdiff_t count = fEnd - fUnit;
    if (count <= std::numeric_limits<int>::max()) [[likely]]
      return static_cast<int>(count);
    return plinth::utility::NumericCast<int, long>(static_cast<long>(count));
  }

  /// Moves to the next digit or to the end.
  /// \return true if a skipped separator was a ".".
  bool SkipSeparators() {
    bool passesDot = false;
    for (; fUnit != fEnd && !IsDigit(*fUnit); ++fUnit) passesDot |= *fUnit == u'.';
    return passesDot;
  }

  /// Moves to the next occurrence of a code unit, or to the end.
  /// \return true if there is one.
  bool SkipTo(char16_t inUnit) {
    while (fUnit != fEnd && *fUnit != inUnit) ++fUnit;
    return fUnit != fEnd;
  }

  void Advance() { ++fUnit; }

  /// Reads a run of digits and moves past it. Saturates; an empty run is 0.
  int ReadDigits() { return static_cast<int>(ReadMagnitude(kLargestInt)); }

  /// Skips blanks, reads an integer with an optional sign and moves past it. Saturates; 0 if there
  /// is no number.
  int ReadInteger() {
    while (SkipOver(u' ') || SkipOver(u'\t')) {
    }
    if (SkipOver(u'-')) return static_cast<int>(0u - ReadMagnitude(kLargestInt + 1));
    SkipOver(u'+');
    return ReadDigits();
  }

  /// Reads the decimal fraction that starts here with ".", and its exponent if there is one,
  /// without moving; 0 if no digit follows. At most 1023 characters after the "." are read. Later
  /// digits could only decide an exact tie; a later exponent is ignored.
  double PeekFraction() const {
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

  /// \param inLimit the largest result; larger numbers saturate.
  std::uint32_t ReadMagnitude(std::uint32_t inLimit) {
    std::uint64_t value = 0;
    // The string's terminating NUL is not a digit, so no test for the end is needed.
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
