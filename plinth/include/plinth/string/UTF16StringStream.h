/// \file
/// Composes UTF-16 text from numbers and strings.
#pragma once

#include <plinth/Export.h>
#include <plinth/string/UTF16String.h>

#include <boost/container/small_vector.hpp>

#include <cstddef>
#include <ios>
#include <string_view>

namespace plinth {

/// Output stream over UTF-16 code units, with the formatting of a default-constructed standard
/// stream in the "C" locale: nothing depends on the process locale.
///
/// An item shorter than the width is filled from the left, before a sign. The width applies to the
/// next item of any kind and is 0 again after it; the fill character, a space at first, stays.
///
/// Texts of up to 64 code units stay inside the stream; only longer ones take memory, and only then
/// can the writing operators throw std::bad_alloc.
class PLINTH_EXPORT oUTF16StringStream {
 public:
  /// Sets the least number of code units of the next item; 0 and negative widths fill nothing.
  void width(std::streamsize inWidth) noexcept { fWidth = inWidth; }

  /// Sets the code unit that fills an item up to its width.
  void fill(char16_t inFill) noexcept { fFill = inFill; }

  /// Writes decimal digits, behind "-" for a negative number; no digit grouping.
  oUTF16StringStream& operator<<(int inNumber);

  /// Writes a number in general notation with six significant digits, as "%g" does.
  /// Not a number is always "nan", without a sign; infinities are "inf" and "-inf".
  oUTF16StringStream& operator<<(double inNumber);

  /// Writes a text as it is.
  oUTF16StringStream& operator<<(const UTF16String& inText);

  /// \return a copy of everything written so far.
  /// \exception std::bad_alloc when memory runs out.
  UTF16String str() const;

  /// \return everything written so far, valid until the next write; takes no memory.
  std::u16string_view view() const noexcept { return {fText.data(), fText.size()}; }

 private:
  template <class Iterator>
  oUTF16StringStream& Append(Iterator inFirst, Iterator inLast);

  /// Covers the widest display, so that composing one takes no memory.
  static constexpr std::size_t kInlineUnits = 64;

  boost::container::small_vector<char16_t, kInlineUnits, allocator::STLAllocator<char16_t>> fText;
  std::streamsize fWidth = 0;
  char16_t fFill = u' ';
};

}  // namespace plinth
