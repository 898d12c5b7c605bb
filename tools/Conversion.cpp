#include "Conversion.h"

#include "Messages.h"
#include "Notation.h"
#include "TextEncoding.h"

#include <boost/algorithm/string/trim.hpp>
#include <boost/container/small_vector.hpp>

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
    throw InputError("no digit in " + Quote(inText));
}

[[noreturn]] void RefuseOutOfRange(std::string_view inText) {
  throw InputError(Quote(inText) + " is out of range");
}

[[noreturn]] void RefusePart(std::string_view inPart, std::string_view inText,
                             const std::string& inReason = "") {
  throw InputError("cannot place " + Quote(inPart) + " in " + Quote(inText) + inReason);
}

struct TypedNumber {
  char separator;  ///< before it; 0 for none, ' ' for blanks or a word
  std::string_view digits;
  std::string_view word;  ///< after it; usually empty

  /// \return the greatest integer when the digits exceed it.
  std::int64_t GetValue() const {
    std::int64_t value = std::numeric_limits<std::int64_t>::max();
    std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return value;
  }
};

struct TypedText {
  bool isNegative = false;
  boost::container::small_vector<TypedNumber, 5> numbers;
};

/// Splits a text into its numbers.
/// \exception InputError for any other part of the text.
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
    if (takeOneOf(".") != 0) separator = '.';
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

/// Rewrites a typed text so that the library parses every number as it is meant.
/// \exception InputError where the library would ignore a number, count it in another unit, or
/// overflow: it parses numbers and counts whole frames and beats in 32 bits.
std::string NormalizeText(const TypedText& inTyped, const Timeline& inTimeline,
                          TimecodeFormat inFormat, const std::string& inText) {
  const Notation notation = GetNotation(inTimeline, inFormat);
  const auto& fields = notation.fields;
  const auto& numbers = inTyped.numbers;
  const bool isMusical = notation.IsMusical();
  const bool hasFraction = numbers.back().separator == '.' && !isMusical;
  const std::size_t count = numbers.size() - (hasFraction ? 1 : 0);
  const std::size_t fieldCount = fields.size() - (fields.back().unit == kUnit_Fraction ? 1 : 0);
  if (count > fieldCount) {
    throw InputError(Quote(inText) + " has " + std::to_string(count) + " numbers; " +
                     GetName(inFormat) + " has at most " + std::to_string(fieldCount));
  }
  const std::size_t omitted = isMusical ? 0 : fieldCount - count;
  std::string text = inTyped.isNegative ? "-" : "";
  double total = 0.0;
  double largest = 0.0;
  for (std::size_t place = 0; place < numbers.size(); ++place) {
    const TypedNumber& number = numbers[place];
    const bool isFraction = number.separator == '.' && !isMusical;
    const bool isTick = isMusical && (number.separator == '.' || place == 2);
    std::string shown(number.digits);
    if (place > 0) {
      const TypedNumber& previous = numbers[place - 1];
      if (previous.separator == '.') RefusePart(shown, inText, "; nothing follows a fraction");
      if (isTick && number.separator == ':')
        RefusePart(":" + shown, inText, "; ticks follow a '.'");
      if (isFraction) shown = std::string(previous.digits) + "." + shown;
    }
    const Field& field = fields[isTick ? 2 : isFraction ? fieldCount - 1 : omitted + place];
    if (!number.word.empty() && FindUnit(number.word) != field.unit)
      RefusePart(number.word, inText, ", where " + shown + " counts " + GetName(field.unit));
    if (number.separator != 0) text += isTick || isFraction ? '.' : ':';
    text += number.digits;
    const auto value = static_cast<double>(number.GetValue());
    if (!isTick && !isFraction) total = total * static_cast<double>(field.radix) + value;
    largest = std::max({largest, total, isTick ? value : 0.0});
  }
  if (largest > std::numeric_limits<std::int32_t>::max()) RefuseOutOfRange(inText);
  return text;
}

/// Notes what the library passes over in a text that it parsed as a position.
std::vector<Note> CheckLabel(const TypedText& inTyped, const Timeline& inTimeline,
                             TimecodeFormat inFormat, const Conversion& inParsed) {
  std::vector<Note> notes;
  const auto& numbers = inTyped.numbers;
  const bool hasSemicolon =
      std::any_of(numbers.begin(), numbers.end(),
                  [](const TypedNumber& inNumber) { return inNumber.separator == ';'; });
  if (hasSemicolon && !HasDropFrameLabels(inFormat)) {
    notes.push_back({kNoteKind_Semicolon, Quote(inParsed.text) +
                                              " has the ';' of drop-frame labels, which " +
                                              GetName(inFormat) + " does not have"});
  }
  if (GetName(inFormat).starts_with("smpte") && numbers.back().separator != '.') {
    const std::string label = FormatPosition(inTimeline, inFormat, inParsed.position);
    const TypedText written = SplitText(label);
    // Every label has four fields. The typed text may omit the leading ones.
    const bool isSame = std::equal(numbers.rbegin(), numbers.rend(), written.numbers.rbegin(),
                                   [](const TypedNumber& inLeft, const TypedNumber& inRight) {
                                     return inLeft.GetValue() == inRight.GetValue();
                                   });
    if (!isSame) {
      notes.push_back({kNoteKind_NoSuchLabel, "there is no label " + Quote(inParsed.text) +
                                                  "; it stands for " + Quote(label)});
    }
  }
  return notes;
}

}  // namespace

