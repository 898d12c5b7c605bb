// show, parse, format and formats.
#include "Commands.h"
#include "InputError.h"
#include "JSONOutput.h"
#include "NumberReading.h"

#include <cerrno>
#include <cstddef>
#include <functional>
#include <iomanip>
#include <iostream>
#include <string_view>
#include <system_error>

namespace mezzo::tool {
namespace {

constexpr std::int64_t kExamplePosition = 3012000;  // 62.75 seconds at the default rate

// The texts to convert, one after the other: the arguments, or else the lines of standard input.
class TextSource {
 public:
  explicit TextSource(const std::vector<std::string>& inArguments) : fArguments(inArguments) {}

  bool Next(std::string& outText) {
    if (fArguments.empty()) return NextLine(outText);
    if (fCount == fArguments.size()) return false;
    outText = fArguments[fCount++];
    return true;
  }

  std::size_t Number() const { return fCount; }
  const char* Unit() const { return fArguments.empty() ? "line " : "argument "; }

 private:
  bool NextLine(std::string& outLine) {
    // Whoever feeds us line by line sees each answer before giving the next line.
    if (std::cin.rdbuf()->in_avail() <= 0) std::cout.flush();
    if (!std::getline(std::cin, outLine)) {
      if (!std::cin.bad()) return false;
      throw InputError("cannot read standard input: " + std::generic_category().message(errno));
    }
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (++fCount == 1 && outLine.starts_with(kByteOrderMark)) {
      outLine.erase(0, kByteOrderMark.size());
    }
    if (outLine.ends_with('\r')) outLine.pop_back();
    return true;
  }

  const std::vector<std::string>& fArguments;
  std::size_t fCount = 0;
};

struct Conversion {
  std::int64_t position;
  std::string text;
};

// Converts text after text; one that cannot be read is reported and does not stop the others.
int ConvertAll(const Settings& inSettings,
               const std::function<Conversion(const std::string&)>& inConvert,
               const std::function<std::string(const Conversion&)>& inResult) {
  RequireConversion(inSettings.format);
  TextSource source(inSettings.texts);
  ExitStatus status = kSuccess;
  const char* separator = "[\n";
  for (std::string text; source.Next(text);) {
    JSON entry{{"item", source.Number()}};
    try {
      const Conversion conversion = inConvert(text);
      if (!inSettings.isJSON) {
        std::cout << inResult(conversion) << '\n';
        continue;
      }
      entry["samples"] = conversion.position;
      entry["text"] = conversion.text;
    } catch (const InputError& error) {
      status = kSomeUnconverted;
      Complain(source.Unit() + std::to_string(source.Number()) + ": " + error.what());
      entry["text"] = text;
      entry["error"] = error.what();
    }
    if (inSettings.isJSON) std::cout << separator << ToText(entry, -1);
    separator = ",\n";
  }
  if (inSettings.isJSON) std::cout << (*separator == '[' ? "[]\n" : "\n]\n");
  return status;
}

JSON ToJSON(const Timeline& inTimeline) {
  const utility::BeatInfo& beats = inTimeline.beats;
  return {{"rate", inTimeline.sampleRate},
          {"fps", inTimeline.framesPerSecond},
          {"tempo", beats.dTempo},
          {"meter", std::to_string(beats.iBeatsPerBar) + "/" + std::to_string(beats.iBeatUnit)},
          {"ticks", beats.iTicksPerBeat},
          {"offset_ms", beats.dOffsetMs},
          {"duration", inTimeline.isDuration}};
}

JSON ToJSON(const DisplayFormat& inFormat, const std::optional<std::string>& inText) {
  JSON entry{{"number", static_cast<int>(inFormat.format)}, {"name", inFormat.name}};
  entry["text"] = inText ? JSON(*inText) : JSON(nullptr);
  return entry;
}

// Quoted, because a text may begin with blanks.
std::string Quoted(const std::optional<std::string>& inText) {
  return inText ? '"' + *inText + '"' : "(no conversion)";
}

std::ostream& WriteNumberAndName(const DisplayFormat& inFormat) {
  return std::cout << std::right << std::setw(2) << inFormat.format << "  " << std::left
                   << std::setw(16) << inFormat.name;
}

}  // namespace

int Show(const Settings& inSettings) {
  const std::int64_t position = ReadPosition(inSettings.position);
  JSON result{{"position", position}};
  result.update(ToJSON(inSettings.timeline));
  for (const DisplayFormat& format : DisplayFormats()) {
    const auto text = WriteText(inSettings.timeline, format.format, position);
    result["formats"].push_back(ToJSON(format, text));
    if (!inSettings.isJSON) WriteNumberAndName(format) << ' ' << Quoted(text) << '\n';
  }
  if (inSettings.isJSON) std::cout << ToText(result) << '\n';
  return kSuccess;
}

int Parse(const Settings& inSettings) {
  return ConvertAll(
      inSettings,
      [&](const std::string& text) {
        return Conversion{ReadText(inSettings.timeline, inSettings.format, text), text};
      },
      [](const Conversion& conversion) { return std::to_string(conversion.position); });
}

int Format(const Settings& inSettings) {
  return ConvertAll(
      inSettings,
      [&](const std::string& text) {
        const std::int64_t position = ReadPosition(text);
        return Conversion{
            position,
            WriteText(inSettings.timeline, inSettings.format, position).value_or(std::string())};
      },
      [](const Conversion& conversion) { return conversion.text; });
}

int ListFormats(const Settings& inSettings) {
  JSON list = JSON::array();
  for (const DisplayFormat& format : DisplayFormats()) {
    const auto text = WriteText(Timeline{}, format.format, kExamplePosition);
    list.push_back(ToJSON(format, text));
    list.back()["meaning"] = format.meaning;
    if (inSettings.isJSON) continue;
    WriteNumberAndName(format) << ' ' << std::setw(17) << Quoted(text) << format.meaning << '\n';
  }
  if (inSettings.isJSON) std::cout << ToText(list) << '\n';
  return kSuccess;
}

}  // namespace mezzo::tool
