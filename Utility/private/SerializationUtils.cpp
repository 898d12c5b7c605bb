#include <Utility/SerializationUtils.h>

#include <plinth/string/StringConversion.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string_view>
#include <utility>

namespace mezzo::utility {

using plinth::UTF16String;
using plinth::utility::Guid;

namespace {

constexpr std::size_t kHandlerCount = kNativePluginIndex_DocketNative + 1;
constexpr std::size_t kIdentifierLength = 36;

struct MediaHandler {
  std::string_view name;
  NativePluginIndex index;
  std::string_view identifier;
};

/// Every handler in the order of its index, then an end marker, which `GetHandlers` leaves out.
constexpr std::array<MediaHandler, kHandlerCount + 1> sMediaHandlerNames{{
    {"RuvoAiff", kNativePluginIndex_RuvoAiff, "41D554AA-7FB2-4E7C-A8C1-5E0697508950"},
    {"RuvoApe", kNativePluginIndex_RuvoApe, "89a80910-1cd3-44d5-b483-2b2301024b1d"},
    {"RuvoAT", kNativePluginIndex_RuvoAT, "53e79242-9125-488c-A76B-f4735b52f195"},
    {"DLMS", kNativePluginIndex_DLMS, "D0DEA616-AE85-489A-BA70-651960DDF199"},
    {"Dolby", kNativePluginIndex_Dolby, "b1468249-8c2d-4b5d-9222-1d16f30cbf3f"},
    {"ImporterHost", kNativePluginIndex_ImporterHost, "105FAFE7-77ba-466B-8831-60083AA82A68"},
    {"RuvoLSF", kNativePluginIndex_RuvoLSF, "C0B7A205-3ABE-4938-B035-7A23FC63DA75"},
    {"RuvoMF", kNativePluginIndex_RuvoMF, "753a144b-b56e-49b9-b76f-9b0b60ec14ed"},
    {"RuvoMP2", kNativePluginIndex_RuvoMP2, "649a0742-F139-4915-962B-6194b9302942"},
    {"RuvoMP3", kNativePluginIndex_RuvoMP3, "33DFDE22-762A-4CEE-956D-72DA0691A592"},
    {"RuvoQT", kNativePluginIndex_RuvoQT, "116028f6-8032-4731-9c8b-0df3d9a3bf21"},
    {"RuvoTwoLame", kNativePluginIndex_RuvoTwoLame, "A3F2F291-c966-4834-8361-C6C9FDC8D7E8"},
    {"RuvoWav", kNativePluginIndex_RuvoWav, "C9ECBEEF-691E-4059-842A-003D93A7F3DF"},
    {"FinalCutXML", kNativePluginIndex_FinalCutXML, "8a85446e-5224-4ee4-a675-954f28bfbc7c"},
    {"LegacyXML", kNativePluginIndex_LegacyXML, "44117dae-33D5-46d8-8D49-932c635ae712"},
    {"OmfSession", kNativePluginIndex_OmfSession, "9B478C5F-C005-4A30-B1A3-D283C020A7A9"},
    {"KinoraInterchange", kNativePluginIndex_KinoraInterchange,
     "15bc4cd6-0252-4fd3-a173-1a06aaf80f35"},
    {"KinodocNative", kNativePluginIndex_KinodocNative, "F5EDC425-7857-43CD-b2b5-4DD84D95F8A7"},
    {"DocketNative", kNativePluginIndex_DocketNative, "ED596251-2809-403E-B8E4-CFB1F5F8F888"},
    {"", kNativePluginIndex_Invalid, ""},
}};

constexpr std::span<const MediaHandler, kHandlerCount> GetHandlers() {
  return std::span(sMediaHandlerNames).first<kHandlerCount>();
}

constexpr bool IsValidRow(const MediaHandler& inHandler) {
  return &inHandler == &sMediaHandlerNames[static_cast<std::size_t>(inHandler.index)] &&
         inHandler.identifier.size() == kIdentifierLength;
}
static_assert(std::all_of(GetHandlers().begin(), GetHandlers().end(), &IsValidRow));

UTF16String WidenName(const MediaHandler& inHandler) {
  return plinth::string::AsciiToUTF16(inHandler.name.data(), inHandler.name.size());
}

std::map<Guid, UTF16String> MapNamesByIdentifier() {
  std::map<Guid, UTF16String> names;
  for (const auto& handler : GetHandlers()) {
    names[GetNativeHandlerID(handler.index)] = WidenName(handler);
  }
  return names;
}

/// Keeps the identifiers as text; writing one on every call would allocate.
std::map<UTF16String, UTF16String> MapIdentifiersByName() {
  std::map<UTF16String, UTF16String> texts;
  for (const auto& handler : GetHandlers()) {
    texts[WidenName(handler)] = GetNativeHandlerID(handler.index).AsString();
  }
  return texts;
}

/// Copies the text stored under a key.
/// \return false, with the output unchanged, if there is none.
template <class Key>
bool LookUp(const std::map<Key, UTF16String>& inTexts, const Key& inKey, UTF16String& outText) {
  const auto entry = inTexts.find(inKey);
  if (entry == inTexts.end()) return false;
  outText.assign(entry->second);
  return true;
}

}  // namespace

Guid GetNativeHandlerID(NativePluginIndex inIndex) {
  const auto index = static_cast<std::uint32_t>(inIndex);
  if (index >= kHandlerCount) return Guid();
  return Guid(sMediaHandlerNames[index].identifier.data(), kIdentifierLength);
}

bool TranslateToHumanReadableMediaHandler(UTF16String inHandlerID, UTF16String& outName) try {
  const Guid identifier(inHandlerID);
  // Concurrent first calls wait; a failed initialisation is retried by the next call.
  static const std::map<Guid, UTF16String> sNames = MapNamesByIdentifier();
  return LookUp(sNames, identifier, outName);
} catch (...) {
  return false;
}

bool TranslateFromHumanReadableMediaHandler(UTF16String inName, UTF16String& outHandlerID) try {
  static const std::map<UTF16String, UTF16String> sIdentifiers = MapIdentifiersByName();
  return LookUp(sIdentifiers, inName, outHandlerID);
} catch (...) {
  return false;
}

}  // namespace mezzo::utility
