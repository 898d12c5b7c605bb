/// \file
/// Localizer: texts in the user's language.
#pragma once

#include <plinth/Export.h>
#include <plinth/string/UTF16String.h>

#include <atomic>
#include <functional>
#include <map>
#include <shared_mutex>
#include <string>
#include <string_view>

namespace plinth::config {

/// Looks up translations. Any thread may call any function at any time.
class PLINTH_EXPORT Localizer {
 public:
  Localizer(const Localizer&) = delete;
  Localizer& operator=(const Localizer&) = delete;

  /// \return the process's localiser; never destroyed.
  static Localizer& Get();

  /// Translates a text.
  ///
  /// While no translation is installed, it takes no lock, and it allocates only for a text beyond
  /// the string's inline capacity.
  ///
  /// \param inKey path and English text, "$$$/path=English"; ASCII.
  /// \return the translation installed for "$$$/path", otherwise the English text. A key without
  ///     "=" is its own English text.
  /// \exception std::bad_alloc if memory runs out.
  UTF16String Localize(const char* inKey) const;

  /// Installs a translation, or replaces it.
  /// \param inPath the path, "$$$/path", or a whole key; its "=" and English text are ignored.
  /// \param inText the translation.
  /// \exception std::bad_alloc if memory runs out.
  void InstallTranslation(std::string_view inPath, UTF16String inText);

  /// Removes all translations.
  void RemoveTranslations();

 private:
  Localizer() = default;

  mutable std::shared_mutex fMutex;
  std::map<std::string, UTF16String, std::less<>> fTranslations;
  std::atomic<bool> fHasTranslations{false};
};

}  // namespace plinth::config
