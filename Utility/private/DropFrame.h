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

using arithmetic::Int32;

/// A label's fields; the minutes are split at the ten-minute block in which they drop labels.
struct Label {
  std::int64_t hours;
  std::int64_t tensOfMinutes;
  std::int64_t minuteOfTen;
  std::int64_t seconds;
  std::int64_t frames;
};

/// Frame count to label.
/// \param inFrames the count; the smallest integer, which has no magnitude, fills no field but the
///     last two.
/// \param inMultiplier the frame rate in multiples of 30, positive.
constexpr Label LabelOf(std::int64_t inFrames, std::int64_t inMultiplier) {
  const std::int64_t framesPerSecond = 30 * inMultiplier;
  const std::int64_t droppedPerMinute = 2 * inMultiplier;
  const std::int64_t framesPerMinute = 60 * framesPerSecond - droppedPerMinute;
  const std::int64_t framesPerTenMinutes = 10 * framesPerMinute + droppedPerMinute;

  const std::int64_t blocks = inFrames >= 0 ? inFrames / framesPerTenMinutes : 0;
  const std::int64_t inBlock = inFrames - blocks * framesPerTenMinutes;
  // Minute 0 keeps its labels, so the others start later by those that they drop. The test, as the
  // one before it, matters for the smallest integer only.
  const std::int64_t minute =
      inBlock > droppedPerMinute ? (inBlock - droppedPerMinute) / framesPerMinute : 0;
  // From here on this counts labels: a minute that drops labels begins behind them.
  const std::int64_t inMinute = inBlock - minute * framesPerMinute;
  const std::int64_t seconds = inMinute / framesPerSecond;
  return {blocks / 6, blocks % 6, minute, seconds, inMinute - seconds * framesPerSecond};
}

/// Frames in an hour of drop-frame labels; a rate has such labels when this is a multiple of 6.
constexpr Int32 FramesPerHour(Int32 inTimecodeFPS) {
  return inTimecodeFPS * 3600 - inTimecodeFPS * 108 / 30;
}

/// Label to frame count. A dropped label stands for the first frame of its minute; seconds and
/// frames past their range count on.
constexpr Int32 FrameCountOf(Int32 inHours, Int32 inMinutes, Int32 inSeconds, Int32 inFrames,
                             Int32 inTimecodeFPS) {
  const Int32 framesPerHour = FramesPerHour(inTimecodeFPS);
  const Int32 droppedPerMinute = inTimecodeFPS / 15;
  const Int32 tens = inMinutes / 10;
  const Int32 minuteOfTen = inMinutes % 10;
  const bool isDropped = minuteOfTen != 0 && inSeconds == 0 && inFrames < droppedPerMinute;
  return inHours * framesPerHour + tens * (framesPerHour / 6) + minuteOfTen * (inTimecodeFPS * 60) -
         minuteOfTen * droppedPerMinute + inSeconds * inTimecodeFPS +
         (isDropped ? droppedPerMinute : inFrames);
}

}  // namespace mezzo::utility::dropframe
