// Frequency to note against the tables of bands and boundaries, and the note's name.

#include "../tests/support/NoteReference.h"
#include "../tests/support/Text.h"
#include "FuzzArguments.h"
#include <Utility/MusicalNoteUtils.h>

namespace mezzo::fuzz {

void Check(FuzzArguments& ioArgs) {
  static const UTF16String kSharps[] = {u"A", u"A\u266F/B\u266D", u"B", u"C", u"C\u266F/D\u266D",
                                        u"D", u"D\u266F/E\u266D", u"E", u"F", u"F\u266F/G\u266D",
                                        u"G", u"G\u266F/A\u266D", u"A"};
  const auto frequency = std::bit_cast<float>(ioArgs.Int32({}));
  const bool flatOnly = ioArgs.Flag();
  int octave = 0;
  const int index = utility::GetNoteFromFrequency(frequency, &octave);
  const test::Note note = test::NoteOf(frequency);
  RequireEqual(std::to_string(index) + ' ' + std::to_string(octave),
               std::to_string(note.index) + ' ' + std::to_string(note.octave));

  UTF16String name;
  utility::GetNoteString(name, index, octave, flatOnly);
  UTF16String expected = kSharps[index];
  if (flatOnly) expected.erase(0, expected.find(u'/') + 1);
  const std::string number = octave < 0 ? "" : std::to_string(octave + (index > 2 ? 1 : 0));
  RequireEqual(test::Shown(name), test::Shown(expected) + number);
}

}  // namespace mezzo::fuzz
