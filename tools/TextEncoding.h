/// \file
/// Between the terminal's UTF-8 and the library's UTF-16.
#pragma once

#include <plinth/string/UTF16String.h>

#include <string>
#include <string_view>

namespace mezzo::tool {

/// \exception InputError when the text is not valid UTF-8.
plinth::UTF16String FromUTF8(std::string_view inText);

/// Unpaired surrogates are left out.
std::string ToUTF8(const plinth::UTF16String& inText);

}  // namespace mezzo::tool
