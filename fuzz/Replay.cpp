// Stands in for the fuzzing engine: runs a target on the files of a corpus and on as many made-up
// inputs, the same ones every time.

#include "../tests/support/ExportedCalls.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* inBytes, std::size_t inCount);

namespace {

using Bytes = std::vector<std::uint8_t>;

void Run(const Bytes& inBytes) {
  LLVMFuzzerTestOneInput(inBytes.data(), inBytes.size());
}

}  // namespace

/// Usage: CORPUS-DIRECTORY MADE-UP-INPUTS
int main(int argc, char** argv) {
  if (argc != 3) return 2;
  std::vector<std::filesystem::path> paths;
  for (const auto& entry : std::filesystem::directory_iterator(argv[1])) paths.push_back(entry);
  std::sort(paths.begin(), paths.end());
  std::vector<Bytes> corpus;
  for (const auto& path : paths) {
    std::ifstream file(path, std::ios::binary);
    corpus.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    Run(corpus.back());
  }
  if (corpus.empty()) return 1;
  mezzo::test::SplitMix64 next(1);
  const auto below = [&next](std::size_t bound) {
    return static_cast<std::size_t>(next() % bound);
  };
  const long count = std::strtol(argv[2], nullptr, 10);
  for (long input = 0; input < count; ++input) {
    // Bytes at random, or a corpus input in which some are.
    const bool isRandom = input % 4 == 0;
    Bytes bytes = isRandom ? Bytes(below(96)) : corpus[below(corpus.size())];
    for (auto& byte : bytes) {
      if (isRandom || below(8) == 0) byte = static_cast<std::uint8_t>(next() >> 32);
    }
    Run(bytes);
  }
  std::printf("%zu files, %ld made-up inputs\n", corpus.size(), count);
  return 0;
}
