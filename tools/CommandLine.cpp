#include "CommandLine.h"

#include "Commands.h"
#include "Messages.h"

#include <plinth/debug/AssertDialog.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <regex>
#include <sstream>
#include <system_error>
#include <type_traits>

namespace mezzo::tool {
namespace {

// ------------------------------------------------------------------------------------- Help texts

constexpr char kToolDescription[] =
    R"(Convert, name and draw positions on an audio timeline.

A position is a signed sample count. A typed text may begin with a minus sign,
end in a decimal fraction (nine digits count), and omit leading fields ("2:12"
is 2 seconds and 12 frames in timecode). Bars and beats omit the last fields
instead. Unit words may follow the numbers: "1 h 2 min", "3 bars 2 beats".

A FORMAT is a name or number that 'mezzo formats' lists, in any letter case, or
the name of a frame rate, which selects the nominal rate, too:
  23.976 23.98 24 25 29.97 29.97df 30 47.952 48 50 59.94 59.94df 60 100
  119.88 120
)";

constexpr char kToolNotes[] = R"(Exit status:
  0  Everything was converted.
  1  Something could not be converted: its line is empty, or unchanged with
     --field. Everything else was converted.
  2  The arguments cannot be used, or a file cannot be read or written.

Notes:
  A text may need a note on standard error. Each kind of note is printed once;
  --json has all of them.

Examples:
  mezzo show 480000
  mezzo convert 29.97df bars-beats "01;00;02;00" --tempo 90
  mezzo parse 29.97df < markers.txt | mezzo format bars-beats
  mezzo ruler --format 29.97df --from "00;00;58;00" --to "00;01;02;00")";

constexpr char kShowNotes[] = R"(JSON:
  {"position", "rate", "fps", "tempo", "meter", "ticks", "offset_ms",
   "duration", "notes", "formats": [{"number", "name", "text", "notes"}, ...]}
  A missing text is null, and the notes say why. "notes" is present only if
  there are notes.

Examples:
  mezzo show 480000
  mezzo show --from 29.97df "01;00;02;00"
  mezzo show -1234 --fps 24 --tempo 90 --meter 6/8)";

constexpr char kParseNotes[] = R"(JSON:
  [{"item", "samples", "text", "notes"}, ...]
  "item" is the number of the input, "text" the parsed text. "notes" is present
  only if there are notes. What cannot be converted is {"item", "text", "error"}.

Examples:
  mezzo parse smpte 01:02:03:04
  mezzo parse bars-beats -1:4.000 2:1 --tempo 90
  mezzo parse 29.97df --field 2 --header < markers.csv)";

constexpr char kFormatNotes[] = R"(JSON:
  The same as for parse; "text" is the formatted text.

Examples:
  mezzo format smpte 178707200 -48000
  seq 0 12000 96000 | mezzo format bars-beats)";

constexpr char kConvertNotes[] = R"(JSON:
  The same as for parse; "text" is the text in the second format.

Rates:
  The name of a frame rate selects the rate of both formats, unless the other
  format is a rate name, too, or --fps is given.

Examples:
  mezzo convert 29.97df bars-beats "01;00;02;00" --tempo 90
  mezzo convert 29.97df decimal --field 2 --delimiter tab < markers.tsv)";

constexpr char kListFormatsNotes[] = R"(JSON:
  [{"number", "name", "text", "notes", "meaning"}, ...], as for show

Examples:
  mezzo formats)";

constexpr char kRulerNotes[] = R"(Ends:
  A text in the ruler's format, or @ and a sample count, such as @-48000.

Labels and positions:
  Ticks are at the positions that the library parses from round values of the
  format. Labels are these positions as it formats them. An asterisk marks a
  label that it parses as another position.

JSON:
  {"format", "from", "to", "notes",
   "ticks": [{"position", "text", "labelled", "reads_back"}, ...]}

