// Where the application stands, and the signal of its activation.

#include <Utility/AppRunningState.h>

#include <plinth/appstatemanager/AppStateManager.h>

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>
#include <string>
#include <utility>

namespace mezzo::utility {
namespace {

TEST(AppState, AnswersForEveryNumber) {
  constexpr auto kSmallest = std::numeric_limits<std::int32_t>::min();
  constexpr auto kLargest = std::numeric_limits<std::int32_t>::max();
  // Initialised, event loop running, will terminate, terminating.
  const std::pair<std::int32_t, std::string> answers[] = {
      {kSmallest, "----"}, {-1, "----"}, {0, "----"}, {1, "i---"}, {2, "ie--"},
      {3, "iew-"},         {4, "i-w-"},  {5, "--wt"}, {6, "--wt"}, {kLargest, "--wt"}};
  for (const auto& [state, expected] : answers) {
    plinth::appstatemanager::SetState(state);
    EXPECT_EQ(std::string() + (IsInitialized() ? 'i' : '-') + (IsEventLoopRunning() ? 'e' : '-') +
                  (WillTerminate() ? 'w' : '-') + (IsTerminating() ? 't' : '-'),
              expected)
        << state;
  }
  plinth::appstatemanager::SetState(0);
}

TEST(AppActivated, CallsSlotsInOrderUntilOneThrows) {
  auto& signal = GetAppActivatedSignal();
  EXPECT_EQ(&GetAppActivatedSignal(), &signal);
  NotifyAppActivated(true);

  std::string calls;
  const auto note = [&](char name) {
    return [&calls, name](bool activated) { (calls += name) += activated ? '+' : '-'; };
  };
  const boost::signals2::scoped_connection first = signal.connect(note('a'));
  boost::signals2::connection second = signal.connect(note('b'));
  const boost::signals2::scoped_connection third = signal.connect(note('c'));
  NotifyAppActivated(true);
  second.disconnect();
  NotifyAppActivated(false);
  EXPECT_EQ(calls, "a+b+c+a-c-");

  calls.clear();
  const auto thrower = [](bool) { throw std::runtime_error("slot"); };
  const boost::signals2::scoped_connection failing = signal.connect(thrower);
  const boost::signals2::scoped_connection last = signal.connect(note('d'));
  EXPECT_THROW(NotifyAppActivated(true), std::runtime_error);
  EXPECT_EQ(calls, "a+c+");
}

}  // namespace
}  // namespace mezzo::utility
