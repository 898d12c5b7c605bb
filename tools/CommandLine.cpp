#include "CommandLine.h"

#include "InputError.h"
#include "NumberReading.h"

#include <algorithm>
#include <functional>
#include <iostream>
#include <tuple>
#include <utility>
#include <vector>

namespace mezzo::tool {
namespace {

// The manual takes the first sentence as its headline.
constexpr char kDescription[] =
    R"(Convert, name and draw positions on an audio timeline.

A position is a signed count of samples. Texts are read leniently: what is no
digit separates fields, fields fill up from the right, a "." begins a decimal
fraction. A minus sign counts in samples and in bars-beats; in all other
formats it only separates.
)";

constexpr char kToolNotes[] = R"(Exit status:
  0  Everything was converted.
  1  Something could not be read, or the library reported a broken
     precondition, such as drop-frame labels at 25 frames per second.
     Everything else was converted.
  2  The arguments cannot be used, or a file cannot be read or written.

Examples:
  mezzo show 480000
  mezzo parse smpte-drop < markers.txt | mezzo format bars-beats
  mezzo ruler --format smpte-drop --from "00;00;58;00" --to "00;01;02;00")";

constexpr char kShowNotes[] = R"(JSON:
  {"position", "rate", "fps", "tempo", "meter", "ticks", "offset_ms",
   "duration", "formats": [{"number", "name", "text"}, ...]}
  The text of the reserved format is null.

Examples:
  mezzo show 480000
  mezzo show -1234 --fps 24 --tempo 90 --meter 6/8)";

constexpr char kParseNotes[] = R"(JSON:
  [{"item", "samples", "text"}, ...]
  The item is the number of the line or argument. Where it cannot be read:
  {"item", "text", "error"}.

Examples:
  mezzo parse smpte 01:02:03:04
  mezzo parse bars-beats -1:4.000 2:1 --tempo 90
  mezzo parse smpte-drop < markers.txt | mezzo format bars-beats)";

constexpr char kFormatNotes[] = R"(JSON:
  As that of parse.

Examples:
  mezzo format smpte 178707200 -48000
  seq 0 12000 96000 | mezzo format bars-beats)";

constexpr char kListFormatsNotes[] = R"(JSON:
  [{"number", "name", "text", "meaning"}, ...]

Examples:
  mezzo formats)";

constexpr char kRulerNotes[] = R"(Ends:
  A text in the format of the ruler. A minus sign in front counts in every
  format. Or @ and a position in samples, such as @-48000.

Labels and positions:
  Every position is read by the library from a round text, and every label is
  the library's text for that position. A label that the library reads as
  another position is marked with an asterisk.

JSON:
  {"format", "from", "to",
   "ticks": [{"position", "text", "labelled", "reads_back"}, ...]}

Examples:
  mezzo ruler --format smpte-drop --from "00;00;58;00" --to "00;01;02;00"
  mezzo ruler --format bars-beats --from 0:1 --to 5:1 --meter 6/8
  mezzo ruler --from @-96000 --to @96000 --svg ruler.svg)";

constexpr char kNoteNotes[] = R"(JSON:
  {"name", "index", "octave"}, and "frequency" where one was given.

Examples:
  mezzo note 440
  mezzo note --index 3 --octave 4 --flat)";

constexpr char kListHandlersNotes[] = R"(JSON:
  [{"index", "name", "identifier"}, ...]

Examples:
  mezzo handlers)";

constexpr char kHandlerNotes[] = R"(JSON:
  {"index", "name", "identifier"}

Examples:
  mezzo handler RuvoWav)";

using Assignment = std::function<void(const std::string&)>;

template <class Target, class Read>
Assignment To(Target& outTarget, Read inRead) {
  return [&outTarget, inRead](const std::string& inText) { outTarget = inRead(inText); };
}

// What the assignment has to say against a text becomes the complaint of the option.
CLI::Option* AddValue(CLI::App& outCommand, const std::string& inName, const std::string& inType,
                      const std::string& inDescription, const Assignment& inAssign) {
  const auto assign = [inName, inAssign](const std::string& inText) {
    try {
      inAssign(inText);
    } catch (const InputError& error) {
      throw CLI::ValidationError(inName, error.what());
    }
  };
  return outCommand.add_option_function<std::string>(inName, assign, inDescription)
      ->type_name(inType);
}

