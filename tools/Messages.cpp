#include "Messages.h"

#include <boost/locale/utf.hpp>

#include <algorithm>
#include <array>
#include <cstdio>
#include <iostream>

namespace mezzo::tool {

namespace {

/// Escapes control characters and bytes that are not UTF-8. Escaping twice changes nothing more.
std::string Escape(std::string_view inText) {
  using Decoder = boost::locale::utf::utf_traits<char>;
  constexpr char32_t kDelete = 0x7F;
  constexpr char32_t kLastControl = 0x9F;
  std::string escaped;
  const char* const end = inText.data() + inText.size();
  for (const char* next = inText.data(); next != end;) {
    const char* const begin = next;
    const char32_t character = Decoder::decode(next, end);
    const bool isControl = character < ' ' || (character >= kDelete && character <= kLastControl);
    if (boost::locale::utf::is_valid_codepoint(character) && !isControl) {
      escaped.append(begin, next);
    } else {
      next = begin + 1;
      std::array<char, 8> code;
      std::snprintf(code.data(), code.size(), "\\x%02x",
                    static_cast<unsigned>(static_cast<unsigned char>(*begin)));
      escaped += code.data();
    }
  }
  return escaped;
}

}  // namespace

std::string Quote(std::string_view inText) {
  constexpr int kMostCharacters = 80;
  int count = 0;
  const auto end = std::find_if(inText.begin(), inText.end(), [&count](char inByte) {
    const bool continuesCharacter = (inByte & 0xC0) == 0x80;
    return !continuesCharacter && ++count > kMostCharacters;
  });
  return "'" + Escape(inText.substr(0, static_cast<std::size_t>(end - inText.begin()))) +
         (end == inText.end() ? "'" : "...'");
}

void Complain(std::string_view inMessage) {
  std::cerr << "mezzo: " + Escape(inMessage) + '\n';
}

}  // namespace mezzo::tool
