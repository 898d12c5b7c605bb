// show, parse, format, convert and formats.
#include "CheckedConversion.h"
#include "Commands.h"
#include "InputError.h"
#include "JSONOutput.h"
#include "TableRow.h"

#include <cerrno>
#include <cstddef>
#include <functional>
#include <iomanip>
#include <iostream>
#include <set>
#include <string_view>
#include <system_error>

namespace mezzo::tool {
namespace {

constexpr std::int64_t kExamplePosition = 3012000;  // 62.75 seconds at the default rate

/// The texts to convert, one after the other: the arguments, or else the lines of standard input,
/// which "-" stands for.
class TextSource {
 public:
  explicit TextSource(std::vector<std::string> inArguments) : fArguments(std::move(inArguments)) {
    if (fArguments.empty()) fArguments = {"-"};
  }

  bool Next(std::string& outText) {
    for (; fArgument < fArguments.size(); ++fArgument, fLine = 0) {
      if (fArguments[fArgument] != "-") {
        outText = fArguments[fArgument++];
        return true;
      }
      if (NextLine(outText)) return true;
    }
    return false;
  }

  bool IsLine() const { return fLine > 0; }
  std::size_t Number() const { return IsLine() ? fLine : fArgument; }

 private:
  bool NextLine(std::string& outLine) {
    // Whoever feeds us line by line sees each answer before giving the next line.
    if (std::cin.rdbuf()->in_avail() <= 0) std::cout.flush();
    if (!std::getline(std::cin, outLine)) {
      if (!std::cin.bad()) return false;
      throw InputError("cannot read standard input: " + std::generic_category().message(errno));
    }
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (++fLine == 1 && outLine.starts_with(kByteOrderMark)) {
      outLine.erase(0, kByteOrderMark.size());
    }
    if (outLine.ends_with('\r')) outLine.pop_back();
    return true;
  }

  std::vector<std::string> fArguments;
  std::size_t fArgument = 0;
  std::size_t fLine = 0;
};

/// Notes go to standard error, one of each kind in a run.
class NotePrinter {
 public:
  void Print(const std::vector<Note>& inNotes) {
    for (const Note& note : inNotes) {
      if (fPrinted.insert(note.kind).second) Complain("note: " + note.text);
    }
  }

