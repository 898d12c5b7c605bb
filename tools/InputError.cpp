#include "InputError.h"

#include <algorithm>
#include <iostream>

namespace mezzo::tool {

void Complain(const std::string& inMessage) {
  std::string line = inMessage;
  // What a terminal would obey rather than show.
  std::replace_if(
      line.begin(), line.end(),
      [](char character) { return (character >= '\0' && character < ' ') || character == '\x7f'; },
      ' ');
  std::cerr << "mezzo: " + line + "\n";
}

}  // namespace mezzo::tool
