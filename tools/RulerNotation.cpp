#include "RulerNotation.h"

#include <iomanip>
#include <sstream>

namespace mezzo::tool {

using namespace utility;

namespace {

using Steps = std::vector<std::int64_t>;

// Longer than any ruler, whatever the unit.
constexpr std::int64_t kLongestStep = 1'000'000'000'000'000;

void AddOneTwoFive(Steps& outSteps, std::int64_t inFirst, std::int64_t inEnd) {
  for (std::int64_t decade = inFirst; decade < inEnd; decade *= 10) {
    for (const int factor : {1, 2, 5}) {
      if (decade * factor < inEnd) outSteps.push_back(decade * factor);
    }
  }
}

void AddDivisors(Steps& outSteps, std::int64_t inNumber) {
  for (std::int64_t divisor = 1; divisor < inNumber; ++divisor) {
    if (inNumber % divisor == 0) outSteps.push_back(divisor);
  }
}

// Halves of a beat, their halves and so on, as note values go; thirds and fifths where it must.
void AddNoteValues(Steps& outSteps, std::int64_t inTicksInBeat) {
  for (std::int64_t step = inTicksInBeat; step > 1;) {
    std::int64_t factor = 2;
    while (step % factor != 0) ++factor;
    step /= factor;
    outSteps.insert(outSteps.begin(), step);
  }
}

void AddClockSteps(Steps& outSteps, std::int64_t inUnitsInSecond) {
  for (const int seconds : {1, 2, 5, 10, 15, 30, 60, 120, 300, 600, 900, 1800}) {
    outSteps.push_back(seconds * inUnitsInSecond);
  }
  AddOneTwoFive(outSteps, 3600 * inUnitsInSecond, kLongestStep);
}

std::string TypeClock(std::int64_t inSeconds) {
  return std::to_string(inSeconds / 3600) + ":" + std::to_string(inSeconds / 60 % 60) + ":" +
         std::to_string(inSeconds % 60);
}

std::string TypeFraction(std::int64_t inValue, int inDigits) {
  std::ostringstream text;
  text << '.' << std::setw(inDigits) << std::setfill('0') << inValue;
  return text.str();
}

std::int64_t FloorQuotient(std::int64_t inValue, std::int64_t inDivisor) {
  return inValue / inDivisor - (inValue % inDivisor < 0 ? 1 : 0);
}

RulerNotation FrameClock(const Timeline& inTimeline) {
  const std::int64_t fps = inTimeline.framesPerSecond;
  RulerNotation notation{inTimeline.sampleRate / static_cast<double>(fps), {}, [fps](auto frames) {
                           return TypeClock(frames / fps) + ":" + std::to_string(frames % fps);
                         }};
  AddDivisors(notation.steps, fps);
  AddClockSteps(notation.steps, fps);
  notation.unitsInMinute = 60 * fps;
  return notation;
}

RulerNotation MillisecondClock(const Timeline& inTimeline) {
  RulerNotation notation{inTimeline.sampleRate / 1000.0, {}, [](auto ms) {
                           return TypeClock(ms / 1000) + TypeFraction(ms % 1000, 3);
                         }};
  AddOneTwoFive(notation.steps, 1, 1000);
  AddClockSteps(notation.steps, 1000);
  return notation;
}

RulerNotation WholeNumbers(double inSamplesInUnit) {
  RulerNotation notation{inSamplesInUnit, {}, [](auto count) { return std::to_string(count); }};
  AddOneTwoFive(notation.steps, 1, kLongestStep);
  return notation;
}

RulerNotation DecimalNumbers(double inSamplesInOne, int inUnitsInOne, int inDigits) {
  RulerNotation notation{inSamplesInOne / inUnitsInOne, {}, [=](auto units) {
                           return std::to_string(units / inUnitsInOne) +
                                  TypeFraction(units % inUnitsInOne, inDigits);
                         }};
  AddOneTwoFive(notation.steps, 1, kLongestStep);
  return notation;
}

RulerNotation BarsAndBeats(const Timeline& inTimeline) {
  const BeatInfo& beats = inTimeline.beats;
  const bool isDecimal = beats.iTicksPerBeat < 1;
  const std::int64_t ticksInBeat = isDecimal ? 1000 : beats.iTicksPerBeat;
  const std::int64_t beatsInBar = beats.iBeatsPerBar;
  const double beatSeconds = 60.0 / (beats.dTempo * beats.iBeatUnit / 4.0);
  const auto type = [=](std::int64_t inTicks) {
    const std::int64_t beat = FloorQuotient(inTicks, ticksInBeat);
    const std::int64_t bar = FloorQuotient(beat, beatsInBar);
    const std::int64_t tick = inTicks - beat * ticksInBeat;
    return std::to_string(bar + 1) + ":" + std::to_string(beat - bar * beatsInBar + 1) +
           (isDecimal ? TypeFraction(tick, 3) : "." + std::to_string(tick));
  };
  RulerNotation notation{
      beatSeconds * inTimeline.sampleRate / static_cast<double>(ticksInBeat), {}, type};
  notation.keepsSign = true;
  if (isDecimal) {
    AddOneTwoFive(notation.steps, 1, ticksInBeat);
  } else {
    AddNoteValues(notation.steps, ticksInBeat);
  }
  if (beatsInBar > 1) notation.steps.push_back(ticksInBeat);
  for (std::int64_t step = ticksInBeat * beatsInBar; step < kLongestStep; step *= 2) {
    notation.steps.push_back(step);
  }
  return notation;
}

}  // namespace

RulerNotation NotationOf(const Timeline& inTimeline, TimecodeFormat inFormat) {
  RequireAvailable(inTimeline, inFormat);
  const double rate = inTimeline.sampleRate;
  switch (inFormat) {
    case kTimecodeFormat_Decimal:
      return MillisecondClock(inTimeline);
    case kTimecodeFormat_Frames:
    case kTimecodeFormat_PulldownFrames:
      return WholeNumbers(rate / inTimeline.framesPerSecond);
    case kTimecodeFormat_Beats:
      return DecimalNumbers(rate * 60.0 / inTimeline.beats.dTempo, 1000, 3);
    case kTimecodeFormat_BarsAndBeats:
      return BarsAndBeats(inTimeline);
    case kTimecodeFormat_Milliseconds:
      return DecimalNumbers(rate / 1000.0, 10, 1);
    case kTimecodeFormat_Samples: {
      RulerNotation notation = WholeNumbers(1.0);
      notation.keepsSign = true;
      return notation;
    }
    default:
      return FrameClock(inTimeline);
  }
}

}  // namespace mezzo::tool