std::pair<int, int> ReadMeter(const std::string& inText) {
  const std::size_t slash = std::min(inText.find('/'), inText.size());
  try {
    const int beatsPerBar = NumberFrom(1, 999)(inText.substr(0, slash));
    const int beatUnit = NumberFrom(1, 128)(inText.substr(std::min(slash + 1, inText.size())));
    if ((beatUnit & (beatUnit - 1)) == 0) return {beatsPerBar, beatUnit};
  } catch (const InputError&) {
    // One complaint covers both halves.
  }
  throw InputError("must be beats per bar and a note value, such as 6/8, not '" + inText + "'");
}

// The parser ends a command at "--" once each of its positional arguments has a value, so that
// nothing more is read as a text. Here "--" goes, and no argument behind it looks like an option:
// in front of texts and positions a blank means nothing. \return the arguments in reverse order, as
// the parser takes them.
std::vector<std::string> ArgumentsForParser(std::vector<std::string> inArguments) {
  const auto mark = std::find(inArguments.begin(), inArguments.end(), "--");
  if (mark != inArguments.end()) {
    for (auto argument = inArguments.erase(mark); argument != inArguments.end(); ++argument) {
      if (argument->starts_with('-')) argument->insert(0, " ");
    }
  }
  std::reverse(inArguments.begin(), inArguments.end());
  return inArguments;
}

int ReadTicks(const std::string& inText) {
  return inText == "-1" ? -1 : NumberFrom(1, 1000000)(inText);
}

void AddTimelineOptions(CLI::App& outCommand, Timeline& outTimeline) {
  utility::BeatInfo& beats = outTimeline.beats;
  const auto add = [&](const char* inName, const char* inType, const char* inDefault,
                       const char* inDescription, const Assignment& inAssign) {
    AddValue(outCommand, inName, inType, inDescription, inAssign)
        ->group(kTimelineGroup)
        ->default_str(inDefault);
  };
  add("--rate", "HZ", "48000", "Samples per second",
      To(outTimeline.sampleRate, NumberFrom(1, 10000000)));
  add("--fps", "N", "30", "Nominal frames per second; 30 or 60 for drop-frame",
      To(outTimeline.framesPerSecond, NumberFrom(1, 1000)));
  add("--tempo", "BPM", "120", "Quarter notes per minute",
      To(beats.dTempo, NumberFrom(0.001, 100000.0)));
  add("--meter", "N/N", "4/4", "Beats per bar and note value of a beat",
      [&beats](const std::string& inText) {
        std::tie(beats.iBeatsPerBar, beats.iBeatUnit) = ReadMeter(inText);
      });
  add("--ticks", "N", "960", "Ticks in a beat; -1: decimal fraction of the beat",
      To(beats.iTicksPerBeat, ReadTicks));
  add("--offset-ms", "MS", "0", "Milliseconds from sample 0 to bar 1 beat 1",
      To(beats.dOffsetMs, NumberFrom(-1e9, 1e9)));
}

void AddDurationFlag(CLI::App& outCommand, Timeline& outTimeline) {
  outCommand
      .add_flag("--duration", outTimeline.isDuration,
                "A length, not a position: bars and beats from 0")
      ->group(kTimelineGroup);
}

}  // namespace

CommandLine::CommandLine() : fApp(kDescription, "mezzo") {
  fApp.footer(kToolNotes);
  fApp.set_help_flag("-h,--help", "Print this help and exit");
  fApp.set_version_flag("--version", "mezzo " MEZZO_TOOL_VERSION, "Print the version and exit");
  fApp.require_subcommand(1);
  fApp.get_formatter()->label("SUBCOMMAND", "COMMAND");
  fApp.get_formatter()->label("Positionals", "Arguments");
  fApp.get_formatter()->column_width(26);
  AddConversionCommands();
  AddRulerCommand();
  AddNoteAndHandlerCommands();
}

int CommandLine::Run(int inCount, const char* const* inArguments) {
  try {
    fApp.parse(ArgumentsForParser({inArguments + 1, inArguments + inCount}));
  } catch (const CLI::CallForHelp&) {
    std::cout << fApp.help();
    return kSuccess;
  } catch (const CLI::CallForVersion& version) {
    std::cout << version.what() << '\n';
    return kSuccess;
  } catch (const CLI::ParseError& error) {
    if (!fApp.get_subcommands().empty()) throw InputError(error.what());
    throw InputError(
        (inCount < 2 ? "no command" : "unknown command '" + std::string(inArguments[1]) + "'") +
        "; 'mezzo --help' lists them");
  }
  return fCommand(fSettings);
}

