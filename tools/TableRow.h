/// \file
/// A row of a table, of which one field is converted.
#pragma once

#include <cstddef>
#include <string>

namespace mezzo::tool {

/// Finds the fields of a row. A field that begins with a double quote ends with one and may contain
/// the delimiter and line ends; a double quote in it is doubled. If the delimiter is a tab, a field
/// ends at the next tab or line end, even within double quotes.
class FieldScanner {
 public:
  explicit FieldScanner(char inDelimiter) : fDelimiter(inDelimiter) {}

  /// Reads the next character.
  /// \return whether it ends the field.
  bool ReadCharacter(char inCharacter);

  bool IsInQuotes() const { return fIsInQuotes; }

 private:
  char fDelimiter;
  bool fIsBlank = true;  ///< the field has only blanks so far
  bool fHasQuotes = false;
  bool fIsInQuotes = false;
};

/// A row of a marker list or another table.
class TableRow {
 public:
  /// \param inField the field, counted from 1; 0 for the whole row.
  /// \exception UserError when the row has fewer fields or a quote is not closed.
  TableRow(const std::string& inRow, std::size_t inField, char inDelimiter);

  /// \return the field's text without the quotes and blanks around it.
  const std::string& GetField() const { return fField; }

  /// \return whether the delimiter may be a part of the field's text: the next field begins with a
  ///     digit, and the field is not in quotes.
  bool MayHaveBeenSplit() const;

  /// \return the row with another text in the field, in quotes where necessary.
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
