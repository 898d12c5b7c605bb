// The options that the library passes to the host's parser. The stand-in ignores them, so this
// program defines a parser of its own, which the library finds first.

#include <Utility/TimeConversionUtils.h>

#include <plinth/string/StringConversion.h>

#include <gtest/gtest.h>

static int sOptions = -1;

bool plinth::string::StringToNumber(long long& outNumber, const UTF16String&,
                                    utility::Flags<unsigned short> inOptions) noexcept {
  sOptions = inOptions.GetValue();
  outNumber = -12;
  return true;
}

TEST(HostsParser, GetsItsOptions) {
  std::int64_t samples = 0;
  mezzo::utility::ConvertTimecodeToSamples(samples, u"7", mezzo::utility::kTimecodeFormat_Samples,
                                           48000, 30, nullptr, false);
  EXPECT_EQ(samples, -12);
  EXPECT_EQ(sOptions, 6);
}
