#include <plinth/debug/DebugDatabase.h>

#include <algorithm>
#include <string_view>

namespace plinth::debug {

namespace {

constexpr std::string_view kTrue = "true";
constexpr std::string_view kFalse = "false";

}  // namespace

DebugDatabase& DebugDatabase::Instance() {
  // Never destroyed: destructors that run at exit may still use it.
  static DebugDatabase& sInstance = *new DebugDatabase;
  return sInstance;
}

ByteString DebugDatabase::GetEntry(const ByteString& inKey, const ByteString& inDefault) const {
  const std::lock_guard lock(fMutex);
  const auto entry = fEntries.find(inKey);
  return entry == fEntries.end() ? inDefault : entry->second;
}

bool DebugDatabase::HasEntry(const ByteString& inKey) const {
  const std::lock_guard lock(fMutex);
  return fEntries.contains(inKey);
}

void DebugDatabase::SetEntry(const ByteString& inKey, const ByteString& inText) {
  const std::lock_guard lock(fMutex);
  fEntries.insert_or_assign(inKey, inText);
  AdvanceGeneration();
}

void DebugDatabase::RemoveEntry(const ByteString& inKey) {
  const std::lock_guard lock(fMutex);
  if (fEntries.erase(inKey) != 0) AdvanceGeneration();
}

template <>
bool DebugDatabase::GetEntryAs<bool>(const ByteString& inKey, const bool& inDefault) const {
  const std::string_view fallback = inDefault ? kTrue : kFalse;
  const ByteString text = GetEntry(inKey, ByteString(fallback.begin(), fallback.end()));
  return std::equal(text.begin(), text.end(), kTrue.begin(), kTrue.end());
}

}  // namespace plinth::debug
