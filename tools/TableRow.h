/// \file
/// A row of a table, of which one field is converted.
#pragma once

#include <cstddef>
#include <string>

namespace mezzo::tool {

/// A line of a marker list or another table. A field that begins with a double quote ends with one
/// and may contain the delimiter; a double quote in it is doubled.
class TableRow {
 public:
  /// \param inField the field, counted from 1; 0 for the whole line.
  /// \exception UserError when the line has fewer fields or a quote is not closed.
  TableRow(const std::string& inLine, std::size_t inField, char inDelimiter);

  /// \return the field's text without quotes and the blanks around it.
  const std::string& GetField() const { return fField; }

  /// \return the line with another text in the field, in quotes where necessary.
  std::string ReplaceField(const std::string& inText) const;

 private:
  std::string fBefore;
  std::string fField;
  std::string fAfter;
  bool fHasFields;
  bool fIsQuoted = false;
  char fDelimiter;
};

}  // namespace mezzo::tool
