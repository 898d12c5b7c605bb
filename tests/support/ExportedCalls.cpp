#include "ExportedCalls.h"

#include "Text.h"
#include <Debug/ErrorHandling.h>
#include <Utility/AppRunningState.h>
#include <Utility/MusicalNoteUtils.h>
#include <Utility/SerializationUtils.h>

#include <plinth/appstatemanager/AppStateManager.h>
#include <plinth/debug/DebugDatabase.h>

#include <boost/algorithm/string.hpp>
#include <boost/lexical_cast.hpp>

#include <atomic>
#include <concepts>
#include <cstddef>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <tuple>
#include <type_traits>

namespace mezzo::test {

using plinth::UTF16String;
using plinth::utility::Guid;
using utility::BeatInfo;

std::string Join(const Fields& inFields) {
  return boost::join(inFields, "\t");
}

void Hash(std::uint64_t& ioHash, const std::string& inLine) {
  for (const char byte : inLine + '\n')
    ioHash = (ioHash ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
}

BitSource SplitMix64(std::uint64_t inSeed) {
  return [state = inSeed]() mutable {
    std::uint64_t bits = state += 0x9e3779b97f4a7c15;
    bits = (bits ^ (bits >> 30)) * 0xbf58476d1ce4e5b9;
    bits = (bits ^ (bits >> 27)) * 0x94d049bb133111eb;
    return bits ^ (bits >> 31);
  };
}

// ----------------------------------------------------------------------------- Drawing arguments

std::int64_t DrawnArguments::GetInteger(int inWidth, const TypicalValues& inTypical) {
  const auto draw = [&]() -> std::uint64_t {
    const std::uint64_t kind = fIsTame ? 2 : DrawBelow(8);
    if (const auto& usual = inTypical.numbers; kind > 1 && !usual.empty()) {
      return static_cast<std::uint64_t>(static_cast<std::int64_t>(usual[DrawBelow(usual.size())]));
    }
    if (kind == 0) {  // near zero and both limits
      const std::uint64_t smallest = std::uint64_t{1} << (inWidth - 1);
      const std::uint64_t places[] = {0, smallest, smallest - 1};
      const std::uint64_t place = places[DrawBelow(3)];
      return place + DrawBelow(5) - 2;
    }
    std::uint64_t magnitude = fBits() >> (65 - inWidth + (fIsTame ? 20 : 0));
    magnitude >>= DrawBelow(static_cast<unsigned>(inWidth));
    return DrawBelow(2) == 0 ? magnitude : 0 - magnitude;
  };
  auto value = static_cast<std::int64_t>(draw());
  if (inWidth == 32) value = static_cast<std::int32_t>(value);
  if (trace != nullptr) trace->push_back(std::to_string(value));
  return value;
}

double DrawnArguments::GetDouble(const TypicalValues& inTypical) {
  const auto draw = [&] {
    const std::uint64_t kind = fIsTame ? 4 : DrawBelow(8);
    if (const auto& usual = inTypical.numbers; kind > 3 && !usual.empty())
      return usual[DrawBelow(usual.size())];
    if (kind == 0) return __builtin_bit_cast(double, fBits());
    if (kind == 1) {  // zeros, denormals, one, infinities, not a number, each with both signs
      const std::uint64_t specials[] = {0, 1, 0x3ff0000000000000, 0x7ff0000000000000,
                                        0x7ff8000000000000};
      const std::uint64_t special = specials[DrawBelow(5)];
      return __builtin_bit_cast(double, special | std::uint64_t{DrawBelow(2)} << 63);
    }
    auto numerator = static_cast<std::int64_t>(fBits());
    numerator >>= (fIsTame ? 10 : 0) + DrawBelow(54);
    return static_cast<double>(numerator) / 1024.0;
  };
  const double value = draw();
  if (trace != nullptr) trace->push_back(boost::lexical_cast<std::string>(value));
  return value;
}

UTF16String DrawnArguments::GetText(const TypicalValues& inTypical) {
  UTF16String text;
  const auto unit = [this]() -> char16_t {
    static constexpr std::string_view kTyped = "0123456789:;,. -+eE{}\tAbx";
    if (DrawBelow(4) == 0) return static_cast<char16_t>(fBits());
    return static_cast<unsigned char>(kTyped[DrawBelow(kTyped.size())]);
  };
  const auto addDigits = [&](std::uint64_t inMaxCount) {
    for (std::uint64_t left = 1 + DrawBelow(inMaxCount); left > 0; --left)
      text += static_cast<char16_t>(u'0' + DrawBelow(10));
  };
  const std::uint64_t kind = DrawBelow(16);
  if (kind == 1) addDigits(400);
  if (kind == 2) {
    for (std::uint64_t left = DrawBelow(40); left > 0; --left) text += unit();
  }
  if (kind > 2) {
    for (const char typed : inTypical.forms[DrawBelow(inTypical.forms.size())]) {
      if (typed == '#') {
        addDigits(DrawBelow(8) == 0 ? 12 : 2);
      } else {
        text += static_cast<unsigned char>(typed);
      }
    }
  }
  if (kind > 2 && kind < 7) {  // mistyped: a unit added, removed or replaced
    const std::size_t place = DrawBelow(text.size() + 1);
    const std::size_t removed = DrawBelow(2);
    const std::size_t added = DrawBelow(2);
    text.replace(place, removed, added, unit());
  }
  if (trace != nullptr) trace->push_back(Quote(text));
  return text;
}

// --------------------------------------------------------------------------- Calls of any function

namespace {

/// Draws an argument of any type, or what an output holds before a call.
struct Draw {
  void operator()(bool& outValue) const {
    static const TypicalValues sBits{{0, 1}};
    outValue = (from.GetInteger(32, sBits) & 1) != 0;
  }
  void operator()(std::int64_t& outValue) const {
    outValue = isOutput ? -7070707070707070707 : from.GetInteger(64, usual);
  }
  void operator()(float& outValue) const { outValue = static_cast<float>(from.GetDouble(usual)); }
  void operator()(double& outValue) const { outValue = from.GetDouble(usual); }
  void operator()(UTF16String& outValue) const {
    outValue = isOutput ? from.oldText : from.GetText(usual);
  }
  void operator()(BeatInfo& outValue) const {
    static const TypicalValues sTicks{{-1, -1, 1, 10, 96, 480, 960, 960, 1920}},
        sTempo{{60.0, 120.0, 120.0, 125.5, 87.98329390408782}}, sBar{{1, 2, 3, 4, 4, 5, 6, 7}},
        sUnit{{1, 2, 4, 4, 8, 16}}, sOffset{{0.0, 0.0, 500.0, -1234.5678}};
    const auto draw = [this](const TypicalValues& inEach) {
      return static_cast<std::int32_t>(from.GetInteger(32, inEach));
    };
    outValue = {draw(sTicks), from.GetDouble(sTempo), draw(sBar), draw(sUnit),
                from.GetDouble(sOffset)};
  }
  template <class Pointee>
  void operator()(std::optional<Pointee>& outValue) const {
    bool flag = false;
    (*this)(flag);
    if constexpr (std::is_same_v<Pointee, int>) {
      const bool isNull = flag;
      if (!isNull) outValue = 0;
    } else {
      const bool isPresent = flag;
      (*this)(outValue.emplace());
      if (!isPresent) outValue.reset();
    }
  }
  template <class Number>
  void operator()(Number& outValue) const {
    outValue = static_cast<Number>(from.GetInteger(32, usual));
  }

  ArgumentSource& from;
  const TypicalValues& usual;
  bool isOutput;
};

struct ShowField {
  std::string operator()(const UTF16String& inText) const { return Quote(inText); }
  std::string operator()(const Guid& inGuid) const { return Show(inGuid.AsString()); }
  std::string operator()(std::integral auto inNumber) const { return std::to_string(inNumber); }
  std::string operator()(std::optional<int> inNumber) const {
    return inNumber ? std::to_string(*inNumber) : "null";
  }
};

/// An argument of a call; a pointer may be null.
template <class Parameter>
struct Argument {
  using Bare = std::remove_cvref_t<Parameter>;
  using Pointee = std::remove_cv_t<std::remove_pointer_t<Parameter>>;
  static constexpr bool kIsOutput =
      std::is_same_v<Parameter, int*> || std::is_same_v<Parameter, Bare&>;

  void DrawFrom(ArgumentSource& ioFrom, const TypicalValues& inTypical) {
    Draw{ioFrom, inTypical, kIsOutput}(value);
  }
  Parameter Pass() {
    if constexpr (std::is_pointer_v<Parameter>) {
      return value ? &*value : nullptr;
    } else {
      return std::forward<Parameter>(value);
    }
  }
  void AddTo(Fields& ioOutputs) const {
    if constexpr (kIsOutput) ioOutputs.push_back(ShowField()(value));
  }

  std::conditional_t<std::is_pointer_v<Parameter>, std::optional<Pointee>, Bare> value{};
};

enum Purity { kPurity_Pure, kPurity_Impure };

/// \param inTypical one for each parameter; parameters left out have no typical values.
template <class Result, class... Parameters>
ExportedCall Describe(const char* inName, Result (*inFunction)(Parameters...),
                      const TypicalValues (&inTypical)[sizeof...(Parameters)],
                      Purity inPurity = kPurity_Pure) {
  const std::vector<TypicalValues> usual(std::begin(inTypical), std::end(inTypical));
  const auto run = [=](ArgumentSource&& ioFrom, const Surround& inSurround) {
    auto next = usual.begin();
    std::tuple<Argument<Parameters>...> arguments;
    std::apply([&](auto&... ioEach) { (ioEach.DrawFrom(ioFrom, *next++), ...); }, arguments);
    const auto call = [&] {
      return std::apply([&](auto&... ioEach) { return inFunction(ioEach.Pass()...); }, arguments);
    };
    Fields fields{"void"};
    if constexpr (std::is_void_v<Result>) {
      inSurround(call);
    } else {
      Result result{};
      inSurround([&] { result = call(); });
      fields = {ShowField()(result)};
    }
    std::apply([&](auto&... inEach) { (inEach.AddTo(fields), ...); }, arguments);
    return fields;
  };
  return {inName, run, inPurity == kPurity_Pure};
}

/// Chooses among overloads by their first parameters.
template <class A, class B, class C, class D, class Result, class... Others>
auto Overload(Result (*inFunction)(A, B, C, D, Others...)) {
  return inFunction;
}

// ------------------------------------------------------------------------------- Wrapped functions

/// Compares a record with one that differs in at most one field.
template <class Compare>
bool CompareBeats(const BeatInfo& inLeft, const BeatInfo& inOther, std::int32_t inField) {
  BeatInfo right = inLeft;
  if (inField == 1) right.iTicksPerBeat = inOther.iTicksPerBeat;
  if (inField == 2) right.dTempo = inOther.dTempo;
  if (inField == 3) right.iBeatsPerBar = inOther.iBeatsPerBar;
  if (inField == 4) right.iBeatUnit = inOther.iBeatUnit;
  if (inField == 5) right.dOffsetMs = inOther.dOffsetMs;
  return Compare()(inLeft, right);
}

template <bool (*kQuery)()>
bool QueryInState(std::int32_t inState) {
  plinth::appstatemanager::SetState(inState);
  return kQuery();
}

/// Counts 1000 for each activation and 1 for each deactivation. The second slot throws;
/// the caller must get the exception, and the third slot must not be called. Slots share ownership
/// of the count, because another thread may still call them after they are disconnected.
template <class Fire>
std::int64_t CountActivations(const Fire& inFire) {
  const auto count = std::make_shared<std::atomic<int>>(0);
  auto& signal = utility::GetAppActivatedSignal();
  const boost::signals2::scoped_connection slots[] = {
      signal.connect([count](bool inActivated) { *count += inActivated ? 1000 : 1; }),
      signal.connect([](bool) { throw std::runtime_error("slot"); }),
      signal.connect([count](bool) { *count = -1; })};
  try {
    inFire();
    *count = -2;
  } catch (const std::runtime_error&) {
  }
  return *count;
}

std::int64_t FireSignal(bool inActivated) {
  return CountActivations([=] { utility::GetAppActivatedSignal()(inActivated); });
}

void Notify(bool inActivated, std::int64_t& outCount) {
  outCount = CountActivations([=] { utility::NotifyAppActivated(inActivated); });
}

bool DisableErrorHandling(std::int32_t inEntry) {
  static constexpr std::string_view kKey = "mezzo.debug.DisableErrorHandling";
  static constexpr std::string_view kTexts[] = {"true", "false", "True", "", "true "};
  const auto text = kTexts[static_cast<std::uint32_t>(inEntry) % std::size(kTexts)];
  plinth::debug::DebugDatabase::Instance().SetEntry({kKey.begin(), kKey.end()},
                                                    {text.begin(), text.end()});
  return debug::DisableErrorHandling();
}

// ------------------------------------------------------------------------------------- The table

TypicalValues SplitForms(const char* inForms) {
  TypicalValues usual;
  boost::split(usual.forms, std::string_view(inForms), [](char inUnit) { return inUnit == '|'; });
  return usual;
}

/// Every identifier in each of its forms, upper case included.
TypicalValues ListIdentifierForms() {
  constexpr int kLastHandler = utility::kNativePluginIndex_DocketNative;
  TypicalValues usual;
  for (int index = 0; index <= kLastHandler; ++index) {
    const auto id = utility::GetNativeHandlerID(static_cast<utility::NativePluginIndex>(index));
    const std::string text = Show(id.AsString()), upper = boost::to_upper_copy(text);
    usual.forms.insert(usual.forms.end(),
                       {text, '{' + text + '}', upper, boost::erase_all_copy(upper, "-")});
  }
  return usual;
}

std::vector<ExportedCall> MakeTable() {
  using namespace utility;
  const TypicalValues none, fields{{0, 1, 2, 3, 4, 5, 6}}, states{{-1, 0, 1, 2, 3, 4, 5, 6}},
      rates{{0, 1, 8000, 11025, 44100, 47952, 48000, 48000, 88200, 96000, 192000}},
      doubleRates{{44100.0, 48000.0, 88288.2, 192000.0}}, tempos{{60.0, 120.0, 125.5}},
      frameRates{{0, 10, 24, 25, 30, 30, 30, 50, 60, 60, 100, 120, 1000}},
      formats{{0, 1, 2, 3, 4, 5, 5, 6, 6, 7, 8, 9, 10, 11, 11, 12, 13, 14, -1, 15, 16, -2}},
      frequencies{{13.75, 27.5, 55.0, 261.63, 440.0, 452.8929, 860.0, 14080.0, 28160.0}},
      notes{{-1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}},
      indices{{-1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19}};
  const TypicalValues clock =
      SplitForms("#:#:#:#|#;#;#;#|#:#:#.#|#:#:#:#.#|#:#|#|#.#|.#|-#:#:#|#:#:#:#:#|#:#.");
  const TypicalValues musical = SplitForms("#:#.#|#:#.#.#|#:#|#|-#:#.#|#.#| +#:-#.#|#.#e#");
  const TypicalValues names = SplitForms(
      "RuvoAiff|RuvoApe|RuvoAT|DLMS|Dolby|ImporterHost|RuvoLSF|RuvoMF|RuvoMP2|RuvoMP3|RuvoQT|"
      "RuvoTwoLame|RuvoWav|FinalCutXML|LegacyXML|OmfSession|DocketNative|ruvowav|"
      "KinoraInterchange|KinodocNative");
  return {
      Describe("operator==", CompareBeats<std::equal_to<>>, {none, none, fields}),
      Describe("operator!=", CompareBeats<std::not_equal_to<>>, {none, none, fields}),
      Describe("ConvertSamplesToTimecode-flags",
               Overload<UTF16String&, std::int64_t, std::int32_t, std::int32_t>(
                   ConvertSamplesToTimecode),
               {none, none, rates, frameRates}),
      Describe("ConvertSamplesToTimecode-format",
               Overload<UTF16String&, std::int64_t, std::int32_t, TimecodeFormat>(
                   ConvertSamplesToTimecode),
               {none, none, rates, formats, frameRates}),
      Describe("ConvertSamplesToDecimalTimecode", ConvertSamplesToDecimalTimecode,
               {none, none, rates}),
      Describe("ConvertSamplesToBarsAndBeats", ConvertSamplesToBarsAndBeats,
               {none, none, doubleRates, none, none, {{-1, 0, 1, 2, 2, 3, 3, 4}}}),
      Describe("ConvertSamplesToBeats", ConvertSamplesToBeats, {none, none, rates, tempos}),
      Describe("ConvertTimecodeToSamples-flags",
               Overload<std::int64_t&, const UTF16String&, std::int32_t, std::int32_t>(
                   ConvertTimecodeToSamples),
               {none, clock, rates, frameRates}),
      Describe("ConvertTimecodeToSamples-format",
               Overload<std::int64_t&, const UTF16String&, TimecodeFormat, std::int32_t>(
                   ConvertTimecodeToSamples),
               {none, clock, formats, rates, frameRates}),
      Describe("ConvertBarsAndBeatsToSamples", ConvertBarsAndBeatsToSamples,
               {musical, doubleRates}),
      Describe("DropFrameToHMSF", DropFrameToHMSF, {none, {{30, 60}}, {{0}}, {{0}}, {{0}}, {{0}}}),
      Describe("GetNoteString", GetNoteString, {none, notes, {{-1, 0, 1, 4, 8, 9, 10}}}),
      Describe("GetNoteFromFrequency", GetNoteFromFrequency, {frequencies}),
      Describe("SupportsFlatSymbol", QueryInState<SupportsFlatSymbol>, {states}),
      Describe("SupportsSharpSymbol", QueryInState<SupportsSharpSymbol>, {states}),
      Describe("GetNativeHandlerID", GetNativeHandlerID, {indices}),
      Describe("TranslateToHumanReadableMediaHandler", TranslateToHumanReadableMediaHandler,
               {ListIdentifierForms()}),
      Describe("TranslateFromHumanReadableMediaHandler", TranslateFromHumanReadableMediaHandler,
               {names}),
      Describe("IsInitialized", QueryInState<IsInitialized>, {states}, kPurity_Impure),
      Describe("IsEventLoopRunning", QueryInState<IsEventLoopRunning>, {states}, kPurity_Impure),
      Describe("WillTerminate", QueryInState<WillTerminate>, {states}, kPurity_Impure),
      Describe("IsTerminating", QueryInState<IsTerminating>, {states}, kPurity_Impure),
      Describe("GetAppActivatedSignal", FireSignal, {none}, kPurity_Impure),
      Describe("NotifyAppActivated", Notify, {none}, kPurity_Impure),
      Describe("DisableErrorHandling", DisableErrorHandling, {{{0, 1, 2, 3, 4}}}, kPurity_Impure),
  };
}

}  // namespace

const std::vector<ExportedCall>& GetExportedCalls() {
  static const std::vector<ExportedCall> sCalls = MakeTable();
  return sCalls;
}

}  // namespace mezzo::test
