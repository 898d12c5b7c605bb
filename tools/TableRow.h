/// \file
/// One column of a line of a table; the rest of the line stays as it is.
#pragma once

#include <cstddef>
#include <string>

namespace mezzo::tool {

/// A line of a marker list or another table. Fields in double quotes may hold the delimiter; a
/// double quote in them is written twice.
class TableRow {
 public:
  /// \param inField the field, counted from 1; 0 for the whole line.
  /// \exception InputError when the line has fewer fields.
  TableRow(const std::string& inLine, std::size_t inField, char inDelimiter);

  /// The field's text, without quotes and the blanks around it.
  const std::string& Field() const { return fField; }

  /// The line with another text in place of the field's; in quotes if the field was, or has to be.
  std::string With(const std::string& inText) const;

 private:
  std::string fBefore;
  std::string fField;
  std::string fAfter;
  bool fIsQuoted = false;
  char fDelimiter;
};

}  // namespace mezzo::tool
