// What a report carries, how a site is silenced, and the host's switch. Flags and the switch live
// as long as the process, so each test here runs in one of its own.

#include "../support/Heap.h"
#include "../support/Reports.h"
#include <Debug/ErrorHandling.h>
#include <Utility/TimeConversionUtils.h>

#include <plinth/debug/DebugDatabase.h>

#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace mezzo::debug {
namespace {

TEST(Assertion, BreaksIntoADebuggerWhenAsked) {
  const pid_t child = fork();
  if (child == 0) {
    if (ptrace(PT_TRACE_ME, 0, nullptr, 0) != 0) _exit(2);
    test::RecordedReports reports;
    plinth::UTF16String text;
    const auto contradict = [&] {
      utility::ConvertSamplesToTimecode(text, 1, 1, 1, true, true, false, false, false, false,
                                        false);
    };
    contradict();  // nobody asks for a break
    reports.answersBreak = true;
    contradict();
    _exit(0);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  if (WIFEXITED(status) && WEXITSTATUS(status) == 2) GTEST_SKIP() << "tracing is not permitted";
  EXPECT_TRUE(WIFSTOPPED(status) && WSTOPSIG(status) == SIGTRAP) << status;
  ptrace(PT_CONTINUE, child, nullptr, 0);
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "it goes on, and breaks once";
}

TEST(Assertion, NamesItsSiteAndSilencesNoOther) {
  test::RecordedReports reports;
  reports.answersBreak = true;  // no debugger is attached, so nothing is raised
  plinth::UTF16String text;
  const auto convert = [&](std::int32_t beatsPerBar) {
    const utility::BeatInfo beats{960, 120.0, beatsPerBar, 4, 0.0};
    return utility::ConvertSamplesToBarsAndBeats(text, 0, 48000, beats, false, -1);
  };
  reports.silences = true;
  EXPECT_TRUE(convert(4));
  reports.silences = false;
  EXPECT_TRUE(convert(4));
  EXPECT_FALSE(convert(0));
  const auto taken = reports.Take();
  ASSERT_EQ(taken.size(), 2u);
  EXPECT_EQ(taken[0].condition, "inPrecision >= 0");
  EXPECT_EQ(taken[1].condition, "inBeatInfo.iBeatsPerBar != 0");
  EXPECT_GT(taken[1].line, taken[0].line);
  EXPECT_EQ(taken[0].file, "Utility/private/TimeConversionUtils.cpp");
  EXPECT_TRUE(taken[0].flag && taken[1].flag);
}

TEST(Assertion, ComesBeforeTheRecordIsRead) {
  static utility::BeatInfo sBeats{960, 120.0, 0, 4, 0.0};
  plinth::debug::SetAssertDialogHandler(
      [](bool&, const char*, const unsigned char*, const char*, int, const char*, bool) {
        sBeats = {10, 60.0, 3, 4, 1000.0};
        return false;
      });
  plinth::UTF16String text;
  EXPECT_TRUE(utility::ConvertSamplesToBarsAndBeats(text, 264000, 48000, sBeats, false, 2));
  EXPECT_EQ(text, u"2:2.5");
  plinth::debug::SetAssertDialogHandler(nullptr);
}

TEST(DisableErrorHandling, FollowsTheDatabaseEntry) {
  const std::string_view name = "mezzo.debug.DisableErrorHandling", text = "true";
  const plinth::debug::ByteString key(name.begin(), name.end());
  auto& database = plinth::debug::DebugDatabase::Instance();
  EXPECT_FALSE(DisableErrorHandling());
  database.SetEntry(key, {text.begin(), text.end()});
  EXPECT_TRUE(DisableErrorHandling());
  const auto before = test::heap::allocations;
  EXPECT_TRUE(DisableErrorHandling());
  EXPECT_EQ(test::heap::allocations, before) << "an unchanged database is not read";
  database.RemoveEntry(key);
  EXPECT_FALSE(DisableErrorHandling());
}

}  // namespace
}  // namespace mezzo::debug
