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

  bool HasFraction() const { return numbers.back().isFraction; }
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

/// Splits a text into the fields of a notation.
/// \exception UserError for text that the library would ignore, and for a unit word that does not
///     fit its number.
TypedText SplitIntoFields(std::string_view inText, const Notation& inNotation,
                          TimecodeFormat inFormat) {
  TypedText typed = SplitText(inText);
  auto& numbers = typed.numbers;
  const bool hasTicks = inNotation.HasTicks();
  const std::size_t fieldCount = inNotation.fields.size() - (inNotation.HasFractionField() ? 1 : 0);
  numbers.back().isFraction = numbers.back().separator == '.' && !hasTicks;
  const std::size_t count = numbers.size() - (typed.HasFraction() ? 1 : 0);
  if (count > fieldCount) {
    throw UserError(Quote(inText) + " has " + std::to_string(count) + " numbers; " +
                    GetName(inFormat) + " takes at most " + std::to_string(fieldCount));
  }
  const std::size_t first = inNotation.HasBars() ? 0 : fieldCount - count;
  for (std::size_t index = 0; index < numbers.size(); ++index) {
    TypedNumber& number = numbers[index];
    const std::string digits(number.digits);
    number.field = first + index - (number.isFraction ? 1 : 0);
    if (number.separator == '.' && inNotation.HasBars() && index != 2)
      RefusePart("." + digits, inText, "; a '.' may only follow a beat");
    if (index > 0 && numbers[index - 1].separator == '.')
      RefusePart(digits, inText, "; nothing may follow a fraction");
    if (hasTicks && index == 2) {
      if (number.separator != '.' && number.separator != ' ')
        RefusePart(number.separator + digits, inText, "; ticks must follow a '.'");
      number.separator = '.';
    }
    const Unit unit = inNotation.fields[number.field].unit;
    if (!number.word.empty() && FindUnit(number.word) != unit)
      RefusePart(number.word, inText, "; the number before it counts " + GetName(unit));
  }
  return typed;
}

/// \return the value of a text without its fraction, in units of the last field that is not a
/// fraction.
double CountWholeUnits(const TypedText& inTyped, const Notation& inNotation) {
  double units = 0.0;
  for (std::size_t index = 0; index < inNotation.fields.size(); ++index) {
    const Field& field = inNotation.fields[index];
    if (field.unit == kUnit_Fraction) break;
    const auto number =
        std::find_if(inTyped.numbers.begin(), inTyped.numbers.end(),
                     [index](const TypedNumber& inNumber) { return inNumber.field == index; });
    const bool isOmitted = number == inTyped.numbers.end() || number->isFraction;
    units = units * static_cast<double>(field.radix) +
            static_cast<double>(isOmitted ? field.origin : number->GetValue());
    // In bars and beats, the sign belongs to the bar.
    if (index == 0 && inNotation.HasBars() && inTyped.isNegative) units = -units;
  }
  return inTyped.isNegative && !inNotation.HasBars() ? -units : units;
}

/// The greatest number of digits of a fraction that the tool passes on.
constexpr std::size_t kMaxFractionDigits = 9;