Examples:
  mezzo ruler --format 29.97df --from "00;00;58;00" --to "00;01;02;00"
  mezzo ruler --format bars-beats --from 0:1 --to 5:1 --meter 6/8
  mezzo ruler --from @-96000 --to @96000 --svg ruler.svg)";

constexpr char kNoteNotes[] = R"(JSON:
  {"name", "index", "octave"}, and "frequency" if one was given.

Octaves:
  Octaves are counted from A; only in names do they begin at C. Below A0
  (27.5 Hz) names have no octave.

Examples:
  mezzo note 440
  mezzo note --index 4 --octave 4 --flat)";

constexpr char kListHandlersNotes[] = R"(JSON:
  [{"index", "name", "identifier"}, ...]

Examples:
  mezzo handlers)";

constexpr char kFindHandlerNotes[] = R"(JSON:
  {"index", "name", "identifier"}

Examples:
  mezzo handler RuvoWav)";

// ---------------------------------------------------------------------------------------- Options

/// Checks a range. CLI::Range would accept "nan".
template <class Value>
CLI::Validator Between(Value inLowest, Value inHighest) {
  const auto check = [=](const std::string& inText) {
    Value value{};
    if (CLI::detail::lexical_cast(inText, value) && value >= inLowest && value <= inHighest)
      return std::string();
    std::ostringstream complaint;
    complaint.precision(10);  // without an exponent
    complaint << "must be " << (std::is_integral_v<Value> ? "a whole number " : "") << "from "
              << inLowest << " to " << inHighest << ", not " << Quote(inText);
    return complaint.str();
  };
  return CLI::Validator(check, "");
}

/// Explains a rate that is typed as the name of one, such as "29.97", which is not nominal.
std::string CheckNominalRate(const std::string& inText) {
  const RateName* const rate = FindNearestRate(inText);
  const bool isWholeNumber = inText.find_first_not_of("0123456789") == std::string::npos;
  if (rate == nullptr || isWholeNumber) return "";
  const bool hasBoth = rate->name == "29.97" || rate->name == "59.94";
  return inText + " is " + std::to_string(rate->framesPerSecond) + " with " +
         GetName(rate->format) + (hasBoth ? " or smpte-drop" : "");
}

CLI::Option* AddFormat(CLI::App& outCommand, const char* inName, FormatChoice& outFormat,
                       const char* inDescription = "Format, by name or number") {
  const auto assign = [&outFormat](const std::string& inText) { outFormat = FindFormat(inText); };
  return outCommand.add_option_function<std::string>(inName, assign, inDescription);
}

void AddTimelineOptions(CLI::App& outCommand, Settings& outSettings) {
  Timeline& timeline = outSettings.timeline;
  utility::BeatInfo& beats = timeline.beats;
  outCommand.option_defaults()->group("Timeline");
  outCommand.add_option("--rate", timeline.sampleRate, "Samples per second")
      ->check(Between(1, 10000000))
      ->type_name("HZ");
  outCommand
      .add_option("--fps", outSettings.framesPerSecond,
                  "Nominal frames per second; 30 or 60 for drop-frame")
      ->check(&CheckNominalRate)
      ->check(Between(1, 1000))
      ->type_name("N")
      ->default_str("30");
  outCommand.add_option("--tempo", beats.dTempo, "Quarter notes per minute")
      ->check(Between(0.001, 100000.0))
      ->type_name("BPM");
  outCommand
      .add_option_function<std::string>(
          "--meter",
          [&beats](const std::string& inText) {
            char slash = 0;
            std::istringstream(inText) >> beats.iBeatsPerBar >> slash >> beats.iBeatUnit;
          },
          "Beats per bar and note value of the beat")
      ->check([](const std::string& inText) {
        static const std::regex sMeter("[1-9][0-9]{0,2}/(1|2|4|8|16|32|64|128)");
        return std::regex_match(inText, sMeter)
                   ? ""
                   : "must be a meter such as 6/8 with a power of two at the end, not " +
                         Quote(inText);
      })
      ->type_name("N/N")
      ->default_str("4/4");
  outCommand
      .add_option("--ticks", beats.iTicksPerBeat, "Ticks per beat; -1 for a decimal fraction")
      ->check(Between(-1, 1000000))
      ->check([](const std::string& inText) {
        return std::strtol(inText.c_str(), nullptr, 0) == 0 ? "must not be 0" : "";
      })
      ->type_name("N");
  outCommand
      .add_option("--offset-ms", beats.dOffsetMs, "Milliseconds from sample 0 to bar 1 beat 1")
      ->check(Between(-1e9, 1e9))
      ->type_name("MS");
  outCommand.add_flag("--duration", timeline.isDuration,
                      "Convert lengths: bars and beats count from 0");
}

