#include <Utility/MusicalNoteUtils.h>

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <cstddef>

namespace mezzo::utility {
namespace {

int FindNoteByLogarithm(float inFrequency, int* outOctave) {
  const float semitones = 12.0f * std::log2f(inFrequency / 27.5f);
  const auto octave = static_cast<int>(std::floor(semitones / 12.0f));
  *outOctave = octave;
  return static_cast<int>(std::floor(semitones - 12.0f * static_cast<float>(octave) + 0.5f));
}

template <int (*kFind)(float, int*)>
void FindNote(benchmark::State& ioState) {
  // Frequencies over the range of a piano, in scattered order to defeat branch prediction.
  std::array<float, 1024> frequencies;
  for (std::size_t place = 0; place < frequencies.size(); ++place)
    frequencies[place] = 27.5f * std::exp2(7.5f * static_cast<float>(place * 389 % 1024) / 1024.0f);
  std::size_t place = 0;
  for (auto _ : ioState) {
    int octave = 0;
    benchmark::DoNotOptimize(kFind(frequencies[place++ % 1024], &octave));
    benchmark::DoNotOptimize(octave);
  }
}
BENCHMARK_TEMPLATE(FindNote, GetNoteFromFrequency)->Name("frequency to note");
BENCHMARK_TEMPLATE(FindNote, FindNoteByLogarithm)->Name("frequency to note/log2f");

void WriteNote(benchmark::State& ioState) {
  plinth::UTF16String text;
  int number = 0;
  for (auto _ : ioState) {
    GetNoteString(text, number % 13, number % 8, number % 2 == 0);
    benchmark::DoNotOptimize(text.data());
    ++number;
  }
}
BENCHMARK(WriteNote)->Name("note name");

}  // namespace
}  // namespace mezzo::utility
