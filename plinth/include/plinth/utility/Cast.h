/// \file
/// Checked cast: narrowing that reports overflow.
#pragma once

#include <plinth/Export.h>

#include <boost/numeric/conversion/converter.hpp>

#include <concepts>
#include <string>
#include <typeinfo>

namespace plinth::utility {

/// Reports a value that overflows the target type.
/// \param[in,out] ioDisabled the site's flag.
/// \param inError the error's text.
/// \param inValue the value in decimal.
/// \param inTarget the target type's name as `std::type_info::name` returns it.
/// \param inSource the source type's name as `std::type_info::name` returns it.
/// \param inFile the site's file.
/// \param inLine the site's line.
/// \exception std::bad_alloc if memory runs out.
[[gnu::cold]] PLINTH_EXPORT void ReportNumericCast(bool& ioDisabled, const char* inError,
                                                   const std::string& inValue, const char* inTarget,
                                                   const char* inSource, const char* inFile,
                                                   int inLine);

/// Converts an integer to a narrower type and reports overflow instead of throwing.
///
/// Every call with a value that overflows is reported to the assertion dialog, until the dialog
/// silences the site. Each instantiation has one site, which the whole process shares unless a
/// library hides the symbol.
///
/// \param inValue the value.
/// \return the value; overflow wraps.
/// \exception std::bad_alloc if memory runs out during a report.
template <std::integral T, std::integral F>
PLINTH_EXPORT T NumericCast(F inValue) {
  static bool sDisabled = false;
  try {
    boost::numeric::converter<T, F>::validate_range(inValue);
  } catch (const boost::numeric::bad_numeric_cast& error) {
    if (!__atomic_load_n(&sDisabled, __ATOMIC_RELAXED)) {
      ReportNumericCast(sDisabled, error.what(), std::to_string(inValue), typeid(T).name(),
                        typeid(F).name(), __FILE__, __LINE__);
    }
  }
  return static_cast<T>(inValue);
}

/// \cond
extern template int NumericCast<int, long>(long);
/// \endcond

}  // namespace plinth::utility