std::string FormatPosition(const Timeline& inTimeline, TimecodeFormat inFormat,
                           std::int64_t inPosition) {
  plinth::UTF16String text;
  ConvertSamplesToTimecode(text, inPosition, inTimeline.sampleRate, inFormat,
                           inTimeline.framesPerSecond, &inTimeline.beats, inTimeline.isDuration);
  const bool isFrameCount =
      inFormat == kTimecodeFormat_Frames || inFormat == kTimecodeFormat_PulldownFrames;
  const bool lacksSign = isFrameCount && inPosition < 0 && text != u"0";
  return (lacksSign ? "-" : "") + ToUTF8(text);
}

void FormatChecked(const Timeline& inTimeline, TimecodeFormat inFormat, Conversion& ioConversion) {
  const std::string text = FormatPosition(inTimeline, inFormat, ioConversion.position);
  ioConversion.text = text;
  if (inFormat == kTimecodeFormat_Samples) return;
  if (inFormat == kTimecodeFormat_Milliseconds && text.find('e') != std::string::npos) {
    ioConversion.notes.push_back(
        {kNoteKind_FewDigits,
         "milliseconds have only six digits from 1000 seconds on: " + Quote(text)});
    return;
  }
  const auto parsed = static_cast<double>(ParseText(inTimeline, inFormat, text));
  const double distance = std::fabs(parsed - static_cast<double>(ioConversion.position));
  // Rounding shifts a position by less than two units. Six digits leave milliseconds half a one.
  const double unit = GetNotation(inTimeline, inFormat).samplesInUnit;
  if (distance > std::max(2.0 * unit, inTimeline.sampleRate * 0.001) + 1.0) {
    throw InputError("position " + std::to_string(ioConversion.position) + " is out of range for " +
                     GetName(inFormat));
  }
}

std::int64_t ParseText(const Timeline& inTimeline, TimecodeFormat inFormat,
                       std::string_view inText) {
  const plinth::UTF16String text = FromUTF8(inText);
  RequireDigit(inText);
  std::int64_t position = 0;
  BeatInfo beats = inTimeline.beats;
  if (inFormat == kTimecodeFormat_PulldownFrames) {
    // By format, the library would parse drop-frame labels, which few frame rates have.
    ConvertTimecodeToSamples(position, text, inTimeline.sampleRate, inTimeline.framesPerSecond,
                             true, false);
  } else {
    ConvertTimecodeToSamples(position, text, inFormat, inTimeline.sampleRate,
                             inTimeline.framesPerSecond, &beats, inTimeline.isDuration);
  }
  const bool isNegative = *std::find_if_not(inText.begin(), inText.end(), &IsBlank) == '-';
  return isNegative && !GetNotation(inTimeline, inFormat).keepsSign ? -position : position;
}

Conversion ParseChecked(const Timeline& inTimeline, TimecodeFormat inFormat,
                        const std::string& inText) {
  if (inFormat == kTimecodeFormat_Samples) return {ParsePosition(inText), inText, {}};
  const TypedText typed = SplitText(inText);
  const std::string text = NormalizeText(typed, inTimeline, inFormat, inText);
  const std::int64_t position = ParseText(inTimeline, inFormat, text);
  constexpr std::int64_t kFarthest = std::numeric_limits<std::int64_t>::max();
  if (position == kFarthest || position <= -kFarthest) RefuseOutOfRange(inText);
  Conversion conversion{position, inText, {}};
  conversion.notes = CheckLabel(typed, inTimeline, inFormat, conversion);
  return conversion;
}

std::int64_t ParsePosition(std::string_view inText) {
  std::string number = boost::trim_copy_if(std::string(inText), &IsBlank);
  if (number.starts_with('+') && !number.starts_with("+-")) number.erase(0, 1);
  std::int64_t value = 0;
  const char* const last = number.data() + number.size();
  const auto [end, error] = std::from_chars(number.data(), last, value);
  if (error == std::errc::result_out_of_range)
    throw InputError(Quote(inText) + " does not fit in 64 bits");
  if (error != std::errc() || end != last)
    throw InputError(Quote(inText) + " is not a position in samples");
  return value;
}

}  // namespace mezzo::tool
