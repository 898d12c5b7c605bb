// Takes the place of the host's assertion dialog and keeps what is reported to it.
#pragma once

#include <plinth/debug/AssertDialog.h>

#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace mezzo::test {

struct Report {
  std::string condition;
  std::string message;
  std::string file;
  int line;
  std::string function;
  bool flag;
};

/// Records every report while it lives; one at a time in a process.
class RecordedReports {
 public:
  RecordedReports() {
    Take();
    plinth::debug::SetAssertDialogHandler(&Record);
  }
  ~RecordedReports() { plinth::debug::SetAssertDialogHandler(nullptr); }
  RecordedReports(const RecordedReports&) = delete;
  RecordedReports& operator=(const RecordedReports&) = delete;

  /// Gives the reports so far and starts anew.
  std::vector<Report> Take() {
    const std::lock_guard lock(sMutex);
    return std::exchange(sReports, {});
  }

  /// What the dialog does with the reports that follow.
  void Silence(bool inSilence) { sSilence = inSilence; }
  void AnswerBreak(bool inBreak) { sBreak = inBreak; }

 private:
  static bool Record(bool& ioDisabled, const char* inCondition, const unsigned char* inMessage,
                     const char* inFile, int inLine, const char* inFunction, bool inFlag) {
    const std::lock_guard lock(sMutex);
    sReports.push_back({inCondition, reinterpret_cast<const char*>(inMessage), inFile, inLine,
                        inFunction, inFlag});
    if (sSilence) __atomic_store_n(&ioDisabled, true, __ATOMIC_RELAXED);
    return sBreak;
  }

  static inline std::mutex sMutex;
  static inline std::vector<Report> sReports;
  static inline bool sSilence = false;
  static inline bool sBreak = false;
};

}  // namespace mezzo::test
