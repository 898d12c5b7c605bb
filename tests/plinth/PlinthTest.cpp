// What the stand-in offers beyond the contract, for hosts and tests.

#include "../support/Reports.h"
#include "../support/Text.h"

#include <plinth/debug/CachedDatabaseValue.h>
#include <plinth/string/UTF16StringStream.h>
#include <plinth/utility/Cast.h>

#include <gtest/gtest.h>

#include <regex>

namespace {

using mezzo::test::Show;
using mezzo::test::Widen;
using plinth::utility::NumericCast;

TEST(UTF16StringStream, FillsTheNextItemUpToItsWidth) {
  plinth::oUTF16StringStream stream;
  stream.width(3);
  stream << Widen("-") << 7;
  stream.fill(u'0');
  stream.width(2);
  stream << 5 << 5;
  stream.width(-4);
  stream << -2147483647 - 1;
  stream.width(4);
  stream << 0.5;
  EXPECT_EQ(Show((stream << stream.str()).view()), "  -7055-214748364800.5  -7055-214748364800.5");
}

TEST(NumericCast, ReportsWhatDoesNotFit) {
  if constexpr (sizeof(long) == sizeof(int)) GTEST_SKIP() << "every long fits";
  const auto beyond = static_cast<long>(std::int64_t{1} << 32);
  testing::internal::CaptureStderr();
  NumericCast<int, long>(2147483647);
  NumericCast<int, long>(beyond);
  const std::regex line(":[0-9]+:");
  EXPECT_EQ(
      std::regex_replace(testing::internal::GetCapturedStderr(), line, ":LINE:"),
      "utility/Cast.h:LINE: assertion failed: false: bad numeric conversion: positive overflow "
      "from long (4294967296) to int in T plinth::utility::NumericCast(F) [T = int, F = long]\n");
  mezzo::test::ReportRecorder reports;
  reports.sSilences = true;
  for (int times = 0; times < 2; ++times) NumericCast<int, long>(beyond);
  EXPECT_EQ(reports.Take().size(), 1u) << "a silenced site reported";
}

TEST(CachedDatabaseValue, KeepsItsValueWithoutAnEntryWhenAsked) {
  auto& database = plinth::debug::DebugDatabase::Instance();
  plinth::debug::CachedDatabaseValue<bool> value({'k'}, false, false);
  EXPECT_FALSE(value.Get());
  database.SetEntry({'k'}, {'t', 'r', 'u', 'e'});
  EXPECT_TRUE(value.Get());
  database.RemoveEntry({'k'});
  EXPECT_TRUE(value.Get());
}

}  // namespace
