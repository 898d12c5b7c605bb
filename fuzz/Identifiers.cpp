// Texts of identifiers, valid ones with mistakes typed into them included, against a reader that
// takes the text's form apart.

#include "../tests/support/Text.h"
#include "FuzzArguments.h"
#include <Utility/SerializationUtils.h>

#include <algorithm>

namespace mezzo::fuzz {
namespace {

/// Of all 19 handlers, and of none.
const std::vector<std::string>& HandlerTexts() {
  static const auto sTexts = [] {
    std::vector<std::string> texts;
    for (int index = -1; index < 19; ++index) {
      const auto handler = static_cast<utility::NativePluginIndex>(index);
      texts.push_back(test::Shown(utility::GetNativeHandlerID(handler).AsString()));
    }
    return texts;
  }();
  return sTexts;
}

/// The 32 digits in lower case; empty for anything that is not one of the three forms.
std::string DigitsOf(UTF16String inText) {
  const bool isBraced = inText.size() == 38 && inText.front() == u'{' && inText.back() == u'}';
  if (isBraced) inText = inText.substr(1, 36);
  const bool isHyphenated = inText.size() == 36;
  for (const std::size_t place : {23u, 18u, 13u, 8u}) {
    if (isHyphenated && inText[place] == u'-') inText.erase(place, 1);
  }
  std::string digits;
  for (const char16_t unit : inText) {
    const bool isCapital = unit >= u'A' && unit <= u'F';
    digits += unit < 0x80 ? static_cast<char>(isCapital ? unit + 0x20 : unit) : '?';
  }
  const bool isHexadecimal = digits.find_first_not_of("0123456789abcdef") == digits.npos;
  return digits.size() == 32 && isHexadecimal ? digits : "";
}

UTF16String TypedIdentifier(FuzzArguments& ioArgs) {
  std::string text = HandlerTexts()[ioArgs.Byte() % HandlerTexts().size()];
  const std::uint8_t form = ioArgs.Byte();
  if ((form & 1) != 0) text = '{' + text + '}';
  if ((form & 2) != 0) std::erase(text, '-');
  UTF16String typed(text.begin(), text.end());
  for (char16_t& unit : typed) {
    if ((form & 4) != 0 && unit >= u'a' && unit <= u'f') unit = static_cast<char16_t>(unit - 0x20);
  }
  if ((form & 8) != 0)
    typed[ioArgs.Byte() % typed.size()] = static_cast<char16_t>(ioArgs.Int32({'-', 'A', 'g'}));
  return typed;
}

}  // namespace

void Check(FuzzArguments& ioArgs) {
  const UTF16String typed = ioArgs.Flag() ? ioArgs.Text() : TypedIdentifier(ioArgs);
  const std::string digits = DigitsOf(typed);
  std::string match;
  for (std::size_t index = 1; index < HandlerTexts().size(); ++index) {
    std::string bare = HandlerTexts()[index];
    std::erase(bare, '-');
    if (bare == digits) match = HandlerTexts()[index];
  }
  UTF16String name = u"keep";
  UTF16String identifier = u"keep";
  const bool isKnown = utility::TranslateToHumanReadableMediaHandler(typed, name);
  RequireEqual(isKnown ? "known" : "unknown", match.empty() ? "unknown" : "known");
  const bool isName = utility::TranslateFromHumanReadableMediaHandler(name, identifier);
  RequireEqual(test::Shown(identifier), isKnown ? match : "keep");
  Require(isName == isKnown, test::Shown(name), "a name");
}

}  // namespace mezzo::fuzz
