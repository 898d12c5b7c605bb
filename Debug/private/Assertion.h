// How a broken precondition reaches the host.
//
// Every site owns a flag with which the host's assertion dialog may silence it for the rest of the
// process. A report never stops the process and throws nothing of its own: the code behind the site
// goes on and decides what the function answers.

#pragma once

namespace mezzo::debug {

/// Shows one failed assertion in the host's dialog unless its site is silenced, and breaks into the
/// debugger when the dialog asks for it and one is attached.
///
/// Out of line and cold, so that a site whose condition holds costs its caller one test.
///
/// \param ioDisabled the site's flag, which the dialog may set.
/// \param inCondition the condition as written at the site.
/// \param inMessage empty, or ending in a line feed.
[[gnu::cold, gnu::noinline]] void ReportAssertion(bool& ioDisabled, const char* inCondition,
                                                  const char* inMessage, const char* inFile,
                                                  int inLine, const char* inFunction);

}  // namespace mezzo::debug

/// Reports at this site when `holds` is false. `conditionText` names the condition in the report;
/// `function` is the enclosing function's signature as a literal, since compilers disagree on
/// theirs.
#define MEZZO_ASSERT_NAMED(holds, conditionText, message, function)                          \
  do {                                                                                       \
    if (!(holds)) [[unlikely]] {                                                             \
      static bool sDisabled = false;                                                         \
      ::mezzo::debug::ReportAssertion(sDisabled, conditionText, message, __FILE__, __LINE__, \
                                      function);                                             \
    }                                                                                        \
  } while (false)

/// Reports at this site when the condition is false, under the condition's own text.
#define MEZZO_ASSERT(condition, message, function) \
  MEZZO_ASSERT_NAMED(condition, #condition, message, function)

/// Reports a case that must not happen.
#define MEZZO_REPORT(conditionText, message, function) \
  MEZZO_ASSERT_NAMED(false, conditionText, message, function)
