// The stand-in for the host's foundation library: what the conversions and their tests rely on.

#include "../support/Heap.h"
#include "../support/Reports.h"
#include "../support/Text.h"

#include <plinth/config/InitializerRegistrar.h>
#include <plinth/config/Localizer.h>
#include <plinth/debug/CachedDatabaseValue.h>
#include <plinth/string/StringConversion.h>
#include <plinth/string/UTF16StringStream.h>
#include <plinth/utility/Cast.h>
#include <plinth/utility/Guid.h>

#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <stdexcept>
#include <thread>

namespace {

using mezzo::test::Shown;
using mezzo::test::Wide;
using mezzo::test::heap::AllocationCount;
using plinth::UTF16String;
using plinth::allocator::MemoryRecycler;
using plinth::string::StringToNumber;
using plinth::utility::Guid;
using plinth::utility::NumericCast;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

plinth::debug::ByteString Bytes(std::string_view inText) {
  return {inText.begin(), inText.end()};
}

void OnFourThreads(const std::function<void()>& inWork) {
  std::thread threads[4];
  for (auto& thread : threads) thread = std::thread(inWork);
  for (auto& thread : threads) thread.join();
}

TEST(UTF16StringStream, WidthFillsTheNextItemFromTheLeftAndOnlyThat) {
  plinth::oUTF16StringStream stream;
  stream.width(3);
  stream << Wide("-") << 7;
  stream.fill(u'0');
  stream.width(2);
  stream << 5 << 5;
  stream.width(4);
  stream << -7;
  stream.width(-4);
  stream << std::numeric_limits<int>::min();
  stream.width(6);
  stream << 0.5 << std::numeric_limits<int>::max();
  EXPECT_EQ(Shown(stream.str()), "  -705500-7-21474836480000.52147483647");
}

TEST(UTF16StringStream, TakesMemoryBeyondItsInlineStorageOnly) {
  const UTF16String half(32, u'x');
  plinth::oUTF16StringStream stream;
  const auto before = MemoryRecycler::AllocationCount();
  stream << half << half;
  EXPECT_EQ(MemoryRecycler::AllocationCount(), before);
  stream << half;
  EXPECT_EQ(MemoryRecycler::AllocationCount(), before + 1);
  EXPECT_EQ(stream.str(), UTF16String(96, u'x'));
}

template <class Number>
void ExpectNumber(const std::string& inText, Number inNumber, bool inSuccess) {
  Number read = 77;
  const UTF16String text = Wide(inText);
  const auto before = AllocationCount();
  EXPECT_EQ(StringToNumber(read, text, 6), inSuccess) << inText;
  EXPECT_EQ(AllocationCount(), before) << inText;
  EXPECT_TRUE(read == inNumber && std::signbit(read) == std::signbit(inNumber)) << inText << read;
}

TEST(StringToNumber, ReadsIntegers) {
  for (const std::string text :
       {" \t 12:34", "+0012e5", "000000000000000000000000000000042", "2147483647", "2147483648",
        "-2147483648.9", "-2147483649", "9223372036854775807", "9223372036854775808",
        "-9223372036854775808", "-9223372036854775809", "1000000000000000000000000000000000"}) {
    errno = 0;
    const long long number = std::strtoll(text.c_str(), nullptr, 10);
    const bool fits = errno == 0;
    ExpectNumber(text, number, fits);
    const auto nearest = static_cast<int>(std::clamp(number, -2147483648LL, 2147483647LL));
    ExpectNumber(text, nearest, fits && nearest == number);
  }
}

TEST(StringToNumber, ReadsDoubles) {
  for (const std::string text :
       {" \t+.25:7", "-5.", "-0", "1.5.5", "2e+", "2E-1.5", "9007199254740993", "4e-324", "-2e-324",
        "0e99999999999999999999", "1e-99999999999999999999", "1e99999999999999999999", "1.8e308"}) {
    const double number = std::strtod(text.c_str(), nullptr);
    ExpectNumber(text, number, std::isfinite(number));
  }
  const std::string zeros(2000, '0');
  // 1 + 2^-53 lies halfway between 1 and its successor.
  const std::string halfway = "1.00000000000000011102230246251565404236316680908203125" + zeros;
  ExpectNumber(halfway, 1.0, true);
  ExpectNumber(halfway + "1", std::nextafter(1.0, 2.0), true);
  ExpectNumber("1" + zeros + "e-2000", 1.0, true);
  ExpectNumber(zeros + "." + zeros + "1e2001", 1.0, true);
  ExpectNumber("-1" + zeros, -kInfinity, false);
  ExpectNumber("0x1p3", 0.0, true);
  for (const std::string text :
       {"", "\t-", "+-5", "-+5", "- 5", "\n5", ".", "-.e5", "inf", "\xb2"}) {
    ExpectNumber(text, 0LL, false);
    ExpectNumber(text, 0.0, false);
  }
}

TEST(Doubles, AreWrittenAndReadAsTheCLibraryDoes) {
  std::mt19937_64 random(1);
  const auto written = [](double number) {
    return Shown((plinth::oUTF16StringStream() << number).view());
  };
  for (int round = 0; round < 20000; ++round) {
    // One in two of ordinary magnitude, the others of any.
    const double ordinary = std::ldexp(static_cast<double>(random() >> 11), -40);
    const double number = random() % 2 == 0 ? ordinary : std::bit_cast<double>(random());
    if (!std::isfinite(number)) continue;
    char text[32];
    std::snprintf(text, sizeof text, "%g", number);
    EXPECT_EQ(written(number), text);
    std::snprintf(text, sizeof text, "%.17g", number);
    ExpectNumber(text, number, true);
  }
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(written(nan) + written(-nan) + written(kInfinity) + written(-kInfinity),
            "nannaninf-inf");
}

TEST(Guid, ReadsThreeFormsAndOrdersByBytes) {
  const std::string text = "0123abcd-4567-89ef-fedc-ba9876543210";
  const std::string bare = "0123ABCD456789efFEDCba9876543210";
  for (const std::string& form : {text, "{" + text + "}", bare}) {
    EXPECT_EQ(Shown(Guid(form.data(), form.size()).AsString()), text) << form;
    EXPECT_EQ(Guid(Wide(form)), Guid(form.data(), form.size())) << form;
  }
  for (const std::string& bad :
       {std::string(), text + " ", "{" + text, text + "}", "(" + text + ")", "{" + text + "{",
        "{" + bare + "}", bare + "0000", text.substr(0, 35) + "g", text.substr(0, 35) + '\0',
        "-" + text.substr(0, 8) + text.substr(9), text.substr(0, 13) + text.substr(14) + "0"}) {
    EXPECT_THROW(Guid(bad.data(), bad.size()), std::runtime_error) << bad;
    EXPECT_THROW(Guid{Wide(bad)}, std::runtime_error) << bad;
  }
  // The low byte of this unit is a digit.
  EXPECT_THROW(Guid{Wide(text.substr(0, 35)) + u'\u0130'}, std::runtime_error);
  const Guid first(Wide("00ff0000000000000000000000000000"));
  const Guid last(Wide("80000000000000000000000000000001"));
  EXPECT_TRUE(Guid() < first && first < last && !plinth::utility::operator<(last, first));
  EXPECT_FALSE(last < last || plinth::utility::operator==(first, last));
  EXPECT_EQ(Shown(Guid().AsString()), "00000000-0000-0000-0000-000000000000");
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
  EXPECT_FALSE(disabled);
}

TEST(AssertDialog, LetsAHandlerSilenceTheSiteThatItMeetsAgain) {
  static bool sDisabled = false;
  static int sCalls = 0;
  static const auto fail = [] {
    if (!sDisabled) plinth::debug::BreakAfterAssertDialog(sDisabled, "", nullptr, "", 0, "", true);
  };
  plinth::debug::SetAssertDialogHandler(
      [](bool& ioDisabled, const char*, const unsigned char*, const char*, int, const char*, bool) {
        ioDisabled = true;
        ++sCalls;
        fail();
        return false;
      });
  fail();
  plinth::debug::SetAssertDialogHandler(nullptr);
  EXPECT_EQ(sCalls, 1);
}

TEST(AssertDialog, TellsWhetherADebuggerIsAttached) {
  const pid_t child = fork();
  if (child == 0) {
    const bool before = plinth::debug::IsDebuggerAttached();
    const bool traced = ptrace(PT_TRACE_ME, 0, nullptr, 0) == 0;
    _exit(!traced ? 2 : !before && plinth::debug::IsDebuggerAttached() ? 0 : 1);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  if (WEXITSTATUS(status) == 2) GTEST_SKIP() << "tracing is not permitted here";
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST(NumericCast, ReportsWhatDoesNotFitUntilTheSiteIsSilenced) {
  mezzo::test::RecordedReports reports;
  const struct {
    long value;
    int cast;
    std::string error;  // empty: the value fits
  } cases[] = {
      {2147483647, 2147483647, ""},          {-2147483648, -2147483648, ""},
      {2147483648, -2147483648, "positive"}, {4294967296, 0, "positive"},
      {-2147483649, 2147483647, "negative"},
  };
  for (const auto& [value, cast, error] : cases) {
    EXPECT_EQ((NumericCast<int, long>(value)), cast);
    const auto taken = reports.Take();
    ASSERT_EQ(taken.size(), error.empty() ? 0U : 1U) << value;
    if (error.empty()) continue;
    EXPECT_EQ(taken[0].condition, "false");
    EXPECT_EQ(taken[0].message, "bad numeric conversion: " + error + " overflow from long (" +
                                    std::to_string(value) + ") to int\n");
    EXPECT_EQ(taken[0].file, "utility/Cast.h");
    EXPECT_EQ(taken[0].function, "T plinth::utility::NumericCast(F) [T = int, F = long]");
  }
  reports.Silence(true);
  OnFourThreads([] { EXPECT_EQ((NumericCast<int, long>(1L << 32)), 0); });
  EXPECT_FALSE(reports.Take().empty());
  EXPECT_EQ((NumericCast<int, long>(1L << 32)), 0);
  EXPECT_TRUE(reports.Take().empty());
  EXPECT_EQ((NumericCast<signed char, unsigned>(200)), -56);
  EXPECT_EQ(reports.Take().size(), 1U) << "another instantiation is another site";
  reports.Silence(false);
}

TEST(CachedDatabaseValue, FollowsTheDatabase) {
  auto& database = plinth::debug::DebugDatabase::Instance();
  const auto key = Bytes("test.cached");
  plinth::debug::CachedDatabaseValue<bool> value(key, false, true), keeping(key, false, false);
  EXPECT_FALSE(value.Get() || keeping.Get());
  for (const std::string text :
       {"true", "True", "true ", "", "a text that has to be allocated", "true"}) {
    const auto generation = database.Generation();
    database.SetEntry(key, Bytes(text));
    EXPECT_NE(database.Generation(), generation);
    OnFourThreads([&] { EXPECT_EQ(value.Get(), text == "true") << text; });
    EXPECT_EQ(keeping.Get(), text == "true") << text;
    const auto before = AllocationCount();
    EXPECT_EQ(value.Get(), keeping.Get());
    EXPECT_EQ(AllocationCount(), before) << "an unchanged database is not read";
  }
  database.RemoveEntry(key);
  EXPECT_FALSE(value.Get());
  EXPECT_TRUE(keeping.Get());
}

TEST(Localizer, PrefersTheInstalledTranslation) {
  auto& localizer = plinth::config::Localizer::Get();
  const auto before = AllocationCount();
  EXPECT_EQ(localizer.Localize("$$$/test/A=A"), u"A");
  EXPECT_EQ(AllocationCount(), before);
  localizer.InstallTranslation("$$$/test/A", u"\u00c4=");
  localizer.InstallTranslation("$$$/test/A=A", u"La");
  OnFourThreads([&] { EXPECT_EQ(localizer.Localize("$$$/test/A=A"), u"La"); });
  EXPECT_EQ(localizer.Localize("$$$/test/AB=x=y"), u"x=y");
  EXPECT_EQ(localizer.Localize("$$$/test/none"), u"$$$/test/none");
  localizer.RemoveTranslations();
  localizer.InstallTranslation("$$$/test/B", u"Si");
  EXPECT_EQ(localizer.Localize("$$$/test/A=A"), u"A");
  localizer.RemoveTranslations();
}

TEST(InitializerRegistrar, ListsModulesWhileTheyLive) {
  using Registrar = plinth::config::InitializerRegistrar;
  static std::string sEvents;
  const auto observer = [](const char* name, bool registered) noexcept {
    const auto all = Registrar::Registrations();
    sEvents += (registered ? "+" : "-") + (all.empty() ? "nothing" : all.back().name + "=" + name);
  };
  const auto previous = Registrar::SetObserver(observer);
  const auto count = Registrar::Registrations().size();
  {
    const Registrar registrar("Module", plinth::config::EInitializerContextFlags{2}, {}, [] {}, {},
                              {{{"Other"}, {""}, {nullptr}, {"Third"}}});
    const auto all = Registrar::Registrations();
    ASSERT_EQ(all.size(), count + 1);
    const auto& [name, flags, initialize, prepare, terminate, dependencies] = all.back();
    EXPECT_TRUE(flags == 2 && !initialize && prepare && !terminate && dependencies == 2) << name;
  }
  EXPECT_EQ(sEvents, "+Module=Module-Module=Module");
  EXPECT_EQ(Registrar::SetObserver(previous), +observer);
  EXPECT_EQ(Registrar::Registrations().size(), count);
}

}  // namespace
