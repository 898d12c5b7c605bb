#include <plinth/debug/AssertDialog.h>

#include <atomic>
#include <cstdio>
#include <fstream>
#include <string>
#include <string_view>

#ifdef __APPLE__
#include <sys/sysctl.h>
#include <unistd.h>
#endif

namespace plinth::debug {

namespace {

bool WriteToStandardError(bool&, const char* inCondition, const unsigned char* inMessage,
                          const char* inFile, int inLine, const char* inFunction, bool) {
  std::string_view message = reinterpret_cast<const char*>(inMessage);
  if (message.ends_with('\n')) message.remove_suffix(1);
  // A single call keeps the reports of several threads on separate lines.
  std::fprintf(stderr, "%s:%d: assertion failed: %s%s%.*s in %s\n", inFile, inLine, inCondition,
               message.empty() ? "" : ": ", static_cast<int>(message.size()), message.data(),
               inFunction);
  return false;
}

/// Null: the default handler.
constinit std::atomic<AssertDialogHandler> sHandler{nullptr};

}  // namespace

AssertDialogHandler SetAssertDialogHandler(AssertDialogHandler inHandler) noexcept {
  return sHandler.exchange(inHandler);
}

bool BreakAfterAssertDialog(bool& ioDisabled, const char* inCondition,
                            const unsigned char* inMessage, const char* inFile, int inLine,
                            const char* inFunction, bool inFlag) {
  const AssertDialogHandler handler = sHandler.load();
  const auto show = handler != nullptr ? handler : &WriteToStandardError;
  return show(ioDisabled, inCondition, inMessage, inFile, inLine, inFunction, inFlag);
}

#ifdef __APPLE__

bool IsDebuggerAttached() {
  int query[] = {CTL_KERN, KERN_PROC, KERN_PROC_PID, getpid()};
  kinfo_proc process{};
  std::size_t size = sizeof(process);
  return sysctl(query, std::size(query), &process, &size, nullptr, 0) == 0 &&
         (process.kp_proc.p_flag & P_TRACED) != 0;
}

#else

bool IsDebuggerAttached() {
  constexpr std::string_view kTracer = "TracerPid:";
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(kTracer)) return line.find_first_of("123456789") != std::string::npos;
  }
  return false;
}

#endif

}  // namespace plinth::debug
