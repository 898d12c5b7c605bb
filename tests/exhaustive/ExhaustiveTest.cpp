// Every input of the functions that have 2^32 of them. Minutes, not seconds: run with
// ctest -L exhaustive.

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
  const auto check = [&](std::uint64_t first) {
    for (std::uint64_t bits = first; bits <= UINT32_MAX; bits += stride) {
      if (inHolds(static_cast<std::uint32_t>(bits))) continue;
      ADD_FAILURE() << "at 0x" << std::hex << bits;
      return;
    }
  };
  std::vector<std::thread> threads;
  for (std::uint64_t first = 0; first < stride; ++first) threads.emplace_back(check, first);
  for (auto& thread : threads) thread.join();
}

class EveryFrameCount : public testing::TestWithParam<std::int32_t> {};

TEST_P(EveryFrameCount, ComesBackFromItsDropFrameLabel) {
  const std::int32_t fps = GetParam();
  ExpectForAll([fps](std::uint32_t frame) {
    std::uint32_t hours = 0, minutes = 0, seconds = 0, frames = 0;
    DropFrameToHMSF(frame, fps, hours, minutes, seconds, frames);
    const auto field = [](std::uint32_t value) { return static_cast<std::int32_t>(value); };
    const bool exists = minutes < 60 && seconds < 60 && field(frames) < fps &&
                        (minutes % 10 == 0 || seconds > 0 || field(frames) >= fps / 15);
    return exists && dropframe::FrameCountOfLabel(field(hours), field(minutes), field(seconds),
                                                  field(frames), fps) == field(frame);
  });
}

INSTANTIATE_TEST_SUITE_P(AtBothRates, EveryFrameCount, testing::Values(30, 60));

TEST(EveryFrequency, HasTheNoteOfEqualTemperament) {
  ExpectForAll([](std::uint32_t bits) {
    const auto frequency = std::bit_cast<float>(bits);
    int octave = 99;
    const int note = GetNoteFromFrequency(frequency, &octave);
    if (!(frequency >= 13.75f && frequency < 28160.0f)) {
      const bool isAbove = frequency >= 28160.0f;
      return octave == (isAbove ? 10 : -1) && note == 0;
    }
    // Semitones above the A of octave -1. The A at the end of an octave counts as its note 12 below
    // the exact frequency, and close to a boundary single precision decides.
    const double semitones = 12.0 * std::log2(static_cast<double>(frequency) / 13.75);
    const double distance = semitones - (12 * (octave + 1) + note);
    return note <= 12 && std::fabs(distance) <= 0.5 + 1e-5;
  });
}

}  // namespace
}  // namespace mezzo::utility
