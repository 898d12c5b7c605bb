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
#include <cstring>
#include <locale>
#include <sstream>
#include <string_view>

namespace {

using namespace mezzo::test;

/// \param inPrint prints the calls instead of their digest.
void PrintDigest(const ExportedCall& inCall, bool inPrint) {
  constexpr std::uint64_t kCalls = 1 << 17;
  RecordedReports reports;
  std::uint64_t hash = kNoLines;
  for (std::uint64_t seed = 0; seed < kCalls; ++seed) {
    Fields trace;
    DrawnArguments arguments(seed);
    if (inPrint) arguments.trace = &trace;
    std::string line = Joined(inCall.Results(std::move(arguments)));
    for (const auto& [condition, message, file, number, function, flag] : reports.Take())
      line += '\t' + condition + '|' + message.substr(0, message.find('\n')) + '|' + function;
    if (inPrint) std::printf("%s\t=>\t%s\n", Joined(trace).c_str(), line.c_str());
    Hash(hash, line);
  }
  if (!inPrint) std::printf("%-40s %016" PRIx64 "\n", inCall.name.c_str(), hash);
}

/// \return false when C and C++ do not both write a comma then.
bool SetLocale(const char* inName) {
  if (std::setlocale(LC_ALL, inName) == nullptr) return false;
  std::locale::global(std::locale(inName));
  char text[16];
  std::snprintf(text, sizeof text, "%.1f", 0.5);
  std::ostringstream stream;
  stream << 1234.5;
  return std::strcmp(text, "0,5") == 0 && stream.str() == "1.234,5";
}

}  // namespace

int main(int argc, char** argv) {
  const std::string_view option = argc == 3 ? argv[1] : "";
  if (argc != 1 && option != "--calls" && option != "--locale") return 2;
  if (option == "--locale" && !SetLocale(argv[2])) {
    std::fprintf(stderr, "no decimal comma under the locale %s\n", argv[2]);
    return 1;
  }
  const bool prints = option == "--calls";
  for (const ExportedCall& call : ExportedCalls()) {
    if (!prints || call.name == argv[2]) PrintDigest(call, prints);
  }
  return 0;
}
