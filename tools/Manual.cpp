// Writes the manual page or the bash completion of the command line, for the build to install.
#include "CommandLine.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/replace.hpp>

#include <cctype>
#include <iostream>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace mezzo::tool {
namespace {

std::vector<const CLI::App*> CommandsOf(const CLI::App& inTool) {
  return inTool.get_subcommands([](const CLI::App*) { return true; });
}

bool TakesValue(const CLI::Option& inOption) {
  return inOption.get_items_expected_max() > 0;
}

// ---- Manual page, in the macros of man(7)

std::string Escaped(std::string_view inText) {
  std::string escaped;
  for (const char character : inText) {
    switch (character) {
      case '\\':
        escaped += "\\e";
        break;
      case '-':
        escaped += "\\-";
        break;
      case '\'':
        escaped += "\\(aq";
        break;
      default:
        escaped += character;
    }
  }
  return escaped.starts_with('.') ? "\\&" + escaped : escaped;
}

void WriteOption(const CLI::Option& inOption) {
  const std::string names = inOption.get_name(inOption.get_positional(), true);
  std::cout << ".TP\n\\fB" << Escaped(boost::replace_all_copy(names, ",", ", ")) << "\\fR";
  if (TakesValue(inOption) && !inOption.get_type_name().empty()) {
    std::cout << " \\fI" << Escaped(inOption.get_type_name()) << "\\fR";
  }
  std::cout << "\n" << Escaped(inOption.get_description());
  if (!inOption.get_default_str().empty()) {
    std::cout << " (default: " << Escaped(inOption.get_default_str()) << ")";
  }
  std::cout << ".\n";
}

// A footer's headings stand at the margin, what belongs to them is indented.
void WriteFooter(const CLI::App& inApp, bool inHasSections) {
  std::istringstream lines(inApp.get_footer());
  bool isLiteral = false;
  const auto setLiteral = [&isLiteral](bool inIsLiteral) {
    if (isLiteral != inIsLiteral) std::cout << (inIsLiteral ? ".nf\n" : ".fi\n");
    isLiteral = inIsLiteral;
  };
  for (std::string line; std::getline(lines, line);) {
    if (line.empty()) continue;
    setLiteral(line.starts_with(' '));
    if (isLiteral) {
      std::cout << Escaped(line) << "\n";
    } else {
      line.erase(line.find(':'));
      std::cout << (inHasSections ? ".SH " + boost::to_upper_copy(line) : ".PP\n" + line) << "\n";
    }
  }
  setLiteral(false);
}

void WriteCommand(const CLI::App& inCommand) {
  std::cout << ".SS mezzo " << inCommand.get_name() << "\n"
            << Escaped(inCommand.get_description()) << ".\n";
  bool takesTimeline = false;
  for (const CLI::Option* const option : inCommand.get_options()) {
    if (option->get_group() == kTimelineGroup) {
      takesTimeline = true;
    } else if (option != inCommand.get_help_ptr()) {
      WriteOption(*option);
    }
  }
  if (takesTimeline) std::cout << ".PP\nTakes the timeline options, too.\n";
  WriteFooter(inCommand, false);
}

void WriteTimelineOptions(const CLI::App& inTool) {
  std::set<std::string> written;
  for (const CLI::App* const command : CommandsOf(inTool)) {
    for (const CLI::Option* const option : command->get_options()) {
      if (option->get_group() != kTimelineGroup) continue;
      if (written.insert(option->get_name()).second) WriteOption(*option);
    }
  }
}

void WriteManual(const CLI::App& inTool, std::string_view inDate) {
  const std::string description = inTool.get_description();
  const std::size_t headlineEnd = description.find('.');
  std::string headline = description.substr(0, headlineEnd);
  headline[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(headline[0])));
  std::cout << ".TH MEZZO 1 " << inDate << " \"mezzo " MEZZO_TOOL_VERSION "\"\n"
            << ".SH NAME\nmezzo \\- " << Escaped(headline) << "\n"
            << ".SH SYNOPSIS\n.B mezzo\n.I COMMAND\n[\\fIOPTIONS\\fR] [\\fIARGUMENTS\\fR]\n"
            << ".SH DESCRIPTION\n"
            << Escaped(description.substr(description.find_first_not_of(".\n", headlineEnd)))
            << "\n.SH COMMANDS\n";
  for (const CLI::App* const command : CommandsOf(inTool)) WriteCommand(*command);
  std::cout << ".SH TIMELINE OPTIONS\n";
  WriteTimelineOptions(inTool);
  std::cout << ".SH OPTIONS\n";
  for (const CLI::Option* const option : inTool.get_options()) WriteOption(*option);
  WriteFooter(inTool, true);
}

