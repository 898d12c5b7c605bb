/// \file
/// Conversions between positions and texts.
///
/// The library parses leniently and has a result for every input. The checked conversions refuse
/// input that would overflow or be ignored, and note surprising results.
#pragma once

#include "DisplayFormats.h"
#include "JSONOutput.h"

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace mezzo::tool {

enum ConversionNoteKind {
  kConversionNoteKind_Lenient,
  kConversionNoteKind_Digits,
  kConversionNoteKind_Semicolon,
  kConversionNoteKind_StandsFor,
  kConversionNoteKind_LiesIn,
  kConversionNoteKind_Exponent,
  kConversionNoteKind_Inexact,
  kConversionNoteKind_Delimiter,
  kConversionNoteKind_Lines,
  kConversionNoteKind_Rate,
  kConversionNoteKind_EmptyRuler,
};

struct ConversionNote {
  ConversionNoteKind kind;
  std::string text;
};

struct Conversion {
  std::int64_t position;
  std::string text;  ///< the parsed text; after FormatChecked, the formatted one
  std::vector<ConversionNote> notes;
};

/// Prints the first note of each kind to standard error, and at the end the number of the others.
class ConversionNotePrinter {
 public:
  ConversionNotePrinter() = default;
  ConversionNotePrinter(const ConversionNotePrinter&) = delete;
  ConversionNotePrinter& operator=(const ConversionNotePrinter&) = delete;
  ~ConversionNotePrinter();

  /// \param inPlace the input that the notes are about, such as "line 3: "; may be empty.
  void Print(const std::vector<ConversionNote>& inNotes, const std::string& inPlace = "");

 private:
  std::set<ConversionNoteKind> fPrinted;
  std::size_t fOmitted = 0;
};

/// Adds the member "notes", if there are any.
void AddConversionNotes(JSON& ioObject, const std::vector<ConversionNote>& inNotes);

/// Formats a position. The library writes frame counts without a sign; here they have one.
/// \return the text; empty when the format has no conversion.
std::string FormatPosition(const Timeline& inTimeline, utility::TimecodeFormat inFormat,
                           std::int64_t inPosition);

/// Formats the position of a conversion: sets its text and may add a note.
/// \exception UserError when the text parses back to a position beyond rounding distance.
void FormatChecked(const Timeline& inTimeline, utility::TimecodeFormat inFormat,
                   Conversion& ioConversion);

/// Parses a text as leniently as the library does, with two exceptions: a leading minus sign that
/// the library takes for a separator negates the position, and pulled-down frames are read at all
/// frame rates, not only at those with drop-frame labels.
/// \exception UserError for a text without a digit, or one that is not UTF-8.
std::int64_t ParseText(const Timeline& inTimeline, utility::TimecodeFormat inFormat,
                       std::string_view inText);

/// Parses a text that a person typed. Besides numbers it may contain a sign, the separators ":",
/// ";" and ".", blanks and unit words such as "min". Not counting a fraction, it may not have more
/// numbers than the format has fields.
/// \exception UserError for any other text, and for a position that is out of range.
Conversion ParseChecked(const Timeline& inTimeline, utility::TimecodeFormat inFormat,
                        const std::string& inText);

/// Parses a text as ParseText does. A note gives the position if ParseChecked would refuse the text
/// or parse it differently.
Conversion ParseLeniently(const Timeline& inTimeline, utility::TimecodeFormat inFormat,
                          const std::string& inText);

/// Parses a sample count.
/// \exception UserError for any other text, and for a count that does not fit in 64 bits.
std::int64_t ParseSampleCount(std::string_view inText);

}  // namespace mezzo::tool
