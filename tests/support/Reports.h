// Takes the place of the host's assertion dialog and keeps what is reported to it.
#pragma once

#include <plinth/debug/AssertDialog.h>

#include <string>
#include <utility>
#include <vector>

namespace mezzo::test {

struct Report {
  std::string condition, message, file;
  int line;
  std::string function;
  bool flag;
};

/// Records every report of one thread while it lives; one at a time in a process.
class RecordedReports {
 public:
  RecordedReports() {
    Take();
    silences = answersBreak = false;
    plinth::debug::SetAssertDialogHandler(&Record);
  }
  ~RecordedReports() { plinth::debug::SetAssertDialogHandler(nullptr); }

  /// Gives the reports so far and starts anew.
  std::vector<Report> Take() { return std::exchange(sReports, {}); }

  /// What the dialog does with the reports that follow.
  static inline bool silences, answersBreak;

 private:
  static bool Record(bool& ioDisabled, const char* inCondition, const unsigned char* inMessage,
                     const char* inFile, int inLine, const char* inFunction, bool inFlag) {
    sReports.push_back({inCondition, reinterpret_cast<const char*>(inMessage), inFile, inLine,
                        inFunction, inFlag});
    if (silences) __atomic_store_n(&ioDisabled, true, __ATOMIC_RELAXED);
    return answersBreak;
  }

  static inline std::vector<Report> sReports;
};

}  // namespace mezzo::test
