// A small host: uses the library from load to exit, as an application does. HostExample.txt is its
// output.

#include <Utility/AppRunningState.h>
#include <Utility/TimeConversionUtils.h>

#include <plinth/appstatemanager/AppStateManager.h>
#include <plinth/config/InitializerRegistrar.h>

#include <boost/locale/encoding_utf.hpp>

#include <cstdint>
#include <iomanip>
#include <iostream>
#include <string>

namespace {

using namespace mezzo::utility;

constexpr std::int32_t kSampleRate = 48000;
constexpr std::int32_t kFramesPerSecond = 30;

std::string EncodeUTF8(const plinth::UTF16String& inText) {
  return boost::locale::conv::utf_to_utf<char>(inText.data(), inText.data() + inText.size());
}

// The library registers itself when it is loaded, before main.
void ShowModules() {
  for (const auto& module : plinth::config::InitializerRegistrar::GetRegistrations()) {
    std::cout << "module " << module.name << ", flags " << module.flags << "\n\n";
  }
}

// The host sets the state; its modules query the library.
void WalkThroughApplicationStates() {
  std::cout << "state  initialized  event loop  will terminate  terminating\n";
  for (std::int32_t state = 0; state <= 5; ++state) {
    plinth::appstatemanager::SetState(state);
    std::cout << std::boolalpha << std::setw(5) << state << std::setw(13) << IsInitialized()
              << std::setw(12) << IsEventLoopRunning() << std::setw(16) << WillTerminate()
              << std::setw(13) << IsTerminating() << '\n';
  }
  std::cout << '\n';
}

// The scoped connection disconnects the slot before anything that the slot uses is destroyed.
void FollowActivation() {
  const boost::signals2::scoped_connection connection = GetAppActivatedSignal().connect(
      [](bool inActivated) { std::cout << (inActivated ? "activated\n" : "deactivated\n"); });
  NotifyAppActivated(true);
  NotifyAppActivated(false);
  std::cout << '\n';
}

// One string with capacity for the longest display serves all of them without allocation.
void ShowFormats() {
  const BeatInfo fourFour{960, 120.0, 4, 4, 0.0};
  const TimecodeFormat formats[] = {kTimecodeFormat_SMPTE, kTimecodeFormat_SMPTEDropFrame,
                                    kTimecodeFormat_Decimal, kTimecodeFormat_BarsAndBeats,
                                    kTimecodeFormat_Beats};
  plinth::UTF16String text;
  text.reserve(64);
  std::cout << " samples        SMPTE   drop frame     decimal  bars-beats        beats\n";
  for (const std::int64_t position : {-24000, 0, 36000, 480000, 2882879, 2882880}) {
    std::cout << std::setw(8) << position;
    for (const TimecodeFormat format : formats) {
      ConvertSamplesToTimecode(text, position, kSampleRate, format, kFramesPerSecond, &fourFour,
                               false);
      std::cout << std::setw(13) << EncodeUTF8(text);
    }
    std::cout << '\n';
  }
  std::cout << '\n';
}

// The parser is lenient: any non-digit separates fields, and leading fields may be omitted.
void ReadTypedTimecode(const plinth::UTF16String& inText) {
  std::int64_t position = 0;
  ConvertTimecodeToSamples(position, inText, kTimecodeFormat_SMPTEDropFrame, kSampleRate,
                           kFramesPerSecond, nullptr, false);
  plinth::UTF16String label;
  ConvertSamplesToTimecode(label, position, kSampleRate, kTimecodeFormat_SMPTEDropFrame,
                           kFramesPerSecond, nullptr, false);
  std::cout << "typed " << EncodeUTF8(inText) << ": sample " << position << ", shown as "
            << EncodeUTF8(label) << '\n';
}

}  // namespace

int main() {
  ShowModules();
  WalkThroughApplicationStates();
  FollowActivation();
  ShowFormats();
  ReadTypedTimecode(u"1;00;02");
}
