/// \file
/// JSON on standard output. Members keep the order in which they are added.
#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace mezzo::tool {

using JSON = nlohmann::ordered_json;

/// Formats a value. Bytes that are not UTF-8 become U+FFFD.
/// \param inIndent blanks for each level; -1 puts everything on one line.
inline std::string FormatJSON(const JSON& inValue, int inIndent = 2) {
  return inValue.dump(inIndent, ' ', false, JSON::error_handler_t::replace);
}

}  // namespace mezzo::tool
