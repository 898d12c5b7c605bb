#include "CommandLine.h"

#include "Commands.h"
#include "Messages.h"

#include <plinth/debug/AssertDialog.h>

#include <CLI/CLI.hpp>

#include <algorithm>
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
    R"(Convert positions on an audio timeline, draw time rulers and name notes.

A position is a signed sample count. Texts in other formats may begin with a
minus sign, omit leading fields ("2:12" is 2 seconds and 12 frames in timecode)
and end in a decimal fraction. In bars and beats the last fields may be omitted
instead, and "." separates the beat from its ticks. Unit words may follow the
numbers, as in "1 h 2 min 3 s" (clock time) or "3 bars 2 beats". They do not
select fields: in clock time, the last number counts seconds, so "1 h 30 min" is
refused.
Only the first nine digits of a fraction are used. In a fraction of a frame,
only those that the library can parse exactly are used. A note says if this
leaves out digits.

A FORMAT is a name that 'mezzo formats' lists, in any letter case. The name of a
frame rate selects a format and the nominal rate:
  23.976 23.98 24 25 29.97 29.97df 30 47.952 48 50 59.94 59.94df 60 100
  119.88 120
)";

constexpr char kToolFooter[] = R"(If an option is repeated, its last value counts.

Exit status:
  0  Success. 'show' succeeds even if some formats have no text.
  1  'parse', 'format' or 'convert' could not convert an input. Its line is
     empty, or unchanged with --field; all other inputs were converted.
  2  An argument cannot be used (for 'show' and 'ruler' this includes the
     positions), or a file cannot be read or written.

Notes:
  A note on standard error says where a text is misleading. With --lenient, a
  note also gives the position of a text that would otherwise be refused or
  parsed differently. The first note of each kind is printed, and at the end the number
  of the others. --json shows all notes.

Examples:
  mezzo show 480000
  mezzo convert 29.97df bars-beats "01;00;02;00" --tempo 90
  mezzo parse 29.97df < markers.txt | mezzo format bars-beats
  mezzo ruler --format 29.97df --from "00;00;58;00" --to "00;01;02;00")";

constexpr char kShowFooter[] = R"(JSON:
  {"position", "rate", "fps", "tempo", "meter", "ticks", "offset_ms",
  "duration", "notes", "formats": [{"number", "name", "text", "notes"}, ...]}

  A missing text is null, and the notes say why. "notes" is present only if
  there are notes.

Examples:
  mezzo show 480000
  mezzo show --from 29.97df "01;00;02;00"
  mezzo show -1234 --fps 24 --tempo 90 --meter 6/8)";

constexpr char kParseFooter[] = R"(JSON:
  [{"item", "position", "text", "notes"}, ...]

  "item" is the number of the input; a row that spans lines counts once. "text"
  is the parsed text. "notes" is present only if there are notes. The entry of an
  input that cannot be converted is {"item", "text", "error"}, where "text" is
  the whole line even with --field.

Tables:
  With --field, double quotes around a field are not part of its text. A quoted
  field may contain the delimiter and line ends, unless the delimiter is a tab.
  Without quotes, a decimal comma separates two fields.

Examples:
  mezzo parse smpte 01:02:03:04
  mezzo parse bars-beats -1:4.000 2:1 --tempo 90
  mezzo parse 29.97df --field 2 --header < markers.csv)";

constexpr char kFormatFooter[] = R"(JSON:
  The same as for parse; "text" is the formatted text, or the input if the
  format is samples.

Examples:
  mezzo format smpte 178707200 -48000
  seq 0 12000 96000 | mezzo format bars-beats)";

constexpr char kConvertFooter[] = R"(JSON:
  The same as for parse, but "text" is the text in the second format, or the
  parsed text if that format is samples.

Exactness:
  Positions are rounded to whole samples, and all texts but sample counts are
  rounded or truncated. A time on the start of a frame may therefore give the
  frame before, and so may a conversion to another format and back.

Rates:
  If only one of the formats is the name of a frame rate, both formats use its
  nominal rate. --fps, if given, must agree with the name.

Examples:
  mezzo convert 29.97df bars-beats "01;00;02;00" --tempo 90
  mezzo convert 29.97df decimal --field 2 --delimiter tab < markers.tsv)";

constexpr char kListFormatsFooter[] = R"(JSON:
  [{"number", "name", "text", "notes", "meaning"}, ...], as for show

Examples:
  mezzo formats)";

constexpr char kRulerFooter[] = R"(Beginning and end:
  A text in the ruler's format, or @ and a sample count, such as @-48000. Both
  lie within 250 hours from sample 0.

