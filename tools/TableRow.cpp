#include "TableRow.h"

#include "Messages.h"

#include <boost/algorithm/string/replace.hpp>
#include <boost/algorithm/string/trim.hpp>

namespace mezzo::tool {

bool FieldScanner::ReadCharacter(char inCharacter) {
  if (inCharacter == fDelimiter && !fIsInQuotes) {
    fIsBlank = true;
    fHasQuotes = false;
    return true;
  }
  if (inCharacter == '"' && fDelimiter != '\t' && (fIsBlank || fHasQuotes)) {
    fHasQuotes = true;
    fIsInQuotes = !fIsInQuotes;
  }
  fIsBlank = fIsBlank && inCharacter == ' ';
  return false;
}

TableRow::TableRow(const std::string& inRow, std::size_t inField, char inDelimiter)
    : fField(inRow), fHasFields(inField > 0), fDelimiter(inDelimiter) {
  if (!fHasFields) return;
  FieldScanner scanner(inDelimiter);
  std::size_t field = 1;
  std::size_t begin = 0;
  std::size_t end = inRow.size();
  for (std::size_t place = 0; place < inRow.size(); ++place) {
    if (!scanner.ReadCharacter(inRow[place])) continue;
    if (field == inField) end = place;
    if (++field == inField) begin = place + 1;
  }
  if (scanner.IsInQuotes()) throw UserError("no closing quote in " + Quote(inRow));
  if (field < inField)
    throw UserError("no field " + std::to_string(inField) + " in " + Quote(inRow) +
                    (field == 1 ? "; see --delimiter" : ""));
  fBefore = inRow.substr(0, begin);
  fField = boost::trim_copy(inRow.substr(begin, end - begin));
  fAfter = inRow.substr(end);
  fIsQuoted = fField.size() >= 2 && fField.starts_with('"') && fField.ends_with('"');
  if (!fIsQuoted) return;
  fField = fField.substr(1, fField.size() - 2);
  boost::replace_all(fField, "\"\"", "\"");
}

bool TableRow::MayHaveBeenSplit() const {
  return !fIsQuoted && fAfter.size() > 1 && fAfter[1] >= '0' && fAfter[1] <= '9';
}

std::string TableRow::ReplaceField(const std::string& inText) const {
  const bool needsQuotes =
      fIsQuoted || (fHasFields && inText.find(fDelimiter) != std::string::npos);
  return fBefore + (needsQuotes ? '"' + inText + '"' : inText) + fAfter;
}

}  // namespace mezzo::tool
