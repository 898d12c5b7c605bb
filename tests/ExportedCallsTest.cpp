// What no exported function may do, whatever its arguments: break when memory runs out, or give
// another thread other results.

#include "support/ExportedCalls.h"
#include "support/Heap.h"

#include <plinth/config/Localizer.h>
#include <plinth/debug/AssertDialog.h>
#include <plinth/debug/DebugDatabase.h>

#include <gtest/gtest.h>

#include <atomic>
#include <new>
#include <set>
#include <thread>

namespace mezzo::test {
namespace {

std::atomic<unsigned> sReports{0};

/// Takes no memory and silences every 100th report's site.
bool CountReport(bool& ioDisabled, const char*, const unsigned char*, const char*, int, const char*,
                 bool) {
  if (sReports.fetch_add(1) % 100 == 99) __atomic_store_n(&ioDisabled, true, __ATOMIC_RELAXED);
  return false;
}

class OutOfMemory : public testing::TestWithParam<ExportedCall> {};

/// Lets every allocation of many calls fail in turn, beginning with the first call of the process.
TEST_P(OutOfMemory, LeavesTheCallersTextAsItWas) {
  plinth::debug::SetAssertDialogHandler(&CountReport);
  const bool answersFalse = GetParam().name.starts_with("Translate");
  constexpr std::int64_t kNoCall = -1, kNoFailure = 1 << 20;
  std::set<std::string> everyResult;
  bool everFails = false;
  for (std::uint64_t seed = 0; seed < 2000; ++seed) {
    bool fails = false, throws = false;
    const auto results = [&](std::int64_t failing) {
      std::string line;
      line.reserve(1000);
      const std::int64_t blocks = heap::BlockCount();
      fails = throws = false;
      line += Joined(GetParam().results(DrawnArguments(seed), [&](const auto& call) {
        if (failing == kNoCall) return;
        const std::uint64_t before = heap::AllocationCount();
        heap::FailAllocation(failing);
        try {
          call();
        } catch (const std::bad_alloc&) {
          throws = true;
        }
        heap::FailAllocation(-1);
        fails = heap::AllocationCount() - before > static_cast<std::uint64_t>(failing);
      }));
      return std::pair(line, heap::BlockCount() - blocks);
    };
    // First calls build tables; the signal frees what a slot took when the next one comes.
    const bool mayKeep = seed < 100 || !GetParam().isPure;
    const std::string untouched = results(kNoCall).first;
    std::string usual;
    for (std::int64_t nth = 0; usual.empty() || fails; ++nth) {
      SCOPED_TRACE("seed " + std::to_string(seed) + " allocation " + std::to_string(nth));
      const auto [actual, leaked] = results(nth);
      ASSERT_TRUE(leaked == 0 || mayKeep);
      ASSERT_EQ(throws, fails && !answersFalse);
      ASSERT_TRUE(!fails || actual == untouched) << actual;
      usual = actual;
      everFails = everFails || fails;
    }
    ASSERT_EQ(results(kNoFailure).first, usual);
    everyResult.insert(usual);
  }
  EXPECT_TRUE(everFails || everyResult.begin()->back() != '"') << "no text outgrew its string";
  EXPECT_TRUE(!answersFalse || everyResult.size() == 20) << "19 handlers, or none";
}

INSTANTIATE_TEST_SUITE_P(, OutOfMemory, testing::ValuesIn(ExportedCalls()));

/// One digest for each function.
std::vector<std::uint64_t> Digests() {
  std::vector<std::uint64_t> digests;
  for (const ExportedCall& call : ExportedCalls()) {
    std::uint64_t hash = kNoLines;
    for (std::uint64_t seed = 0; seed < 1000; ++seed) {
      const std::string results = Joined(call.Results(DrawnArguments(seed)));
      if (call.isPure) Hash(hash, results);
    }
    digests.push_back(hash);
  }
  return digests;
}

TEST(Threads, GetTheSameResultsAllAtOnce) {
  plinth::debug::SetAssertDialogHandler(&CountReport);
  std::atomic<bool> isOver{false};
  std::thread host([&] {
    auto& database = plinth::debug::DebugDatabase::Instance();
    auto& localizer = plinth::config::Localizer::Get();
    while (!isOver) {
      database.SetEntry({'k', 'e', 'y'}, {'1'});
      localizer.InstallTranslation("$$$/mezzo/MusicalNotes/A", u"A");
      database.RemoveEntry({'k', 'e', 'y'});
      localizer.RemoveTranslations();
    }
  });
  std::vector<std::uint64_t> digests[8];
  std::vector<std::thread> threads;
  for (auto& results : digests) threads.emplace_back([&] { results = Digests(); });
  for (auto& thread : threads) thread.join();
  isOver = true;
  host.join();
  for (const auto& results : digests) EXPECT_EQ(results, Digests());
  EXPECT_GT(sReports.load(), 0u);
}

}  // namespace
}  // namespace mezzo::test
