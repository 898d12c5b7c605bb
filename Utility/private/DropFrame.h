// Drop-frame counting (SMPTE ST 12-1), in both directions.
//
// Labels run at a nominal 30 or 60 frames per second while the real rate is 1000/1001 of it. To
// keep the labels near the clock, the first two labels of every minute (four at 60) are left out,
// except in every tenth minute. Labels are dropped, never frames. The directions are exact inverses
// at 30 and 60 frames per second; neither knows about samples or the factor 1000/1001.

#pragma once

#include "DefinedArithmetic.h"

#include <cstdint>

namespace mezzo::utility::dropframe {

/// A label's fields; the minutes are split at the ten-minute block in which they drop labels.
template <class Int>
struct Label {
  Int hours;
  Int tensOfMinutes;
  Int minuteOfTen;
  Int seconds;
  Int frames;
};

/// Frame count to label.
/// \param inMultiplier the frame rate in multiples of 30, positive; a constant where possible.
template <class Int>
constexpr Label<Int> Split(Int inFrames, Int inMultiplier) {
  const Int framesPerSecond = 30 * inMultiplier;
  const Int droppedPerMinute = 2 * inMultiplier;
  const Int framesPerMinute = 60 * framesPerSecond - droppedPerMinute;
  const Int framesPerTenMinutes = 10 * framesPerMinute + droppedPerMinute;

  const Int blocks = inFrames >= 0 ? inFrames / framesPerTenMinutes : 0;
  const Int inBlock = inFrames - blocks * framesPerTenMinutes;
  // The block's first minute is longer by the labels that it keeps.
  const Int minute =
      inBlock > droppedPerMinute ? (inBlock - droppedPerMinute) / framesPerMinute : 0;
  // From here on this counts labels: a minute that drops labels begins behind them.
  const Int inMinute = inBlock - minute * framesPerMinute;
  const Int seconds = inMinute / framesPerSecond;
  const Int hours = blocks / 6;
  return {hours, blocks - hours * 6, minute, seconds, inMinute - seconds * framesPerSecond};
}

/// Frames in an hour of drop-frame labels; a rate has such labels when this is a multiple of 6.
constexpr std::int32_t FramesPerHour(std::int32_t inTimecodeFPS) {
  using namespace arithmetic;
  return Subtract(Multiply(inTimecodeFPS, 3600), Multiply(inTimecodeFPS, 108) / 30);
}

/// Label to frame count. A dropped label stands for the first frame of its minute; seconds and
/// frames past their range count on.
constexpr std::int32_t Count(std::int32_t inHours, std::int32_t inMinutes, std::int32_t inSeconds,
                             std::int32_t inFrames, std::int32_t inTimecodeFPS) {
  using namespace arithmetic;
  const std::int32_t framesPerHour = FramesPerHour(inTimecodeFPS);
  const std::int32_t droppedPerMinute = inTimecodeFPS / 15;
  const std::int32_t tens = inMinutes / 10;
  const std::int32_t minuteOfTen = inMinutes % 10;
  const bool isDropped = minuteOfTen != 0 && inSeconds == 0 && inFrames < droppedPerMinute;

  std::int32_t count = Multiply(inHours, framesPerHour);
  count = Add(count, Multiply(tens, framesPerHour / 6));
  count = Add(count, Multiply(minuteOfTen, Multiply(inTimecodeFPS, 60)));
  count = Subtract(count, Multiply(minuteOfTen, droppedPerMinute));
  count = Add(count, Multiply(inSeconds, inTimecodeFPS));
  return Add(count, isDropped ? droppedPerMinute : inFrames);
}

}  // namespace mezzo::utility::dropframe
