// Every exported function survives a failed allocation and may run on any thread. Those whose
// results depend on the arguments alone give the same results on every thread.

#include "support/ExportedCalls.h"
#include "support/Heap.h"
#include <Utility/SerializationUtils.h>

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

/// Allocates nothing, and silences the site of every 100th report.
bool CountReport(bool& ioDisabled, const char*, const unsigned char*, const char*, int, const char*,
                 bool) {
  if (sReports.fetch_add(1) % 100 == 99) __atomic_store_n(&ioDisabled, true, __ATOMIC_RELAXED);
  return false;
}

class OutOfMemory : public testing::TestWithParam<ExportedCall> {};

/// Repeats each of many calls with its first allocation failing, then with its second, and so on.
/// No call has been made in the process before them.
TEST_P(OutOfMemory, LeavesTheCallersTextAsItWas) {
  plinth::debug::SetAssertDialogHandler(&CountReport);
  const bool failsWithoutThrowing = GetParam().name.starts_with("Translate");
  std::set<std::string> everyResult;
  bool everFails = false;
  for (std::uint64_t seed = 0; seed < 2000; ++seed) {
    const std::string untouched =
        Join(GetParam().runWith(DrawnArguments(seed), [](const auto&) {}));
    std::string result;
    result.reserve(1000);
    bool fails = true;
    for (std::int64_t nth = 0; fails; ++nth) {
      const std::int64_t blocks = heap::sBlocks;
      bool throws = false;
      // c_str() makes this a copy into the reserved block. A move would replace that block by
      // another and change the number of blocks.
      result = Join(GetParam().runWith(DrawnArguments(seed), [&](const auto& inCall) {
                 heap::sUntilFailure = nth;
                 try {
                   inCall();
                 } catch (const std::bad_alloc&) {
                   throws = true;
                 }
                 fails = heap::sUntilFailure < 0;
                 heap::sUntilFailure = -1;
               })).c_str();
      // Two things are not leaks: the tables that first calls build, and a disconnected slot, which
      // the signal frees at the next connection.
      const bool leaks = heap::sBlocks != blocks && seed >= 100 && GetParam().isPure;
      SCOPED_TRACE("seed " + std::to_string(seed) + " allocation " + std::to_string(nth));
      ASSERT_EQ(throws, fails && !failsWithoutThrowing);
      ASSERT_TRUE(!fails || result == untouched) << result;
      ASSERT_FALSE(leaks);
      everFails = everFails || fails;
    }
    ASSERT_EQ(Join(GetParam().Run(DrawnArguments(seed))), result) << "seed " << seed;
    everyResult.insert(result);
  }
  const bool writesText = everyResult.begin()->back() == '"';
  EXPECT_TRUE(everFails || !writesText) << "no call had to enlarge the caller's string";
  EXPECT_TRUE(!failsWithoutThrowing ||
              everyResult.size() == utility::kNativePluginIndex_DocketNative + 2U)
      << "expected a result for each handler and one for all other texts";
}

INSTANTIATE_TEST_SUITE_P(, OutOfMemory, testing::ValuesIn(GetExportedCalls()));

std::uint64_t HashPureResults() {
  std::uint64_t hash = kHashOfNoLines;
  for (const ExportedCall& call : GetExportedCalls()) {
    for (std::uint64_t seed = 0; seed < 1000; ++seed) {
      const std::string results = Join(call.Run(DrawnArguments(seed)));
      if (call.isPure) Hash(hash, results);
    }
  }
  return hash;
}

TEST(Threads, GetTheSameResultsConcurrently) {
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
  std::uint64_t hashes[8];
  std::vector<std::thread> threads;
  for (auto& hash : hashes) threads.emplace_back([&] { hash = HashPureResults(); });
  for (auto& thread : threads) thread.join();
  isOver = true;
  host.join();
  for (const auto hash : hashes) EXPECT_EQ(hash, HashPureResults());
  EXPECT_GT(sReports.load(), 0u);
}

}  // namespace
}  // namespace mezzo::test
