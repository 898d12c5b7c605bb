#include "ExportedCalls.h"

#include "Text.h"
#include <Debug/ErrorHandling.h>
#include <Utility/AppRunningState.h>
#include <Utility/MusicalNoteUtils.h>
#include <Utility/SerializationUtils.h>

#include <plinth/appstatemanager/AppStateManager.h>
#include <plinth/debug/DebugDatabase.h>

#include <atomic>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <string_view>
#include <utility>

namespace mezzo::test {

using plinth::UTF16String;
using utility::BeatInfo;

std::string Quoted(const UTF16String& inText) {
  return '"' + Shown(inText) + '"';
}

std::string Joined(const Fields& inFields) {
  std::string line;
  for (const auto& field : inFields) line += (&field == &inFields.front() ? "" : "\t") + field;
  return line;
}

std::int32_t Arguments::SampleRate() {
  return Int32({0, 1, 8000, 11025, 44100, 47952, 48000, 48000, 88200, 96000, 192000});
}

std::int32_t Arguments::FrameRate() {
  return Int32({0, 10, 24, 25, 30, 30, 30, 50, 60, 60, 100, 120, 1000});
}

BeatInfo Arguments::Beats() {
  BeatInfo beats{};
  beats.iTicksPerBeat = Int32({-1, -1, 1, 10, 96, 480, 960, 960, 1920});
  beats.dTempo = Double({60.0, 120.0, 120.0, 125.5, 87.98329390408782});
  beats.iBeatsPerBar = Int32({1, 2, 3, 4, 4, 5, 6, 7});
  beats.iBeatUnit = Int32({1, 2, 4, 4, 8, 16});
  beats.dOffsetMs = Double({0.0, 0.0, 500.0, -1234.5678});
  return beats;
}

// ----------------------------------------------------------------------------- Drawing arguments

std::int64_t DrawnArguments::Integer(int inBits, Usual inUsual) {
  const auto draw = [&]() -> std::uint64_t {
    const std::uint64_t kind = fIsTame ? 2 : Below(8);
    if (kind > 1 && inUsual.size() != 0) {
      return static_cast<std::uint64_t>(inUsual.begin()[Below(inUsual.size())]);
    }
    if (kind == 0) {  // beside zero and both ends
      const std::uint64_t smallest = std::uint64_t{1} << (inBits - 1);
      const std::uint64_t places[] = {0, smallest, smallest - 1};
      const std::uint64_t place = places[Below(3)];
      return place + Below(5) - 2;
    }
    std::uint64_t magnitude = fBits() >> (65 - inBits + (fIsTame ? 20 : 0));
    magnitude >>= Below(static_cast<unsigned>(inBits));
    return Below(2) == 0 ? magnitude : 0 - magnitude;
  };
  auto value = static_cast<std::int64_t>(draw());
  if (inBits == 32) value = static_cast<std::int32_t>(value);
  if (fTrace != nullptr) fTrace->push_back(std::to_string(value));
  return value;
}

double DrawnArguments::Double(std::initializer_list<double> inUsual) {
  const auto draw = [&] {
    const std::uint64_t kind = fIsTame ? 4 : Below(8);
    if (kind > 3 && inUsual.size() != 0) return inUsual.begin()[Below(inUsual.size())];
    if (kind == 0) return __builtin_bit_cast(double, fBits());
    if (kind == 1) {  // zeros, denormals, one, infinities, not a number, each with both signs
      const std::uint64_t specials[] = {0, 1, 0x3ff0000000000000, 0x7ff0000000000000,
                                        0x7ff8000000000000};
      const std::uint64_t special = specials[Below(5)];
      return __builtin_bit_cast(double, special | std::uint64_t{Below(2)} << 63);
    }
    auto numerator = static_cast<std::int64_t>(fBits());
    numerator >>= (fIsTame ? 10 : 0) + Below(54);
    return static_cast<double>(numerator) / 1024.0;
  };
  const double value = draw();
  if (fTrace != nullptr) {
    char text[40];
    std::snprintf(text, sizeof text, "%a", value);
    fTrace->push_back(text);
  }
  return value;
}

char16_t DrawnArguments::Unit() {
  static constexpr std::string_view kTyped = "0123456789:;,. -+eE{}\tAbx";
  if (Below(4) == 0) return static_cast<char16_t>(fBits());
  return static_cast<unsigned char>(kTyped[Below(kTyped.size())]);
}

UTF16String DrawnArguments::Digits(std::uint64_t inMost) {
  UTF16String digits;
  for (std::uint64_t left = 1 + Below(inMost); left > 0; --left) {
    digits += static_cast<char16_t>(u'0' + Below(10));
  }
  return digits;
}

UTF16String DrawnArguments::AnyText(const Forms& inForms) {
  const std::uint64_t kind = Below(16);
  UTF16String text;
  if (kind == 0) return text;
  if (kind == 1) return Digits(400);
  if (kind == 2) {
    for (std::uint64_t left = Below(40); left > 0; --left) text += Unit();
    return text;
  }
  for (const char unit : inForms[Below(inForms.size())]) {
    if (unit == '#') {
      text += Digits(Below(8) == 0 ? 12 : 2);
    } else {
      text += static_cast<unsigned char>(unit);
    }
  }
  if (kind < 7) {  // mistyped: a unit too many, too few, or another
    const std::size_t place = Below(text.size() + 1);
    const std::size_t removed = Below(2);
    const std::size_t added = Below(2);
    text.replace(place, removed, added, Unit());
  }
  return text;
}

UTF16String DrawnArguments::Text(const Forms& inForms) {
  UTF16String text = AnyText(inForms);
  if (fTrace != nullptr) fTrace->push_back(Quoted(text));
  return text;
}

// ------------------------------------------------------------------------------------- The table

namespace {

constexpr std::int64_t kOldSamples = -7070707070707070707;

const Forms kClockForms{"#:#:#:#", "#;#;#;#", "#:#:#.#", "#:#:#:#.#", "#:#", "#",
                        "#.#",     ".#",      "-#:#:#",  "#:#:#:#:#", "#:#."};
const Forms kMusicalForms{"#:#.#", "#:#.#.#", "#:#", "#", "-#:#.#", "#.#", " +#:-#.#", "#.#e#"};

utility::TimecodeFormat Format(Arguments& ioArgs) {
  return static_cast<utility::TimecodeFormat>(
      ioArgs.Int32({0, 1, 2, 3, 4, 5, 5, 6, 6, 7, 8, 9, 10, 11, 11, 12, 13, 14, -1, 15, 16, -2}));
}

std::string Truth(bool inValue) {
  return inValue ? "1" : "0";
}

template <class Compare>
Fields CompareBeats(Arguments& ioArgs) {
  const BeatInfo left = ioArgs.Beats();
  const BeatInfo other = ioArgs.Beats();
  BeatInfo right = left;
  const std::int32_t field = ioArgs.Int32({0, 1, 2, 3, 4, 5, 6});
  if (field == 1) right.iTicksPerBeat = other.iTicksPerBeat;
  if (field == 2) right.dTempo = other.dTempo;
  if (field == 3) right.iBeatsPerBar = other.iBeatsPerBar;
  if (field == 4) right.iBeatUnit = other.iBeatUnit;
  if (field == 5) right.dOffsetMs = other.dOffsetMs;
  return {Truth(ioArgs.Make([&] { return Compare()(left, right); }))};
}

Fields SamplesToTimecodeByFlags(Arguments& ioArgs) {
  UTF16String text = ioArgs.oldText;
  const auto samples = ioArgs.Int64();
  const auto rate = ioArgs.SampleRate();
  const auto fps = ioArgs.FrameRate();
  bool flags[7];
  for (bool& flag : flags) flag = ioArgs.Flag();
  const bool result = ioArgs.Make([&] {
    return utility::ConvertSamplesToTimecode(text, samples, rate, fps, flags[0], flags[1], flags[2],
                                             flags[3], flags[4], flags[5], flags[6]);
  });
  return {Truth(result), Quoted(text)};
}

Fields SamplesToTimecodeByFormat(Arguments& ioArgs) {
  UTF16String text = ioArgs.oldText;
  const auto samples = ioArgs.Int64();
  const auto rate = ioArgs.SampleRate();
  const auto format = Format(ioArgs);
  const auto fps = ioArgs.FrameRate();
  const bool hasBeats = ioArgs.Flag();
  const BeatInfo beats = ioArgs.Beats();
  const bool isDuration = ioArgs.Flag();
  const bool result = ioArgs.Make([&] {
    return utility::ConvertSamplesToTimecode(text, samples, rate, format, fps,
                                             hasBeats ? &beats : nullptr, isDuration);
  });
  return {Truth(result), Quoted(text)};
}

Fields SamplesToDecimalTimecode(Arguments& ioArgs) {
  UTF16String text = ioArgs.oldText;
  const auto samples = ioArgs.Int64();
  const auto rate = ioArgs.SampleRate();
  const bool wholeSeconds = ioArgs.Flag();
  const auto result = ioArgs.Make(
      [&] { utility::ConvertSamplesToDecimalTimecode(text, samples, rate, wholeSeconds); });
  return {result, Quoted(text)};
}

Fields SamplesToBarsAndBeats(Arguments& ioArgs) {
  UTF16String text = ioArgs.oldText;
  const double samples = ioArgs.Double({});
  const double rate = ioArgs.Double({44100.0, 48000.0, 88288.2, 192000.0});
  const BeatInfo beats = ioArgs.Beats();
  const bool isDuration = ioArgs.Flag();
  const int precision = ioArgs.Int32({-1, 0, 1, 2, 2, 3, 3, 4});
  const bool result = ioArgs.Make([&] {
    return utility::ConvertSamplesToBarsAndBeats(text, samples, rate, beats, isDuration, precision);
  });
  return {Truth(result), Quoted(text)};
}

Fields SamplesToBeats(Arguments& ioArgs) {
  UTF16String text = ioArgs.oldText;
  const auto samples = ioArgs.Int64();
  const auto rate = ioArgs.SampleRate();
  const double tempo = ioArgs.Double({60.0, 120.0, 125.5});
  const auto result =
      ioArgs.Make([&] { utility::ConvertSamplesToBeats(text, samples, rate, tempo); });
  return {result, Quoted(text)};
}

Fields TimecodeToSamplesByRate(Arguments& ioArgs) {
  std::int64_t samples = kOldSamples;
  const UTF16String text = ioArgs.Text(kClockForms);
  const auto rate = ioArgs.SampleRate();
  const auto fps = ioArgs.FrameRate();
  const bool pulldown = ioArgs.Flag();
  const bool dropFrame = ioArgs.Flag();
  const bool result = ioArgs.Make([&] {
    return utility::ConvertTimecodeToSamples(samples, text, rate, fps, pulldown, dropFrame);
  });
  return {Truth(result), std::to_string(samples)};
}

Fields TimecodeToSamplesByFormat(Arguments& ioArgs) {
  std::int64_t samples = kOldSamples;
  const UTF16String text = ioArgs.Text(kClockForms);
  const auto format = Format(ioArgs);
  const auto rate = ioArgs.SampleRate();
  const auto fps = ioArgs.FrameRate();
  const bool hasBeats = ioArgs.Flag();
  BeatInfo beats = ioArgs.Beats();
  const bool isDuration = ioArgs.Flag();
  const bool result = ioArgs.Make([&] {
    return utility::ConvertTimecodeToSamples(samples, text, format, rate, fps,
                                             hasBeats ? &beats : nullptr, isDuration);
  });
  return {Truth(result), std::to_string(samples)};
}

Fields BarsAndBeatsToSamples(Arguments& ioArgs) {
  const UTF16String text = ioArgs.Text(kMusicalForms);
  const double rate = ioArgs.Double({44100.0, 48000.0, 88288.2, 192000.0});
  const BeatInfo beats = ioArgs.Beats();
  const bool isDuration = ioArgs.Flag();
  return {std::to_string(ioArgs.Make(
      [&] { return utility::ConvertBarsAndBeatsToSamples(text, rate, beats, isDuration); }))};
}

Fields DropFrameLabel(Arguments& ioArgs) {
  const auto count = ioArgs.Int64();
  const auto fps = ioArgs.Int32({30, 60});
  std::uint32_t label[4];
  for (auto& field : label) field = static_cast<std::uint32_t>(ioArgs.Int32({0}));
  const auto result = ioArgs.Make(
      [&] { utility::DropFrameToHMSF(count, fps, label[0], label[1], label[2], label[3]); });
  Fields fields{result};
  for (const auto field : label) fields.push_back(std::to_string(field));
  return fields;
}

Fields NoteString(Arguments& ioArgs) {
  UTF16String text = ioArgs.oldText;
  const int note = ioArgs.Int32({-1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13});
  const int octave = ioArgs.Int32({-1, 0, 1, 4, 8, 9, 10});
  const bool flatOnly = ioArgs.Flag();
  const auto result = ioArgs.Make([&] { utility::GetNoteString(text, note, octave, flatOnly); });
  return {result, Quoted(text)};
}

Fields NoteFromFrequency(Arguments& ioArgs) {
  const auto frequency = static_cast<float>(
      ioArgs.Double({13.75, 27.5, 55.0, 261.63, 440.0, 452.8929, 860.0, 14080.0, 28160.0}));
  const bool isNull = ioArgs.Flag();
  int octave = 0;
  const int note = ioArgs.Make(
      [&] { return utility::GetNoteFromFrequency(frequency, isNull ? nullptr : &octave); });
  return {std::to_string(note), isNull ? "null" : std::to_string(octave)};
}

Fields HandlerID(Arguments& ioArgs) {
  const auto index = static_cast<utility::NativePluginIndex>(
      ioArgs.Int32({-1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19}));
  const auto id = ioArgs.Make([&] { return utility::GetNativeHandlerID(index); });
  return {Shown(id.AsString())};
}

/// Every identifier in each of its forms, upper case included.
const Forms& IdentifierForms() {
  static const Forms sForms = [] {
    Forms forms;
    for (int index = 0; index < 19; ++index) {
      const auto id = utility::GetNativeHandlerID(static_cast<utility::NativePluginIndex>(index));
      std::string text = Shown(id.AsString());
      forms.push_back(text);
      forms.push_back('{' + text + '}');
      for (char& unit : text) unit = unit >= 'a' ? static_cast<char>(unit - 0x20) : unit;
      forms.push_back(text);
      std::erase(text, '-');
      forms.push_back(text);
    }
    return forms;
  }();
  return sForms;
}

const Forms kNames{
    "RuvoAiff",          "RuvoApe",      "RuvoAT",    "DLMS",       "Dolby",        "ImporterHost",
    "RuvoLSF",           "RuvoMF",       "RuvoMP2",   "RuvoMP3",    "RuvoQT",       "RuvoTwoLame",
    "RuvoWav",           "FinalCutXML",  "LegacyXML", "OmfSession", "DocketNative", "ruvowav",
    "KinoraInterchange", "KinodocNative"};

template <bool (*kTranslate)(UTF16String, UTF16String&)>
Fields Translate(Arguments& ioArgs, const Forms& inForms) {
  UTF16String output = ioArgs.oldText;
  UTF16String input = ioArgs.Text(inForms);
  const bool result = ioArgs.Make([&] { return kTranslate(std::move(input), output); });
  return {Truth(result), Quoted(output)};
}

template <bool (*kQuery)()>
Fields Query(Arguments& ioArgs) {
  plinth::appstatemanager::SetState(ioArgs.Int32({-1, 0, 1, 2, 3, 4, 5, 6}));
  return {Truth(ioArgs.Make(kQuery))};
}

/// Connects a slot that counts deactivations and, in thousands, activations. It owns its count:
/// another thread's firing may still call it when its connection is gone.
auto ConnectCounter(boost::signals2::signal<void(bool)>& ioSignal) {
  auto count = std::make_shared<std::atomic<int>>(0);
  boost::signals2::scoped_connection slot =
      ioSignal.connect([count](bool activated) { *count += activated ? 1000 : 1; });
  return std::pair(std::move(slot), std::move(count));
}

Fields ActivatedSignal(Arguments& ioArgs) {
  auto* const signal = ioArgs.Make([] { return &utility::GetAppActivatedSignal(); });
  if (signal == nullptr) return {"null"};
  const auto [slot, count] = ConnectCounter(*signal);
  (*signal)(ioArgs.Flag());
  return {std::to_string(*count)};
}

Fields Notify(Arguments& ioArgs) {
  const auto [slot, count] = ConnectCounter(utility::GetAppActivatedSignal());
  const bool activated = ioArgs.Flag();
  const auto result = ioArgs.Make([&] { utility::NotifyAppActivated(activated); });
  return {result, std::to_string(*count)};
}

Fields DisableErrorHandling(Arguments& ioArgs) {
  static constexpr std::string_view kKey = "mezzo.debug.DisableErrorHandling";
  const std::string texts[] = {"true", "false", "True", "", "true "};
  const auto& text = texts[static_cast<std::uint32_t>(ioArgs.Int32({0, 1, 2, 3, 4})) % 5];
  plinth::debug::DebugDatabase::Instance().SetEntry({kKey.begin(), kKey.end()},
                                                    {text.begin(), text.end()});
  return {Truth(ioArgs.Make(debug::DisableErrorHandling))};
}

const ExportedCall kCalls[] = {
    {"operator==", CompareBeats<std::equal_to<>>},
    {"operator!=", CompareBeats<std::not_equal_to<>>},
    {"ConvertSamplesToTimecode-flags", SamplesToTimecodeByFlags},
    {"ConvertSamplesToTimecode-format", SamplesToTimecodeByFormat},
    {"ConvertSamplesToDecimalTimecode", SamplesToDecimalTimecode},
    {"ConvertSamplesToBarsAndBeats", SamplesToBarsAndBeats},
    {"ConvertSamplesToBeats", SamplesToBeats},
    {"ConvertTimecodeToSamples-rate", TimecodeToSamplesByRate},
    {"ConvertTimecodeToSamples-format", TimecodeToSamplesByFormat},
    {"ConvertBarsAndBeatsToSamples", BarsAndBeatsToSamples},
    {"DropFrameToHMSF", DropFrameLabel},
    {"GetNoteString", NoteString},
    {"GetNoteFromFrequency", NoteFromFrequency},
    {"SupportsFlatSymbol", Query<utility::SupportsFlatSymbol>},
    {"SupportsSharpSymbol", Query<utility::SupportsSharpSymbol>},
    {"GetNativeHandlerID", HandlerID},
    {"TranslateToHumanReadableMediaHandler",
     [](Arguments& ioArgs) {
       return Translate<utility::TranslateToHumanReadableMediaHandler>(ioArgs, IdentifierForms());
     }},
    {"TranslateFromHumanReadableMediaHandler",
     [](Arguments& ioArgs) {
       return Translate<utility::TranslateFromHumanReadableMediaHandler>(ioArgs, kNames);
     }},
    {"IsInitialized", Query<utility::IsInitialized>, false},
    {"IsEventLoopRunning", Query<utility::IsEventLoopRunning>, false},
    {"WillTerminate", Query<utility::WillTerminate>, false},
    {"IsTerminating", Query<utility::IsTerminating>, false},
    {"GetAppActivatedSignal", ActivatedSignal, false},
    {"NotifyAppActivated", Notify, false},
    {"DisableErrorHandling", DisableErrorHandling, false},
};

}  // namespace

std::span<const ExportedCall> ExportedCalls() {
  return kCalls;
}

}  // namespace mezzo::test
