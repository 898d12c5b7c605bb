// Numbers at the start of a stretch of text, read in place.
//
// `plinth::string::StringToNumber` reads whole strings only, so a number in the middle of a text
// would have to be copied out for it. These functions read the grammar of our stand-in for it
// without the copy; a test holds the two together. A host whose parser reads otherwise shows that
// in sample counts only.

#pragma once

#include <plinth/string/StringConversion.h>
#include <plinth/string/UTF16String.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>
#include <system_error>

namespace mezzo::utility::number {

/// The options under which the host's number parser is always called.
inline constexpr unsigned short kParserFlags = 6;

constexpr bool IsDigit(char16_t inUnit) {
  return static_cast<std::uint32_t>(inUnit) - u'0' < 10;
}

/// The number of a run of digits, saturated at the range of an int.
constexpr std::uint32_t SaturatedRun(const char16_t* inUnit, const char16_t* inEnd,
                                     std::uint32_t inLimit) {
  std::uint64_t value = 0;
  for (; inUnit != inEnd && value <= inLimit; ++inUnit) value = 10 * value + (*inUnit - u'0');
  return value <= inLimit ? static_cast<std::uint32_t>(value) : inLimit;
}

/// Reads a run of digits and moves behind it.
/// \param inLimit the largest result; a larger number saturates there.
constexpr std::uint32_t ReadDigits(const char16_t*& ioUnit, const char16_t* inEnd,
                                   std::uint32_t inLimit) {
  constexpr std::ptrdiff_t kAlwaysFits = 9;
  const char16_t* const begin = ioUnit;
  const char16_t* unit = begin;
  std::uint32_t value = 0;
  for (; unit != inEnd && IsDigit(*unit); ++unit) {
    value = 10 * value + static_cast<std::uint32_t>(*unit - u'0');
  }
  ioUnit = unit;
  if (unit - begin > kAlwaysFits) [[unlikely]]
    return SaturatedRun(begin, unit, inLimit);
  return value;
}

/// The largest int, and the magnitude of the smallest is one more.
inline constexpr std::uint32_t kLargestInt = std::numeric_limits<int>::max();

/// Reads an optionally signed integer behind blanks and moves behind it; saturated, 0 where there
/// is none.
constexpr int ReadInteger(const char16_t*& ioUnit, const char16_t* inEnd) {
  while (ioUnit != inEnd && (*ioUnit == u' ' || *ioUnit == u'\t')) ++ioUnit;
  const bool isNegative = ioUnit != inEnd && *ioUnit == u'-';
  if (isNegative || (ioUnit != inEnd && *ioUnit == u'+')) ++ioUnit;
  if (!isNegative) return static_cast<int>(ReadDigits(ioUnit, inEnd, kLargestInt));
  return static_cast<int>(0u - ReadDigits(ioUnit, inEnd, kLargestInt + 1));
}

/// Reads the decimal fraction that begins with the text's first unit, "."; 0 where there is none.
inline double ReadFraction(std::u16string_view inText) {
  double value = 0.0;
#if defined(__cpp_lib_to_chars)
  std::array<char, 48> narrow;
  if (inText.size() <= narrow.size()) {
    // A unit outside ASCII ends a number like any other that is no part of one.
    const auto toNarrow = [](char16_t unit) { return unit < 0x80 ? static_cast<char>(unit) : ' '; };
    const char* const end = std::transform(inText.begin(), inText.end(), narrow.data(), toNarrow);
    if (std::from_chars(narrow.data(), end, value).ec != std::errc::result_out_of_range) {
      return value;
    }
  }
#endif
  plinth::string::StringToNumber(value, plinth::UTF16String(inText), kParserFlags);
  return value;
}

}  // namespace mezzo::utility::number
