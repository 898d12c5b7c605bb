/// \file
/// Narrowing that reports what does not fit.
#pragma once

#include <plinth/debug/AssertDialog.h>
#include <plinth/debug/DemangleName.h>

#include <boost/numeric/conversion/converter.hpp>

#include <concepts>
#include <csignal>
#include <string>
#include <typeinfo>

namespace plinth::utility {

/// Reports a value that does not fit; out of line, so that a cast that succeeds stays small.
template <std::integral T, std::integral F>
[[gnu::cold, gnu::noinline]] void ReportNumericCast(bool& ioDisabled, const char* inError,
                                                    F inValue) {
  const std::string target = debug::DemangleName(typeid(T).name());
  const std::string source = debug::DemangleName(typeid(F).name());
  const std::string message = std::string(inError) + " from " + source + " (" +
                              std::to_string(inValue) + ") to " + target + "\n";
  const std::string function =
      "T plinth::utility::NumericCast(F) [T = " + target + ", F = " + source + "]";
  const auto* messageBytes = reinterpret_cast<const unsigned char*>(message.c_str());
  if (debug::BreakAfterAssertDialog(ioDisabled, "false", messageBytes, __FILE__, __LINE__,
                                    function.c_str(), true) &&
      debug::IsDebuggerAttached())
    std::raise(SIGTRAP);
}

/// Converts an integer to a narrower type and reports, rather than throws, when it does not fit.
///
/// Such a value goes to the assertion dialog, once a call, until the dialog silences the site. Each
/// instantiation has one site in each program or library that uses it.
///
/// \param inValue the value.
/// \return the value; where it does not fit, its low bits as a two's-complement number of type `T`.
/// \exception std::bad_alloc when memory runs out for a report.
template <std::integral T, std::integral F>
T NumericCast(F inValue) {
  static bool sDisabled = false;
  try {
    boost::numeric::converter<T, F>::validate_range(inValue);
  } catch (const boost::numeric::bad_numeric_cast& error) {
    if (!__atomic_load_n(&sDisabled, __ATOMIC_RELAXED))
      ReportNumericCast<T>(sDisabled, error.what(), inValue);
  }
  return static_cast<T>(inValue);
}

}  // namespace plinth::utility
