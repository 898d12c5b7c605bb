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

using plinth::debug::DebugDatabase;

plinth::debug::ByteString Bytes(std::string_view inText) {
  return {inText.begin(), inText.end()};
}

TEST(Assertion, NamesItsSiteAndGoesOn) {
  test::RecordedReports reports;
  reports.AnswerBreak(true);  // no debugger is attached, so nothing is raised
  std::uint32_t hours = 0, minutes = 0, seconds = 0, frames = 0;
  utility::DropFrameToHMSF(1800, 59, hours, minutes, seconds, frames);
  EXPECT_EQ(minutes, 1u);
  const auto taken = reports.Take();
  ASSERT_EQ(taken.size(), 1u);
  EXPECT_EQ(taken[0].file, "Utility/private/TimeConversionUtils.cpp");
  EXPECT_GT(taken[0].line, 1);
  EXPECT_EQ(taken[0].message, "");
  EXPECT_TRUE(taken[0].flag);
}

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
    reports.AnswerBreak(true);
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

TEST(Assertion, SilencesOneSiteAndNoOther) {
  test::RecordedReports reports;
  plinth::UTF16String text;
  const auto convert = [&](std::int32_t beatsPerBar, int precision) {
    const utility::BeatInfo beats{960, 120.0, beatsPerBar, 4, 0.0};
    return utility::ConvertSamplesToBarsAndBeats(text, 0, 48000, beats, false, precision);
  };
  reports.Silence(true);
  EXPECT_TRUE(convert(4, -1));
  reports.Silence(false);
  EXPECT_TRUE(convert(4, -1));
  EXPECT_FALSE(convert(0, -1));
  const auto taken = reports.Take();
  ASSERT_EQ(taken.size(), 2u);
  EXPECT_EQ(taken[0].condition, "inPrecision >= 0");
  EXPECT_EQ(taken[1].condition, "inBeatInfo.iBeatsPerBar != 0");
  EXPECT_GT(taken[1].line, taken[0].line);
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
  const auto key = Bytes("mezzo.debug.DisableErrorHandling");
  auto& database = DebugDatabase::Instance();
  EXPECT_FALSE(DisableErrorHandling());
  const std::pair<const char*, bool> entries[] = {
      {"true", true}, {"True", false}, {"1", false}, {"true ", false}, {"", false}, {"true", true}};
  for (const auto& [text, isDisabled] : entries) {
    database.SetEntry(key, Bytes(text));
    EXPECT_EQ(DisableErrorHandling(), isDisabled) << text;
    const auto before = test::heap::AllocationCount();
    EXPECT_EQ(DisableErrorHandling(), isDisabled);
    EXPECT_EQ(test::heap::AllocationCount(), before);
  }
  database.RemoveEntry(key);
  EXPECT_FALSE(DisableErrorHandling());
}

}  // namespace
}  // namespace mezzo::debug
