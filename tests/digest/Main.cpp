// Makes the same calls on every platform and prints one digest of their results for each function.
//
//   mezzo_digest                    the digests
//   mezzo_digest --calls FUNCTION   that function's arguments and results, one call a line
//   mezzo_digest --locale NAME      the digests under that locale, which must have a decimal comma

#include "../support/ExportedCalls.h"
#include "../support/Reports.h"

#include <cinttypes>
#include <clocale>
#include <cstdio>
#include <locale>
#include <string_view>

namespace {

using namespace mezzo::test;

/// \param inPrintCalls print the calls instead of their digest.
void PrintDigestOrCalls(const ExportedCall& inCall, bool inPrintCalls) {
  constexpr std::uint64_t kCalls = 1 << 17;
  ReportRecorder reports;
  std::uint64_t hash = kHashOfNoLines;
  for (std::uint64_t seed = 0; seed < kCalls; ++seed) {
    Fields trace;
    DrawnArguments arguments(seed);
    if (inPrintCalls) arguments.trace = &trace;
    std::string line = Join(inCall.Run(std::move(arguments)));
    for (const auto& [condition, message, file, number, function, flag] : reports.Take())
      line += '\t' + condition + '|' + message.substr(0, message.find('\n')) + '|' + function;
    if (inPrintCalls) std::printf("%s\t=>\t%s\n", Join(trace).c_str(), line.c_str());
    Hash(hash, line);
  }
  if (!inPrintCalls) std::printf("%-40s %016" PRIx64 "\n", inCall.name.c_str(), hash);
}

}  // namespace

int main(int argc, char** argv) {
  const std::string_view option = argc == 3 ? argv[1] : "";
  const bool prints = option == "--calls";
  if (argc != 1 && !prints && option != "--locale") return 2;
  if (option == "--locale") {
    std::locale::global(std::locale(argv[2]));  // sets the locale of C functions, too
    if (std::localeconv()->decimal_point[0] != ',') return 1;
  }
  for (const ExportedCall& call : GetExportedCalls()) {
    if (!prints || call.name == argv[2]) PrintDigestOrCalls(call, prints);
  }
  return 0;
}
