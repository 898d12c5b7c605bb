// What the stand-in offers beside the contract: what a host installs in it, and what nothing in the
// library calls.

#include "../support/Heap.h"
#include "../support/Reports.h"
#include "../support/Text.h"

#include <plinth/config/InitializerRegistrar.h>
#include <plinth/config/Localizer.h>
#include <plinth/debug/CachedDatabaseValue.h>
#include <plinth/string/StringConversion.h>
#include <plinth/string/UTF16StringStream.h>
#include <plinth/utility/Cast.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <string>

namespace {

using mezzo::test::Shown;
using mezzo::test::Wide;
using plinth::allocator::MemoryRecycler;
using plinth::string::StringToNumber;
using plinth::utility::NumericCast;

TEST(UTF16StringStream, FillsTheNextItemUpToItsWidth) {
  const auto before = MemoryRecycler::AllocationCount();
  plinth::oUTF16StringStream stream;
  stream.width(3);
  stream << Wide("-") << 7;
  stream.fill(u'0');
  stream.width(2);
  stream << 5 << 5;
  stream.width(-4);
  stream << -2147483647 - 1;
  stream.width(36);
  stream << 0.5;
  EXPECT_EQ(Shown(stream.view()), "  -7055-2147483648" + std::string(33, '0') + "0.5");
  EXPECT_EQ(MemoryRecycler::AllocationCount(), before) << "the text fits inside";
  EXPECT_EQ(Shown((stream << stream.str()).view()).size(), 108u);
}

TEST(StringToNumber, ReadsDoublesAsTheCLibraryDoes) {
  const std::string zeros(2000, '0');
  // 1 + 2^-53 lies halfway between 1 and its successor.
  const std::string halfway = "1.00000000000000011102230246251565404236316680908203125" + zeros;
  for (const std::string& text :
       {std::string(" \t+.25:7"), std::string("-5."), std::string("-0"), std::string("2e+"),
        std::string("2E-1.5"), std::string("9007199254740993"), std::string("4e-324"),
        std::string("0e99999999999999999999"), std::string("1e-99999999999999999999"),
        std::string("-1e99999999999999999999"), halfway, halfway + "1", "1" + zeros + "e-2000",
        zeros + "." + zeros + "1e2001", "-1" + zeros, std::string(".e5"), std::string("-")}) {
    const double expected = std::strtod(text.c_str(), nullptr);
    const bool isNumber = text != ".e5" && text != "-";
    double number = 77;
    EXPECT_EQ(StringToNumber(number, Wide(text), 6), isNumber && std::isfinite(expected)) << text;
    EXPECT_EQ(number, expected) << text;
    EXPECT_TRUE(std::signbit(number) == std::signbit(expected) || !isNumber) << text;
  }
  double number = 77;
  EXPECT_FALSE(StringToNumber(number, Wide("inf"), 6) || number != 0);
}

TEST(AssertDialog, WritesOneLineWithoutAHandler) {
  bool disabled = false;
  testing::internal::CaptureStderr();
  for (const auto* message : {u8"", u8"too\n"}) {
    EXPECT_FALSE(plinth::debug::BreakAfterAssertDialog(
        disabled, "a < b", reinterpret_cast<const unsigned char*>(message), "File.cpp", 12, "F()",
        true));
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "File.cpp:12: assertion failed: a < b in F()\n"
            "File.cpp:12: assertion failed: a < b: too in F()\n");
}

TEST(NumericCast, ReportsWhatDoesNotFitUntilTheSiteIsSilenced) {
  if constexpr (sizeof(long) == sizeof(int)) GTEST_SKIP() << "every long fits";
  mezzo::test::RecordedReports reports;
  NumericCast<int, long>(2147483647);
  EXPECT_TRUE(reports.Take().empty());
  reports.silences = true;
  const auto kBeyond = static_cast<long>(std::int64_t{1} << 32);
  for (int times = 0; times < 2; ++times) NumericCast<int, long>(kBeyond);
  const auto taken = reports.Take();
  ASSERT_EQ(taken.size(), 1u);
  EXPECT_EQ(taken[0].condition, "false");
  EXPECT_EQ(taken[0].message,
            "bad numeric conversion: positive overflow from long (4294967296) to int\n");
  EXPECT_EQ(taken[0].file, "utility/Cast.h");
  EXPECT_EQ(taken[0].function, "T plinth::utility::NumericCast(F) [T = int, F = long]");
  EXPECT_EQ((NumericCast<signed char, unsigned>(200)), -56);
  EXPECT_EQ(reports.Take().size(), 1u) << "another instantiation is another site";
}

TEST(CachedDatabaseValue, KeepsItsValueWithoutAnEntryWhenAsked) {
  auto& database = plinth::debug::DebugDatabase::Instance();
  plinth::debug::CachedDatabaseValue<bool> value({'k'}, false, false);
  EXPECT_FALSE(value.Get());
  database.SetEntry({'k'}, {'t', 'r', 'u', 'e'});
  EXPECT_TRUE(value.Get());
  database.RemoveEntry({'k'});
  EXPECT_TRUE(value.Get());
}

TEST(Localizer, PrefersTheInstalledTranslation) {
  auto& localizer = plinth::config::Localizer::Get();
  localizer.InstallTranslation("$$$/test/A", u"\u00c4=");
  localizer.InstallTranslation("$$$/test/A=A", u"La");
  EXPECT_EQ(localizer.Localize("$$$/test/A=A"), u"La");
  EXPECT_EQ(localizer.Localize("$$$/test/AB=x=y"), u"x=y");
  EXPECT_EQ(localizer.Localize("$$$/test/none"), u"$$$/test/none");
  localizer.RemoveTranslations();
  EXPECT_EQ(localizer.Localize("$$$/test/A=A"), u"A");
}

TEST(InitializerRegistrar, ListsModulesWhileTheyLive) {
  using Registrar = plinth::config::InitializerRegistrar;
  const auto count = Registrar::Registrations().size();
  {
    const Registrar registrar("Module", plinth::config::EInitializerContextFlags{2}, {}, [] {}, {},
                              {{{"Other"}, {""}, {nullptr}, {"Third"}}});
    const auto& [name, flags, initialize, prepare, terminate, dependencies] =
        Registrar::Registrations().back();
    EXPECT_TRUE(flags == 2 && !initialize && prepare && !terminate && dependencies == 2) << name;
  }
  EXPECT_EQ(Registrar::Registrations().size(), count);
}

}  // namespace