Labels and positions:
  The position of each tick is that of a round value, such as 00:00:05:00. Its
  label is the text of that position. If labels are less than a minute apart, the
  frames on both sides of a gap in drop-frame labels have ticks, too. An asterisk
  marks a label that does not read back as its position.

JSON:
  {"format", "from", "to", "notes",
  "ticks": [{"position", "text", "labelled", "reads_back"}, ...]}

Examples:
  mezzo ruler --format 29.97df --from "00;00;58;00" --to "00;01;02;00"
  mezzo ruler --format bars-beats --from 0:1 --to 5:1 --meter 6/8
  mezzo ruler --from @-96000 --to @96000 --svg ruler.svg)";

constexpr char kNoteFooter[] = R"(JSON:
  {"name", "index", "octave"}, and "frequency" if one was given.

Octaves:
  Octaves begin at A in --octave and in the JSON member "octave", and at C in
  names. Below 27.5 Hz, names have no octave.

Examples:
  mezzo note 440
  mezzo note --index 4 --octave 4 --flat)";

constexpr char kListHandlersFooter[] = R"(JSON:
  [{"index", "name", "identifier"}, ...]

Examples:
  mezzo handlers)";

constexpr char kFindHandlerFooter[] = R"(JSON:
  {"index", "name", "identifier"}

Examples:
  mezzo handler RuvoWav)";

// ---------------------------------------------------------------------------------------- Options

/// Checks a range. CLI::Range would accept "nan", and octal and hexadecimal integers.
template <class Value>
CLI::Validator RequireBetween(Value inLowest, Value inHighest) {
  const auto check = [=](const std::string& inText) {
    Value value{};
    const bool isNumber = CLI::detail::lexical_cast(inText, value) &&
                          inText.find_first_of("xX") == std::string::npos &&
                          (!std::is_integral_v<Value> || std::to_string(value) == inText);
    if (isNumber && value >= inLowest && value <= inHighest) return std::string();
    std::ostringstream complaint;
    complaint.precision(10);  // without an exponent
    complaint << "must be " << (std::is_integral_v<Value> ? "a whole" : "a") << " number from "
              << inLowest << " to " << inHighest << ", not " << Quote(inText);
    return complaint.str();
  };
  return CLI::Validator(check, "");
}

/// Explains a rate name, such as "29.97", that is typed where a nominal rate is required.
std::string CheckNominalRate(const std::string& inText) {
  const RateName* const rate = FindNearestRate(inText);
  if (rate == nullptr || !IsPulledDown(rate->format)) return "";
  const bool hasDropFrame = rate->name == "29.97" || rate->name == "59.94";
  return "must be nominal: for " + inText + ", use " + std::to_string(rate->framesPerSecond) +
         " with " + GetName(rate->format) + (hasDropFrame ? " or smpte-drop" : "");
}

CLI::Option* AddFormat(CLI::App& ioCommand, const char* inName, FormatChoice& outFormat,
                       const char* inDescription = "Format, by name") {
  const auto assign = [&outFormat](const std::string& inText) { outFormat = FindFormat(inText); };
  return ioCommand.add_option_function<std::string>(inName, assign, inDescription);
}

void AddTimelineOptions(CLI::App& ioCommand, Settings& outSettings) {
  Timeline& timeline = outSettings.timeline;
  utility::BeatInfo& beats = timeline.beats;
  ioCommand.option_defaults()->group("Timeline");
  ioCommand.add_option("--rate", timeline.sampleRate, "Samples per second, up to 3000000")
      ->check(RequireBetween(1, 3000000))
      ->type_name("HZ");
  ioCommand
      .add_option("--fps", outSettings.framesPerSecond,
                  "Nominal frames per second, up to 1000; 30 or 60 for drop-frame")
      ->check(&CheckNominalRate)
      ->check(RequireBetween(1, 1000))
      ->type_name("N")
      ->default_str("30");
  ioCommand.add_option("--tempo", beats.dTempo, "Quarter notes per minute, 0.001 to 100000")
      ->check(RequireBetween(0.001, 100000.0))
      ->type_name("BPM");
  ioCommand
      .add_option_function<std::string>(
          "--meter",
          [&beats](const std::string& inText) {
            char slash = 0;
            std::istringstream(inText) >> beats.iBeatsPerBar >> slash >> beats.iBeatUnit;
          },
          "Beats per bar, up to 999, and note value of the beat, up to 128")
      ->check([](const std::string& inText) {
        static const std::regex sMeter("[1-9][0-9]{0,2}/(1|2|4|8|16|32|64|128)");
        return std::regex_match(inText, sMeter) ? ""
                                                : "must be from 1 to 999 beats and a power of "
                                                  "two up to 128, such as 6/8, not " +
                                                      Quote(inText);
      })
      ->type_name("N/N")
      ->default_str("4/4");
  ioCommand
      .add_option("--ticks", beats.iTicksPerBeat,
                  "Ticks per beat, up to 1000000; -1 for a decimal fraction")
      ->check(RequireBetween(-1, 1000000))
      ->check([](const std::string& inText) {
        return std::strtol(inText.c_str(), nullptr, 0) == 0 ? "must not be 0" : "";
      })
      ->type_name("N");
  ioCommand
      .add_option("--offset-ms", beats.dOffsetMs, "Milliseconds from sample 0 to bar 1 beat 1")
      ->check(RequireBetween(-1e9, 1e9))
      ->type_name("MS");
  ioCommand.add_flag("--duration", timeline.isDuration,
                     "Convert lengths: bars and beats count from 0");
}

