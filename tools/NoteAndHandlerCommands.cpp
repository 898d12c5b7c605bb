// note, handlers and handler.
#include "Commands.h"
#include "InputError.h"
#include "JSONOutput.h"
#include "TextEncoding.h"
#include <Utility/MusicalNoteUtils.h>
#include <Utility/SerializationUtils.h>

#include <iomanip>
#include <iostream>

namespace mezzo::tool {
namespace {

constexpr int kHandlerCount = utility::kNativePluginIndex_DocketNative + 1;

struct Handler {
  int index;
  std::string name;
  std::string identifier;
};

Handler HandlerAt(int inIndex) {
  const plinth::UTF16String identifier =
      utility::GetNativeHandlerID(static_cast<utility::NativePluginIndex>(inIndex)).AsString();
  plinth::UTF16String name;
  utility::TranslateToHumanReadableMediaHandler(identifier, name);
  return {inIndex, ToUTF8(name), ToUTF8(identifier)};
}

JSON ToJSON(const Handler& inHandler) {
  return {
      {"index", inHandler.index}, {"name", inHandler.name}, {"identifier", inHandler.identifier}};
}

void WriteRow(const Handler& inHandler) {
  std::cout << std::right << std::setw(2) << inHandler.index << "  " << std::left << std::setw(18)
            << inHandler.name << inHandler.identifier << '\n';
}

}  // namespace

int ShowNote(const Settings& inSettings) {
  if (inSettings.frequency.has_value() == inSettings.noteIndex.has_value()) {
    throw InputError("note: give either a frequency or --index");
  }
  int octave = inSettings.octave;
  const int index = inSettings.frequency
                        ? utility::GetNoteFromFrequency(*inSettings.frequency, &octave)
                        : *inSettings.noteIndex;
  plinth::UTF16String name;
  utility::GetNoteString(name, index, octave, inSettings.isFlatOnly);
  if (inSettings.isJSON) {
    JSON result{{"name", ToUTF8(name)}, {"index", index}, {"octave", octave}};
    if (inSettings.frequency) result["frequency"] = *inSettings.frequency;
    std::cout << ToText(result) << '\n';
  } else {
    std::cout << ToUTF8(name) << "  (index " << index << ", octave " << octave << ")\n";
  }
  return kSuccess;
}

int ListHandlers(const Settings& inSettings) {
  JSON list = JSON::array();
  for (int index = 0; index < kHandlerCount; ++index) {
    const Handler handler = HandlerAt(index);
    if (!inSettings.isJSON) WriteRow(handler);
    list.push_back(ToJSON(handler));
  }
  if (inSettings.isJSON) std::cout << ToText(list) << '\n';
  return kSuccess;
}

int FindHandler(const Settings& inSettings) {
  const plinth::UTF16String text = FromUTF8(inSettings.handler);
  plinth::UTF16String name;
  plinth::UTF16String identifier;
  if (!utility::TranslateToHumanReadableMediaHandler(text, name)) name = text;
  if (!utility::TranslateFromHumanReadableMediaHandler(name, identifier)) {
    throw InputError("no native media handler has the name or identifier " +
                     Quoted(inSettings.handler));
  }
  for (int index = 0; index < kHandlerCount; ++index) {
    const Handler handler = HandlerAt(index);
    if (handler.identifier != ToUTF8(identifier)) continue;
    if (inSettings.isJSON) {
      std::cout << ToText(ToJSON(handler)) << '\n';
    } else {
      WriteRow(handler);
    }
  }
  return kSuccess;
}

}  // namespace mezzo::tool