void AddLenient(CLI::App& outCommand, Settings& outSettings) {
  outCommand.add_flag("--lenient", outSettings.isLenient,
                      "Parse any text as the library does; a leading minus sign counts");
}

void AddTextOptions(CLI::App& outCommand, Settings& outSettings, const char* inName) {
  outCommand
      .add_option(inName, outSettings.texts, "Inputs; '-' or none for the lines of standard input")
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
      ->type_name("")
      ->default_str("");
  CLI::Option* const field =
      outCommand.add_option("--field", outSettings.field, "Convert only this field of each line")
          ->check(Between(1, 1000))
          ->type_name("N")
          ->default_str("");
  outCommand
      .add_option("--delimiter", outSettings.delimiter, "Character that separates fields, or 'tab'")
      ->transform([](const std::string& inText) {
        return inText == "tab" || inText == "\\t" ? "\t" : inText;
      })
      ->check([](const std::string& inText) {
        const bool isDelimiter = inText.size() == 1 && inText != "\"";
        return isDelimiter
                   ? ""
                   : "must be an ASCII character other than '\"', or 'tab', not " + Quote(inText);
      })
      ->type_name("C")
      ->needs(field);
  outCommand.add_flag("--header", outSettings.hasHeader, "Leave the first line unchanged");
  AddTimelineOptions(outCommand, outSettings);
}

// --------------------------------------------------------------------------------------- Commands

void AddShowOptions(CLI::App& outCommand, Settings& outSettings) {
  outCommand
      .add_option("POSITION", outSettings.argument,
                  "Position in samples; with --from, a text in that format")
      ->type_name("")
      ->required();
  AddFormat(outCommand, "--from", outSettings.from, "Format of the position")->type_name("FORMAT");
  AddLenient(outCommand, outSettings);
  AddTimelineOptions(outCommand, outSettings);
}

void AddParseOptions(CLI::App& outCommand, Settings& outSettings) {
  AddFormat(outCommand, "FORMAT", outSettings.from)->type_name("")->required();
  AddLenient(outCommand, outSettings);
  AddTextOptions(outCommand, outSettings, "TEXT");
}

void AddFormatOptions(CLI::App& outCommand, Settings& outSettings) {
  AddFormat(outCommand, "FORMAT", outSettings.to)->type_name("")->required();
  AddTextOptions(outCommand, outSettings, "POSITION");
}

void AddConvertOptions(CLI::App& outCommand, Settings& outSettings) {
  AddFormat(outCommand, "FROM", outSettings.from)->type_name("")->required();
  AddFormat(outCommand, "TO", outSettings.to)->type_name("")->required();
  AddLenient(outCommand, outSettings);
  AddTextOptions(outCommand, outSettings, "TEXT");
}

void AddRulerOptions(CLI::App& outCommand, Settings& outSettings) {
  outSettings.to.format = utility::kTimecodeFormat_SMPTE;
  AddFormat(outCommand, "--format", outSettings.to, "Format of labels and ends, by name or number")
      ->type_name("FORMAT")
      ->default_str("smpte");
  outCommand.add_option("--from", outSettings.begin, "Beginning")->type_name("TEXT")->required();
  outCommand.add_option("--to", outSettings.end, "End")->type_name("TEXT")->required();
  outCommand
      .add_option("--width", outSettings.width,
                  "Width, 20 to 2000; the default is the terminal's, or 80")
      ->check(Between(kNarrowestRuler, kWidestRuler))
      ->type_name("COLUMNS");
  outCommand
      .add_option("--svg", outSettings.pictureFile,
                  "Write an SVG file, 8 pixels per column; '-' for standard output")
      ->check([](const std::string& inText) { return inText.empty() ? "must not be empty" : ""; })
      ->type_name("FILE");
  AddTimelineOptions(outCommand, outSettings);
}