/// \return how many digits of a fraction the library parses exactly: in a fraction of a frame, only
///     as many as keep the computation in integers.
std::size_t CountExactDigits(const Timeline& inTimeline, const Notation& inNotation,
                             TimecodeFormat inFormat, double inUnits) {
  if (!inNotation.HasFrames()) return kMaxFractionDigits;
  constexpr double kLargestProduct = 0x7p60;
  const double factor = IsPulledDown(inFormat) ? 1001.0 : 1.0;
  double product = factor * inTimeline.sampleRate * (std::fabs(inUnits) + 2.0);
  std::size_t count = 0;
  while (count < kMaxFractionDigits && (product *= 10.0) < kLargestProduct) ++count;
  return count;
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

void AddNote(Conversion& ioParsed, ConversionNoteKind inKind, const std::string& inMessage) {
  ioParsed.notes.push_back({inKind, Quote(ioParsed.text) + inMessage});
}

/// \return whether a number is too large or too small for its field. Outside timecode, the first
///     number is exempt: in clock time, "90:00" is an hour and a half.
bool HasNumberBeyondField(const TypedText& inTyped, const Notation& inNotation) {
  const auto isBeyond = [&inNotation](const TypedNumber& inNumber) {
    const Field& field = inNotation.fields[inNumber.field];
    const std::int64_t value = inNumber.GetValue() - field.origin;
    return !inNumber.isFraction && field.radix > 0 && (value < 0 || value >= field.radix);
  };
  const int exempt = inNotation.HasFrames() ? 0 : 1;
  return std::any_of(inTyped.numbers.begin() + exempt, inTyped.numbers.end(), isBeyond);
}

/// \return whether only a blank is between two numbers.
bool HasBareBlank(const TypedText& inTyped) {
  const auto isBare = [](const TypedNumber& inBefore, const TypedNumber& inNumber) {
    return inNumber.separator == ' ' && inBefore.word.empty();
  };
  const auto& numbers = inTyped.numbers;
  return std::adjacent_find(numbers.begin(), numbers.end(), isBare) != numbers.end();
}

/// The text that the library formats at a position.
struct FormattedText {
  std::string text;
  /// The value as CountWholeUnits counts it; infinite after an overflow.
  double wholeUnits = std::numeric_limits<double>::infinity();

  FormattedText(const Timeline& inTimeline, TimecodeFormat inFormat, std::int64_t inPosition)
      : text(boost::trim_left_copy(FormatPosition(inTimeline, inFormat, inPosition))) {
    const Notation notation = GetNotation(inTimeline, inFormat);
    try {
      wholeUnits = CountWholeUnits(SplitIntoFields(text, notation, inFormat), notation);
    } catch (const UserError&) {
      // After an overflow, a field may have a sign.
    }
  }
};

/// Compares a typed text with the formatted text at its position. Adds a note with the formatted
/// text if the values differ, or if the typed text looks like another position.
/// \exception UserError when the values are so far apart that the library must have overflowed.
void CompareWithFormatted(const TypedText& inTyped, const Notation& inNotation,
                          const Timeline& inTimeline, TimecodeFormat inFormat,
                          Conversion& ioParsed) {
  const double units = CountWholeUnits(inTyped, inNotation);
  const auto getDistance = [units](const FormattedText& inFormatted) {
    return std::fabs(inFormatted.wholeUnits - units);
  };
  FormattedText formatted(inTimeline, inFormat, ioParsed.position);
  if (getDistance(formatted) >= 0.5) {
    // In beats and clock time, the nearest sample may lie before the typed beat or second.
    const FormattedText next(inTimeline, inFormat, ioParsed.position + 1);
    if (getDistance(next) < 0.5) formatted = next;
  }
  // An overflow changes the value by 2^32 or more; rounding and dropped labels change it far less.
  if (getDistance(formatted) > 0x1p31) RefuseOutOfRange(ioParsed.text);
  const auto& numbers = inTyped.numbers;
  const std::size_t point = formatted.text.find('.');
  const bool liesInFrame = inTyped.HasFraction() && point == std::string::npos;
  const bool hasOtherValue = getDistance(formatted) >= 0.5 && !inNotation.HasFractionField();
  // Ticks with fewer digits than the library writes look like a decimal fraction.
  const bool isShort = inNotation.HasTicks() && numbers.size() == 3 &&
                       numbers.back().word.empty() && numbers.back().GetValue() > 0 &&
                       numbers.back().digits.size() < formatted.text.size() - point - 1;
  const bool losesSign =
      inNotation.HasBars() && inTyped.isNegative && !formatted.text.starts_with('-');
  const bool isAmbiguous = isShort || losesSign || HasNumberBeyondField(inTyped, inNotation) ||
                           HasBareBlank(inTyped) ||
                           (liesInFrame && numbers.size() <= inNotation.fields.size());
  if (!hasOtherValue && !isAmbiguous) return;
  const char* const meaning = liesInFrame ? " lies in "
                              : hasOtherValue && HasDropFrameLabels(inFormat)
                                  ? " is not a label; it stands for "
                                  : " stands for ";
  AddNote(ioParsed, liesInFrame ? kConversionNoteKind_LiesIn : kConversionNoteKind_StandsFor,
          meaning + Quote(formatted.text));
}

/// Explains why a formatted text is misleading.
/// \param inParsed the position that the text parses to.
/// \return a few words; empty if the text is not misleading.
std::string ExplainInexact(const Timeline& inTimeline, TimecodeFormat inFormat,
                           const Notation& inNotation, const std::string& inText,
                           std::int64_t inPosition, std::int64_t inParsed) {
  const auto position = static_cast<double>(inPosition);
  const double halfUnit = 0.500001 * inNotation.samplesInUnit;  // with room for rounding
  if (inFormat == kTimecodeFormat_Milliseconds) {
    const double samplesInMillisecond = inTimeline.sampleRate / 1000.0;
    const double error = std::fabs(std::stod(inText) * samplesInMillisecond - position);
    return error <= halfUnit
               ? ""
               : "it is at " + std::to_string(position / samplesInMillisecond) + " ms";
  }
  const double distance = std::fabs(static_cast<double>(inParsed) - position);
  if (inNotation.HasFractionField() && inFormat != kTimecodeFormat_Decimal)
    return distance - 0.5 <= halfUnit ? "" : "another text is nearer to it";
  // All other texts are truncated to whole units. If a unit is shorter than a sample, the text
  // should still parse as its own position.
  if (inNotation.samplesInUnit < 1.0 && distance > 0.0)
    return "parses as sample " + std::to_string(inParsed);
  if (inFormat != kTimecodeFormat_PulldownFrames) return "";
  // The library counts pulled-down frames in double precision, but their labels in integers.
  const FormattedText exact(inTimeline, kTimecodeFormat_SMPTEPulldown, inPosition);
  return exact.wholeUnits == std::stod(inText)
             ? ""
             : "it lies in frame " + std::to_string(std::llround(exact.wholeUnits));
}

}  // namespace

