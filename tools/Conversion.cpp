#include "Conversion.h"

#include "Messages.h"
#include "Notation.h"
#include "TextEncoding.h"

#include <boost/algorithm/string/trim.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace mezzo::tool {

using namespace utility;

namespace {

bool IsDigit(char inCharacter) {
  return inCharacter >= '0' && inCharacter <= '9';
}

bool IsLetter(char inCharacter) {
  return (inCharacter >= 'a' && inCharacter <= 'z') || (inCharacter >= 'A' && inCharacter <= 'Z');
}

bool IsBlank(char inCharacter) {
  return inCharacter == ' ' || inCharacter == '\t';
}

void RequireDigit(std::string_view inText) {
  if (std::none_of(inText.begin(), inText.end(), &IsDigit))
    throw UserError("no digit in " + Quote(inText));
}

[[noreturn]] void RefuseOutOfRange(std::string_view inText) {
  throw UserError(Quote(inText) + " is out of range");
}

[[noreturn]] void RefusePart(std::string_view inPart, std::string_view inText,
                             const std::string& inReason = "") {
  throw UserError("unexpected " + Quote(inPart) + " in " + Quote(inText) + inReason);
}

struct TypedNumber {
  char separator;  ///< before it; 0 for none, ' ' for blanks or a word
  std::string_view digits;
  std::string_view word;  ///< after it; usually empty
  std::size_t field = 0;
  bool isFraction = false;  ///< a decimal fraction of its field

