/// \file
/// The library's assertion reports, shown to the user of the tool.
#pragma once

namespace mezzo::tool {

/// Sends the library's reports to standard error, one line for each site that fails.
void ShowLibraryReports();

/// Tells whether the library has reported anything.
bool HasLibraryReported();

}  // namespace mezzo::tool