void AddNoteOptions(CLI::App& outCommand, Settings& outSettings) {
  // The library's notes end half a semitone below A-1 and above A10.
  outCommand.add_option("FREQUENCY", outSettings.frequency, "Frequency in hertz; A4 is 440")
      ->check(Between(13.36, 28985.0))
      ->type_name("");
  CLI::Option* const index =
      outCommand.add_option("--index", outSettings.noteIndex, "Semitones above A, 0 to 12")
          ->check(Between(0, 12))
          ->type_name("N");
  outCommand
      .add_option("--octave", outSettings.octave,
                  "Octave of the A that --index counts from; -1 for none")
      ->check(Between(-1, 10))
      ->type_name("N")
      ->needs(index);
  outCommand.add_flag("--flat", outSettings.isFlatOnly, "Name black keys only by their flats");
}

void AddHandlerOptions(CLI::App& outCommand, Settings& outSettings) {
  outCommand.add_option("HANDLER", outSettings.argument, "Name or identifier")
      ->type_name("")
      ->required();
}

void AddNoOptions(CLI::App&, Settings&) {}

struct Command {
  const char* name;
  const char* description;
  const char* notes;
  void (*addOptions)(CLI::App& outCommand, Settings& outSettings);
  int (*run)(const Settings& inSettings);
};

constexpr Command kCommands[] = {
    {"show", "Show a position in every format", kShowNotes, &AddShowOptions, &Show},
    {"parse", "Parse texts in a format and print positions in samples", kParseNotes,
     &AddParseOptions, &Convert},
    {"format", "Format positions in samples as texts", kFormatNotes, &AddFormatOptions, &Convert},
    {"convert", "Convert texts in one format into another", kConvertNotes, &AddConvertOptions,
     &Convert},
    {"formats", "List the formats with an example of each", kListFormatsNotes, &AddNoOptions,
     &ListFormats},
    {"ruler", "Draw a time ruler with the exact positions of its labels", kRulerNotes,
     &AddRulerOptions, &DrawRuler},
    {"note", "Name the note nearest to a frequency, or a note by number", kNoteNotes,
     &AddNoteOptions, &ShowNote},
    {"handlers", "List the native media handlers", kListHandlersNotes, &AddNoOptions,
     &ListHandlers},
    {"handler", "Find a native media handler", kFindHandlerNotes, &AddHandlerOptions, &FindHandler},
};

void AddCommand(CLI::App& outApp, const Command& inCommand, Settings& outSettings) {
  outApp.footer(inCommand.notes);
  outApp.add_flag("--json", outSettings.isJSON, "Write JSON");
  inCommand.addOptions(outApp, outSettings);
}

/// \exception InputError for an option such as "--rate=", to which CLI11 would give the next
/// argument.
void RefuseEmptyValues(const std::vector<std::string>& inArguments) {
  for (const std::string& argument : inArguments) {
    if (argument == "--") return;
    if (argument.starts_with("--") && argument.find('=') == argument.size() - 1)
      throw InputError(argument.substr(0, argument.size() - 1) + " needs a value");
  }
}

