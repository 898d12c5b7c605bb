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
  bool dialogFlag;
};

/// Records reports while it exists. Only one may exist at a time, and only one thread may report.
class ReportRecorder {
 public:
  ReportRecorder() {
    Take();
    sSilences = sRequestsBreak = false;
    plinth::debug::SetAssertDialogHandler(&Record);
  }
  ~ReportRecorder() { plinth::debug::SetAssertDialogHandler(nullptr); }

  /// Gives the reports so far and starts anew.
  std::vector<Report> Take() { return std::exchange(sReports, {}); }

  /// What the dialog does with the reports that follow.
  static inline bool sSilences, sRequestsBreak;

 private:
  static bool Record(bool& ioDisabled, const char* inCondition, const unsigned char* inMessage,
                     const char* inFile, int inLine, const char* inFunction, bool inFlag) {
    sReports.push_back({inCondition, reinterpret_cast<const char*>(inMessage), inFile, inLine,
                        inFunction, inFlag});
    if (sSilences) __atomic_store_n(&ioDisabled, true, __ATOMIC_RELAXED);
    return sRequestsBreak;
  }

  static inline std::vector<Report> sReports;
};

}  // namespace mezzo::test
