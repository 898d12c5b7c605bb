/// \file
/// Media handlers, which read and write the application's media formats. Each native handler has an
/// identifier and a name; the application stores the name instead of the identifier.
#pragma once

#include <Module/Export.h>

#include <plinth/string/UTF16String.h>
#include <plinth/utility/Guid.h>

#include <cstdint>

namespace mezzo::utility {

/// The application's native media handlers.
enum NativePluginIndex : std::int32_t {
  kNativePluginIndex_Invalid = -1,
  kNativePluginIndex_RuvoAiff = 0,
  kNativePluginIndex_RuvoApe = 1,
  kNativePluginIndex_RuvoAT = 2,
  kNativePluginIndex_DLMS = 3,
  kNativePluginIndex_Dolby = 4,
  kNativePluginIndex_ImporterHost = 5,
  kNativePluginIndex_RuvoLSF = 6,
  kNativePluginIndex_RuvoMF = 7,
  kNativePluginIndex_RuvoMP2 = 8,
  kNativePluginIndex_RuvoMP3 = 9,
  kNativePluginIndex_RuvoQT = 10,
  kNativePluginIndex_RuvoTwoLame = 11,
  kNativePluginIndex_RuvoWav = 12,
  kNativePluginIndex_FinalCutXML = 13,
  kNativePluginIndex_LegacyXML = 14,
  kNativePluginIndex_OmfSession = 15,
  kNativePluginIndex_KinoraInterchange = 16,
  kNativePluginIndex_KinodocNative = 17,
  kNativePluginIndex_DocketNative = 18,
};

/// Returns the identifier of a native media handler.
/// \param inIndex the handler, 0 to 18.
/// \return its identifier, a fixed UUID (RFC 9562, version 4); the nil UUID for any other value.
MEZZO_EXPORT plinth::utility::Guid GetNativeHandlerID(NativePluginIndex inIndex);

/// Translates the identifier of a native media handler to its stored name.
/// \param inHandlerID the identifier as text, in any form that `plinth::utility::Guid` parses.
/// \param[out] outName receives the name, such as "RuvoWav"; unchanged if the result is false.
/// \return true on success; false for text that is not an identifier, for an identifier that no
///     native handler has, and if memory runs out. Does not throw.
MEZZO_EXPORT bool TranslateToHumanReadableMediaHandler(plinth::UTF16String inHandlerID,
                                                       plinth::UTF16String& outName);

/// Translates the stored name of a native media handler to its identifier.
/// \param inName the name, compared code unit by code unit.
/// \param[out] outHandlerID receives the identifier as `plinth::utility::Guid` writes it; unchanged
///     if the result is false.
/// \return true on success; false for any other name, and if memory runs out. Does not throw.
MEZZO_EXPORT bool TranslateFromHumanReadableMediaHandler(plinth::UTF16String inName,
                                                         plinth::UTF16String& outHandlerID);

}  // namespace mezzo::utility
