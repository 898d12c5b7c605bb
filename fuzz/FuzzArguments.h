// A fuzz target's view of its bytes: the arguments of a call.
#pragma once

#include "../tests/support/ExportedCalls.h"

#include <bit>
#include <cstddef>
#include <cstdint>
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
    if (const auto choice = Byte(); inUsual.size() != 0 && choice < 0x80)
      return inUsual.begin()[choice % inUsual.size()];
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

 protected:
  std::int64_t Integer(int inBits, Usual inUsual) override {
    if (inUsual.size() != 0) {
      if (const auto choice = Byte(); choice < 0x80)
        return inUsual.begin()[choice % inUsual.size()];
    }
    std::uint64_t value = 0;
    for (int bit = 0; bit < inBits; bit += 8) value = value << 8 | Byte();
    return static_cast<std::int64_t>(value);
  }

 private:
  const std::uint8_t* fNext;
  const std::uint8_t* fEnd;
};

}  // namespace mezzo::fuzz
