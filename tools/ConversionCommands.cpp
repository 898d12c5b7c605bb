// The commands that convert: show, parse, format and convert, and the list of formats.
#include "Commands.h"
#include "Conversion.h"
#include "JSONOutput.h"
#include "Messages.h"
#include "Notation.h"
#include "TableRow.h"

#include <cerrno>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <iterator>
#include <regex>
#include <string_view>
#include <system_error>
#include <utility>

namespace mezzo::tool {
namespace {

/// The texts to convert: the arguments, or the lines of standard input in place of "-".
class TextSource {
 public:
  explicit TextSource(const Settings& inSettings)
      : fArguments(inSettings.texts),
        fHasFields(inSettings.field > 0),
        fDelimiter(inSettings.delimiter) {
    if (fArguments.empty()) fArguments = {"-"};
  }

  bool GetNext(std::string& outText) {
    ++fNumber;
    fByteOrderMark.clear();
    fCarriageReturn.clear();
    for (; fArgument < fArguments.size(); ++fArgument, fFirstLine = fLine = 0) {
      if (fArguments[fArgument] != "-") {
        outText = fArguments[fArgument++];
        return true;
      }
      if (ReadLine(outText)) return true;
    }
    return false;
  }

  /// \return the number of the text among all arguments and lines.
  std::size_t GetNumber() const { return fNumber; }

  /// \return the last line of a row that spans lines, or else 0.
  std::size_t GetLastLine() const { return fLine > fFirstLine ? fLine : 0; }

  bool IsArgument() const { return fFirstLine == 0; }

  std::string GetPlace() const {
    return IsArgument() ? "argument " + std::to_string(fArgument)
                        : "line " + std::to_string(fFirstLine);
  }

  /// \return the text with the byte order mark and the carriage return of its line.
  std::string Restore(const std::string& inText) const {
    return fByteOrderMark + inText + fCarriageReturn;
  }

 private:
  bool ReadLine(std::string& outLine) {
    // Flush, so that a program that feeds the tool line by line gets each answer before it sends
    // the next line.
    if (std::cin.rdbuf()->in_avail() <= 0) std::cout.flush();
    if (!std::getline(std::cin, outLine)) {
      if (!std::cin.bad()) return false;
      throw UserError("cannot read standard input: " + std::generic_category().message(errno));
    }
    fFirstLine = ++fLine;
    if (fLine == 1) {
      constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
      if (outLine.starts_with(kByteOrderMark)) fByteOrderMark = kByteOrderMark;
      if (outLine.starts_with("\xFF\xFE") || outLine.starts_with("\xFE\xFF"))
        throw UserError("standard input is UTF-16, not UTF-8");
    }
    if (fHasFields) ReadQuotedLines(outLine);
    if (outLine.ends_with('\r')) fCarriageReturn = '\r';
    outLine = outLine.substr(fByteOrderMark.size(),
                             outLine.size() - fByteOrderMark.size() - fCarriageReturn.size());
    return true;
  }

  /// Appends the lines of a quoted field that spans lines.
  void ReadQuotedLines(std::string& ioRow) {
    FieldScanner scanner(fDelimiter);
    std::size_t read = fByteOrderMark.size();
    const auto isOpen = [&] {
      while (read < ioRow.size()) scanner.ReadCharacter(ioRow[read++]);
      return scanner.IsInQuotes();
    };
    for (std::string line; isOpen() && std::getline(std::cin, line); ++fLine) ioRow += '\n' + line;
  }