void AddLenient(CLI::App& ioCommand, Settings& outSettings) {
  ioCommand.add_flag("--lenient", outSettings.isLenient,
                     "Accept any text with a digit; parse it as leniently as the library");
}

void AddTextOptions(CLI::App& ioCommand, Settings& outSettings, const char* inName) {
  // With allow_extra_args, CLI11 would split "[1,2]" into two texts. Without it, CLI11
  // takes the number in expected() for an upper limit and also accepts fewer texts.
  constexpr int kMany = CLI::detail::expected_max_vector_size;
  ioCommand
      .add_option(inName, outSettings.texts, "Inputs; '-' or none for the lines of standard input")
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
      ->expected(kMany, kMany)
      ->allow_extra_args(false)
      ->type_name("")
      ->default_str("");
  CLI::Option* const field =
      ioCommand.add_option("--field", outSettings.field, "Convert only this field of each line")
          ->check(RequireBetween(1, 1000))
          ->type_name("N")
          ->default_str("");
  ioCommand
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
  ioCommand.add_flag("--header", outSettings.hasHeader,
                     "Do not convert the first line, or the first argument");
  AddTimelineOptions(ioCommand, outSettings);
}

// --------------------------------------------------------------------------------------- Commands

void AddShowOptions(CLI::App& ioCommand, Settings& outSettings) {
  ioCommand
      .add_option("POSITION", outSettings.argument,
                  "Position in samples; with --from, a text in that format")
      ->type_name("")
      ->required();
  AddFormat(ioCommand, "--from", outSettings.fromFormat, "Format of the position")
      ->type_name("FORMAT");
  AddLenient(ioCommand, outSettings);
  AddTimelineOptions(ioCommand, outSettings);
}

void AddParseOptions(CLI::App& ioCommand, Settings& outSettings) {
  AddFormat(ioCommand, "FORMAT", outSettings.fromFormat)->type_name("")->required();
  AddLenient(ioCommand, outSettings);
  AddTextOptions(ioCommand, outSettings, "TEXT");
}

void AddFormatOptions(CLI::App& ioCommand, Settings& outSettings) {
  AddFormat(ioCommand, "FORMAT", outSettings.toFormat)->type_name("")->required();
  AddTextOptions(ioCommand, outSettings, "POSITION");
}

void AddConvertOptions(CLI::App& ioCommand, Settings& outSettings) {
  AddFormat(ioCommand, "FROM", outSettings.fromFormat)->type_name("")->required();
  AddFormat(ioCommand, "TO", outSettings.toFormat)->type_name("")->required();
  AddLenient(ioCommand, outSettings);
  AddTextOptions(ioCommand, outSettings, "TEXT");
}

void AddRulerOptions(CLI::App& ioCommand, Settings& outSettings) {
  outSettings.toFormat.format = utility::kTimecodeFormat_SMPTE;
  AddFormat(ioCommand, "--format", outSettings.toFormat, "Format of the labels, --from and --to")
      ->type_name("FORMAT")
      ->default_str("smpte");
  ioCommand.add_option("--from", outSettings.rulerFrom, "Beginning")->type_name("TEXT")->required();
  ioCommand.add_option("--to", outSettings.rulerTo, "End")->type_name("TEXT")->required();
  ioCommand
      .add_option("--width", outSettings.width,
                  "Width, 20 to 2000; the default is the terminal's, or 80")
      ->check(RequireBetween(kNarrowestRuler, kWidestRuler))
      ->type_name("COLUMNS");
  ioCommand
      .add_option("--svg", outSettings.pictureFile,
                  "Write an SVG file, 8 pixels per column; '-' for standard output")
      ->check([](const std::string& inText) { return inText.empty() ? "must not be empty" : ""; })
      ->type_name("FILE");
  AddTimelineOptions(ioCommand, outSettings);
}