  /// \return the greatest integer when the digits exceed it.
  std::int64_t GetValue() const {
    std::int64_t value = std::numeric_limits<std::int64_t>::max();
    std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return value;
  }
};

struct TypedText {
  bool isNegative = false;
  std::vector<TypedNumber> numbers;
};

/// Splits a text into its numbers, with their separators and unit words.
/// \exception UserError for anything else in the text.
TypedText SplitText(std::string_view inText) {
  RequireDigit(inText);
  std::string_view rest = inText;
  const auto take = [&rest](bool (*inBelongs)(char)) {
    const auto end = std::find_if_not(rest.begin(), rest.end(), inBelongs);
    const std::string_view taken = rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
    rest.remove_prefix(taken.size());
    return taken;
  };
  const auto takeOneOf = [&rest](std::string_view inCharacters) {
    if (rest.empty() || inCharacters.find(rest.front()) == std::string_view::npos) return '\0';
    const char taken = rest.front();
    rest.remove_prefix(1);
    return taken;
  };
  TypedText typed;
  take(&IsBlank);
  typed.isNegative = takeOneOf("+-") == '-';
  char separator = 0;
  while (true) {
    take(&IsBlank);
    const bool isColon = separator == ':' || separator == ';';
    if (!isColon && takeOneOf(".") != 0) separator = '.';
    TypedNumber number{separator, take(&IsDigit), {}};
    if (number.digits.empty())
      RefusePart(rest.empty() ? inText.substr(inText.size() - 1) : rest, inText);
    take(&IsBlank);
    number.word = take(&IsLetter);
    if (!number.word.empty() && !FindUnit(number.word)) RefusePart(number.word, inText);
    typed.numbers.push_back(number);
    take(&IsBlank);
    separator = takeOneOf(":;");
    if (separator == 0 && rest.empty()) return typed;
    if (separator == 0) separator = ' ';
  }
}

/// Assigns each number to a field.
/// \exception UserError for numbers that the library would ignore.
void AssignFields(TypedText& ioTyped, const Notation& inNotation, TimecodeFormat inFormat,
                  const std::string& inText) {
  auto& numbers = ioTyped.numbers;
  const std::size_t last = inNotation.fields.size() - 1;
  const bool hasTicks = inNotation.HasTicks();
  const bool hasFraction = numbers.back().separator == '.' && !hasTicks;
  const std::size_t count = numbers.size() - (hasFraction ? 1 : 0);
  const std::size_t fieldCount = inNotation.fields.back().unit == kUnit_Fraction ? last : last + 1;
  if (count > fieldCount) {
    throw UserError(Quote(inText) + " has " + std::to_string(count) + " numbers; " +
                    GetName(inFormat) + " takes at most " + std::to_string(fieldCount));
  }
  std::size_t field = inNotation.HasBars() ? 0 : fieldCount - std::max<std::size_t>(count, 1);
  for (std::size_t index = 0; index < numbers.size(); ++index) {
    TypedNumber& number = numbers[index];
    if (index > 0 && numbers[index - 1].separator == '.')
      RefusePart(number.digits, inText, "; nothing may follow a fraction");
    if (hasTicks && index == last) {
      if (number.separator == ':')
        RefusePart(":" + std::string(number.digits), inText, "; ticks must follow a '.'");
      number.separator = '.';
    }
    number.isFraction = number.separator == '.' && !hasTicks;
    if (!number.isFraction && index > 0) ++field;
    number.field = number.separator == '.' && hasTicks ? last : field;
  }
}

/// \exception UserError for a unit word that does not fit the number's field.
void RequireMatchingUnits(const TypedText& inTyped, const Notation& inNotation,
                          const std::string& inText) {
  for (const TypedNumber& number : inTyped.numbers) {
    const Unit unit = inNotation.fields[number.field].unit;
    if (!number.word.empty() && FindUnit(number.word) != unit)
      RefusePart(number.word, inText, "; the number before it counts " + GetName(unit));
  }
}

/// \return the value of each field of the notation; a fraction has none.
std::vector<std::int64_t> GetValues(const TypedText& inTyped, const Notation& inNotation) {
  std::vector<std::int64_t> values(inNotation.fields.size());
  for (const TypedNumber& number : inTyped.numbers) {
    if (!number.isFraction) values[number.field] = number.GetValue();
  }
  return values;
}

/// \return the typed value without its fraction: in frames, seconds, milliseconds or beats. For
///     bars and for drop-frame labels it is an upper bound.
/// \exception UserError for numbers that overflow: the library parses each number, writes the first
///     field, and counts frames and beats, in 32 bits.
double CountUnits(const TypedText& inTyped, const Notation& inNotation, TimecodeFormat inFormat,
                  const std::string& inText) {
  const std::vector<std::int64_t> values = GetValues(inTyped, inNotation);
  double greatest = 0.0;
  double total = 0.0;
  double unitsInFirst = 1.0;
  for (std::size_t index = 0; index < values.size(); ++index) {
    const Field& field = inNotation.fields[index];
    const auto value = static_cast<double>(values[index]);
    greatest = std::max(greatest, value);
    if (field.separator == '.') continue;
    total = total * static_cast<double>(field.radix) + value;
    if (field.radix > 0) unitsInFirst *= static_cast<double>(field.radix);
  }
  // The library counts beats from the beginning of bar 1. Before bar 1, it also counts them from
  // the beginning of an earlier bar; that adds at most two bars.
  if (inNotation.HasBars()) {
    const int barCorrection = inTyped.isNegative ? 2 : -inNotation.fields.front().origin;
    total += static_cast<double>(barCorrection * inNotation.fields[1].radix);
  }
  // Each block of ten minutes drops exactly one label in a thousand. Within a block, 0.999 × total
  // is less than a second off.
  if (HasDropFrameLabels(inFormat))
    total = 0.999 * total + static_cast<double>(inNotation.fields.back().radix);
  const bool isCount = inNotation.HasBars() || inNotation.HasFrames();
  const double count = isCount ? total : total / unitsInFirst;
  if (std::max(greatest, count) > std::numeric_limits<std::int32_t>::max())
    RefuseOutOfRange(inText);
  return total;
}

/// Cuts a fraction to the digits that the library parses exactly: at most nine, and in a fraction
/// of a frame only as many as keep the computation in integers.
void CutFraction(std::string_view& ioDigits, const Timeline& inTimeline, TimecodeFormat inFormat,
                 double inUnits) {
  constexpr std::size_t kMostDigits = 9;
  constexpr double kLargestProduct = 0x7p60;
  ioDigits = ioDigits.substr(0, kMostDigits);
  if (!GetNotation(inTimeline, inFormat).HasFrames()) return;
  const double factor = IsPulledDown(inFormat) ? 1001.0 : 1.0;
  double product = factor * inTimeline.sampleRate * (inUnits + 2.0);
  std::size_t count = 0;
  while (count < ioDigits.size() && (product *= 10.0) < kLargestProduct) ++count;
  ioDigits = ioDigits.substr(0, std::max<std::size_t>(count, 1));
}

/// \return the text with the separators that the library expects.
std::string JoinNumbers(const TypedText& inTyped) {
  std::string text = inTyped.isNegative ? "-" : "";
  for (const TypedNumber& number : inTyped.numbers) {
    if (number.separator != 0) text += number.separator == '.' ? '.' : ':';
    text += number.digits;
  }
  return text;
}

/// \return whether a position's text has the typed values, apart from decimal fractions.
bool HasValues(const Timeline& inTimeline, TimecodeFormat inFormat, std::int64_t inPosition,
               const TypedText& inTyped) {
  const std::string text = FormatPosition(inTimeline, inFormat, inPosition);
  const Notation notation = GetNotation(inTimeline, inFormat);
  TypedText written = SplitText(text);
  AssignFields(written, notation, inFormat, text);
  const std::vector<std::int64_t> values = GetValues(written, notation);
  const auto& numbers = inTyped.numbers;
  return (inPosition == 0 || inTyped.isNegative == written.isNegative) &&
         std::all_of(numbers.begin(), numbers.end(), [&values](const TypedNumber& inNumber) {
           return inNumber.isFraction || inNumber.GetValue() == values[inNumber.field];
         });
}

void AddNote(Conversion& ioParsed, ConversionNoteKind inKind, const std::string& inMessage) {
  ioParsed.notes.push_back({inKind, Quote(ioParsed.text) + inMessage});
}

std::string QuoteLabel(const Timeline& inTimeline, TimecodeFormat inFormat,
                       std::int64_t inPosition) {
  return Quote(boost::trim_left_copy(FormatPosition(inTimeline, inFormat, inPosition)));
}

bool IsFullTimecode(TimecodeFormat inFormat) {
  return GetName(inFormat).starts_with("smpte");
}

/// Notes separators that may mean something else to the writer of the text.
void CheckSeparators(const TypedText& inTyped, const Notation& inNotation,
                     const Timeline& inTimeline, TimecodeFormat inFormat, Conversion& ioParsed) {
  const auto& numbers = inTyped.numbers;
  const TypedNumber& last = numbers.back();
  const bool hasPoint = last.separator == '.';
  const bool hasSemicolon =
      std::any_of(numbers.begin(), numbers.end(),
                  [](const TypedNumber& inNumber) { return inNumber.separator == ';'; });
  if (hasSemicolon && !HasDropFrameLabels(inFormat)) {
    AddNote(ioParsed, kConversionNoteKind_Semicolon,
            " has a ';', but " + GetName(inFormat) + " has no drop-frame labels");
  }
  if (IsFullTimecode(inFormat) && hasPoint && numbers.size() <= 4) {
    AddNote(ioParsed, kConversionNoteKind_Fraction,
            " has fewer than four fields; the digits after the '.' are a fraction of a frame");
  }
  if (inNotation.HasBars() && hasPoint && numbers.size() <= 2) {
    AddNote(ioParsed, kConversionNoteKind_Fraction,
            " has no beat number; the digits after the '.' are a part of the first beat");
  }
  // The library writes ticks in the width of the largest one, or in four digits.
  const std::size_t width = std::to_string(inNotation.fields.back().radix - 1).size();
  if (inNotation.HasTicks() && numbers.size() == 3 && last.word.empty() &&
      last.digits.size() < std::min<std::size_t>(width, 4)) {
    AddNote(ioParsed, kConversionNoteKind_Fraction,
            " has " + std::string(last.digits) + " ticks; they are not a fraction of the beat");
  }
  const auto isAfterBareBlank = [](const TypedNumber& inBefore, const TypedNumber& inNumber) {
    return inNumber.separator == ' ' && inBefore.word.empty();
  };
  if (std::adjacent_find(numbers.begin(), numbers.end(), isAfterBareBlank) != numbers.end()) {
    AddNote(ioParsed, kConversionNoteKind_Blank,
            " has a blank between numbers; it stands for " +
                QuoteLabel(inTimeline, inFormat, ioParsed.position));
  }
}

/// Notes a text that the library writes differently at its position.
void CheckLabel(const TypedText& inTyped, const Notation& inNotation, const Timeline& inTimeline,
                TimecodeFormat inFormat, Conversion& ioParsed) {
  const auto& numbers = inTyped.numbers;
  // The first number may exceed its radix: in clock time, "90:00" is an hour and a half.
  const bool reachesRadix =
      !inNotation.HasBars() &&
      std::any_of(numbers.begin() + 1, numbers.end(), [&inNotation](const TypedNumber& inNumber) {
        return !inNumber.isFraction &&
               inNumber.GetValue() >= inNotation.fields[inNumber.field].radix;
      });
  // Only full timecode, ticks, and numbers that reach their radix are compared. Bars and beats with
  // a decimal fraction do not read back.
  const bool isTimecode = IsFullTimecode(inFormat);
  if (!reachesRadix && !isTimecode && !inNotation.HasTicks()) return;
  // Rounding may put the position one sample before the beginning of its label.
  if (HasValues(inTimeline, inFormat, ioParsed.position, inTyped) ||
      HasValues(inTimeline, inFormat, ioParsed.position + 1, inTyped))
    return;
  const bool isNoLabel = isTimecode && inNotation.samplesInUnit >= 1.0;
  const char* const meaning = isTimecode && numbers.back().separator == '.' ? " lies in "
                              : isNoLabel ? " is not a label; it stands for "
                                          : " stands for ";
  AddNote(ioParsed, kConversionNoteKind_NoSuchLabel,
          meaning + QuoteLabel(inTimeline, inFormat, ioParsed.position));
}

}  // namespace

