// Frequency to note, straight from the tables of octave bands and of boundaries within a band.
#pragma once

#include <array>

namespace mezzo::test {

struct Note {
  int index;
  int octave;
  friend bool operator==(const Note&, const Note&) = default;
};

/// The band's upper bound, octave and base, in hertz.
struct OctaveBand {
  float end;
  int octave;
  float base;
};

inline constexpr OctaveBand kOctaveBands[] = {
    {27.5f, -1, 13.75f},   {55.0f, 0, 27.5f},      {110.0f, 1, 55.0f},     {220.0f, 2, 110.0f},
    {440.0f, 3, 220.0f},   {880.0f, 4, 440.0f},    {1760.0f, 5, 880.0f},   {3520.0f, 6, 1760.0f},
    {7040.0f, 7, 3520.0f}, {14080.0f, 8, 7040.0f}, {28160.0f, 9, 14080.0f}};

/// Where note index k ends and k + 1 begins, as a multiple of the base: 2^((2k + 1) / 24).
inline constexpr std::array<float, 12> kNoteBoundaries = {
    1.0293022f, 1.0905077f, 1.1553527f, 1.2240535f, 1.2968396f, 1.3739537f,
    1.4556532f, 1.5422108f, 1.6339155f, 1.7310731f, 1.8340081f, 1.943064f};

inline Note NoteOf(float inFrequency) {
  for (const auto& [end, octave, base] : kOctaveBands) {
    if (inFrequency >= end) continue;  // not a number stays in the first band
    int index = 0;
    for (const float boundary : kNoteBoundaries) {
      if (inFrequency < base * boundary) return {index, octave};
      ++index;
    }
    return {inFrequency < base + base ? index : 0, octave};
  }
  return {0, 10};
}

}  // namespace mezzo::test