// ---- Completion

// A command for the shell that offers values of a kind; nothing for kinds that only a person knows.
std::string OfferOf(const std::string& inKind) {
  std::string words;
  if (inKind == kFormatValue) {
    for (const DisplayFormat& format : DisplayFormats()) words += " " + std::string(format.name);
  } else if (inKind == kHandlerValue) {
    for (const std::string& name : HandlerNames()) words += " " + name;
  } else if (inKind == kFileValue) {
    return "compgen -f -- \"$current\"";
  }
  return words.empty() ? ":" : "compgen -W '" + words.substr(1) + "' -- \"$current\"";
}

void WriteOffer(const std::string& inPattern, const std::string& inOffer) {
  std::cout << "    " << inPattern << ") " << inOffer << " ;;\n";
}

std::string CompleteFirst(const CLI::App& inTool) {
  std::string words;
  for (const CLI::App* const command : CommandsOf(inTool))
    words.append(command->get_name()).append(" ");
  return "compgen -W '" + words + "--help --version' -- \"$current\"";
}

/// The shell pattern of a command and the word before the one that is completed.
std::string Quoted(const std::string& inCommand, const std::string& inWord) {
  return std::string("'").append(inCommand).append(" ").append(inWord).append("'");
}

void WriteCommandCompletion(const CLI::App& inCommand) {
  const std::string& name = inCommand.get_name();
  std::string options;
  for (const CLI::Option* const option : inCommand.get_options()) {
    if (option->get_positional()) {
      const std::string offer = OfferOf(option->get_name(true));
      if (offer != ":") WriteOffer(Quoted(name, name), offer);
      continue;
    }
    const std::string longName = "--" + option->get_lnames().front();
    options.append(" ").append(longName);
    if (TakesValue(*option)) {
      WriteOffer(Quoted(name, longName), OfferOf(option->get_type_name()));
    }
  }
  WriteOffer("'" + name + " '*", "compgen -W '" + options.substr(1) + "' -- \"$current\"");
}

void WriteCompletion(const CLI::App& inTool) {
  std::cout << "# bash completion for mezzo                             -*- shell-script -*-\n"
            << "_mezzo_offers() {\n"
            << "  local current=$1\n"
            << "  case \"$2 $3\" in\n";
  for (const CLI::App* const command : CommandsOf(inTool)) WriteCommandCompletion(*command);
  WriteOffer("*", CompleteFirst(inTool));
  std::cout
      << "  esac\n"
      << "}\n\n"
      << "_mezzo() {\n"
      << "  local command=\n"
      << "  if ((COMP_CWORD > 1)); then command=${COMP_WORDS[1]}; fi\n"
      << "  mapfile -t COMPREPLY < <(_mezzo_offers \"${COMP_WORDS[COMP_CWORD]}\" \"$command\" \\\n"
      << "    \"${COMP_WORDS[COMP_CWORD - 1]}\")\n"
      << "}\n\n"
      << "complete -o filenames -F _mezzo mezzo\n";
}

}  // namespace
}  // namespace mezzo::tool

int main(int inCount, char** inArguments) {
  const std::vector<std::string_view> arguments(inArguments + 1, inArguments + inCount);
  const mezzo::tool::CommandLine commandLine;
  if (arguments.size() == 2 && arguments[0] == "manual") {
    mezzo::tool::WriteManual(commandLine.Tree(), arguments[1]);
  } else if (arguments.size() == 1 && arguments[0] == "completion") {
    mezzo::tool::WriteCompletion(commandLine.Tree());
  } else {
    std::cerr << "usage: mezzo_manual manual DATE | completion\n";
    return 2;
  }
  return std::cout.flush() ? 0 : 1;
}
