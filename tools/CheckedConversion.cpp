#include "CheckedConversion.h"

#include "InputError.h"

#include <boost/algorithm/string/case_conv.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <span>
#include <string_view>

namespace mezzo::tool {

using namespace utility;

namespace {

// ------------------------------------------------------------------------------ What a text holds

struct TypedNumber {
  char separator;  ///< in front; 0 for none, a blank for blanks and words
  std::string digits;
  std::string word;  ///< behind; mostly empty
};

struct TypedText {
  bool isNegative = false;
  std::vector<TypedNumber> numbers;
};

bool IsDigit(char inCharacter) {
  return inCharacter >= '0' && inCharacter <= '9';
}

bool IsLetter(char inCharacter) {
  return (inCharacter >= 'a' && inCharacter <= 'z') || (inCharacter >= 'A' && inCharacter <= 'Z');
}

[[noreturn]] void RefuseToPlace(const std::string& inPart, const std::string& inText,
                                const std::string& inReason = "") {
  throw InputError("cannot place " + Quoted(inPart) + " in " + Quoted(inText) + inReason);
}

/// Splits a text into numbers and what separates them.
class TextSplitter {
 public:
  explicit TextSplitter(const std::string& inText) : fText(inText), fRest(inText) {}

  TypedText Split() {
    TypedText typed;
    SkipBlanks();
    if (fRest.starts_with('-') || fRest.starts_with('+')) {
      typed.isNegative = fRest.front() == '-';
      fRest.remove_prefix(1);
    }
    char separator = 0;
    while (!fRest.empty()) {
      SkipBlanks();
      if (fRest.starts_with('.')) {
        fRest.remove_prefix(1);
        separator = '.';
      }
      TypedNumber number{separator, Take(&IsDigit), ""};
      if (number.digits.empty()) Refuse();
      SkipBlanks();
      number.word = boost::to_lower_copy(Take(&IsLetter));
      typed.numbers.push_back(number);
      SkipBlanks();
      separator = ' ';
      if (fRest.starts_with(':') || fRest.starts_with(';')) {
        separator = fRest.front();
        fRest.remove_prefix(1);
        if (fRest.empty()) Refuse();
      }
    }
    if (typed.numbers.empty()) throw InputError("no digit in " + Quoted(fText));
    return typed;
  }

 private:
  void SkipBlanks() { fRest.remove_prefix(std::min(fRest.find_first_not_of(" \t"), fRest.size())); }

  std::string Take(bool (*inBelongs)(char)) {
    const auto end = std::find_if_not(fRest.begin(), fRest.end(), inBelongs);
    std::string taken(fRest.begin(), end);
    fRest.remove_prefix(taken.size());
    return taken;
  }

  [[noreturn]] void Refuse() const {
    if (fText.find_first_of("0123456789") == std::string::npos)
      throw InputError("no digit in " + Quoted(fText));
    RefuseToPlace(fRest.empty() ? fText.substr(fText.size() - 1) : std::string(fRest), fText);
  }

