#include "Rows.h"
#include <Utility/MusicalNoteUtils.h>

#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

namespace mezzo::bench {
namespace {

/// Frequencies spread evenly over the keys of a piano.
std::vector<float> Frequencies() {
  std::mt19937 random(3);
  std::uniform_real_distribution<float> octaves(0.0f, 7.5f);
  std::vector<float> frequencies(1024);
  for (float& frequency : frequencies) frequency = 27.5f * std::exp2(octaves(random));
  return frequencies;
}

int NoteByLogarithm(float inFrequency, int* outOctave) {
  const float semitones = 12.0f * std::log2f(inFrequency / 27.5f);
  const auto octave = static_cast<int>(std::floor(semitones / 12.0f));
  *outOctave = octave;
  return static_cast<int>(std::floor(semitones - 12.0f * static_cast<float>(octave) + 0.5f));
}

template <class Find>
void AddNoteFinder(const char* inVariant, Find inFind) {
  Add("50 frequency to note", inVariant, [inFind, frequencies = Frequencies()](std::size_t number) {
    int octave = 0;
    int note = inFind(frequencies[number % frequencies.size()], &octave);
    benchmark::DoNotOptimize(note);
    benchmark::DoNotOptimize(octave);
  });
}

}  // namespace

void AddMusicalNotes() {
  AddNoteFinder(kLibrary, &utility::GetNoteFromFrequency);
  AddNoteFinder("log2f", &NoteByLogarithm);
  Add("51 note name", kLibrary, [text = plinth::UTF16String()](std::size_t number) mutable {
    utility::GetNoteString(text, static_cast<int>(number % 13), static_cast<int>(number % 8),
                           number % 2 == 0);
    benchmark::DoNotOptimize(text.data());
  });
}

}  // namespace mezzo::bench
