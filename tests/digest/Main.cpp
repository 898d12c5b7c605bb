// Makes the same calls on every platform and prints one digest of their results for each function.
//
//   mezzo_digest                      the digests
//   mezzo_digest --calls FUNCTION     that function's arguments and results, one call a line
//   mezzo_digest --locale NAME        the digests under that locale, which must have a decimal
//   comma

#include "../support/ExportedCalls.h"

#include <plinth/debug/AssertDialog.h>

#include <array>
#include <cinttypes>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <locale>
#include <sstream>
#include <string>
#include <string_view>

namespace {

using namespace mezzo::test;

constexpr std::uint64_t kCallsOfEachFunction = 1 << 17;

std::string sReports;

bool Record(bool&, const char* inCondition, const unsigned char* inMessage, const char*, int,
            const char* inFunction, bool) {
  const std::string_view message(reinterpret_cast<const char*>(inMessage));
  sReports += std::string("\t") + inCondition + '|';
  sReports += message.substr(0, message.find('\n'));
  sReports += std::string("|") + inFunction;
  return false;
}

/// \param outTrace receives the arguments, unless null.
std::string Results(const ExportedCall& inCall, std::uint64_t inSeed, Fields* outTrace = nullptr) {
  sReports.clear();
  DrawnArguments arguments(inSeed, outTrace);
  return Joined(inCall.call(arguments)) + sReports;
}

void PrintDigest(const ExportedCall& inCall) {
  Digest digest;
  for (std::uint64_t seed = 0; seed < kCallsOfEachFunction; ++seed) {
    digest.Add(Results(inCall, seed));
  }
  std::printf("%-40s %016" PRIx64 "\n", inCall.name, digest.Value());
}

void PrintCalls(const ExportedCall& inCall) {
  for (std::uint64_t seed = 0; seed < kCallsOfEachFunction; ++seed) {
    Fields trace;
    const std::string results = Results(inCall, seed, &trace);
    std::printf("%s\t=>\t%s\n", Joined(trace).c_str(), results.c_str());
  }
}

/// \return false when C and C++ do not both write a comma then.
bool SetLocale(const char* inName) {
  if (std::setlocale(LC_ALL, inName) == nullptr) return false;
  std::locale::global(std::locale(inName));
  std::array<char, 16> text;
  std::snprintf(text.data(), text.size(), "%.1f", 0.5);
  std::ostringstream stream;
  stream << 1234.5;
  return std::strcmp(text.data(), "0,5") == 0 && stream.str() == "1.234,5";
}

}  // namespace

int main(int argc, char** argv) {
  plinth::debug::SetAssertDialogHandler(&Record);
  const std::string_view option = argc == 3 ? argv[1] : "";
  if (argc != 1 && option != "--calls" && option != "--locale") return 2;
  if (option == "--locale" && !SetLocale(argv[2])) {
    std::fprintf(stderr, "no decimal comma under the locale %s\n", argv[2]);
    return 1;
  }
  for (const ExportedCall& call : ExportedCalls()) {
    if (option != "--calls") {
      PrintDigest(call);
    } else if (std::string_view(call.name) == argv[2]) {
      PrintCalls(call);
    }
  }
  return 0;
}
