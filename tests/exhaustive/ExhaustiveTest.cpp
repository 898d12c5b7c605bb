// Every 32-bit frame count and every single-precision frequency. Takes minutes; run with ctest -L
// exhaustive.

#include "../../Utility/private/DropFrame.h"
#include <Utility/MusicalNoteUtils.h>
#include <Utility/TimeConversionUtils.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <thread>
#include <vector>

namespace mezzo::utility {
namespace {

/// Spreads all 32-bit patterns over the processors; a thread stops at its first failure.
template <class Holds>
void ExpectForAll(const Holds& inHolds) {
  const std::uint64_t stride = std::max(1u, std::thread::hardware_concurrency());
  std::vector<std::jthread> threads;
  for (std::uint64_t first = 0; first < stride; ++first) {
    threads.emplace_back([&inHolds, first, stride] {
      std::uint64_t bits = first;
      while (bits <= UINT32_MAX && inHolds(static_cast<std::uint32_t>(bits))) bits += stride;
      EXPECT_GT(bits, UINT32_MAX);
    });
  }
}

TEST(EveryFrameCount, ComesBackFromItsDropFrameLabel) {
  for (const std::int32_t fps : {30, 60}) {
    ExpectForAll([fps](std::uint32_t inFrame) {
      std::uint32_t h = 0, m = 0, s = 0, f = 0;
      DropFrameToHMSF(inFrame, fps, h, m, s, f);
      const auto field = [](std::uint32_t inValue) { return static_cast<std::int32_t>(inValue); };
      const bool isDropped = m % 10 != 0 && s == 0 && field(f) < fps / 15;
      return m < 60 && s < 60 && field(f) < fps && !isDropped &&
             dropframe::FrameCountOfLabel(field(h), field(m), field(s), field(f), fps) ==
                 field(inFrame);
    });
  }
}

TEST(EveryFrequency, HasTheNoteOfEqualTemperament) {
  ExpectForAll([](std::uint32_t inBits) {
    const auto frequency = std::bit_cast<float>(inBits);
    int octave = 99;
    const int note = GetNoteFromFrequency(frequency, &octave);
    if (frequency >= 28160.0f) return octave == 10 && note == 0;
    if (!(frequency >= 13.75f)) return octave == -1 && note == 0;
    // Semitones above the A of octave -1. A frequency just below an A is note 12 of the octave that
    // ends there. Near a boundary, rounding to single precision decides.
    const double semitones = 12.0 * std::log2(static_cast<double>(frequency) / 13.75);
    const double distance = semitones - (12 * (octave + 1) + note);
    return note <= 12 && std::fabs(distance) <= 0.5 + 1e-5;
  });
}

}  // namespace
}  // namespace mezzo::utility
