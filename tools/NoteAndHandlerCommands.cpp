// The commands for notes and media handlers: note, handlers and handler.
#include "Commands.h"
#include "JSONOutput.h"
#include "Messages.h"
#include "TextEncoding.h"
#include <Utility/MusicalNoteUtils.h>
#include <Utility/SerializationUtils.h>

#include <boost/algorithm/string/predicate.hpp>

#include <iomanip>
#include <iostream>

namespace mezzo::tool {
namespace {

struct Handler {
  int index;
  std::string name;
  std::string identifier;
};

std::vector<Handler> GetHandlers() {
  constexpr int kLastHandler = utility::kNativePluginIndex_DocketNative;
  std::vector<Handler> handlers;
  for (int index = 0; index <= kLastHandler; ++index) {
    const plinth::UTF16String identifier =
        utility::GetNativeHandlerID(static_cast<utility::NativePluginIndex>(index)).AsString();
    plinth::UTF16String name;
    utility::TranslateToHumanReadableMediaHandler(identifier, name);
    handlers.push_back({index, EncodeUTF8(name), EncodeUTF8(identifier)});
  }
  return handlers;
}

JSON MakeJSON(const Handler& inHandler) {
  return {
      {"index", inHandler.index}, {"name", inHandler.name}, {"identifier", inHandler.identifier}};
}

void PrintRow(const Handler& inHandler) {
  std::cout << std::right << std::setw(2) << inHandler.index << "  " << std::left << std::setw(18)
            << inHandler.name << inHandler.identifier << '\n';
}

}  // namespace

int ShowNote(const Settings& inSettings) {
  if (inSettings.frequency.has_value() == inSettings.noteIndex.has_value())
    throw UserError("give either a frequency or --index");
  int octave = inSettings.octave;
  const int index = inSettings.frequency ? utility::GetNoteFromFrequency(
                                               static_cast<float>(*inSettings.frequency), &octave)
                                         : *inSettings.noteIndex;
  plinth::UTF16String name;
  utility::GetNoteString(name, index, octave, inSettings.isFlatOnly);
  if (inSettings.isJSON) {
    JSON result{{"name", EncodeUTF8(name)}, {"index", index}, {"octave", octave}};
    if (inSettings.frequency) result["frequency"] = *inSettings.frequency;
    std::cout << FormatJSON(result) << '\n';
  } else {
    std::cout << EncodeUTF8(name) << "  (" << index << (index == 1 ? " semitone" : " semitones")
              << " above A" << (octave < 0 && !inSettings.frequency ? "" : std::to_string(octave))
              << ")\n";
  }
  return kExitStatus_Success;
}

int ListHandlers(const Settings& inSettings) {
  JSON list = JSON::array();
  for (const Handler& handler : GetHandlers()) {
    list.push_back(MakeJSON(handler));
    if (!inSettings.isJSON) PrintRow(handler);
  }
  if (inSettings.isJSON) std::cout << FormatJSON(list) << '\n';
  return kExitStatus_Success;
}

int FindHandler(const Settings& inSettings) {
  const plinth::UTF16String text = DecodeUTF8(inSettings.argument);
  plinth::UTF16String name;
  // The library's function takes only identifiers. Any other text may be a name.
  if (!utility::TranslateToHumanReadableMediaHandler(text, name)) name = text;
  std::vector<std::string> names;
  for (const Handler& handler : GetHandlers()) {
    names.push_back(handler.name);
    if (!boost::iequals(handler.name, EncodeUTF8(name))) continue;
    if (inSettings.isJSON) {
      std::cout << FormatJSON(MakeJSON(handler)) << '\n';
    } else {
      PrintRow(handler);
    }
    return kExitStatus_Success;
  }
  throw UserError("no native media handler has the name or identifier " +
                  Quote(inSettings.argument) +
                  SuggestWord(inSettings.argument, names, "mezzo handlers"));
}

}  // namespace mezzo::tool