ConversionNotePrinter::~ConversionNotePrinter() {
  if (fOmitted > 0) Complain("note: " + std::to_string(fOmitted) + " more; --json shows all notes");
}

void ConversionNotePrinter::Print(const std::vector<ConversionNote>& inNotes,
                                  const std::string& inPlace) {
  for (const ConversionNote& note : inNotes) {
    if (fPrinted.insert(note.kind).second) {
      Complain(inPlace + "note: " + note.text);
    } else {
      ++fOmitted;
    }
  }
}

void AddConversionNotes(JSON& ioObject, const std::vector<ConversionNote>& inNotes) {
  for (const ConversionNote& note : inNotes) ioObject["notes"].push_back(note.text);
}

std::string FormatPosition(const Timeline& inTimeline, TimecodeFormat inFormat,
                           std::int64_t inPosition) {
  plinth::UTF16String text;
  ConvertSamplesToTimecode(text, inPosition, inTimeline.sampleRate, inFormat,
                           inTimeline.framesPerSecond, &inTimeline.beats, inTimeline.isDuration);
  const bool lacksSign = IsFrameCount(inFormat) && inPosition < 0 && text != u"0";
  return (lacksSign ? "-" : "") + EncodeUTF8(text);
}

void FormatChecked(const Timeline& inTimeline, TimecodeFormat inFormat, Conversion& ioConversion) {
  const std::string text = FormatPosition(inTimeline, inFormat, ioConversion.position);
  ioConversion.text = text;
  if (inFormat == kTimecodeFormat_Samples) return;
  if (inFormat == kTimecodeFormat_Milliseconds && text.find('e') != std::string::npos) {
    ioConversion.notes.push_back({kConversionNoteKind_Exponent,
                                  "milliseconds have six significant digits, and an exponent from "
                                  "1000 seconds on, which cannot be parsed: " +
                                      Quote(text)});
    return;
  }
  const Notation notation = GetNotation(inTimeline, inFormat);
  const double unit = notation.samplesInUnit;
  const auto position = static_cast<double>(ioConversion.position);
  const std::int64_t parsed = ParseText(inTimeline, inFormat, text);
  const double distance = std::fabs(static_cast<double>(parsed) - position);
  constexpr double kFrameLimit = 2147483648.0;  // the library counts frames in 32 bits
  // Rounding moves a position by less than two units. Clock time from ten hours on has only
  // hundredths of a second, and milliseconds only six digits; both stay within a hundredth.
  if (distance >
          std::max(2.0 * unit, inTimeline.sampleRate * 0.01) + 1.0 + 1e-15 * std::fabs(position) ||
      (IsFrameCount(inFormat) && std::fabs(position) >= kFrameLimit * unit)) {
    throw UserError("position " + std::to_string(ioConversion.position) + " is out of range for " +
                    GetName(inFormat));
  }
  // Texts in milliseconds, beats, and bars and beats with a decimal fraction should be the nearest
  // to the position. All others are truncated; they have to read back only if their unit is shorter
  // than a sample.
  const bool mustBeNearest =
      notation.fields.back().unit == kUnit_Fraction && inFormat != kTimecodeFormat_Decimal;
  const double error = inFormat == kTimecodeFormat_Milliseconds
                           ? std::fabs(std::stod(text) * 10.0 * unit - position)
                           : distance - 0.5;
  if (mustBeNearest ? error > 0.500001 * unit : unit < 1.0 && distance > 0.0) {
    const std::string result = distance == 0.0 ? "another text is nearer to it"
                                               : "parses as sample " + std::to_string(parsed);
    ioConversion.notes.push_back({kConversionNoteKind_Inexact,
                                  "in " + GetName(inFormat) + ", " + Quote(text) +
                                      " is the text of sample " +
                                      std::to_string(ioConversion.position) + ", but " + result});
  }
}

