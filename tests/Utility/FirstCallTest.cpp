// First calls that run out of memory. What the library builds once lives as long as the process, so
// each test here runs in one of its own.

#include "../support/Heap.h"
#include <Utility/SerializationUtils.h>

#include <gtest/gtest.h>

#include <utility>

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

}  // namespace
}  // namespace mezzo::utility
