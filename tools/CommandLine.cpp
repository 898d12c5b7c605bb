#include "CommandLine.h"

#include "InputError.h"

#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

namespace mezzo::tool {
namespace {

constexpr char kDescription[] =
    R"(Convert, name and draw positions on an audio timeline.

A position is a signed count of samples. Fields of a typed text fill up from
the right, and a "." begins a decimal fraction. A minus sign in front counts.

A FORMAT is a name or number from the list of 'mezzo formats', in any letter
case, or a frame rate as people say it, which chooses the nominal rate, too:
  23.976 23.98 24 25 29.97 29.97df 30 47.952 48 50 59.94 59.94df 60 100
  119.88 120
)";

constexpr char kToolNotes[] = R"(Exit status:
  0  Everything was converted.
  1  Something could not be converted; everything else was.
  2  The arguments cannot be used, or a file cannot be read or written.

Examples:
  mezzo show 480000
  mezzo convert 29.97df bars-beats "01;00;02;00" --tempo 90
  mezzo parse 29.97df < markers.txt | mezzo format bars-beats
  mezzo ruler --format 29.97df --from "00;00;58;00" --to "00;01;02;00")";

constexpr char kShowNotes[] = R"(JSON:
  {"position", "rate", "fps", "tempo", "meter", "ticks", "offset_ms",
   "duration", "notes", "formats": [{"number", "name", "text", "notes"}, ...]}
  Where there is no text, it is null, and the notes tell why. Notes are left
  out where there are none.

Examples:
  mezzo show 480000
  mezzo show --from 29.97df "01;00;02;00"
  mezzo show -1234 --fps 24 --tempo 90 --meter 6/8)";

constexpr char kParseNotes[] = R"(JSON:
  [{"item", "samples", "text", "notes"}, ...]
  The item is the number of the line or argument. Notes are left out where
  there are none. What cannot be converted is {"item", "text", "error"}.

Examples:
  mezzo parse smpte 01:02:03:04
  mezzo parse bars-beats -1:4.000 2:1 --tempo 90
  mezzo parse 29.97df --field 2 --header < markers.csv)";

constexpr char kFormatNotes[] = R"(JSON:
  As that of parse; the text is the one written.

Examples:
  mezzo format smpte 178707200 -48000
  seq 0 12000 96000 | mezzo format bars-beats)";

constexpr char kConvertNotes[] = R"(JSON:
  As that of parse; the text is the one written.

Examples:
  mezzo convert 29.97df bars-beats "01;00;02;00" --tempo 90
  mezzo convert 29.97df decimal --field 2 --delimiter tab < markers.tsv)";

constexpr char kListFormatsNotes[] = R"(JSON:
  [{"number", "name", "text", "meaning"}, ...]

Examples:
  mezzo formats)";

constexpr char kRulerNotes[] = R"(Ends:
  A text in the format of the ruler, or @ and a position in samples, such as
  @-48000.

Labels and positions:
  Every position is read by the library from a round text, and every label is
  the library's text for that position. A label that the library reads as
  another position is marked with an asterisk.

JSON:
  {"format", "from", "to",
   "ticks": [{"position", "text", "labelled", "reads_back"}, ...]}

Examples:
  mezzo ruler --format 29.97df --from "00;00;58;00" --to "00;01;02;00"
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

constexpr char kTimelineGroup[] = "Timeline";

/// What the parser would take for an option, though it stands behind "--", bears this in front
/// until an argument takes it.
constexpr char kMark = '\x01';

/// The parser ends a command at "--" once each of its arguments has a value. Here "--" goes, and
/// what stands behind it is marked. \return the arguments in reverse order, as the parser takes
/// them.
std::vector<std::string> ArgumentsForParser(std::vector<std::string> inArguments) {
  const auto end = std::find(inArguments.begin(), inArguments.end(), "--");
  if (end != inArguments.end()) {
    for (auto argument = inArguments.erase(end); argument != inArguments.end(); ++argument) {
      if (argument->starts_with('-')) argument->insert(0, 1, kMark);
    }
  }
  std::reverse(inArguments.begin(), inArguments.end());
  return inArguments;
}

CLI::Validator WithoutMark() {
  return CLI::Validator(
      [](std::string& text) {
        if (text.starts_with(kMark)) text.erase(0, 1);
        return std::string();
      },
      "");
}

/// "nan" is a number to the parser, and lies in every range.
template <class Value>
CLI::Validator Between(Value inLowest, Value inHighest) {
  const CLI::Range range(inLowest, inHighest);
  return CLI::Validator(
      [range](std::string& text) {
        if (text.find_first_of("nN") != std::string::npos) return Quoted(text) + " is not a number";
        return range(text);
      },
      "");
}

