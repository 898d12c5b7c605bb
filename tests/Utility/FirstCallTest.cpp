// First calls: out of memory, and on eight threads at once. What the library builds once lives as
// long as the process, so each test here runs in one of its own.

#include "../support/Heap.h"
#include <Debug/ErrorHandling.h>
#include <Utility/AppRunningState.h>
#include <Utility/MusicalNoteUtils.h>
#include <Utility/SerializationUtils.h>

#include <plinth/debug/DebugDatabase.h>

#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace mezzo::utility {
namespace {

using plinth::UTF16String;

constexpr int kHandlerCount = 19;

TEST(FirstTranslation, BeginsAnewAfterEveryFailedAllocation) {
  const UTF16String name = u"KinoraInterchange";
  const auto identifier = GetNativeHandlerID(kNativePluginIndex_KinoraInterchange).AsString();
  const struct {
    decltype(&TranslateToHumanReadableMediaHandler) translate;
    UTF16String text, translated;
  } calls[] = {{&TranslateToHumanReadableMediaHandler, identifier, name},
               {&TranslateFromHumanReadableMediaHandler, name, identifier}};
  for (const auto& call : calls) {
    const auto succeedsWithout = [&](int allocation) {
      UTF16String text = call.text, translated = u"keep";
      test::heap::FailAllocation(allocation);
      const bool isTranslated = call.translate(std::move(text), translated);
      test::heap::FailAllocation(-1);
      EXPECT_EQ(translated, isTranslated ? call.translated : u"keep") << allocation;
      return isTranslated;
    };
    int failures = 0;
    while (failures < 1000 && !succeedsWithout(failures)) ++failures;
    EXPECT_GE(failures, kHandlerCount) << "every handler's entry takes memory";
    EXPECT_LT(failures, 1000) << "never succeeds";
  }
}

TEST(Threads, ShareFirstAndLaterCalls) {
  constexpr int kThreads = 8, kRounds = 200;
  const auto setSwitch = [](std::string_view text) {
    const std::string_view key = "mezzo.debug.DisableErrorHandling";
    plinth::debug::DebugDatabase::Instance().SetEntry({key.begin(), key.end()},
                                                      {text.begin(), text.end()});
  };
  std::latch start(kThreads);
  std::atomic<int> wrong = 0;
  const auto work = [&](int thread) {
    start.arrive_and_wait();
    for (int round = 0; round < kRounds; ++round) {
      const auto index = static_cast<NativePluginIndex>((thread + round) % kHandlerCount);
      UTF16String name, identifier, note;
      const bool isKnown =
          TranslateToHumanReadableMediaHandler(GetNativeHandlerID(index).AsString(), name) &&
          TranslateFromHumanReadableMediaHandler(name, identifier);
      if (!isKnown || identifier != GetNativeHandlerID(index).AsString()) ++wrong;

      int calls = 0;
      const auto count = [&calls, own = std::this_thread::get_id()](bool) {
        if (std::this_thread::get_id() == own) ++calls;
      };
      const auto connection = GetAppActivatedSignal().connect(count);
      NotifyAppActivated(true);
      connection.disconnect();
      if (calls != 1) ++wrong;

      GetNoteString(note, GetNoteFromFrequency(440.0f, nullptr), 4, false);
      if (note != u"A4") ++wrong;

      if (thread == 0) setSwitch(round % 2 == 0 ? "true" : "false");
      debug::DisableErrorHandling();
    }
  };
  std::vector<std::thread> threads;
  for (int thread = 0; thread < kThreads; ++thread) threads.emplace_back(work, thread);
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
  setSwitch("true");
  EXPECT_TRUE(debug::DisableErrorHandling());
  EXPECT_TRUE(GetAppActivatedSignal().empty());
}

}  // namespace
}  // namespace mezzo::utility