CLI::App& CommandLine::AddCommand(const char* inName, const char* inDescription, Command inCommand,
                                  const char* inNotes) {
  CLI::App& command = *fApp.add_subcommand(inName, inDescription)->group("Commands");
  command.footer(inNotes);
  command.final_callback([this, inCommand] { fCommand = inCommand; });
  command.add_flag("--json", fSettings.isJSON, "Write JSON");
  return command;
}

void CommandLine::AddConversionCommands() {
  CLI::App& show = AddCommand("show", "Show a position in every display format", &Show, kShowNotes);
  show.add_option("POSITION", fSettings.position, "Position in samples")->type_name("")->required();
  AddTimelineOptions(show, fSettings.timeline);
  AddDurationFlag(show, fSettings.timeline);

  const auto addConversion = [&](CLI::App& outCommand, const char* inName,
                                 const char* inDescription) {
    AddValue(outCommand, kFormatValue, "", "Format, by name or number",
             To(fSettings.format, ReadFormat))
        ->required();
    outCommand.add_option(inName, fSettings.texts, inDescription)->type_name("");
    AddTimelineOptions(outCommand, fSettings.timeline);
    AddDurationFlag(outCommand, fSettings.timeline);
  };
  addConversion(AddCommand("parse", "Read texts in a format and print positions in samples", &Parse,
                           kParseNotes),
                "TEXT", "Texts; without one, the lines of standard input");
  addConversion(AddCommand("format", "Write positions in samples as texts in a format", &Format,
                           kFormatNotes),
                "POSITION", "Positions; without one, the lines of standard input");
  AddCommand("formats", "List the formats with an example of each", &ListFormats,
             kListFormatsNotes);
}

void CommandLine::AddRulerCommand() {
  CLI::App& ruler = AddCommand("ruler", "Draw a time ruler with the exact positions of its labels",
                               &DrawRuler, kRulerNotes);
  AddValue(ruler, "--format", kFormatValue, "Format of labels and ends, by name or number",
           To(fSettings.format, ReadFormat))
      ->default_str("smpte");
  ruler.add_option("--from", fSettings.from, "Where it begins")->type_name("TEXT")->required();
  ruler.add_option("--to", fSettings.to, "Where it ends")->type_name("TEXT")->required();
  AddValue(ruler, "--width", "COLUMNS", "Width, 20 or more; without it the terminal's, or 80",
           To(fSettings.width, NumberFrom(kNarrowestRuler, kWidestRuler)));
  ruler
      .add_option("--svg", fSettings.pictureFile,
                  "Draw a picture, 8 pixels a column; '-': standard output")
      ->type_name(kFileValue);
  AddTimelineOptions(ruler, fSettings.timeline);
}

void CommandLine::AddNoteAndHandlerCommands() {
  CLI::App& note = AddCommand("note", "Name the note nearest to a frequency, or a note by number",
                              &ShowNote, kNoteNotes);
  AddValue(note, "FREQUENCY", "", "Frequency in hertz; A4 is at 440",
           To(fSettings.frequency, NumberFrom(0.001F, 1e6F)));
  CLI::Option* const index = AddValue(note, "--index", "N", "Semitones above A, 0 to 12",
                                      To(fSettings.noteIndex, NumberFrom(0, 12)));
  AddValue(note, "--octave", "N", "Octave of the A at or below the note; -1: unnumbered",
           To(fSettings.octave, NumberFrom(-1, 10)))
      ->default_str("-1")
      ->needs(index);
  note.add_flag("--flat", fSettings.isFlatOnly, "Name a black key by its flat alone");

  AddCommand("handlers", "List the native media handlers", &ListHandlers, kListHandlersNotes);
  CLI::App& handler =
      AddCommand("handler", "Find a native media handler", &FindHandler, kHandlerNotes);
  handler.add_option(kHandlerValue, fSettings.handler, "Name or identifier")
      ->type_name("")
      ->required();
}

}  // namespace mezzo::tool
