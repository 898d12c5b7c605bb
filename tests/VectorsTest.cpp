// Calls and their expected results, one call per line. Those in data/ were computed independently
// in exact arithmetic, those in data/hand/ by hand. The first line of a file names the fields.

#include "support/ExportedCalls.h"
#include "support/Heap.h"
#include "support/Reports.h"
#include "support/Text.h"

#include <boost/algorithm/string/replace.hpp>
#include <boost/algorithm/string/split.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>

namespace mezzo::test {
namespace {

using plinth::UTF16String;

/// Reads the arguments of a call in order.
class FieldArguments : public ArgumentSource {
 public:
  explicit FieldArguments(const Fields& inFields) : fField(inFields.begin()) {}

  std::int64_t GetInteger(int, const TypicalValues&) override {
    return std::strtoll((*fField++).c_str(), nullptr, 10);
  }
  double GetDouble(const TypicalValues&) override {
    return std::strtod((*fField++).c_str(), nullptr);
  }
  UTF16String GetText(const TypicalValues&) override { return Unquote(*fField++); }

 private:
  Fields::const_iterator fField;
};

/// A report as it is written in the files.
std::string FormatReport(Report inReport) {
  for (auto* part : {&inReport.condition, &inReport.message, &inReport.function}) {
    boost::replace_all(*part, "|", "\\|");
    boost::replace_all(*part, "\n", "\\n");
  }
  return inReport.condition + '|' + inReport.message + '|' + inReport.function;
}

class TestVectors : public testing::TestWithParam<ExportedCall> {};

TEST_P(TestVectors, GivesTheIndependentResults) {
  const std::string& name = GetParam().name;
  const bool isConversion = name.starts_with("Convert");
  ReportRecorder reports;
  int calls = 0;
  for (const char* folder : {"/", "/hand/"}) {
    std::ifstream file(MEZZO_TEST_DATA + (folder + name) + ".tsv");
    for (std::string line; std::getline(file, line);) {
      if (line.starts_with('#')) continue;
      SCOPED_TRACE(name + ": " + line);
      ++calls;
      Fields fields;
      boost::split(fields, line, [](char inUnit) { return inUnit == '\t'; });
      const auto arrow = std::find(fields.begin(), fields.end(), "=>");
      ASSERT_LT(arrow, fields.end() - 1);
      const Fields expected(arrow + 1, fields.end());
      // Each row runs with a short old text, whose string may have to grow, and with a long one,
      // whose string has room. Rows that expect the old text "keep" run only with the short one.
      for (const UTF16String& oldText : {UTF16String(u"keep"), UTF16String(64, u'?')}) {
        if (line.find("\"keep") != line.npos && oldText != u"keep") continue;
        FieldArguments arguments(fields);
        arguments.oldText = oldText;
        std::uint64_t allocations = 0;
        Fields actual = GetParam().runWith(std::move(arguments), [&](const auto& inCall) {
          const auto before = heap::GetAllocationCount();
          inCall();
          allocations = heap::GetAllocationCount() - before;
        });
        const auto taken = reports.Take();
        for (const Report& report : taken) actual.push_back(FormatReport(report));
        EXPECT_EQ(actual, expected);
        const bool hasRoom = oldText != u"keep" && isConversion && taken.empty();
        EXPECT_TRUE(!hasRoom || allocations == 0);
      }
    }
  }
  EXPECT_GE(calls, isConversion ? 300 : 1);
}

INSTANTIATE_TEST_SUITE_P(, TestVectors, testing::ValuesIn(GetExportedCalls()));

}  // namespace
}  // namespace mezzo::test