/// CLI11 looks for missing options before it looks at unknown ones, which are often the cause.
std::string ExplainError(const CLI::App& inApp, const CLI::ParseError& inError) {
  std::string message = inError.what();
  if (inError.get_name() == "ArgumentMismatch")
    return message.substr(0, message.find(':')) + " needs a value";
  for (const std::string& argument : inApp.remaining()) {
    if (argument == "--") continue;
    if (!argument.starts_with('-')) return "unexpected argument " + Quote(argument);
    if (!argument.starts_with("--"))
      return "unknown option " + Quote(argument) + "; put '--' before texts that begin with '-'";
    std::vector<std::string> names;
    for (const CLI::Option* option : inApp.get_options()) names.push_back(option->get_name());
    return "unknown option " + Quote(argument) +
           SuggestWord(argument, names, inApp.get_name() + " --help");
  }
  return message;
}

std::string ExplainUnknownCommand(const std::string& inName) {
  if (inName.empty()) return "no command; see 'mezzo --help'";
  if (inName.starts_with('-'))
    return "unknown option " + Quote(inName) + "; options follow the command, see 'mezzo --help'";
  std::vector<std::string> names;
  for (const Command& command : kCommands) names.emplace_back(command.name);
  return "unknown command " + Quote(inName) + SuggestWord(inName, names, "mezzo --help");
}

/// Each command has a parser of its own, because CLI11 leaves a subcommand at "--" when all its
/// arguments have values.
int RunCommand(std::vector<std::string> inArguments) {
  Settings settings;
  const std::string name = inArguments.empty() ? "" : inArguments.front();
  const auto* const command =
      std::find_if(std::begin(kCommands), std::end(kCommands),
                   [&name](const Command& inCommand) { return inCommand.name == name; });
  const bool isCommand = command != std::end(kCommands);
  CLI::App app(isCommand ? command->description : kToolDescription,
               isCommand ? "mezzo " + name : "mezzo");
  app.set_help_flag("-h,--help", "Print this help and exit");
  app.option_defaults()
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
      ->always_capture_default();
  app.get_formatter()->label("SUBCOMMAND", "COMMAND");
  app.get_formatter()->label("Positionals", "Arguments");
  app.get_formatter()->column_width(26);
  if (isCommand) {
    inArguments.erase(inArguments.begin());
    AddCommand(app, *command, settings);
  } else {
    app.footer(kToolNotes);
    app.require_subcommand(1);
    app.set_help_all_flag("--help-all", "Print the help of every command and exit");
    app.set_version_flag("--version", "mezzo " MEZZO_TOOL_VERSION, "Print the version and exit");
    for (const Command& each : kCommands) {
      AddCommand(*app.add_subcommand(each.name, each.description)->group("Commands"), each,
                 settings);
    }
  }
  RefuseEmptyValues(inArguments);
  try {
    std::reverse(inArguments.begin(), inArguments.end());
    app.parse(inArguments);
  } catch (const CLI::Success& helpOrVersion) {
    return app.exit(helpOrVersion);
  } catch (const CLI::ParseError& error) {
    if (isCommand) throw InputError(ExplainError(app, error));
  }
  if (!isCommand) throw InputError(ExplainUnknownCommand(name));
  return command->run(settings);
}

// -------------------------------------------------------------------------------- Library reports

std::atomic<bool> sHasReported{false};

bool ShowFirstReport(bool&, const char* inCondition, const unsigned char* inMessage, const char*,
                     int, const char*, bool) {
  if (sHasReported.exchange(true)) return false;
  const std::string message = reinterpret_cast<const char*>(inMessage);
  Complain("library report: '" + std::string(inCondition) + "' does not hold. " +
           message.substr(0, message.find('\n')));
  return false;
}

}  // namespace

int Run(const std::vector<std::string>& inArguments) {
  sHasReported = false;
  plinth::debug::SetAssertDialogHandler(&ShowFirstReport);
  try {
    const int status = RunCommand(inArguments);
    if (!std::cout.flush())
      throw InputError("cannot write standard output: " + std::generic_category().message(errno));
    return sHasReported ? std::max<int>(status, kExitStatus_SomeUnconverted) : status;
  } catch (const std::exception& error) {
    Complain(error.what());
    return kExitStatus_BadArguments;
  }
}

}  // namespace mezzo::tool
