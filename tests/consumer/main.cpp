// Uses the installed library as another project does.

#include <Debug/ErrorHandling.h>
#include <Utility/AppRunningState.h>
#include <Utility/MusicalNoteUtils.h>
#include <Utility/SerializationUtils.h>
#include <Utility/TimeConversionUtils.h>

int main(int argc, char**) {
  // An implicit conversion, an error under the library's own warning options.
  const int seconds = argc * 10.5;
  plinth::UTF16String text;
  mezzo::utility::ConvertSamplesToTimecode(text, seconds * 48000, 48000, 30, false, false, false,
                                           false, false, false, false);
  return text == u"00:00:10:00" && mezzo::utility::GetAppActivatedSignal().empty() ? 0 : 1;
}
