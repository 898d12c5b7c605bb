// Assertion sites: how a broken precondition is reported to the host.
//
// Each site has a flag that the host's assertion dialog may set to silence the site for the rest of
// the process. A report never ends the process and throws nothing of its own. The function
// continues after the site and decides its own result.

#pragma once

namespace mezzo::debug {

/// Shows a failed assertion in the host's dialog unless the site is silenced. Breaks into the
/// debugger if the dialog asks for it and a debugger is attached.
///
/// Cold and out of line: a site whose condition holds costs its caller one test.
///
/// \param ioDisabled the site's flag, which the dialog may set.
/// \param inCondition the text of the condition.
/// \param inMessage empty, or ending in a line feed.
[[gnu::cold, gnu::noinline]] void ReportAssertion(bool& ioDisabled, const char* inCondition,
                                                  const char* inMessage, const char* inFile,
                                                  int inLine, const char* inFunction);

}  // namespace mezzo::debug

/// Reports at this site if `holds` is false. `conditionText` is the condition's text in the report.
/// `function` is the signature of the exported function for which the site reports, a literal
/// because compilers spell signatures differently.
#define MEZZO_ASSERT_WITH_TEXT(holds, conditionText, message, function)                      \
  do {                                                                                       \
    if (!(holds)) [[unlikely]] {                                                             \
      static bool sDisabled = false;                                                         \
      ::mezzo::debug::ReportAssertion(sDisabled, conditionText, message, __FILE__, __LINE__, \
                                      function);                                             \
    }                                                                                        \
  } while (false)

/// Reports at this site if the condition is false, with the condition as its text.
#define MEZZO_ASSERT(condition, message, function) \
  MEZZO_ASSERT_WITH_TEXT(condition, #condition, message, function)

/// Reports at this site unconditionally.
#define MEZZO_REPORT(conditionText, message, function) \
  MEZZO_ASSERT_WITH_TEXT(false, conditionText, message, function)
