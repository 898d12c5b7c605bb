/// \file
/// Text to numbers and ASCII to UTF-16. Nothing here depends on the process locale.
#pragma once

#include <plinth/Export.h>
#include <plinth/string/UTF16String.h>
#include <plinth/utility/Flags.h>

#include <cstddef>

namespace plinth::string {

/// Widens a text, one code unit for each byte.
/// \param inText the text; ASCII.
/// \param inLength its length in bytes.
/// \exception std::bad_alloc when memory runs out.
PLINTH_EXPORT UTF16String AsciiToUTF16(const char* inText, std::size_t inLength);

/// Reads the decimal integer at the start of a text.
///
/// Blanks (space, tab) are skipped; then come an optional sign, "+" or "-", and ASCII digits, any
/// number of them. Reading stops at the first code unit that does not belong.
///
/// \param[out] outNumber receives the number; 0 for a text without one; the nearest representable
///     number where it does not fit.
/// \param inText the text.
/// \param inOptions options of the host's foundation library. This stand-in knows one grammar and
///     reads the same with every value.
/// \return true when a number was read and fits. Does not throw, does not allocate.
PLINTH_EXPORT bool StringToNumber(int& outNumber, const UTF16String& inText,
                                  utility::Flags<unsigned short> inOptions) noexcept;

/// Reads a decimal integer as the function for `int` does.
PLINTH_EXPORT bool StringToNumber(long long& outNumber, const UTF16String& inText,
                                  utility::Flags<unsigned short> inOptions) noexcept;

/// Reads the decimal number at the start of a text, correctly rounded.
///
/// Blanks (space, tab) are skipped; then come an optional sign, "+" or "-", ASCII digits with an
/// optional "." before, among or behind them, and an optional exponent: "e" or "E", an optional
/// sign, digits. Reading stops at the first code unit that does not belong. There are no
/// hexadecimal numbers, and no names for infinity or not a number.
///
/// \param[out] outNumber receives the double nearest to the number, halves to even: zero or a
///     denormal where the number is that small, an infinity where it is too large, 0 for a text
///     without a number.
/// \param inText the text.
/// \param inOptions as for integers.
/// \return true when a number was read and is not too large. Does not throw; takes no memory of
///     `MemoryRecycler`.
PLINTH_EXPORT bool StringToNumber(double& outNumber, const UTF16String& inText,
                                  utility::Flags<unsigned short> inOptions) noexcept;

}  // namespace plinth::string