void AddNoteOptions(CLI::App& ioCommand, Settings& outSettings) {
  // The library's notes end half a semitone below A-1 and above A10.
  ioCommand
      .add_option("FREQUENCY", outSettings.frequency,
                  "Frequency in hertz, 13.36 to 28985; A4 is 440")
      ->check(RequireBetween(13.36, 28985.0))
      ->type_name("");
  CLI::Option* const index =
      ioCommand.add_option("--index", outSettings.noteIndex, "Semitones above A, 0 to 12")
          ->check(RequireBetween(0, 12))
          ->type_name("N");
  ioCommand
      .add_option("--octave", outSettings.octave,
                  "Octave of the A that --index counts from; -1 omits it from the name")
      ->check(RequireBetween(-1, 10))
      ->type_name("N")
      ->needs(index);
  ioCommand.add_flag("--flat", outSettings.isFlatOnly, "Name black keys only by their flats");
}

void AddHandlerOptions(CLI::App& ioCommand, Settings& outSettings) {
  ioCommand.add_option("HANDLER", outSettings.argument, "Name or identifier")
      ->type_name("")
      ->required();
}

void AddNoOptions(CLI::App&, Settings&) {}

struct Command {
  const char* name;
  const char* description;
  const char* footer;
  void (*addOptions)(CLI::App& ioCommand, Settings& outSettings);
  int (*run)(const Settings& inSettings);
};

constexpr Command kCommands[] = {
    {"show", "Show a position in every format", kShowFooter, &AddShowOptions, &Show},
    {"parse", "Parse texts in a format and print positions in samples", kParseFooter,
     &AddParseOptions, &Convert},
    {"format", "Format positions in samples as texts", kFormatFooter, &AddFormatOptions, &Convert},
    {"convert", "Convert texts in one format into another", kConvertFooter, &AddConvertOptions,
     &Convert},
    {"formats", "List the formats with an example of each", kListFormatsFooter, &AddNoOptions,
     &ListFormats},
    {"ruler", "Draw a time ruler with the exact positions of its labels", kRulerFooter,
     &AddRulerOptions, &DrawRuler},
    {"note", "Name the note nearest to a frequency, or a note by number", kNoteFooter,
     &AddNoteOptions, &ShowNote},
    {"handlers", "List the native media handlers", kListHandlersFooter, &AddNoOptions,
     &ListHandlers},
    {"handler", "Find a native media handler", kFindHandlerFooter, &AddHandlerOptions,
     &FindHandler},
};

void SetUpCommand(CLI::App& ioApp, const Command& inCommand, Settings& outSettings) {
  ioApp.footer(inCommand.footer);
  ioApp.add_flag("--json", outSettings.isJSON, "Write JSON");
  inCommand.addOptions(ioApp, outSettings);
}

bool IsOption(const std::string& inArgument) {
  static const std::regex sOption("--?[a-zA-Z].*");
  return std::regex_match(inArgument, sOption);
}

/// If an option's value is missing, CLI11 takes the next argument as the value.
/// \exception UserError for an option without a value.
void RequireValues(const CLI::App& inApp, const std::vector<std::string>& inArguments) {
  for (auto argument = inArguments.begin(); argument != inArguments.end(); ++argument) {
    if (*argument == "--") return;
    if (!IsOption(*argument)) continue;
    const std::string name = argument->substr(0, argument->find('='));
    const CLI::Option* const option = inApp.get_option_no_throw(name);
    if (option == nullptr || option->get_items_expected_max() == 0) continue;
    const auto next = std::next(argument);
    const bool lacksNext =
        next == inArguments.end() || *next == "--" || (next->starts_with("--") && IsOption(*next));
    const bool endsWithEquals = argument->size() == name.size() + 1;
    if (name == *argument ? lacksNext : endsWithEquals) throw UserError(name + " needs a value");
  }
}

/// CLI11 complains about a missing option or argument before it complains about an unknown option,
/// although the missing one may only be misspelled.
std::string ExplainError(const CLI::App& inApp, const CLI::ParseError& inError) {
  std::string message = inError.what();
  if (inError.get_name() == "ArgumentMismatch")
    return "--" + message.substr(0, message.find(' ')) + " takes no value";
  for (const std::string& argument : inApp.remaining()) {
    if (argument == "--") continue;
    const bool takesTexts = inApp.get_option_no_throw("--field") != nullptr;
    if (!argument.starts_with('-') || (!IsOption(argument) && !takesTexts))
      return "unexpected argument " + Quote(argument) + "; see '" + inApp.get_name() + " --help'";
    if (!IsOption(argument))
      return "unknown option " + Quote(argument) + "; put '--' before texts that begin with '-'";
    std::vector<std::string> names;
    for (const CLI::Option* option : inApp.get_options()) {
      if (!option->get_positional()) names.push_back(option->get_name());
    }
    return "unknown option " + Quote(argument) +
           SuggestWord(argument, names, inApp.get_name() + " --help");
  }
  return message;
}

