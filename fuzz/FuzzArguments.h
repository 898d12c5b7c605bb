// A fuzz target's view of its bytes: the arguments of a call.
#pragma once

#include "../tests/support/ExportedCalls.h"
#include "../tests/support/Text.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace mezzo::fuzz {

using plinth::UTF16String;

/// Reads arguments from bytes; behind the last there are zeros. Where an argument has usual values,
/// a first byte below 0x80 chooses one of them.
class FuzzArguments : public test::Arguments {
 public:
  FuzzArguments(const std::uint8_t* inBytes, std::size_t inCount)
      : fNext(inBytes), fEnd(inBytes + inCount) {}

  std::uint8_t Byte() { return fNext == fEnd ? std::uint8_t{0} : *fNext++; }

  double Double(std::initializer_list<double> inUsual) override {
    if (const auto choice = Byte(); inUsual.size() != 0 && choice < 0x80) {
      return inUsual.begin()[choice % inUsual.size()];
    }
    return std::bit_cast<double>(Integer(64, {}));
  }

  /// A byte for the length; then a byte for each unit of ASCII, two for others.
  UTF16String Text(const test::Forms&) override {
    UTF16String text;
    for (std::uint8_t left = Byte(); left > 0; --left) {
      char16_t unit = Byte();
      if (unit >= 0x80) unit = static_cast<char16_t>(unit << 8 | Byte());
      text += unit;
    }
    return text;
  }
  UTF16String Text() { return Text({}); }

 protected:
  std::int64_t Integer(int inBits, Usual inUsual) override {
    if (inUsual.size() != 0) {
      if (const auto choice = Byte(); choice < 0x80) {
        return inUsual.begin()[choice % inUsual.size()];
      }
    }
    std::uint64_t value = 0;
    for (int bit = 0; bit < inBits; bit += 8) value = value << 8 | Byte();
    return static_cast<std::int64_t>(value);
  }

 private:
  const std::uint8_t* fNext;
  const std::uint8_t* fEnd;
};

/// What a target does with one input.
void Check(FuzzArguments& ioArgs);

/// Ends the process when a result is not what the reference says.
inline void Require(bool inHolds, const std::string& inActual, const std::string& inExpected) {
  if (inHolds) return;
  std::fprintf(stderr, "result %s, reference %s\n", inActual.c_str(), inExpected.c_str());
  std::abort();
}

inline void RequireEqual(const std::string& inActual, const std::string& inExpected) {
  Require(inActual == inExpected, inActual, inExpected);
}

/// What a call writes.
template <class Write>
std::string Written(const Write& inWrite) {
  UTF16String text;
  inWrite(text);
  return test::Shown(text);
}

/// Requires a value to lie within a distance of the exact one.
inline void RequireNear(long double inActual, long double inExact, long double inDistance) {
  Require(inActual - inExact <= inDistance && inExact - inActual <= inDistance,
          std::to_string(inActual), std::to_string(inExact) + " ± " + std::to_string(inDistance));
}

}  // namespace mezzo::fuzz
