// Calls of the conversions with the results of an independent computation in exact arithmetic; the
// fields of a line are named by the first line of its file, which has the function's name.

#include "../support/ExportedCalls.h"
#include "../support/Reports.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>

namespace mezzo::test {
namespace {

using plinth::UTF16String;

/// Reads the arguments of a call in order.
class FieldArguments : public Arguments {
 public:
  explicit FieldArguments(const Fields& inFields) : fField(inFields.begin()) {}

  double Double(std::initializer_list<double>) override {
    return std::strtod((*fField++).c_str(), nullptr);
  }
  UTF16String Text(const Forms&) override {
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

 protected:
  std::int64_t Integer(int, Usual) override {
    return std::strtoll((*fField++).c_str(), nullptr, 10);
  }

 private:
  Fields::const_iterator fField;
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
std::string ReportField(const Report& inReport) {
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

class VectorTest : public testing::TestWithParam<const char*> {};

TEST_P(VectorTest, GivesTheIndependentResults) {
  const std::string name = GetParam();
  const auto calls = ExportedCalls();
  const auto call = std::find_if(calls.begin(), calls.end(),
                                 [&](const ExportedCall& entry) { return entry.name == name; });
  ASSERT_NE(call, calls.end());
  std::ifstream file(std::string(MEZZO_TEST_DATA "/") + name + ".tsv");
  std::string line;
  ASSERT_TRUE(std::getline(file, line)) << "no vectors";
  RecordedReports reports;
  int lines = 0;
  for (; std::getline(file, line); ++lines) {
    const Fields fields = SplitAtTabs(line);
    const auto arrow = std::find(fields.begin(), fields.end(), "=>");
    ASSERT_NE(arrow, fields.end()) << line;
    const Fields expected(arrow + 1, fields.end());
    const auto check = [&](const UTF16String& oldText) {
      FieldArguments arguments(fields);
      arguments.oldText = oldText;
      Fields actual = call->call(arguments);
      for (const Report& report : reports.Take()) actual.push_back(ReportField(report));
      EXPECT_EQ(actual, expected) << name << " over " << Quoted(oldText) << ": " << line;
    };
    check(u"keep");
    // Over a text of the same length a label is written in a way of its own, which must not be
    // taken over a text that is a unit shorter or longer.
    if (expected.size() > 1 && expected[1].size() > 2 && expected[1][0] == '"' &&
        !expected[1].starts_with("\"keep")) {
      const std::size_t length = expected[1].size() - 2;  // without the quotes
      for (const std::size_t old : {length - 1, length, length + 1}) check(UTF16String(old, u'?'));
    }
  }
  EXPECT_GE(lines, 100);
}

INSTANTIATE_TEST_SUITE_P(
    , VectorTest,
    testing::Values("ConvertSamplesToTimecode-flags", "ConvertSamplesToTimecode-format",
                    "ConvertSamplesToDecimalTimecode", "ConvertSamplesToBarsAndBeats",
                    "ConvertSamplesToBeats", "ConvertTimecodeToSamples-rate",
                    "ConvertTimecodeToSamples-format", "ConvertBarsAndBeatsToSamples",
                    "DropFrameToHMSF", "GetNoteFromFrequency", "GetNoteString"),
    [](const auto& vectors) {
      std::string name = vectors.param;
      std::replace(name.begin(), name.end(), '-', '_');
      return name;
    });

}  // namespace
}  // namespace mezzo::test