  const std::string& fText;
  std::string_view fRest;
};

// ------------------------------------------------------------------------- What a format takes

using Words = std::span<const std::string_view>;

constexpr std::array<std::string_view, 5> kHours{"hours", "h", "hr", "hrs", "hour"};
constexpr std::array<std::string_view, 5> kMinutes{"minutes", "m", "min", "mins", "minute"};
constexpr std::array<std::string_view, 5> kSeconds{"seconds", "s", "sec", "secs", "second"};
constexpr std::array<std::string_view, 4> kFrames{"frames", "f", "fr", "frame"};
constexpr std::array<std::string_view, 2> kBars{"bars", "bar"};
constexpr std::array<std::string_view, 2> kBeats{"beats", "beat"};
constexpr std::array<std::string_view, 2> kTicks{"ticks", "tick"};
constexpr std::array<std::string_view, 1> kMilliseconds{"ms"};

/// The fields of a format's texts, in the order in which they are written; each with its unit
/// words, of which the first is the field's name.
std::vector<Words> FieldsOf(TimecodeFormat inFormat) {
  switch (inFormat) {
    case kTimecodeFormat_Decimal:
      return {kHours, kMinutes, kSeconds};
    case kTimecodeFormat_Beats:
      return {kBeats};
    case kTimecodeFormat_BarsAndBeats:
      return {kBars, kBeats, kTicks};
    case kTimecodeFormat_Frames:
    case kTimecodeFormat_PulldownFrames:
      return {kFrames};
    case kTimecodeFormat_Milliseconds:
      return {kMilliseconds};
    default:
      return {kHours, kMinutes, kSeconds, kFrames};
  }
}

bool IsLabel(TimecodeFormat inFormat) {
  return FieldsOf(inFormat).size() == 4 && inFormat != kTimecodeFormat_CompactSubframes;
}

bool HasWord(Words inWords, const std::string& inWord) {
  return std::find(inWords.begin(), inWords.end(), inWord) != inWords.end();
}

/// A unit word behind a number has to be the one of the field that the number fills.
void RequireWord(const TypedNumber& inNumber, Words inWords, const std::string& inText) {
  if (inNumber.word.empty() || HasWord(inWords, inNumber.word)) return;
  RefuseToPlace(inNumber.word, inText,
                ", where " + inNumber.digits + " counts " + std::string(inWords.front()));
}

void RequireKnownWords(const TypedText& inTyped, const std::vector<Words>& inFields,
                       const std::string& inText) {
  for (const TypedNumber& number : inTyped.numbers) {
    const bool isKnown = number.word.empty() ||
                         std::any_of(inFields.begin(), inFields.end(),
                                     [&](Words words) { return HasWord(words, number.word); });
    if (!isKnown) RefuseToPlace(number.word, inText);
  }
}

/// The text of bar, beat and tick as the library reads it.
std::string MusicalText(const TypedText& inTyped, const std::vector<Words>& inFields,
                        const std::string& inText) {
  std::string text;
  for (std::size_t place = 0; place < inTyped.numbers.size(); ++place) {
    const TypedNumber& number = inTyped.numbers[place];
    const bool isTick = number.separator == '.' || place == 2;
    if (isTick && number.separator == ':')
      RefuseToPlace(':' + number.digits, inText, "; ticks follow a '.'");
    RequireWord(number, inFields[isTick ? 2 : place], inText);
    text += (place == 0 ? "" : isTick ? "." : ":") + number.digits;
  }
  return text;
}

/// Any other text as the library reads it. Fields fill up from the right.
std::string ClockText(const TypedText& inTyped, const std::vector<Words>& inFields,
                      std::size_t inCount, const std::string& inText) {
  std::string text;
  for (std::size_t place = 0; place < inTyped.numbers.size(); ++place) {
    const TypedNumber& number = inTyped.numbers[place];
    const std::size_t field = inFields.size() - inCount + place;
    RequireWord(number, inFields[std::min(field, inFields.size() - 1)], inText);
    if (number.separator != 0) text += number.separator == '.' ? "." : ":";
    text += number.digits;
  }
  return text;
}

/// Refuses what the library would pass over, or count in another unit.
/// \return the text as the library reads it.
std::string RequireFields(const TypedText& inTyped, TimecodeFormat inFormat,
                          const std::string& inText) {
  const std::vector<Words> fields = FieldsOf(inFormat);
  const bool isMusical = inFormat == kTimecodeFormat_BarsAndBeats;
  RequireKnownWords(inTyped, fields, inText);
  for (std::size_t place = 0; place + 1 < inTyped.numbers.size(); ++place) {
    if (inTyped.numbers[place].separator == '.' && !isMusical)
      RefuseToPlace(inTyped.numbers[place + 1].digits, inText, "; nothing follows a fraction");
  }
  // Behind a "." stand ticks, which are a field, or a fraction, which is none.
  const bool hasFraction = inTyped.numbers.back().separator == '.' && !isMusical;
  const std::size_t count = inTyped.numbers.size() - (hasFraction ? 1 : 0);
  if (count > fields.size()) {
    throw InputError(Quoted(inText) + " has " + std::to_string(count) + " numbers; " +
                     std::string(NameOf(inFormat)) + " has no more than " +
                     std::to_string(fields.size()));
  }
  return (inTyped.isNegative ? "-" : "") + (isMusical ? MusicalText(inTyped, fields, inText)
                                                      : ClockText(inTyped, fields, count, inText));
}

// ------------------------------------------------------------------------------------- Ranges

/// The library counts whole frames and beats, and reads every number, in 32 bits.
void RequireRange(const TypedText& inTyped, const Timeline& inTimeline, TimecodeFormat inFormat,
                  const std::string& inText) {
  const double fps = inTimeline.framesPerSecond;
  const bool isMusical = inFormat == kTimecodeFormat_BarsAndBeats;
  const bool countsFrames = FieldsOf(inFormat).back().front() == kFrames.front();
  std::vector<double> values;
  for (const TypedNumber& number : inTyped.numbers) {
    if (number.separator != '.' || isMusical)
      values.push_back(std::strtod(number.digits.c_str(), nullptr));
  }
  double largest = values.empty() ? 0.0 : *std::max_element(values.begin(), values.end());
  if (isMusical) largest = std::max(largest, values[0] * inTimeline.beats.iBeatsPerBar + largest);
  if (countsFrames) {
    double count = 0.0;
    double weight = 1.0;
    for (auto value = values.rbegin(); value != values.rend(); ++value) {
      count += *value * weight;
      weight *= value == values.rbegin() ? fps : 60.0;
    }
    largest = std::max(largest, count);
  }
  if (inFormat != kTimecodeFormat_Samples && largest > std::numeric_limits<std::int32_t>::max())
    throw InputError(Quoted(inText) + " is out of range");
}

/// What a position may differ by from what its text reads back as, in samples: a unit of the text.
double UnitOf(const Timeline& inTimeline, TimecodeFormat inFormat, std::int64_t inPosition) {
  const double rate = inTimeline.sampleRate;
  const BeatInfo& beats = inTimeline.beats;
  switch (inFormat) {
    case kTimecodeFormat_Decimal:
      return rate * 0.01;
    case kTimecodeFormat_Samples:
      return 0.0;
    case kTimecodeFormat_Beats:
      return rate * 60.0 / beats.dTempo * 0.001;
    case kTimecodeFormat_BarsAndBeats:
      return rate * 240.0 / beats.dTempo / beats.iBeatUnit /
             (beats.iTicksPerBeat > 0 ? beats.iTicksPerBeat : 500);
    case kTimecodeFormat_Milliseconds:
      return rate * 0.0002 + std::fabs(static_cast<double>(inPosition)) * 5e-6;
    default:
      return rate * 1.001 / inTimeline.framesPerSecond;
  }
}

}  // namespace

Conversion ReadTyped(const Timeline& inTimeline, TimecodeFormat inFormat,
                     const std::string& inText) {
  if (inFormat == kTimecodeFormat_Samples) return {ReadPosition(inText), inText, {}};
  const TypedText typed = TextSplitter(inText).Split();
  const std::string text = RequireFields(typed, inFormat, inText);
  RequireRange(typed, inTimeline, inFormat, inText);
  const std::int64_t position = ReadText(inTimeline, inFormat, text);
  constexpr std::int64_t kFarthest = std::numeric_limits<std::int64_t>::max();
  if (position == kFarthest || position <= -kFarthest)
    throw InputError(Quoted(inText) + " is out of range");

  Conversion conversion{position, inText, {}};
  const bool hasSemicolon =
      std::any_of(typed.numbers.begin(), typed.numbers.end(),
                  [](const TypedNumber& number) { return number.separator == ';'; });
  if (hasSemicolon && !HasDropFrameLabels(inFormat)) {
    conversion.notes.push_back(
        {NoteKind::kSemicolon, Quoted(inText) + " has the ';' of drop-frame labels, which " +
                                   std::string(NameOf(inFormat)) + " does not have"});
  }
  if (IsLabel(inFormat) && typed.numbers.back().separator != '.') {
    const std::string label = WriteText(inTimeline, inFormat, position).value_or("");
    const TypedText written = TextSplitter(label).Split();
    const auto isSame = [](const TypedNumber& left, const TypedNumber& right) {
      return std::strtod(left.digits.c_str(), nullptr) ==
             std::strtod(right.digits.c_str(), nullptr);
    };
    // Every label has four fields; what was typed may have fewer.
    if (!std::equal(typed.numbers.rbegin(), typed.numbers.rend(), written.numbers.rbegin(),
                    isSame)) {
      conversion.notes.push_back({NoteKind::kNoSuchLabel, "there is no label " + Quoted(inText) +
                                                              "; it stands for " + Quoted(label)});
    }
  }
  return conversion;
}

Conversion WriteChecked(const Timeline& inTimeline, TimecodeFormat inFormat,
                        std::int64_t inPosition) {
  const std::string text = WriteText(inTimeline, inFormat, inPosition).value_or("");
  Conversion conversion{inPosition, text, {}};
  if (inFormat == kTimecodeFormat_Milliseconds && text.find('e') != std::string::npos) {
    conversion.notes.push_back({NoteKind::kLosesDigits,
                                "milliseconds have six digits from 1000 "
                                "seconds on: " +
                                    Quoted(text)});
    return conversion;
  }
  const auto read = static_cast<double>(ReadText(inTimeline, inFormat, text));
  const double distance = std::fabs(read - static_cast<double>(inPosition));
  if (distance > UnitOf(inTimeline, inFormat, inPosition) + 1.0) {
    throw InputError("position " + std::to_string(inPosition) + " is out of range for " +
                     std::string(NameOf(inFormat)));
  }
  return conversion;
}

}  // namespace mezzo::tool