/// Rates with a decimal point are no nominal rates.
CLI::Validator NominalRate() {
  return CLI::Validator(
      [](std::string& text) {
        for (const RateName& rate : RateNames()) {
          if (rate.name != text || rate.name.find('.') == std::string_view::npos) continue;
          const bool hasLabels = rate.framesPerSecond == 30 || rate.framesPerSecond == 60;
          return text + " is " + std::to_string(rate.framesPerSecond) + " with smpte-pulldown" +
                 (hasLabels ? " or smpte-drop" : "");
        }
        return std::string();
      },
      "");
}

/// Adds an option or argument that is read by a function of ours. What that has to say against a
/// text becomes the complaint of the option.
template <class Read>
CLI::Option* AddRead(CLI::App& outCommand, const std::string& inName,
                     const std::string& inDescription, Read inRead) {
  const auto assign = [inName, inRead](const std::string& text) {
    try {
      inRead(text);
    } catch (const InputError& error) {
      throw CLI::ValidationError(inName, error.what());
    }
  };
  return outCommand.add_option_function<std::string>(inName, assign, inDescription)
      ->transform(WithoutMark());
}

void AddFormat(CLI::App& outCommand, const char* inName, FormatChoice& outFormat) {
  AddRead(outCommand, inName, "Format, by name or number",
          [&outFormat](const std::string& text) { outFormat = ReadFormat(text); })
      ->type_name("")
      ->required();
}

void ReadMeter(const std::string& inText, utility::BeatInfo& outBeats) {
  const std::vector<std::string> parts = CLI::detail::split(inText, '/');
  int beats = 0;
  int unit = 0;
  const bool isMeter = parts.size() == 2 && CLI::detail::lexical_cast(parts[0], beats) &&
                       CLI::detail::lexical_cast(parts[1], unit) && beats >= 1 && beats <= 999 &&
                       unit >= 1 && unit <= 128 && (unit & (unit - 1)) == 0;
  if (!isMeter) {
    throw InputError("must be beats per bar and a note value, such as 6/8, not " + Quoted(inText));
  }
  outBeats.iBeatsPerBar = beats;
  outBeats.iBeatUnit = unit;
}

char ReadDelimiter(const std::string& inText) {
  if (inText == "tab" || inText == "\\t") return '\t';
  if (inText.size() == 1 && inText != "\"") return inText[0];
  throw InputError("must be one character or 'tab', not " + Quoted(inText));
}

}  // namespace