std::string ExplainUnknownCommand(const std::string& inName) {
  if (inName.empty()) return "no command; see 'mezzo --help'";
  if (inName.starts_with('-')) {
    return "no command before " + Quote(inName) +
           SuggestWord(inName, {"--help", "--help-all", "--version"}, "mezzo --help");
  }
  std::vector<std::string> names;
  for (const Command& command : kCommands) names.emplace_back(command.name);
  return "unknown command " + Quote(inName) + SuggestWord(inName, names, "mezzo --help");
}

/// Each command is parsed by an app of its own, not as a subcommand: at "--", CLI11 would return
/// from a subcommand to its parent if all positional arguments have values. The subcommands that
/// are added here only list the commands in the tool's help.
int RunCommand(std::vector<std::string> inArguments) {
  Settings settings;
  while (!inArguments.empty() && inArguments.front() == "help") {
    inArguments.erase(inArguments.begin());
    inArguments.emplace_back("--help");
  }
  const std::string name = inArguments.empty() ? "" : inArguments.front();
  const auto* const command =
      std::find_if(std::begin(kCommands), std::end(kCommands),
                   [&name](const Command& inCommand) { return inCommand.name == name; });
  const bool isCommand = command != std::end(kCommands);
  if (!isCommand && !name.empty() && !name.starts_with('-'))
    throw UserError(ExplainUnknownCommand(name));
  CLI::App app(isCommand ? command->description : kToolDescription,
               isCommand ? "mezzo " + name : "mezzo");
  app.set_help_flag("-h,--help", "Print this help and exit");
  app.option_defaults()
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
      ->always_capture_default()
      ->disable_flag_override();
  app.get_formatter()->label("SUBCOMMAND", "COMMAND");
  app.get_formatter()->label("Positionals", "Arguments");
  app.get_formatter()->column_width(26);
  if (isCommand) {
    inArguments.erase(inArguments.begin());
    SetUpCommand(app, *command, settings);
  } else {
    app.footer(kToolFooter);
    app.require_subcommand(1);
    app.set_version_flag("--version", "mezzo " MEZZO_TOOL_VERSION, "Print the version and exit");
    for (const Command& each : kCommands) {
      SetUpCommand(*app.add_subcommand(each.name, each.description)->group("Commands"), each,
                   settings);
    }
    // Added after the commands, which would otherwise inherit this flag.
    app.set_help_all_flag("--help-all", "Print the options of every command and exit");
  }
  const auto last = std::find(inArguments.begin(), inArguments.end(), "--");
  const bool asksForHelp = std::any_of(
      inArguments.begin(), last,
      [](const std::string& inArgument) { return inArgument == "--help" || inArgument == "-h"; });
  if (isCommand && asksForHelp) return app.exit(CLI::CallForHelp());
  RequireValues(app, inArguments);
  try {
    std::reverse(inArguments.begin(), inArguments.end());
    app.parse(inArguments);
  } catch (const CLI::Success& helpOrVersion) {
    return app.exit(helpOrVersion);
  } catch (const CLI::ParseError& error) {
    if (isCommand) throw UserError(ExplainError(app, error));
  }
  if (!isCommand) throw UserError(ExplainUnknownCommand(name));
  return command->run(settings);
}

// -------------------------------------------------------------------------------- Library reports

/// A report means that the input is out of the library's domain.
[[noreturn]] bool ThrowReport(bool&, const char* inCondition, const unsigned char* inMessage,
                              const char*, int, const char*, bool) {
  const std::string message = reinterpret_cast<const char*>(inMessage);
  throw UserError("library report: " +
                  (message.empty() ? inCondition : message.substr(0, message.find('\n'))));
}

}  // namespace

int Run(const std::vector<std::string>& inArguments) {
  plinth::debug::SetAssertDialogHandler(&ThrowReport);
  try {
    const int status = RunCommand(inArguments);
    if (!std::cout.flush())
      throw UserError("cannot write standard output: " + std::generic_category().message(errno));
    return status;
  } catch (const std::exception& error) {
    PrintMessage(error.what());
    return kExitStatus_BadArguments;
  }
}

}  // namespace mezzo::tool
