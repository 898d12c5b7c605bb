// The signal of the application's activation. The answers in each state stand in the vectors.

#include <Utility/AppRunningState.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace mezzo::utility {
namespace {

TEST(AppActivated, CallsSlotsInOrderUntilOneThrows) {
  auto& signal = GetAppActivatedSignal();
  std::string calls;
  const auto connect = [&](char name) {
    return signal.connect([&calls, name](bool activated) {
      (calls += name) += activated ? '+' : '-';
      if (calls.ends_with("b-")) throw std::runtime_error("slot");
    });
  };
  NotifyAppActivated(true);
  const boost::signals2::scoped_connection first = connect('a'), second = connect('b'),
                                           third = connect('c'), fourth = connect('d');
  third.disconnect();
  NotifyAppActivated(true);
  EXPECT_THROW(NotifyAppActivated(false), std::runtime_error);
  EXPECT_EQ(calls, "a+b+d+a-b-");
}

}  // namespace
}  // namespace mezzo::utility
