// What the stand-in offers beside the contract: a host installs handlers and texts, and tests count
// allocations.

#include "../support/Heap.h"
#include "../support/Reports.h"

#include <plinth/config/InitializerRegistrar.h>
#include <plinth/config/Localizer.h>
#include <plinth/debug/CachedDatabaseValue.h>
#include <plinth/string/UTF16StringStream.h>
#include <plinth/utility/Cast.h>

#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <string>
#include <thread>

namespace {

using mezzo::test::heap::AllocationCount;
using plinth::UTF16String;
using plinth::allocator::MemoryRecycler;
using plinth::utility::NumericCast;

plinth::debug::ByteString Bytes(std::string_view inText) {
  return {inText.begin(), inText.end()};
}

void OnFourThreads(const std::function<void()>& inWork) {
  std::thread threads[4];
  for (auto& thread : threads) thread = std::thread(inWork);
  for (auto& thread : threads) thread.join();
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
  if constexpr (sizeof(long) == sizeof(int)) GTEST_SKIP() << "every long fits";
  mezzo::test::RecordedReports reports;
  const struct {
    std::int64_t number;
    int cast;
    std::string error;  // empty: the value fits
  } cases[] = {
      {2147483647, 2147483647, ""},          {-2147483648, -2147483648, ""},
      {2147483648, -2147483648, "positive"}, {4294967296, 0, "positive"},
      {-2147483649, 2147483647, "negative"},
  };
  for (const auto& [number, cast, error] : cases) {
    const auto value = static_cast<long>(number);
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
  constexpr auto kBeyond = static_cast<long>(std::int64_t{1} << 32);
  OnFourThreads([] { EXPECT_EQ((NumericCast<int, long>(kBeyond)), 0); });
  EXPECT_FALSE(reports.Take().empty());
  EXPECT_EQ((NumericCast<int, long>(kBeyond)), 0);
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
