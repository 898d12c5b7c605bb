/// \file
/// The library's conversions as people need them: it reads leniently and defines a result for
/// everything; here a value that does not hold is refused, and what is worth knowing is noted.
#pragma once

#include "DisplayFormats.h"

#include <cstdint>
#include <string>
#include <vector>

namespace mezzo::tool {

enum class NoteKind { kSemicolon, kNoSuchLabel, kLosesDigits };

struct Note {
  NoteKind kind;
  std::string text;
};

struct Conversion {
  std::int64_t position;
  std::string text;
  std::vector<Note> notes;
};

/// Reads a text that a person typed. Digits, the format's separators, blanks, unit words such as
/// "min" and a minus sign in front are understood, and no more numbers than the format has fields.
/// \exception InputError says what has no place, or that the position lies out of range.
Conversion ReadTyped(const Timeline& inTimeline, utility::TimecodeFormat inFormat,
                     const std::string& inText);

/// Writes a position.
/// \exception InputError where the text would not read back as nearly the same position.
Conversion WriteChecked(const Timeline& inTimeline, utility::TimecodeFormat inFormat,
                        std::int64_t inPosition);

}  // namespace mezzo::tool
