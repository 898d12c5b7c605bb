#include "Messages.h"

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/locale/utf.hpp>

#include <algorithm>
#include <array>
#include <cstdio>
#include <iostream>
#include <numeric>

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

/// The number of characters to insert, remove or replace to turn one word into the other.
std::size_t GetEditDistance(std::string_view inFrom, std::string_view inTo) {
  std::vector<std::size_t> distances(inTo.size() + 1);
  std::iota(distances.begin(), distances.end(), std::size_t{0});
  for (const char character : inFrom) {
    std::size_t diagonal = distances[0]++;
    for (std::size_t index = 0; index < inTo.size(); ++index) {
      const std::size_t replaced = diagonal + (character == inTo[index] ? 0 : 1);
      diagonal = distances[index + 1];
      distances[index + 1] = std::min({replaced, diagonal + 1, distances[index] + 1});
    }
  }
  return distances.back();
}

}  // namespace

std::string Quote(std::string_view inText) {
  constexpr int kMaxCharacters = 80;
  int count = 0;
  const auto end = std::find_if(inText.begin(), inText.end(), [&count](char inByte) {
    const bool continuesCharacter = (inByte & 0xC0) == 0x80;
    return !continuesCharacter && ++count > kMaxCharacters;
  });
  return "'" + Escape(inText.substr(0, static_cast<std::size_t>(end - inText.begin()))) +
         (end == inText.end() ? "'" : "...'");
}

std::string SuggestWord(const std::string& inUnknown, const std::vector<std::string>& inKnown,
                        const std::string& inListingCommand) {
  const std::string unknown = boost::to_lower_copy(inUnknown);
  std::string similar;
  std::size_t least = 3;
  for (const std::string& known : inKnown) {
    const std::string lower = boost::to_lower_copy(known);
    const bool isPart =
        unknown.size() > 1 && ("-" + lower).find("-" + unknown) != std::string::npos;
    const std::size_t distance = isPart ? 0 : GetEditDistance(unknown, lower);
    const std::size_t letters = lower.size() - lower.find_first_not_of('-');
    if (distance >= least || 2 * distance > letters) continue;
    least = distance;
    similar = known;
  }
  return similar.empty() ? "; see '" + inListingCommand + "'" : "; did you mean '" + similar + "'?";
}

void PrintMessage(std::string_view inMessage) {
  std::cerr << "mezzo: " + Escape(inMessage) + '\n';
}

}  // namespace mezzo::tool
