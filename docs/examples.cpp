// One worked example of every function; the reference documentation shows the marked parts, and the
// tests run the program.

#include <Debug/ErrorHandling.h>
#include <Utility/AppRunningState.h>
#include <Utility/MusicalNoteUtils.h>
#include <Utility/SerializationUtils.h>
#include <Utility/TimeConversionUtils.h>

#include <plinth/appstatemanager/AppStateManager.h>
#include <plinth/debug/DebugDatabase.h>

#include <cstdint>

// The examples are checks in every build.
#undef NDEBUG
#include <cassert>

using namespace mezzo::utility;

namespace {

void WriteTimecode() {
  //! [ConvertSamplesToTimecode-flags]
  plinth::UTF16String text;

  // No flag: timecode at 30 frames per second.
  ConvertSamplesToTimecode(text, 480000, 48000, 30, false, false, false, false, false, false,
                           false);
  assert(text == u"00:00:10:00");

  // Drop-frame labels of a frame rate of 30 × 1000/1001.
  ConvertSamplesToTimecode(text, 480000, 48000, 30, true, false, false, false, false, false, false);
  assert(text == u"00;00;09;29");

  // No leading zeros, but hundredths of a frame.
  ConvertSamplesToTimecode(text, 480800, 48000, 30, false, false, false, false, true, true, false);
  assert(text == u"10:00.50");
  //! [ConvertSamplesToTimecode-flags]
}

void WriteAnyFormat() {
  //! [ConvertSamplesToTimecode-format]
  const BeatInfo waltz{960, 90.0, 3, 4, 0.0};  // 960 ticks a beat, 90 beats a minute, 3/4
  plinth::UTF16String text;
  text.reserve(64);  // has the room for every display, so no call allocates

  ConvertSamplesToTimecode(text, 480000, 48000, kTimecodeFormat_SMPTE, 24, nullptr, false);
  assert(text == u"00:00:10:00");
  ConvertSamplesToTimecode(text, 480000, 48000, kTimecodeFormat_BarsAndBeats, 24, &waltz, false);
  assert(text == u"6:1.000");
  ConvertSamplesToTimecode(text, 480000, 48000, kTimecodeFormat_Milliseconds, 24, nullptr, false);
  assert(text == u"10000");
  //! [ConvertSamplesToTimecode-format]
}

void ReadTimecode() {
  //! [ConvertTimecodeToSamples-rate]
  std::int64_t position = 0;

  // The first sample at or after the start of the labelled frame, rounded up.
  ConvertTimecodeToSamples(position, u"00;00;09;29", 48000, 30, true, true);
  assert(position == 478879);

  // Fields fill up from the right, and whatever is no digit separates them.
  ConvertTimecodeToSamples(position, u"1 min 10 s 0 f", 48000, 30, false, false);
  assert(position == 70 * 48000);
  //! [ConvertTimecodeToSamples-rate]
}

void ReadAnyFormat() {
  //! [ConvertTimecodeToSamples-format]
  BeatInfo fourFour{960, 120.0, 4, 4, 0.0};
  std::int64_t position = 0;

  ConvertTimecodeToSamples(position, u"1:02.5", kTimecodeFormat_Decimal, 48000, 30, nullptr, false);
  assert(position == 3000000);  // 62.5 seconds
  ConvertTimecodeToSamples(position, u"2:3.480", kTimecodeFormat_BarsAndBeats, 48000, 30, &fourFour,
                           false);
  assert(position == 156000);  // 6.5 beats of half a second
  ConvertTimecodeToSamples(position, u"", kTimecodeFormat_SMPTE, 48000, 30, nullptr, false);
  assert(position == -1);  // nothing was typed
  //! [ConvertTimecodeToSamples-format]
}

void SplitDropFrames() {
  //! [DropFrameToHMSF]
  std::uint32_t hours = 0, minutes = 0, seconds = 0, frames = 0;
  DropFrameToHMSF(1800, 30, hours, minutes, seconds, frames);

  // Frame 1799 is 00;00;59;29. The labels 00;01;00;00 and 00;01;00;01 are left out.
  assert(hours == 0 && minutes == 1 && seconds == 0 && frames == 2);
  //! [DropFrameToHMSF]
}

void WriteClockTime() {
  //! [ConvertSamplesToDecimalTimecode]
  plinth::UTF16String text;
  ConvertSamplesToDecimalTimecode(text, 178707200, 48000, false);
  assert(text == u"1:02:03.066");
  ConvertSamplesToDecimalTimecode(text, 178707200, 48000, true);
  assert(text == u"1:02:03");
  ConvertSamplesToDecimalTimecode(text, -24000, 48000, false);
  assert(text == u"  -0:00.500");  // three places for the sign under an hour
  //! [ConvertSamplesToDecimalTimecode]
}

void WriteBarsAndBeats() {
  //! [ConvertSamplesToBarsAndBeats]
  const BeatInfo sixEight{480, 120.0, 6, 8, 0.0};  // eighths: a beat lasts a quarter of a second
  plinth::UTF16String text;

  // A position counts bars and beats from 1, a length counts from 0.
  ConvertSamplesToBarsAndBeats(text, 78000.0, 48000.0, sixEight, false, 2);
  assert(text == u"2:1.240");
  ConvertSamplesToBarsAndBeats(text, 78000.0, 48000.0, sixEight, true, 2);
  assert(text == u"1:0.240");

  // Precision 3 adds thousandths of a tick.
  ConvertSamplesToBarsAndBeats(text, 78010.0, 48000.0, sixEight, false, 3);
  assert(text == u"2:1.240.400");
  //! [ConvertSamplesToBarsAndBeats]
}

void WriteBeats() {
  //! [ConvertSamplesToBeats]
  plinth::UTF16String text;
  ConvertSamplesToBeats(text, 100000, 48000, 120.0);
  assert(text == u"4.167");
  ConvertSamplesToBeats(text, -60000, 48000, 120.0);
  assert(text == u"-2.500");
  //! [ConvertSamplesToBeats]
}

void ReadBarsAndBeats() {
  //! [ConvertBarsAndBeatsToSamples]
  const BeatInfo fourFour{960, 120.0, 4, 4, 250.0};  // bar 1 begins a quarter of a second in
  assert(ConvertBarsAndBeatsToSamples(u"1:1.000", 48000.0, fourFour, false) == 12000);
  assert(ConvertBarsAndBeatsToSamples(u"2", 48000.0, fourFour, false) == 108000);
  assert(ConvertBarsAndBeatsToSamples(u"0:1.480", 48000.0, fourFour, true) == 36000);
  //! [ConvertBarsAndBeatsToSamples]
}

void CompareBeatInfo() {
  //! [BeatInfo]
  const BeatInfo slow{960, 60.0, 4, 4, 0.0};
  BeatInfo changed = slow;
  assert(changed == slow);
  changed.dTempo = 61.0;
  assert(changed != slow);
  //! [BeatInfo]
}

void NameNotes() {
  //! [GetNoteString]
  plinth::UTF16String name;
  GetNoteString(name, 1, 4, false);
  assert(name == u"A♯/B♭4");
  GetNoteString(name, 3, 4, false);
  assert(name == u"C5");  // octave numbers change at C
  GetNoteString(name, 6, -1, true);
  assert(name == u"E♭");
  //! [GetNoteString]

  //! [SupportsFlatSymbol]
  assert(SupportsFlatSymbol());   // U+266D
  assert(SupportsSharpSymbol());  // U+266F
  //! [SupportsFlatSymbol]
}

void FindNotes() {
  //! [GetNoteFromFrequency]
  int octave = 0;
  assert(GetNoteFromFrequency(440.0f, &octave) == 0 && octave == 4);   // A4
  assert(GetNoteFromFrequency(261.63f, &octave) == 3 && octave == 3);  // middle C, written C4
  assert(GetNoteFromFrequency(870.0f, nullptr) == 12);                 // nearest to the next A
  //! [GetNoteFromFrequency]
}

void TranslateHandlers() {
  //! [GetNativeHandlerID]
  const plinth::utility::Guid handler = GetNativeHandlerID(kNativePluginIndex_RuvoWav);
  assert(handler != plinth::utility::Guid());
  assert(GetNativeHandlerID(kNativePluginIndex_Invalid) == plinth::utility::Guid());
  //! [GetNativeHandlerID]

  //! [TranslateToHumanReadableMediaHandler]
  plinth::UTF16String name;
  assert(TranslateToHumanReadableMediaHandler(handler.AsString(), name));
  assert(name == u"RuvoWav");
  assert(!TranslateToHumanReadableMediaHandler(u"no identifier", name));  // leaves the name
  //! [TranslateToHumanReadableMediaHandler]

  //! [TranslateFromHumanReadableMediaHandler]
  plinth::UTF16String identifier;
  assert(TranslateFromHumanReadableMediaHandler(u"RuvoWav", identifier));
  assert(identifier == handler.AsString());
  //! [TranslateFromHumanReadableMediaHandler]
}

void AskForTheState() {
  //! [IsInitialized]
  plinth::appstatemanager::SetState(2);  // the host: the event loop runs
  assert(IsInitialized());
  assert(IsEventLoopRunning());
  assert(!WillTerminate());

  plinth::appstatemanager::SetState(5);  // the host: the application is being taken down
  assert(!IsInitialized());
  assert(WillTerminate());
  assert(IsTerminating());
  //! [IsInitialized]
}

void FollowActivation() {
  //! [GetAppActivatedSignal]
  int activations = 0;
  {
    const boost::signals2::scoped_connection connection = GetAppActivatedSignal().connect(
        [&](bool isActivated) { activations += isActivated ? 1 : 0; });
    NotifyAppActivated(true);
    NotifyAppActivated(false);
  }
  NotifyAppActivated(true);  // nobody listens any more
  assert(activations == 1);
  //! [GetAppActivatedSignal]
}

void SwitchErrorHandlingOff() {
  //! [DisableErrorHandling]
  const auto bytes = [](const char* text) {
    return plinth::debug::ByteString(reinterpret_cast<const unsigned char*>(text));
  };
  assert(!mezzo::debug::DisableErrorHandling());
  plinth::debug::DebugDatabase::Instance().SetEntry(bytes("mezzo.debug.DisableErrorHandling"),
                                                    bytes("true"));
  assert(mezzo::debug::DisableErrorHandling());
  //! [DisableErrorHandling]
}

}  // namespace

int main() {
  WriteTimecode();
  WriteAnyFormat();
  ReadTimecode();
  ReadAnyFormat();
  SplitDropFrames();
  WriteClockTime();
  WriteBarsAndBeats();
  WriteBeats();
  ReadBarsAndBeats();
  CompareBeatInfo();
  NameNotes();
  FindNotes();
  TranslateHandlers();
  AskForTheState();
  FollowActivation();
  SwitchErrorHandlingOff();
}