  std::vector<std::string> fArguments;
  bool fHasFields;
  char fDelimiter;
  std::size_t fNumber = 0;
  std::size_t fArgument = 0;
  std::size_t fLine = 0;       ///< of standard input; 0 for an argument
  std::size_t fFirstLine = 0;  ///< of the row
  std::string fByteOrderMark;
  std::string fCarriageReturn;
};

/// Adds a note if only one of the formats is pulled down, unless the names of frame rates selected
/// both.
void CheckRates(const Settings& inSettings, const Timeline& inFrom, const Timeline& inTo,
                Conversion& ioConversion) {
  const FormatChoice& from = inSettings.fromFormat;
  const FormatChoice& to = inSettings.toFormat;
  const bool isPulledDown = IsPulledDown(from.format);
  if ((from.framesPerSecond && to.framesPerSecond) || isPulledDown == IsPulledDown(to.format))
    return;
  if (!GetNotation(inFrom, from.format).HasFrames() || !GetNotation(inTo, to.format).HasFrames())
    return;
  const std::string rate = std::to_string(inTo.framesPerSecond);
  ioConversion.notes.push_back(
      {kConversionNoteKind_Rate, Quote(GetName((isPulledDown ? from : to).format)) + " has " +
                                     rate + " x 1000/1001 frames per second, but " +
                                     Quote(GetName((isPulledDown ? to : from).format)) + " has " +
                                     rate});
}

Conversion ConvertText(const Settings& inSettings, const Timeline& inFrom, const Timeline& inTo,
                       const std::string& inText) {
  const utility::TimecodeFormat from = inSettings.fromFormat.format;
  const utility::TimecodeFormat to = inSettings.toFormat.format;
  Conversion conversion = inSettings.isLenient ? ParseLeniently(inFrom, from, inText)
                                               : ParseChecked(inFrom, from, inText);
  if (to != utility::kTimecodeFormat_Samples) FormatChecked(inTo, to, conversion);
  CheckRates(inSettings, inFrom, inTo, conversion);
  return conversion;
}

std::size_t CountNumbers(const std::string& inText) {
  static const std::regex sNumber("[0-9]+");
  return static_cast<std::size_t>(
      std::distance(std::sregex_iterator(inText.begin(), inText.end(), sNumber), {}));
}

/// Adds a note if the delimiter may have split a text that contains it.
void CheckDelimiter(const Settings& inSettings, const Timeline& inFrom, const TableRow& inRow,
                    Conversion& ioConversion) {
  if (!inRow.MayHaveBeenSplit()) return;
  const utility::TimecodeFormat from = inSettings.fromFormat.format;
  const char delimiter = inSettings.delimiter;
  const bool isSeparator =
      delimiter == ':' || delimiter == '.' || (delimiter == ';' && HasDropFrameLabels(from));
  const std::size_t fieldCount = GetNotation(inFrom, from).fields.size();
  if (!isSeparator || fieldCount <= 2 || CountNumbers(inRow.GetField()) >= fieldCount) return;
  ioConversion.notes.push_back({kConversionNoteKind_Delimiter,
                                Quote(inRow.GetField()) +
                                    " was converted alone; texts that contain the delimiter " +
                                    Quote(std::string(1, delimiter)) + " need quotes"});
}

/// A converted text as it is printed, or the reason why there is none.
struct Result {
  Conversion conversion{};
  std::string output;
  std::string error{};
};

/// Converts a line, or a field of it. A text that cannot be converted keeps its place in the
/// output: an empty line, or the unchanged row of a table.
Result ConvertLine(const Settings& inSettings, const Timeline& inFrom, const Timeline& inTo,
                   const TextSource& inSource, const std::string& inLine) {
  try {
    const TableRow row(inLine, inSettings.field, inSettings.delimiter);
    Conversion conversion = ConvertText(inSettings, inFrom, inTo, row.GetField());
    CheckDelimiter(inSettings, inFrom, row, conversion);
    if (const std::size_t lastLine = inSource.GetLastLine(); lastLine > 0) {
      conversion.notes.push_back(
          {kConversionNoteKind_Lines, "the row ends in line " + std::to_string(lastLine) +
                                          ", because a quoted field spans lines"});
    }
    const bool toSamples = inSettings.toFormat.format == utility::kTimecodeFormat_Samples;
    const std::string text = toSamples ? std::to_string(conversion.position) : conversion.text;
    return {conversion, row.ReplaceField(text)};
  } catch (const UserError& error) {
    std::error_code status;
    const bool isFile = inSource.IsArgument() && std::filesystem::is_regular_file(inLine, status);
    return {.output = inSettings.field > 0 ? inLine : "",
            .error = isFile ? Quote(inLine) + " is a file; put '<' before it to convert its lines"
                            : error.what()};
  }
}

JSON MakeJSON(std::size_t inNumber, const std::string& inLine, const Result& inResult) {
  if (!inResult.error.empty())
    return {{"item", inNumber}, {"text", inLine}, {"error", inResult.error}};
  JSON entry{{"item", inNumber},
             {"position", inResult.conversion.position},
             {"text", inResult.conversion.text}};
  AddConversionNotes(entry, inResult.conversion.notes);
  return entry;
}

JSON MakeJSON(const Timeline& inTimeline) {
  const utility::BeatInfo& beats = inTimeline.beats;
  return {{"rate", inTimeline.sampleRate},
          {"fps", inTimeline.framesPerSecond},
          {"tempo", beats.dTempo},
          {"meter", std::to_string(beats.iBeatsPerBar) + "/" + std::to_string(beats.iBeatUnit)},
          {"ticks", beats.iTicksPerBeat},
          {"offset_ms", beats.dOffsetMs},
          {"duration", inTimeline.isDuration}};
}

/// A position in one format of a list. The shown text is in quotes because it may begin with
/// blanks; the reason why there is none is in parentheses.
struct ListedFormat {
  JSON json;
  std::string shown;
  std::vector<ConversionNote> notes;

