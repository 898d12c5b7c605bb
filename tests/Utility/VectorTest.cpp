// Calls of the conversions with the results of an independent computation in exact arithmetic, and
// in hand/ with results worked out by hand. The first line of a file names the fields of its lines.

#include "../support/ExportedCalls.h"
#include "../support/Heap.h"
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

  std::uint64_t allocations = 0;  ///< of the call alone

 protected:
  std::int64_t Integer(int, Usual) override {
    return std::strtoll((*fField++).c_str(), nullptr, 10);
  }

 private:
  void Surround(const std::function<void()>& inCall) override {
    const auto before = heap::AllocationCount();
    inCall();
    allocations = heap::AllocationCount() - before;
  }

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

class VectorTest : public testing::TestWithParam<const char*> {
 protected:
  /// \return the number of calls in the file.
  int Check(const ExportedCall& inCall, const std::string& inPath) {
    std::ifstream file(inPath);
    int calls = 0;
    for (std::string line; std::getline(file, line);) {
      if (line.starts_with('#')) continue;
      ++calls;
      const Fields fields = SplitAtTabs(line);
      const auto arrow = std::find(fields.begin(), fields.end(), "=>");
      const Fields expected(arrow == fields.end() ? arrow : arrow + 1, fields.end());
      // With and without room; some texts stay as they were.
      const bool keeps = line.find("\"keep") != line.npos;
      for (const UTF16String& oldText : {UTF16String(u"keep"), UTF16String(64, u'?')}) {
        if (keeps && oldText != u"keep") continue;
        FieldArguments arguments(fields);
        arguments.oldText = oldText;
        Fields actual = inCall.call(arguments);
        for (const Report& report : fReports.Take()) actual.push_back(ReportField(report));
        EXPECT_EQ(actual, expected) << inCall.name << ": " << line;
        const bool mayAllocate = oldText.size() < 64 || inCall.name[0] != 'C' ||
                                 actual.size() > expected.size() ||
                                 expected.back().find('|') != std::string::npos;
        EXPECT_TRUE(mayAllocate || arguments.allocations == 0) << inCall.name << ": " << line;
      }
    }
    return calls;
  }

 private:
  RecordedReports fReports;
};

TEST_P(VectorTest, GivesTheIndependentResults) {
  const std::string name = GetParam();
  const auto calls = ExportedCalls();
  const auto call = std::find_if(calls.begin(), calls.end(),
                                 [&](const ExportedCall& entry) { return entry.name == name; });
  ASSERT_NE(call, calls.end());
  EXPECT_GE(Check(*call, MEZZO_TEST_DATA "/" + name + ".tsv"), 100);
  Check(*call, MEZZO_TEST_DATA "/hand/" + name + ".tsv");
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
