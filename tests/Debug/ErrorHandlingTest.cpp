// What a report carries, how a site is silenced, and the host's switch. The flag of a site and the
// switch live as long as the process, so each test here runs in a process of its own.

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

void ProvokeReport() {
  plinth::UTF16String text;
  utility::ConvertSamplesToTimecode(text, 1, 1, 1, true, true, false, false, false, false, false);
}

TEST(Assertion, BreaksIntoADebuggerWhenAsked) {
  const pid_t child = fork();
  if (child == 0) {
    if (ptrace(PT_TRACE_ME, 0, nullptr, 0) != 0) _exit(2);
    test::ReportRecorder reports;
    ProvokeReport();  // no break is requested
    reports.sRequestsBreak = true;
    ProvokeReport();
    _exit(0);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  if (WIFEXITED(status) && WEXITSTATUS(status) == 2) GTEST_SKIP() << "tracing is not permitted";
  EXPECT_TRUE(WIFSTOPPED(status) && WSTOPSIG(status) == SIGTRAP) << status;
  ptrace(PT_CONTINUE, child, nullptr, 0);
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "did not go on after one break";
}

TEST(Assertion, NamesItsSiteAndSilencesNoOther) {
  test::ReportRecorder reports;
  reports.sSilences = reports.sRequestsBreak = true;  // no debugger is attached: nothing is raised
  ProvokeReport();
  reports.sSilences = false;
  ProvokeReport();
  std::uint32_t label[4]{};
  utility::DropFrameToHMSF(0, 59, label[0], label[1], label[2], label[3]);
  const auto taken = reports.Take();
  ASSERT_EQ(taken.size(), 2u);
  EXPECT_EQ(taken[1].file, "Utility/private/TimeConversionUtils.cpp");
  EXPECT_GT(taken[1].line, taken[0].line);
  EXPECT_TRUE(taken[0].dialogFlag && taken[1].dialogFlag);
}

TEST(Assertion, ComesBeforeBeatInfoIsRead) {
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
  const std::string_view name = "mezzo.debug.DisableErrorHandling";
  const plinth::debug::ByteString key(name.begin(), name.end());
  auto& database = plinth::debug::DebugDatabase::Instance();
  EXPECT_FALSE(DisableErrorHandling());
  for (const std::string_view text : {"a text that has to be allocated", "true"}) {
    database.SetEntry(key, {text.begin(), text.end()});
    EXPECT_EQ(DisableErrorHandling(), text == "true");
    const auto before = test::heap::GetAllocationCount();
    EXPECT_EQ(DisableErrorHandling(), text == "true");
    EXPECT_EQ(test::heap::GetAllocationCount(), before) << "an unchanged database was read";
  }
  database.RemoveEntry(key);
  EXPECT_FALSE(DisableErrorHandling());
}

}  // namespace
}  // namespace mezzo::debug
