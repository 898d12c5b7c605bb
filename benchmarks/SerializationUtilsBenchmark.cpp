#include "Rows.h"
#include <Utility/SerializationUtils.h>

#include <array>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

namespace mezzo::bench {
namespace {

using namespace mezzo::utility;
using plinth::UTF16String;
using plinth::utility::Guid;

constexpr std::size_t kHandlers = 19;

struct Handler {
  UTF16String identifier;
  UTF16String name;
};

std::vector<Handler> Handlers() {
  std::vector<Handler> handlers(kHandlers);
  for (std::size_t index = 0; index < kHandlers; ++index) {
    handlers[index].identifier =
        GetNativeHandlerID(static_cast<NativePluginIndex>(index)).AsString();
    TranslateToHumanReadableMediaHandler(handlers[index].identifier, handlers[index].name);
  }
  return handlers;
}

/// Both variants pass the text by value as the library's functions take it.
template <class Translate>
void AddTranslation(const char* inRow, const char* inVariant, UTF16String Handler::*inText,
                    Translate inTranslate) {
  UTF16String result;
  result.reserve(64);
  Add(inRow, inVariant, [=, handlers = Handlers()](std::size_t number) mutable {
    inTranslate(handlers[number % kHandlers].*inText, result);
    benchmark::DoNotOptimize(result.data());
  });
}

}  // namespace

void AddMediaHandlers() {
  std::map<Guid, UTF16String> names;
  std::map<UTF16String, Guid> identifiers;
  for (const Handler& handler : Handlers()) {
    names[Guid(handler.identifier)] = handler.name;
    identifiers[handler.name] = Guid(handler.identifier);
  }
  AddTranslation("60 identifier to name", kLibrary, &Handler::identifier,
                 &TranslateToHumanReadableMediaHandler);
  AddTranslation("60 identifier to name", "map", &Handler::identifier,
                 [names](UTF16String id, UTF16String& out) { out = names.find(Guid(id))->second; });
  AddTranslation("61 name to identifier", kLibrary, &Handler::name,
                 &TranslateFromHumanReadableMediaHandler);
  AddTranslation("61 name to identifier", "map", &Handler::name,
                 [identifiers](UTF16String name, UTF16String& out) {
                   out = identifiers.find(name)->second.AsString();
                 });
}

}  // namespace mezzo::bench
