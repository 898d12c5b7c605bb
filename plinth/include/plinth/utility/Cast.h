/// \file
/// Narrowing that reports what does not fit.
#pragma once

#include <plinth/Export.h>

#include <boost/numeric/conversion/converter.hpp>

#include <concepts>
#include <string>
#include <typeinfo>

namespace plinth::utility {

/// Reports a value that does not fit.
/// \param[in,out] ioDisabled the site's flag.
/// \param inError what is wrong with the value.
/// \param inValue the value in decimal.
/// \param inTarget the target type's name, as `std::type_info::name` gives it.
/// \param inSource the same of the source type.
/// \param inFile the site's file.
/// \param inLine the site's line.
/// \exception std::bad_alloc when memory runs out.
[[gnu::cold]] PLINTH_EXPORT void ReportNumericCast(bool& ioDisabled, const char* inError,
                                                   const std::string& inValue, const char* inTarget,
                                                   const char* inSource, const char* inFile,
                                                   int inLine);

/// Converts an integer to a narrower type and reports, rather than throws, when it does not fit.
///
/// Such a value goes to the assertion dialog, once a call, until the dialog silences the site. Each
/// instantiation has one site; that of int from long is one for the whole process, others are one
/// for each program or library that uses them.
///
/// \param inValue the value.
/// \return the value; where it does not fit, its low bits as a two's-complement number of type `T`.
/// \exception std::bad_alloc when memory runs out for a report.
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
