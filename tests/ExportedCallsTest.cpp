// What no exported function may do, whatever its arguments: break when memory runs out, or give
// another thread other results.

#include "support/ExportedCalls.h"
#include "support/Heap.h"

#include <plinth/config/Localizer.h>
#include <plinth/debug/AssertDialog.h>
#include <plinth/debug/DebugDatabase.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <new>
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

/// The call runs out of memory at its n-th allocation, or is not made at all.
class FailingArguments : public DrawnArguments {
 public:
  static constexpr std::int64_t kNoFailure = -1;
  static constexpr std::int64_t kNoCall = -2;

  FailingArguments(std::uint64_t inSeed, std::int64_t inNth)
      : DrawnArguments(inSeed), fNth(inNth) {}

  bool Failed() const { return fNth >= 0 && fAllocations > static_cast<std::uint64_t>(fNth); }
  bool Threw() const { return fThrew; }

 private:
  void Surround(const std::function<void()>& inCall) override {
    if (fNth == kNoCall) return;
    const std::uint64_t before = heap::AllocationCount();
    heap::FailAllocation(fNth);
    try {
      inCall();
    } catch (const std::bad_alloc&) {
      fThrew = true;
    }
    heap::FailAllocation(kNoFailure);
    fAllocations = heap::AllocationCount() - before;
  }

  std::int64_t fNth;
  std::uint64_t fAllocations = 0;
  bool fThrew = false;
};

/// Lets every allocation of many calls fail in turn.
void CheckFailures(const ExportedCall& inCall) {
  const bool answersFalse = std::string_view(inCall.name).starts_with("Translate");
  int failures = 0;
  bool writesText = false;
  for (std::uint64_t seed = 0; seed < 2000; ++seed) {
    const auto results = [&](FailingArguments arguments) { return Joined(inCall.call(arguments)); };
    const std::string untouched = results({seed, FailingArguments::kNoCall});
    const std::string usual = results({seed, FailingArguments::kNoFailure});
    writesText = writesText || (usual != untouched && usual.ends_with('"'));
    const auto failsAt = [&](std::int64_t nth) {
      FailingArguments arguments(seed, nth);
      const std::string actual = Joined(inCall.call(arguments));
      const bool gaveUp = arguments.Threw() || (answersFalse && arguments.Failed());
      EXPECT_EQ(actual, gaveUp ? untouched : usual);
      EXPECT_FALSE(answersFalse && arguments.Threw());
      return arguments.Failed();
    };
    bool failed = true;
    for (std::int64_t nth = 0; failed; ++nth) {
      const std::int64_t blocks = heap::BlockCount();
      failed = failsAt(nth);
      // The signal frees what a slot took when the next one comes.
      EXPECT_TRUE(heap::BlockCount() == blocks || !inCall.isPure) << "leaks";
      ASSERT_FALSE(testing::Test::HasFailure()) << "seed " << seed << " allocation " << nth;
      if (failed) ++failures;
    }
  }
  EXPECT_TRUE(failures > 0 || !writesText) << "no text was too long for its string";
}

TEST(OutOfMemory, LeavesTheCallersTextAsItWas) {
  plinth::debug::SetAssertDialogHandler(&CountReport);
  for (const ExportedCall& call : ExportedCalls()) {
    SCOPED_TRACE(call.name);
    CheckFailures(call);
  }
}

/// One digest for each function.
std::vector<std::uint64_t> Digests(std::uint64_t inCalls) {
  std::vector<std::uint64_t> digests;
  for (const ExportedCall& call : ExportedCalls()) {
    Digest digest;
    for (std::uint64_t seed = 0; seed < inCalls; ++seed) {
      DrawnArguments arguments(seed);
      const std::string results = Joined(call.call(arguments));
      if (call.isPure) digest.Add(results);
    }
    digests.push_back(digest.Value());
  }
  return digests;
}

TEST(Threads, GetTheSameResultsAllAtOnce) {
  constexpr std::uint64_t kCalls = 1000;
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
  for (auto& results : digests) threads.emplace_back([&] { results = Digests(kCalls); });
  for (auto& thread : threads) thread.join();
  isOver = true;
  host.join();
  const auto alone = Digests(kCalls);
  for (const auto& results : digests) EXPECT_EQ(results, alone);
  EXPECT_GT(sReports.load(), 0u);
}

TEST(ExportedCalls, AreWhatTheLibraryExports) {
  std::ifstream file(MEZZO_EXPORTS);
  std::vector<std::string> exported;
  for (std::string line; std::getline(file, line);) {
    const std::string name = line.substr(0, line.find('('));
    exported.push_back(name.substr(name.rfind(':') + 1));
  }
  std::vector<std::string> called;
  for (const ExportedCall& call : ExportedCalls()) {
    const std::string name = call.name;
    called.push_back(name.substr(0, name.find('-')));
  }
  std::sort(exported.begin(), exported.end());
  std::sort(called.begin(), called.end());
  EXPECT_EQ(called, exported);
}

}  // namespace
}  // namespace mezzo::test
