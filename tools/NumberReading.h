/// \file
/// Numbers that people type, in decimal and whatever the locale.
#pragma once

#include "InputError.h"

#include <boost/lexical_cast/try_lexical_convert.hpp>

#include <cstdint>
#include <sstream>
#include <string>
#include <string_view>
#include <type_traits>

namespace mezzo::tool {

/// Makes a function that reads a number of a range; "nan" lies in none.
/// \return takes a text, gives the number, throws InputError that says what the text has to be.
template <class Value>
auto NumberFrom(Value inLowest, Value inHighest) {
  return [=](const std::string& inText) {
    Value value{};
    if (boost::conversion::try_lexical_convert(inText, value) && value >= inLowest &&
        value <= inHighest) {
      return value;
    }
    std::ostringstream message;
    message << "must be a " << (std::is_integral_v<Value> ? "whole number" : "number") << " from "
            << inLowest << " to " << inHighest << ", not '" << inText << "'";
    throw InputError(message.str());
  };
}

/// Reads a whole number at the start of a text, behind blanks and a sign; anything may follow it.
/// \exception InputError when there is none or it has more than 64 bits.
std::int64_t ReadLeadingInteger(std::string_view inText);

/// Reads a text that is a position in samples and nothing else but blanks.
/// \exception InputError when it is not or has more than 64 bits.
std::int64_t ReadPosition(std::string_view inText);

}  // namespace mezzo::tool
