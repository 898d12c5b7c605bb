/// \file
/// UTF-16 string stream: formats numbers and strings.
#pragma once

#include <plinth/Export.h>
#include <plinth/string/UTF16String.h>

#include <boost/container/small_vector.hpp>

#include <cstddef>
#include <ios>
#include <string_view>

namespace plinth {

/// Output stream of UTF-16 code units. It formats like a default-constructed standard stream in the
/// "C" locale and does not depend on the process locale.
///
/// An item shorter than the width is filled on the left, before its sign. The width applies to the
/// next item only; the fill character, initially a space, persists.
///
/// Up to 64 code units are stored inline. Only longer text allocates, and only then can an operator
/// throw std::bad_alloc.
class PLINTH_EXPORT oUTF16StringStream {
 public:
  /// Sets the minimum width of the next item in code units; 0 and negative widths fill nothing.
  void width(std::streamsize inWidth) noexcept { fWidth = inWidth; }

  /// Sets the fill character.
  void fill(char16_t inFill) noexcept { fFill = inFill; }

  /// Writes a decimal number without digit grouping.
  oUTF16StringStream& operator<<(int inNumber);

  /// Writes a number in general notation with six significant digits, like "%g". NaN is always
  /// "nan", without a sign; infinities are "inf" and "-inf".
  oUTF16StringStream& operator<<(double inNumber);

  /// Writes a text.
  oUTF16StringStream& operator<<(const UTF16String& inText);

  /// \return a copy of the text written so far.
  /// \exception std::bad_alloc if memory runs out.
  UTF16String str() const;

  /// \return the text written so far, valid until the next write; does not allocate.
  std::u16string_view view() const noexcept { return {fText.data(), fText.size()}; }

 private:
  template <class Iterator>
  oUTF16StringStream& Append(Iterator inFirst, Iterator inLast);

  /// Fits every number, so formatting one does not allocate.
  static constexpr std::size_t kInlineUnits = 64;

  boost::container::small_vector<char16_t, kInlineUnits, allocator::STLAllocator<char16_t>> fText;
  std::streamsize fWidth = 0;
  char16_t fFill = u' ';
};

}  // namespace plinth
