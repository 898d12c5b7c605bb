// Calls of the conversions with the results of an independent computation in exact arithmetic; the
// fields of a line are named by the first line of its file.

#include "../support/Reports.h"
#include "../support/Text.h"
#include <Utility/MusicalNoteUtils.h>
#include <Utility/TimeConversionUtils.h>

#include <gtest/gtest.h>

#include <charconv>
#include <cstdlib>
#include <fstream>
#include <ostream>
#include <utility>

namespace mezzo::utility {
namespace {

using plinth::UTF16String;
using Fields = std::vector<std::string>;

/// Reads the arguments of a call in order.
class Arguments {
 public:
  Arguments(const Fields& inFields, const UTF16String& inOldText)
      : oldText(inOldText), fField(inFields.begin()) {}

  const UTF16String& oldText;  ///< what a text holds before the call replaces it

  template <class Int = std::int32_t>
  Int Integer() {
    Int value = 0;
    const std::string& field = *fField++;
    std::from_chars(field.data(), field.data() + field.size(), value);
    return value;
  }
  bool Flag() { return Integer() != 0; }
  double Double() { return std::strtod((*fField++).c_str(), nullptr); }
  UTF16String Text() {
    const std::string& field = *fField++;
    UTF16String text;
    for (std::size_t i = 1; i + 1 < field.size(); ++i) {
      if (field[i] == '\\' && field[i + 1] == 'u') {
        text += static_cast<char16_t>(std::stoi(field.substr(i + 2, 4), nullptr, 16));
        i += 5;
      } else {
        if (field[i] == '\\') ++i;
        text += static_cast<char16_t>(field[i]);
      }
    }
    return text;
  }
  BeatInfo Beats() {
    BeatInfo info{};
    info.iTicksPerBeat = Integer();
    info.dTempo = Double();
    info.iBeatsPerBar = Integer();
    info.iBeatUnit = Integer();
    info.dOffsetMs = Double();
    return info;
  }

