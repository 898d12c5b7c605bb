#include "TableRow.h"

#include "Messages.h"

#include <boost/algorithm/string/replace.hpp>
#include <boost/algorithm/string/trim.hpp>

namespace mezzo::tool {

TableRow::TableRow(const std::string& inLine, std::size_t inField, char inDelimiter)
    : fField(inLine), fHasFields(inField > 0), fDelimiter(inDelimiter) {
  if (!fHasFields) return;
  std::size_t begin = 0;
  std::size_t end = 0;
  for (std::size_t field = 1;; ++field, begin = end + 1) {
    bool isQuoted = false;
    const std::size_t first = inLine.find_first_not_of(' ', begin);
    const bool hasQuotes = first < inLine.size() && inLine[first] == '"';
    for (end = begin; end < inLine.size() && (isQuoted || inLine[end] != inDelimiter); ++end) {
      if (hasQuotes && inLine[end] == '"') isQuoted = !isQuoted;
    }
    if (isQuoted) throw UserError("no closing quote in " + Quote(inLine));
    if (field == inField) break;
    if (end == inLine.size())
      throw UserError("no field " + std::to_string(inField) + " in " + Quote(inLine));
  }
  fBefore = inLine.substr(0, begin);
  fField = boost::trim_copy(inLine.substr(begin, end - begin));
  fAfter = inLine.substr(end);
  fIsQuoted = fField.size() >= 2 && fField.starts_with('"') && fField.ends_with('"');
  if (!fIsQuoted) return;
  fField = fField.substr(1, fField.size() - 2);
  boost::replace_all(fField, "\"\"", "\"");
}

std::string TableRow::ReplaceField(const std::string& inText) const {
  const bool needsQuotes =
      fIsQuoted || (fHasFields && inText.find(fDelimiter) != std::string::npos);
  return fBefore + (needsQuotes ? '"' + inText + '"' : inText) + fAfter;
}

}  // namespace mezzo::tool