std::int64_t ParseText(const Timeline& inTimeline, TimecodeFormat inFormat,
                       std::string_view inText) {
  const plinth::UTF16String text = DecodeUTF8(inText);
  RequireDigit(inText);
  std::int64_t position = 0;
  BeatInfo beats = inTimeline.beats;
  if (inFormat == kTimecodeFormat_PulldownFrames) {
    // The overload that takes a format would parse drop-frame labels, which exist only at 30 and
    // 60.
    ConvertTimecodeToSamples(position, text, inTimeline.sampleRate, inTimeline.framesPerSecond,
                             true, false);
  } else {
    ConvertTimecodeToSamples(position, text, inFormat, inTimeline.sampleRate,
                             inTimeline.framesPerSecond, &beats, inTimeline.isDuration);
  }
  const bool isNegative = *std::find_if_not(inText.begin(), inText.end(), &IsBlank) == '-';
  return isNegative && !GetNotation(inTimeline, inFormat).libraryParsesSign ? -position : position;
}

Conversion ParseChecked(const Timeline& inTimeline, TimecodeFormat inFormat,
                        const std::string& inText) {
  if (inFormat == kTimecodeFormat_Samples) return {ParsePosition(inText), inText, {}};
  const Notation notation = GetNotation(inTimeline, inFormat);
  TypedText typed = SplitText(inText);
  AssignFields(typed, notation, inFormat, inText);
  RequireMatchingUnits(typed, notation, inText);
  const double units = CountUnits(typed, notation, inFormat, inText);
  if (TypedNumber& last = typed.numbers.back(); last.isFraction)
    CutFraction(last.digits, inTimeline, inFormat, units);
  const std::int64_t position = ParseText(inTimeline, inFormat, JoinNumbers(typed));
  constexpr std::int64_t kFarthest = std::numeric_limits<std::int64_t>::max();
  if (position == kFarthest || position <= -kFarthest) RefuseOutOfRange(inText);
  Conversion conversion{position, inText, {}};
  CheckSeparators(typed, notation, inTimeline, inFormat, conversion);
  CheckLabel(typed, notation, inTimeline, inFormat, conversion);
  return conversion;
}