  ListedFormat(const Timeline& inTimeline, const DisplayFormat& inFormat, std::int64_t inPosition)
      : json{{"number", static_cast<int>(inFormat.format)}, {"name", inFormat.name}} {
    std::string reason = ExplainUnavailable(inTimeline, inFormat.format);
    try {
      if (reason.empty()) {
        Conversion conversion{inPosition, "", {}};
        FormatChecked(inTimeline, inFormat.format, conversion);
        json["text"] = conversion.text;
        notes = conversion.notes;
        AddConversionNotes(json, notes);
        shown = '"' + conversion.text + '"';
        return;
      }
    } catch (const UserError&) {
      reason = "out of range";
    }
    json["text"] = nullptr;
    json["notes"] = {reason};
    shown = "(" + reason + ")";
  }
};

std::ostream& PrintNumberAndName(const DisplayFormat& inFormat) {
  return std::cout << std::right << std::setw(2) << inFormat.format << "  " << std::left
                   << std::setw(16) << inFormat.name << ' ';
}

}  // namespace

Timeline Settings::GetTimeline(const FormatChoice& inChoice) const {
  Timeline chosen = timeline;
  const auto named = inChoice.framesPerSecond;
  const auto rateOfEitherName =
      fromFormat.framesPerSecond ? fromFormat.framesPerSecond : toFormat.framesPerSecond;
  if (framesPerSecond && named && *framesPerSecond != *named) {
    throw UserError("the format's name selects " + std::to_string(*named) +
                    " frames per second, but --fps selects " + std::to_string(*framesPerSecond));
  }
  const std::int32_t fallback = rateOfEitherName.value_or(timeline.framesPerSecond);
  chosen.framesPerSecond = named.value_or(framesPerSecond.value_or(fallback));
  RequireAvailable(chosen, inChoice.format);
  return chosen;
}

int Show(const Settings& inSettings) {
  const Timeline timeline = inSettings.GetTimeline(inSettings.fromFormat);
  const Conversion parsed = ConvertText(inSettings, timeline, timeline, inSettings.argument);
  ConversionNotePrinter notes;
  notes.Print(parsed.notes);
  JSON result{{"position", parsed.position}};
  result.update(MakeJSON(timeline));
  AddConversionNotes(result, parsed.notes);
  for (const DisplayFormat& format : kDisplayFormats) {
    const ListedFormat listed(timeline, format, parsed.position);
    result["formats"].push_back(listed.json);
    if (inSettings.isJSON) continue;
    notes.Print(listed.notes);
    PrintNumberAndName(format) << listed.shown << '\n';
  }
  if (inSettings.isJSON) std::cout << FormatJSON(result) << '\n';
  return kExitStatus_Success;
}

int Convert(const Settings& inSettings) {
  const Timeline from = inSettings.GetTimeline(inSettings.fromFormat);
  const Timeline to = inSettings.GetTimeline(inSettings.toFormat);
  TextSource source(inSettings);
  ConversionNotePrinter notes;
  int status = kExitStatus_Success;
  const char* separator = "[\n";
  std::string line;
  const auto print = [&](const std::string& inLine) {
    std::cout << (inSettings.field > 0 ? source.Restore(inLine) : inLine) << '\n';
  };
  const auto complain = [&](const std::string& inMessage) {
    status = kExitStatus_SomeUnconverted;
    PrintMessage(source.GetPlace() + ": " + inMessage);
  };
  if (inSettings.hasHeader && source.GetNext(line)) {
    try {
      // If a quote in the header has no end, every line has become a part of the header.
      const TableRow header(line, inSettings.field > 0 ? 1 : 0, inSettings.delimiter);
    } catch (const UserError& error) {
      complain(error.what());
    }
    if (!inSettings.isJSON) print(line);
  }
  while (std::cout && source.GetNext(line)) {
    const Result result = ConvertLine(inSettings, from, to, source, line);
    notes.Print(result.conversion.notes, source.GetPlace() + ": ");
    if (!result.error.empty()) complain(result.error);
    if (inSettings.isJSON) {
      std::cout << separator << FormatJSON(MakeJSON(source.GetNumber(), line, result), -1) << '\n';
      separator = ",";
    } else {
      print(result.output);
    }
  }
  if (inSettings.isJSON) std::cout << (*separator == '[' ? "[]\n" : "]\n");
  return status;
}

int ListFormats(const Settings& inSettings) {
  constexpr std::int64_t kExamplePosition = 3012000;  // 62.75 seconds at the default rate
  JSON list = JSON::array();
  for (const DisplayFormat& format : kDisplayFormats) {
    ListedFormat listed(Timeline{}, format, kExamplePosition);
    listed.json["meaning"] = format.meaning;
    list.push_back(listed.json);
    if (inSettings.isJSON) continue;
    PrintNumberAndName(format) << std::setw(17) << listed.shown << format.meaning << '\n';
  }
  if (inSettings.isJSON) {
    std::cout << FormatJSON(list) << '\n';
    return kExitStatus_Success;
  }
  std::cout << "\nThe name of a frame rate selects a format and the nominal rate:\n\n";
  for (const RateName& rate : kRateNames) {
    std::cout << std::left << std::setw(8) << rate.name << ' ' << std::setw(15)
              << GetName(rate.format) << "--fps " << rate.framesPerSecond << '\n';
  }
  return kExitStatus_Success;
}

}  // namespace mezzo::tool