CommandLine::CommandLine() : fApp(kDescription, "mezzo") {
  fApp.footer(kToolNotes);
  fApp.set_help_flag("-h,--help", "Print this help and exit");
  fApp.set_help_all_flag("--help-all", "Print the help of every command and exit");
  fApp.set_version_flag("--version", "mezzo " MEZZO_TOOL_VERSION, "Print the version and exit");
  fApp.require_subcommand(1);
  fApp.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
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
  } catch (const CLI::CallForAllHelp&) {
    std::cout << fApp.help("", CLI::AppFormatMode::All);
    return kSuccess;
  } catch (const CLI::CallForVersion& version) {
    std::cout << version.what() << '\n';
    return kSuccess;
  } catch (const CLI::ParseError& error) {
    if (!fApp.get_subcommands().empty()) throw InputError(error.what());
    throw InputError((inCount < 2 ? "no command" : "unknown command " + Quoted(inArguments[1])) +
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

void CommandLine::AddTimelineOptions(CLI::App& outCommand, bool inHasDuration) {
  Timeline& timeline = fSettings.timeline;
  utility::BeatInfo& beats = timeline.beats;
  outCommand.option_defaults()->group(kTimelineGroup);
  outCommand.add_option("--rate", timeline.sampleRate, "Samples per second")
      ->check(Between(1, 10000000))
      ->type_name("HZ")
      ->capture_default_str();
  outCommand
      .add_option("--fps", fSettings.framesPerSecond,
                  "Nominal frames per second; 30 or 60 for drop-frame")
      ->check(NominalRate())
      ->check(Between(1, 1000))
      ->type_name("N")
      ->default_str("30");
  outCommand.add_option("--tempo", beats.dTempo, "Quarter notes per minute")
      ->check(Between(0.001, 100000.0))
      ->type_name("BPM")
      ->default_str("120");
  AddRead(outCommand, "--meter", "Beats per bar and note value of a beat",
          [&beats](const std::string& text) { ReadMeter(text, beats); })
      ->type_name("N/N")
      ->default_str("4/4");
  outCommand
      .add_option("--ticks", beats.iTicksPerBeat,
                  "Ticks in a beat; -1: decimal fraction of the beat")
      ->check(Between(-1, 1000000))
      ->check([](const std::string& text) { return text == "0" ? "A beat has ticks" : ""; })
      ->type_name("N")
      ->capture_default_str();
  outCommand
      .add_option("--offset-ms", beats.dOffsetMs, "Milliseconds from sample 0 to bar 1 beat 1")
      ->check(Between(-1e9, 1e9))
      ->type_name("MS")
      ->default_str("0");
  if (!inHasDuration) return;
  outCommand.add_flag("--duration", timeline.isDuration,
                      "A length, not a position: bars and beats from 0");
}

void CommandLine::AddReadingOptions(CLI::App& outCommand) {
  outCommand.add_flag("--lenient", fSettings.isLenient,
                      "Read as the library does: what is no digit separates");
}

void CommandLine::AddTextOptions(CLI::App& outCommand, const char* inName,
                                 const char* inDescription) {
  outCommand.add_option(inName, fSettings.texts, inDescription)
      ->transform(WithoutMark())
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
      ->type_name("");
  CLI::Option* const field =
      outCommand.add_option("--field", fSettings.field, "Convert this column of a table alone")
          ->check(Between(1, 1000))
          ->type_name("N");
  AddRead(outCommand, "--delimiter", "What separates columns: a character or 'tab'",
          [this](const std::string& text) { fSettings.delimiter = ReadDelimiter(text); })
      ->type_name("C")
      ->default_str(",")
      ->needs(field);
  outCommand.add_flag("--header", fSettings.hasHeader, "Leave the first line as it is");
  AddTimelineOptions(outCommand);
}

void CommandLine::AddConversionCommands() {
  CLI::App& show = AddCommand("show", "Show a position in every display format", &Show, kShowNotes);
  show.add_option("POSITION", fSettings.position,
                  "Position in samples; with --from, a text in that format")
      ->transform(WithoutMark())
      ->type_name("")
      ->required();
  AddRead(show, "--from", "Format of the position", [this](const std::string& text) {
    fSettings.typedFormat = ReadFormat(text);
  })->type_name("FORMAT");
  AddReadingOptions(show);
  AddTimelineOptions(show);

  CLI::App& parse = AddCommand("parse", "Read texts in a format and print positions in samples",
                               &Parse, kParseNotes);
  AddFormat(parse, "FORMAT", fSettings.format);
  AddReadingOptions(parse);
  AddTextOptions(parse, "TEXT", "Texts; without one, or for '-', the lines of standard input");

  CLI::App& format = AddCommand("format", "Write positions in samples as texts in a format",
                                &Format, kFormatNotes);
  AddFormat(format, "FORMAT", fSettings.format);
  AddTextOptions(format, "POSITION",
                 "Positions; without one, or for '-', the lines of standard input");

  CLI::App& convert = AddCommand("convert", "Write texts in one format as texts in another",
                                 &Convert, kConvertNotes);
  AddFormat(convert, "FROM", fSettings.format);
  AddFormat(convert, "TO", fSettings.target);
  AddReadingOptions(convert);
  AddTextOptions(convert, "TEXT", "Texts; without one, or for '-', the lines of standard input");

  AddCommand("formats", "List the formats with an example of each", &ListFormats,
             kListFormatsNotes);
}

void CommandLine::AddRulerCommand() {
  CLI::App& ruler = AddCommand("ruler", "Draw a time ruler with the exact positions of its labels",
                               &DrawRuler, kRulerNotes);
  AddRead(ruler, "--format", "Format of labels and ends, by name or number",
          [this](const std::string& text) { fSettings.format = ReadFormat(text); })
      ->type_name("FORMAT")
      ->default_str("smpte");
  ruler.add_option("--from", fSettings.from, "Where it begins")->type_name("TEXT")->required();
  ruler.add_option("--to", fSettings.to, "Where it ends")->type_name("TEXT")->required();
  ruler
      .add_option("--width", fSettings.width, "Width, 20 to 2000; without it the terminal's, or 80")
      ->check(Between(kNarrowestRuler, kWidestRuler))
      ->type_name("COLUMNS");
  ruler
      .add_option("--svg", fSettings.pictureFile,
                  "Draw a picture, 8 pixels a column; '-': standard output")
      ->type_name("FILE");
  AddTimelineOptions(ruler, false);
}

void CommandLine::AddNoteAndHandlerCommands() {
  CLI::App& note = AddCommand("note", "Name the note nearest to a frequency, or a note by number",
                              &ShowNote, kNoteNotes);
  note.add_option("FREQUENCY", fSettings.frequency, "Frequency in hertz; A4 is at 440")
      ->transform(WithoutMark())
      ->check(Between(0.001F, 1e6F))
      ->type_name("");
  CLI::Option* const index =
      note.add_option("--index", fSettings.noteIndex, "Semitones above A, 0 to 12")
          ->check(Between(0, 12))
          ->type_name("N");
  note.add_option("--octave", fSettings.octave,
                  "Octave of the A at or below the note; -1: unnumbered")
      ->check(Between(-1, 10))
      ->type_name("N")
      ->capture_default_str()
      ->needs(index);
  note.add_flag("--flat", fSettings.isFlatOnly, "Name a black key by its flat alone");

  AddCommand("handlers", "List the native media handlers", &ListHandlers, kListHandlersNotes);
  CLI::App& handler =
      AddCommand("handler", "Find a native media handler", &FindHandler, kHandlerNotes);
  handler.add_option("HANDLER", fSettings.handler, "Name or identifier")
      ->transform(WithoutMark())
      ->type_name("")
      ->required();
}

}  // namespace mezzo::tool
