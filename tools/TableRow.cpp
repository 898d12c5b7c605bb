#include "TableRow.h"

#include "InputError.h"

#include <boost/algorithm/string/replace.hpp>
#include <boost/algorithm/string/trim.hpp>

#include <algorithm>

namespace mezzo::tool {

TableRow::TableRow(const std::string& inLine, std::size_t inField, char inDelimiter)
    : fField(inLine), fDelimiter(inDelimiter) {
  if (inField == 0) return;
  std::size_t begin = 0;
  for (std::size_t field = 1;; ++field) {
    bool isInQuotes = false;
    std::size_t end = begin;
    for (; end < inLine.size() && (isInQuotes || inLine[end] != inDelimiter); ++end) {
      if (inLine[end] == '"') isInQuotes = !isInQuotes;
    }
    if (field == inField) {
      fBefore = inLine.substr(0, begin);
      fField = inLine.substr(begin, end - begin);
      fAfter = inLine.substr(end);
      break;
    }
    if (end == inLine.size()) {
      throw InputError("no field " + std::to_string(inField) + " in " + Quoted(inLine));
    }
    begin = end + 1;
  }
  boost::trim(fField);
  fIsQuoted = fField.size() >= 2 && fField.starts_with('"') && fField.ends_with('"');
  if (!fIsQuoted) return;
  fField = fField.substr(1, fField.size() - 2);
  boost::replace_all(fField, "\"\"", "\"");
}

std::string TableRow::With(const std::string& inText) const {
  const bool needsQuotes =
      fIsQuoted || (!fAfter.empty() && inText.find(fDelimiter) != std::string::npos);
  return fBefore + (needsQuotes ? '"' + inText + '"' : inText) + fAfter;
}

}  // namespace mezzo::tool
