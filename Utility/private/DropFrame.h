// Drop-frame counting (SMPTE ST 12-1), in both directions.
//
// Labels count a nominal 30 or 60 frames per second, but the real rate is 1000/1001 of that. To
// keep the labels close to real time, the first two labels of every minute (four at 60) are
// dropped, except in every tenth minute. Labels are dropped, never frames. The two directions are
// exact inverses at 30 and 60 frames per second. Neither involves samples or the factor 1000/1001.

#pragma once

#include "DefinedArithmetic.h"

#include <cstdint>

namespace mezzo::utility::dropframe {

using arithmetic::Int32;

/// The fields of a label. The rule repeats every ten minutes, so minutes are split into tens of
/// minutes and the minute within the ten.
struct Label {
  std::int64_t hours;
  std::int64_t tensOfMinutes;
  std::int64_t minuteOfTen;
  std::int64_t seconds;
  std::int64_t frames;
};

/// Converts a frame count to its label.
/// \param inFrames the count, not negative; or the smallest integer, which is its own magnitude.
///     Its label has negative seconds and frames, and no hours and minutes.
/// \param inMultiplier the frame rate divided by 30, positive.
constexpr Label LabelOfFrameCount(std::int64_t inFrames, std::int64_t inMultiplier) {
  const std::int64_t framesPerSecond = 30 * inMultiplier;
  const std::int64_t droppedPerMinute = 2 * inMultiplier;
  const std::int64_t framesPerMinute = 60 * framesPerSecond - droppedPerMinute;
  const std::int64_t framesPerTenMinutes = 10 * framesPerMinute + droppedPerMinute;

  const std::int64_t blocks = inFrames >= 0 ? inFrames / framesPerTenMinutes : 0;
  const std::int64_t frameWithinBlock = inFrames - blocks * framesPerTenMinutes;
  // Minute 0 of a block drops no labels, so it is `droppedPerMinute` frames longer than the others.
  // This conditional operator and the one in `blocks` matter for the smallest integer only.
  const std::int64_t minute = frameWithinBlock > droppedPerMinute
                                  ? (frameWithinBlock - droppedPerMinute) / framesPerMinute
                                  : 0;
  // Minute 0 has `droppedPerMinute` frames more than `framesPerMinute`. In minutes 1 to 9,
  // `labelWithinMinute` therefore starts at `droppedPerMinute`, the first label of these minutes.
  const std::int64_t labelWithinMinute = frameWithinBlock - minute * framesPerMinute;
  const std::int64_t seconds = labelWithinMinute / framesPerSecond;
  return {blocks / 6, blocks % 6, minute, seconds, labelWithinMinute - seconds * framesPerSecond};
}

/// Counts the frames in an hour of drop-frame labels. `ConvertTimecodeToSamples` reports rates at
/// which this is not a multiple of 6.
constexpr Int32 CountFramesPerHour(Int32 inTimecodeFPS) {
  return inTimecodeFPS * 3600 - inTimecodeFPS * 108 / 30;
}

/// Converts a label to its frame count. A dropped label stands for the first frame of its minute.
/// Minutes, seconds and frames beyond their range are counted too.
constexpr Int32 FrameCountOfLabel(Int32 inHours, Int32 inMinutes, Int32 inSeconds, Int32 inFrames,
                                  Int32 inTimecodeFPS) {
  const Int32 framesPerHour = CountFramesPerHour(inTimecodeFPS);
  const Int32 droppedPerMinute = inTimecodeFPS / 15;
  const Int32 tens = inMinutes / 10;
  const Int32 minuteOfTen = inMinutes % 10;
  const bool isDropped = minuteOfTen != 0 && inSeconds == 0 && inFrames < droppedPerMinute;
  return inHours * framesPerHour + tens * (framesPerHour / 6) + minuteOfTen * (inTimecodeFPS * 60) -
         minuteOfTen * droppedPerMinute + inSeconds * inTimecodeFPS +
         (isDropped ? droppedPerMinute : inFrames);
}

}  // namespace mezzo::utility::dropframe
