#include <plinth/config/Localizer.h>
#include <plinth/string/StringConversion.h>

#include <mutex>
#include <utility>

namespace plinth::config {

Localizer& Localizer::Get() {
  // Never destroyed: destructors that run at exit may still use it.
  static Localizer& sLocalizer = *new Localizer;
  return sLocalizer;
}

UTF16String Localizer::Localize(const char* inKey) const {
  const std::string_view key(inKey);
  const std::size_t separator = key.find('=');
  if (fHasTranslations.load(std::memory_order_acquire)) {
    const std::shared_lock lock(fMutex);
    const auto translation = fTranslations.find(key.substr(0, separator));
    if (translation != fTranslations.end()) return translation->second;
  }
  const auto english = separator == std::string_view::npos ? key : key.substr(separator + 1);
  return string::AsciiToUTF16(english.data(), english.size());
}

void Localizer::InstallTranslation(std::string_view inPath, UTF16String inText) {
  const std::unique_lock lock(fMutex);
  const std::string_view path = inPath.substr(0, inPath.find('='));
  fTranslations.insert_or_assign(std::string(path), std::move(inText));
  fHasTranslations.store(true, std::memory_order_release);
}

void Localizer::RemoveTranslations() {
  const std::unique_lock lock(fMutex);
  fHasTranslations.store(false, std::memory_order_release);
  fTranslations.clear();
}

}  // namespace plinth::config