Conversion ParseLeniently(const Timeline& inTimeline, TimecodeFormat inFormat,
                          const std::string& inText) {
  const std::int64_t position = ParseText(inTimeline, inFormat, inText);
  try {
    Conversion checked = ParseChecked(inTimeline, inFormat, inText);
    if (checked.position == position) return checked;
  } catch (const UserError&) {
    // The note below is for this text, too.
  }
  return {position,
          inText,
          {{kConversionNoteKind_Lenient,
            Quote(inText) + " is parsed leniently, as sample " + std::to_string(position)}}};
}

std::int64_t ParsePosition(std::string_view inText) {
  std::string number = boost::trim_copy_if(std::string(inText), &IsBlank);
  if (number.starts_with('+') && !number.starts_with("+-")) number.erase(0, 1);
  std::int64_t value = 0;
  const char* const last = number.data() + number.size();
  const auto [end, error] = std::from_chars(number.data(), last, value);
  if (error == std::errc::result_out_of_range)
    throw UserError(Quote(inText) + " does not fit in 64 bits");
  if (error != std::errc() || end != last) {
    const bool isTime = number.find_first_of(":;") != std::string::npos;
    throw UserError(Quote(inText) + " is not a position in samples" +
                    (isTime ? "; 'convert' and 'show --from' take other formats" : ""));
  }
  return value;
}

}  // namespace mezzo::tool
