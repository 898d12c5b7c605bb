// The baselines take the text by value, like the library's functions.

#include <Utility/SerializationUtils.h>

#include <benchmark/benchmark.h>

#include <cstddef>
#include <map>
#include <vector>

namespace mezzo::utility {
namespace {

using plinth::UTF16String;
using plinth::utility::Guid;

constexpr std::size_t kHandlerCount = kNativePluginIndex_DocketNative + 1;

UTF16String MakeIdentifier(std::size_t inIndex) {
  return GetNativeHandlerID(static_cast<NativePluginIndex>(inIndex)).AsString();
}

UTF16String MakeName(std::size_t inIndex) {
  UTF16String name;
  TranslateToHumanReadableMediaHandler(MakeIdentifier(inIndex), name);
  return name;
}

bool LookUpName(UTF16String inText, UTF16String& outText) {
  static const auto sNames = [] {
    std::map<Guid, UTF16String> names;
    for (std::size_t index = 0; index < kHandlerCount; ++index)
      names[Guid(MakeIdentifier(index))] = MakeName(index);
    return names;
  }();
  outText = sNames.find(Guid(inText))->second;
  return true;
}

bool LookUpIdentifier(UTF16String inText, UTF16String& outText) {
  static const auto sIdentifiers = [] {
    std::map<UTF16String, Guid> identifiers;
    for (std::size_t index = 0; index < kHandlerCount; ++index)
      identifiers[MakeName(index)] = Guid(MakeIdentifier(index));
    return identifiers;
  }();
  outText = sIdentifiers.find(inText)->second.AsString();
  return true;
}

template <bool (*kTranslate)(UTF16String, UTF16String&), UTF16String (*kInput)(std::size_t)>
void Translate(benchmark::State& ioState) {
  std::vector<UTF16String> inputs;
  for (std::size_t index = 0; index < kHandlerCount; ++index) inputs.push_back(kInput(index));
  UTF16String result;
  result.reserve(64);
  std::size_t place = 0;
  for (auto _ : ioState) {
    benchmark::DoNotOptimize(kTranslate(inputs[place++ % kHandlerCount], result));
    benchmark::DoNotOptimize(result.data());
  }
}
BENCHMARK_TEMPLATE(Translate, TranslateToHumanReadableMediaHandler, MakeIdentifier)
    ->Name("identifier to name");
BENCHMARK_TEMPLATE(Translate, LookUpName, MakeIdentifier)->Name("identifier to name/map");
BENCHMARK_TEMPLATE(Translate, TranslateFromHumanReadableMediaHandler, MakeName)
    ->Name("name to identifier");
BENCHMARK_TEMPLATE(Translate, LookUpIdentifier, MakeName)->Name("name to identifier/map");

}  // namespace
}  // namespace mezzo::utility
