/// \file
/// Guid: universally unique identifiers (RFC 9562).
#pragma once

#include <plinth/Export.h>
#include <plinth/string/UTF16String.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace plinth::utility {

/// An identifier of 16 bytes, in the byte order of its text form.
///
/// Three text forms are parsed, in any letter case: hyphenated
/// ("01234567-89ab-cdef-0123-456789abcdef"), hyphenated in braces, and 32 bare digits.
class PLINTH_EXPORT Guid {
 public:
  /// Makes the nil UUID: all bytes are zero.
  Guid() noexcept = default;

  /// Parses an identifier.
  /// \param inText the text.
  /// \param inLength its length in bytes.
  /// \exception std::runtime_error for text in none of the three forms.
  Guid(const char* inText, std::size_t inLength);

  /// Parses an identifier.
  /// \param inText the text.
  /// \exception std::runtime_error for text in none of the three forms.
  explicit Guid(const UTF16String& inText);

  /// \return the hyphenated form in lower case, 36 code units.
  /// \exception std::bad_alloc if memory runs out.
  UTF16String AsString() const;

  friend bool operator==(const Guid& inLeft, const Guid& inRight) noexcept;
  friend bool operator<(const Guid& inLeft, const Guid& inRight) noexcept;

 private:
  std::array<std::uint8_t, 16> fBytes{};
};

static_assert(sizeof(Guid) == 16);

/// Compares all bytes.
inline bool operator==(const Guid& inLeft, const Guid& inRight) noexcept {
  return inLeft.fBytes == inRight.fBytes;
}

/// Orders by the first byte that differs.
inline bool operator<(const Guid& inLeft, const Guid& inRight) noexcept {
  return inLeft.fBytes < inRight.fBytes;
}

}  // namespace plinth::utility
