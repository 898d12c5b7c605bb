/// \file
/// JSON on standard output: members in the order in which they are given.
#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace mezzo::tool {

using JSON = nlohmann::ordered_json;

/// Writes a value; bytes that are not UTF-8 become U+FFFD.
/// \param inIndent blanks for each level; -1: everything on one line.
inline std::string ToText(const JSON& inValue, int inIndent = 2) {
  return inValue.dump(inIndent, ' ', false, JSON::error_handler_t::replace);
}

}  // namespace mezzo::tool