 private:
  std::set<NoteKind> fPrinted;
};

JSON TextsOf(const std::vector<Note>& inNotes) {
  JSON texts = JSON::array();
  for (const Note& note : inNotes) texts.push_back(note.text);
  return texts;
}

using Converter = std::function<Conversion(const std::string&)>;
using Result = std::function<std::string(const Conversion&)>;

/// Converts text after text. One that cannot be converted is reported and keeps its place: an empty
/// line, or the unchanged row of a table.
int ConvertAll(const Settings& inSettings, const Converter& inConvert, const Result& inResult) {
  TextSource source(inSettings.texts);
  NotePrinter notes;
  ExitStatus status = kSuccess;
  bool isHeader = inSettings.hasHeader;
  const char* separator = "[\n";
  for (std::string text; source.Next(text);) {
    if (std::exchange(isHeader, false)) {
      if (!inSettings.isJSON) std::cout << text << '\n';
      continue;
    }
    JSON entry{{"item", source.Number()}};
    const bool isTable = inSettings.field > 0;
    std::string line = isTable ? text : "";
    try {
      TableRow row(text, inSettings.field, inSettings.delimiter);
      const Conversion conversion = inConvert(row.Field());
      notes.Print(conversion.notes);
      if (inSettings.isJSON) {
        entry.update({{"samples", conversion.position}, {"text", conversion.text}});
        if (!conversion.notes.empty()) entry["notes"] = TextsOf(conversion.notes);
      } else {
        line = row.With(inResult(conversion));
      }
    } catch (const InputError& error) {
      status = kSomeUnconverted;
      Complain((source.IsLine() ? "line " : "argument ") + std::to_string(source.Number()) + ": " +
               error.what());
      entry.update({{"text", text}, {"error", error.what()}});
    }
    if (inSettings.isJSON) {
      std::cout << separator << ToText(entry, -1);
      separator = ",\n";
    } else {
      std::cout << line << '\n';
    }
  }
  if (inSettings.isJSON) std::cout << (*separator == '[' ? "[]\n" : "\n]\n");
  return status;
}

Conversion Read(const Settings& inSettings, const Timeline& inTimeline,
                const FormatChoice& inChoice, const std::string& inText) {
  if (inSettings.isLenient) return {ReadText(inTimeline, inChoice.format, inText), inText, {}};
  return ReadTyped(inTimeline, inChoice.format, inText);
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

/// The text of a format in a list, in quotes because it may begin with blanks; or why there is
/// none, in brackets.
struct ListedText {
  JSON json;
  std::string shown;

  ListedText(const Timeline& inTimeline, const DisplayFormat& inFormat, std::int64_t inPosition)
      : json{{"number", static_cast<int>(inFormat.format)}, {"name", inFormat.name}} {
    auto why = WhyUnavailable(inTimeline, inFormat.format);
    try {
      if (!why) {
        const Conversion conversion = WriteChecked(inTimeline, inFormat.format, inPosition);
        json["text"] = conversion.text;
        if (!conversion.notes.empty()) json["notes"] = TextsOf(conversion.notes);
        shown = '"' + conversion.text + '"';
        return;
      }
    } catch (const InputError&) {
      why = "out of range";
    }
    json["text"] = nullptr;
    json["notes"] = {*why};
    shown = "(" + *why + ")";
  }
};

std::ostream& WriteNumberAndName(const DisplayFormat& inFormat) {
  return std::cout << std::right << std::setw(2) << inFormat.format << "  " << std::left
                   << std::setw(16) << inFormat.name << ' ';
}

}  // namespace

Timeline Settings::TimelineOf(const FormatChoice& inChoice) const {
  Timeline chosen = timeline;
  if (framesPerSecond && inChoice.framesPerSecond && framesPerSecond != inChoice.framesPerSecond) {
    throw InputError("the format's name says " + std::to_string(*inChoice.framesPerSecond) +
                     " frames per second, --fps " + std::to_string(*framesPerSecond));
  }
  chosen.framesPerSecond =
      inChoice.framesPerSecond.value_or(framesPerSecond.value_or(chosen.framesPerSecond));
  RequireAvailable(chosen, inChoice.format);
  return chosen;
}

int Show(const Settings& inSettings) {
  Conversion shown{0, inSettings.position, {}};
  Timeline timeline = inSettings.timeline;
  if (inSettings.typedFormat) {
    timeline = inSettings.TimelineOf(*inSettings.typedFormat);
    shown = Read(inSettings, timeline, *inSettings.typedFormat, inSettings.position);
    NotePrinter().Print(shown.notes);
  } else {
    timeline.framesPerSecond = inSettings.framesPerSecond.value_or(timeline.framesPerSecond);
    shown.position = ReadPosition(inSettings.position);
  }
  JSON result{{"position", shown.position}};
  result.update(ToJSON(timeline));
  if (!shown.notes.empty()) result["notes"] = TextsOf(shown.notes);
  for (const DisplayFormat& format : DisplayFormats()) {
    const ListedText text(timeline, format, shown.position);
    result["formats"].push_back(text.json);
    if (!inSettings.isJSON) WriteNumberAndName(format) << text.shown << '\n';
  }
  if (inSettings.isJSON) std::cout << ToText(result) << '\n';
  return kSuccess;
}

int Parse(const Settings& inSettings) {
  const Timeline timeline = inSettings.TimelineOf(inSettings.format);
  return ConvertAll(
      inSettings,
      [&](const std::string& text) { return Read(inSettings, timeline, inSettings.format, text); },
      [](const Conversion& conversion) { return std::to_string(conversion.position); });
}

int Format(const Settings& inSettings) {
  const Timeline timeline = inSettings.TimelineOf(inSettings.format);
  return ConvertAll(
      inSettings,
      [&](const std::string& text) {
        return WriteChecked(timeline, inSettings.format.format, ReadPosition(text));
      },
      [](const Conversion& conversion) { return conversion.text; });
}

int Convert(const Settings& inSettings) {
  const Timeline from = inSettings.TimelineOf(inSettings.format);
  const Timeline to = inSettings.TimelineOf(inSettings.target);
  return ConvertAll(
      inSettings,
      [&](const std::string& text) {
        Conversion read = Read(inSettings, from, inSettings.format, text);
        Conversion written = WriteChecked(to, inSettings.target.format, read.position);
        written.notes.insert(written.notes.begin(), read.notes.begin(), read.notes.end());
        return written;
      },
      [](const Conversion& conversion) { return conversion.text; });
}

int ListFormats(const Settings& inSettings) {
  JSON list = JSON::array();
  for (const DisplayFormat& format : DisplayFormats()) {
    ListedText text(Timeline{}, format, kExamplePosition);
    text.json["meaning"] = format.meaning;
    list.push_back(text.json);
    if (inSettings.isJSON) continue;
    WriteNumberAndName(format) << std::setw(17) << text.shown << format.meaning << '\n';
  }
  if (inSettings.isJSON) {
    std::cout << ToText(list) << '\n';
    return kSuccess;
  }
  std::cout << "\nFrame rates as people say them are formats, too:\n\n";
  for (const RateName& rate : RateNames()) {
    std::cout << std::left << std::setw(8) << rate.name << ' ' << std::setw(15)
              << NameOf(rate.format) << "--fps " << rate.framesPerSecond << '\n';
  }
  return kSuccess;
}

}  // namespace mezzo::tool
