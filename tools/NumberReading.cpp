#include "NumberReading.h"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace mezzo::tool {
namespace {

constexpr std::string_view kBlanks = " \t";

std::string_view WithoutLeadingBlanks(std::string_view inText) {
  inText.remove_prefix(std::min(inText.find_first_not_of(kBlanks), inText.size()));
  return inText;
}

struct LeadingInteger {
  std::int64_t value;
  std::string_view rest;
};

LeadingInteger SplitLeadingInteger(std::string_view inText) {
  std::string_view number = WithoutLeadingBlanks(inText);
  if (number.starts_with('+') && !number.starts_with("+-")) number.remove_prefix(1);
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
  if (error == std::errc::result_out_of_range) {
    throw InputError("'" + std::string(inText) + "' does not fit in 64 bits");
  }
  if (error != std::errc()) throw InputError("'" + std::string(inText) + "' is not a whole number");
  number.remove_prefix(static_cast<std::size_t>(end - number.data()));
  return {value, number};
}

}  // namespace

std::int64_t ReadLeadingInteger(std::string_view inText) {
  return SplitLeadingInteger(inText).value;
}

std::int64_t ReadPosition(std::string_view inText) {
  const LeadingInteger number = SplitLeadingInteger(inText);
  if (!WithoutLeadingBlanks(number.rest).empty()) {
    throw InputError("'" + std::string(inText) + "' is not a position in samples");
  }
  return number.value;
}

}  // namespace mezzo::tool