ConversionNotePrinter::~ConversionNotePrinter() {
  if (fOmitted > 0)
    PrintMessage("note: " + std::to_string(fOmitted) + " more; --json shows all notes");
}

void ConversionNotePrinter::Print(const std::vector<ConversionNote>& inNotes,
                                  const std::string& inPlace) {
  for (const ConversionNote& note : inNotes) {
    if (fPrinted.insert(note.kind).second) {
      PrintMessage(inPlace + "note: " + note.text);
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
  // hundredths of a second, and milliseconds only six digits; both stay within 10 milliseconds.
  if (distance >
          std::max(2.0 * unit, inTimeline.sampleRate * 0.01) + 1.0 + 1e-15 * std::fabs(position) ||
      (IsFrameCount(inFormat) && std::fabs(position) >= kFrameLimit * unit)) {
    throw UserError("position " + std::to_string(ioConversion.position) + " is out of range for " +
                    GetName(inFormat));
  }
  const std::string objection =
      ExplainInexact(inTimeline, inFormat, notation, text, ioConversion.position, parsed);
  if (objection.empty()) return;
  ioConversion.notes.push_back({kConversionNoteKind_Inexact,
                                "in " + GetName(inFormat) + ", " + Quote(text) +
                                    " is the text of sample " +
                                    std::to_string(ioConversion.position) + ", but " + objection});
}

std::int64_t ParseText(const Timeline& inTimeline, TimecodeFormat inFormat,
                       std::string_view inText) {
  const plinth::UTF16String text = DecodeUTF8(inText);
  RequireDigit(inText);
  std::int64_t position = 0;
  BeatInfo beats = inTimeline.beats;
  if (inFormat == kTimecodeFormat_PulldownFrames) {
    // The overload that takes a format would report frame rates without drop-frame labels.
    const bool hasLabels = ExplainUnavailable(inTimeline, kTimecodeFormat_SMPTEDropFrame).empty();
    ConvertTimecodeToSamples(position, text, inTimeline.sampleRate, inTimeline.framesPerSecond,
                             true, hasLabels);
  } else {
    ConvertTimecodeToSamples(position, text, inFormat, inTimeline.sampleRate,
                             inTimeline.framesPerSecond, &beats, inTimeline.isDuration);
  }
  const bool isNegative = *std::find_if_not(inText.begin(), inText.end(), &IsBlank) == '-';
  return isNegative && !GetNotation(inTimeline, inFormat).libraryParsesSign ? -position : position;
}

Conversion ParseChecked(const Timeline& inTimeline, TimecodeFormat inFormat,
                        const std::string& inText) {
  if (inFormat == kTimecodeFormat_Samples) return {ParseSampleCount(inText), inText, {}};
  const Notation notation = GetNotation(inTimeline, inFormat);
  TypedText typed = SplitIntoFields(inText, notation, inFormat);
  Conversion conversion{0, inText, {}};
  if (std::string_view& digits = typed.numbers.back().digits; typed.HasFraction()) {
    const std::size_t count =
        CountExactDigits(inTimeline, notation, inFormat, CountWholeUnits(typed, notation));
    if (digits.find_first_not_of('0', count) != std::string_view::npos) {
      if (count == 0)
        throw UserError(Quote(inText) + " is too far from sample 0 to have a fraction");
      AddNote(conversion, kConversionNoteKind_Digits,
              " is parsed with only " + std::to_string(count) +
                  (count == 1 ? " digit" : " digits") + " after the '.'");
    }
    digits = digits.substr(0, count);
    if (digits.empty()) typed.numbers.pop_back();
  }
  constexpr std::int64_t kGreatest = std::numeric_limits<std::int32_t>::max();
  constexpr std::int64_t kFarthest = std::numeric_limits<std::int64_t>::max();
  const std::int64_t position = ParseText(inTimeline, inFormat, JoinNumbers(typed));
  conversion.position = position;
  const bool overflows =
      std::any_of(typed.numbers.begin(), typed.numbers.end(),
                  [](const TypedNumber& inNumber) { return inNumber.GetValue() > kGreatest; });
  if (overflows || position == kFarthest || position <= -kFarthest) RefuseOutOfRange(inText);
  const bool hasSemicolon =
      std::any_of(typed.numbers.begin(), typed.numbers.end(),
                  [](const TypedNumber& inNumber) { return inNumber.separator == ';'; });
  if (hasSemicolon && !HasDropFrameLabels(inFormat)) {
    AddNote(conversion, kConversionNoteKind_Semicolon,
            " has a ';', but " + GetName(inFormat) + " has no drop-frame labels");
  }
  if (inFormat != kTimecodeFormat_Milliseconds)
    CompareWithFormatted(typed, notation, inTimeline, inFormat, conversion);
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

std::int64_t ParseSampleCount(std::string_view inText) {
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
