#include "InputError.h"

#include <boost/locale/utf.hpp>

#include <algorithm>
#include <array>
#include <cstdio>
#include <iostream>

namespace mezzo::tool {
namespace {

std::string Escaped(char inByte) {
  switch (inByte) {
    case '\t':
      return "\\t";
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    default: {
      std::array<char, 8> text;
      const auto byte = static_cast<unsigned>(static_cast<unsigned char>(inByte));
      std::snprintf(text.data(), text.size(), "\\x%02x", byte);
      return text.data();
    }
  }
}

}  // namespace

std::string Quoted(std::string_view inText) {
  using Decoder = boost::locale::utf::utf_traits<char>;
  constexpr int kMostCharacters = 80;
  constexpr char32_t kFirstPrintable = 0xA0;  // behind two ranges of control characters
  std::string quoted = "'";
  int count = 0;
  for (const char* byte = inText.begin(); byte != inText.end();) {
    if (++count > kMostCharacters) return quoted + "...'";
    const char* const begin = byte;
    const char32_t character = Decoder::decode(byte, inText.end());
    const bool isASCII = character >= ' ' && character < 0x7F;
    const bool isValid = boost::locale::utf::is_valid_codepoint(character);
    if (isASCII || (isValid && character >= kFirstPrintable)) {
      quoted.append(begin, byte);
    } else {
      byte = begin + 1;
      quoted += Escaped(*begin);
    }
  }
  return quoted + "'";
}

void Complain(const std::string& inMessage) {
  std::string line = inMessage;
  // Messages that are not ours may hold what a terminal would obey rather than show.
  std::replace_if(
      line.begin(), line.end(),
      [](char character) { return (character >= '\0' && character < ' ') || character == '\x7f'; },
      ' ');
  std::cerr << "mezzo: " + line + "\n";
}

}  // namespace mezzo::tool