 private:
  Fields::const_iterator fField;
};

std::string Quoted(const UTF16String& inText) {
  return '"' + test::Shown(inText) + '"';
}

constexpr std::int64_t kOldSamples = -7070707070707070707;

/// Makes a call and gives its return value and its outputs.
using Call = Fields (*)(Arguments);

const std::pair<const char*, Call> kCalls[] = {
    {"ConvertSamplesToTimecode-flags",
     [](Arguments args) -> Fields {
       UTF16String text = args.oldText;
       const auto samples = args.Integer<std::int64_t>();
       const auto rate = args.Integer();
       const auto fps = args.Integer();
       bool flags[7];
       for (bool& flag : flags) flag = args.Flag();
       const bool result =
           ConvertSamplesToTimecode(text, samples, rate, fps, flags[0], flags[1], flags[2],
                                    flags[3], flags[4], flags[5], flags[6]);
       return {result ? "1" : "0", Quoted(text)};
     }},
    {"ConvertSamplesToTimecode-format",
     [](Arguments args) -> Fields {
       UTF16String text = args.oldText;
       const auto samples = args.Integer<std::int64_t>();
       const auto rate = args.Integer();
       const auto format = static_cast<TimecodeFormat>(args.Integer());
       const auto fps = args.Integer();
       const bool hasBeats = args.Flag();
       const BeatInfo beats = args.Beats();
       const bool result = ConvertSamplesToTimecode(text, samples, rate, format, fps,
                                                    hasBeats ? &beats : nullptr, args.Flag());
       return {result ? "1" : "0", Quoted(text)};
     }},
    {"ConvertSamplesToDecimalTimecode",
     [](Arguments args) -> Fields {
       UTF16String text = args.oldText;
       const auto samples = args.Integer<std::int64_t>();
       const auto rate = args.Integer();
       ConvertSamplesToDecimalTimecode(text, samples, rate, args.Flag());
       return {"void", Quoted(text)};
     }},
    {"ConvertSamplesToBarsAndBeats",
     [](Arguments args) -> Fields {
       UTF16String text = args.oldText;
       const double samples = args.Double();
       const double rate = args.Double();
       const BeatInfo beats = args.Beats();
       const bool isDuration = args.Flag();
       const bool result =
           ConvertSamplesToBarsAndBeats(text, samples, rate, beats, isDuration, args.Integer());
       return {result ? "1" : "0", Quoted(text)};
     }},
    {"ConvertSamplesToBeats",
     [](Arguments args) -> Fields {
       UTF16String text = args.oldText;
       const auto samples = args.Integer<std::int64_t>();
       const auto rate = args.Integer();
       ConvertSamplesToBeats(text, samples, rate, args.Double());
       return {"void", Quoted(text)};
     }},
    {"ConvertTimecodeToSamples-rate",
     [](Arguments args) -> Fields {
       std::int64_t samples = kOldSamples;
       const UTF16String text = args.Text();
       const auto rate = args.Integer();
       const auto fps = args.Integer();
       const bool pulldown = args.Flag();
       const bool result =
           ConvertTimecodeToSamples(samples, text, rate, fps, pulldown, args.Flag());
       return {result ? "1" : "0", std::to_string(samples)};
     }},
    {"ConvertTimecodeToSamples-format",
     [](Arguments args) -> Fields {
       std::int64_t samples = kOldSamples;
       const UTF16String text = args.Text();
       const auto format = static_cast<TimecodeFormat>(args.Integer());
       const auto rate = args.Integer();
       const auto fps = args.Integer();
       const bool hasBeats = args.Flag();
       BeatInfo beats = args.Beats();
       const bool result = ConvertTimecodeToSamples(samples, text, format, rate, fps,
                                                    hasBeats ? &beats : nullptr, args.Flag());
       return {result ? "1" : "0", std::to_string(samples)};
     }},
    {"ConvertBarsAndBeatsToSamples",
     [](Arguments args) -> Fields {
       const UTF16String text = args.Text();
       const double rate = args.Double();
       const BeatInfo beats = args.Beats();
       return {std::to_string(ConvertBarsAndBeatsToSamples(text, rate, beats, args.Flag()))};
     }},
    {"DropFrameToHMSF",
     [](Arguments args) -> Fields {
       const auto count = args.Integer<std::int64_t>();
       const auto fps = args.Integer();
       std::uint32_t outputs[4];
       for (auto& output : outputs) output = args.Integer<std::uint32_t>();
       DropFrameToHMSF(count, fps, outputs[0], outputs[1], outputs[2], outputs[3]);
       return {"void", std::to_string(outputs[0]), std::to_string(outputs[1]),
               std::to_string(outputs[2]), std::to_string(outputs[3])};
     }},
    {"GetNoteFromFrequency",
     [](Arguments args) -> Fields {
       const auto frequency = static_cast<float>(args.Double());
       const bool isNull = args.Flag();
       int octave = 0;
       const int note = GetNoteFromFrequency(frequency, isNull ? nullptr : &octave);
       return {std::to_string(note), isNull ? "null" : std::to_string(octave)};
     }},
    {"GetNoteString",
     [](Arguments args) -> Fields {
       UTF16String text = args.oldText;
       const int note = args.Integer();
       const int octave = args.Integer();
       GetNoteString(text, note, octave, args.Flag());
       return {"void", Quoted(text)};
     }},
};

Fields SplitAtTabs(const std::string& inLine) {
  Fields fields(1);
  for (const char unit : inLine) {
    if (unit == '\t') {
      fields.emplace_back();
    } else {
      fields.back() += unit;
    }
  }
  return fields;
}

/// A report as the files write it.
std::string ReportField(const test::Report& inReport) {
  std::string field;
  for (const std::string* part : {&inReport.condition, &inReport.message, &inReport.function}) {
    if (part != &inReport.condition) field += '|';
    for (const char unit : *part) {
      if (unit == '|') field += '\\';
      if (unit == '\n') {
        field += "\\n";
      } else {
        field += unit;
      }
    }
  }
  return field;
}

class VectorTest : public testing::TestWithParam<std::pair<const char*, Call>> {};

TEST_P(VectorTest, GivesTheIndependentResults) {
  const auto& [name, call] = GetParam();
  std::ifstream file(std::string(MEZZO_TEST_DATA "/") + name + ".tsv");
  std::string line;
  ASSERT_TRUE(std::getline(file, line)) << "no vectors";
  test::RecordedReports reports;
  int calls = 0;
  for (; std::getline(file, line); ++calls) {
    const Fields fields = SplitAtTabs(line);
    const auto arrow = std::find(fields.begin(), fields.end(), "=>");
    ASSERT_NE(arrow, fields.end()) << line;
    const Fields expected(arrow + 1, fields.end());
    const auto check = [&](const UTF16String& oldText) {
      Fields actual = call(Arguments(fields, oldText));
      for (const test::Report& report : reports.Take()) actual.push_back(ReportField(report));
      EXPECT_EQ(actual, expected) << name << " over " << Quoted(oldText) << ": " << line;
    };
    check(u"keep");
    // Over a text of the same length a label is written in a way of its own.
    if (expected.size() > 1 && expected[1][0] == '"' && !expected[1].starts_with("\"keep")) {
      check(UTF16String(expected[1].size() - 2, u'?'));
    }
  }
  EXPECT_GE(calls, 100);
}

INSTANTIATE_TEST_SUITE_P(, VectorTest, testing::ValuesIn(kCalls), [](const auto& call) {
  std::string name = call.param.first;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
});

}  // namespace
}  // namespace mezzo::utility
