/// \file
/// String conversion: text to numbers and ASCII to UTF-16, independent of the process locale.
#pragma once

#include <plinth/Export.h>
#include <plinth/string/UTF16String.h>
#include <plinth/utility/Flags.h>

#include <cstddef>

namespace plinth::string {

/// Widens a text, one code unit per byte.
/// \param inText the text; ASCII.
/// \param inLength its length in bytes.
/// \exception std::bad_alloc if memory runs out.
PLINTH_EXPORT UTF16String AsciiToUTF16(const char* inText, std::size_t inLength);

/// Parses the decimal integer at the start of a text. Does not throw, does not allocate.
///
/// The grammar: optional blanks (space, tab), an optional sign ("+" or "-"), ASCII digits. Parsing
/// stops at the first code unit that does not match.
///
/// \param[out] outNumber receives the number. Overflow saturates; without a number it is 0.
/// \param inText the text.
/// \param inOptions options of the host's foundation library. This stand-in has one grammar and
///     ignores them.
/// \return true if a number was parsed without overflow.
PLINTH_EXPORT bool StringToNumber(int& outNumber, const UTF16String& inText,
                                  utility::Flags<unsigned short> inOptions) noexcept;

/// Parses a decimal integer in the same way as the overload for `int`.
PLINTH_EXPORT bool StringToNumber(long long& outNumber, const UTF16String& inText,
                                  utility::Flags<unsigned short> inOptions) noexcept;

/// Parses the decimal number at the start of a text, correctly rounded. Does not throw, and does
/// not allocate from `MemoryRecycler`.
///
/// The grammar: optional blanks (space, tab), an optional sign ("+" or "-"), ASCII digits with an
/// optional "." before, among or after them, and an optional exponent ("e" or "E", an optional
/// sign, digits). Parsing stops at the first code unit that does not match. Hexadecimal numbers,
/// infinities and NaN are not parsed.
///
/// \param[out] outNumber receives the nearest double, ties to even. Overflow gives an infinity,
///     underflow a denormal or zero; without a number it is 0.
/// \param inText the text.
/// \param inOptions as for integers.
/// \return true if a number was parsed without overflow.
PLINTH_EXPORT bool StringToNumber(double& outNumber, const UTF16String& inText,
                                  utility::Flags<unsigned short> inOptions) noexcept;

}  // namespace plinth::string
