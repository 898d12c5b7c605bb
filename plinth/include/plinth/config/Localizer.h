/// \file
/// Texts in the user's language.
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

  /// \return the process's localiser; it stays usable until the process has ended.
  static Localizer& Get();

  /// Translates one text.
  ///
  /// While no translation is installed, it takes no lock, and no memory but for a text that the
  /// string cannot hold inside itself.
  ///
  /// \param inKey path and English text, "$$$/path=English"; ASCII.
  /// \return the translation installed for "$$$/path", else the English text; for a key without
  ///     "=", the whole key.
  /// \exception std::bad_alloc when memory runs out.
  UTF16String Localize(const char* inKey) const;

  /// Installs a translation in place of any before it.
  /// \param inPath the path, "$$$/path", or a whole key, of which "=" and what follows are ignored.
  /// \param inText the translation.
  /// \exception std::bad_alloc when memory runs out.
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
