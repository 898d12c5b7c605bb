/// \file
/// Musical notes: their names, and the note nearest to a frequency, in equal temperament with A4 at
/// 440 Hz.
///
/// A note index counts semitones above A, 0 to 12; 12 is the next A. Octaves are counted from A:
/// the octave of a note is that of the A from which its index counts. Only in names does the octave
/// number change at C, as in scientific pitch notation: note index 3 in octave 3 is C4.
#pragma once

#include <Module/Export.h>

#include <plinth/string/UTF16String.h>

namespace mezzo::utility {

/// Writes the name of a note, such as "A4", "C5" or "A♯/B♭4".
///
/// The letters come from the host's localiser on every call, under the keys
/// "$$$/mezzo/MusicalNotes/A=A" to "$$$/mezzo/MusicalNotes/G=G".
///
/// \param[in,out] outNoteString replaced by the name. If the index is outside 0 to 12, the octave
///     number is appended to the existing text instead.
/// \param inNoteIndex semitones above A, 0 to 12.
/// \param inOctave octave of the A from which the index counts; a negative octave is not written.
///     For indices above 2 the number written is one higher; overflow wraps.
/// \param inFlatOnly true: name a black key by its flat alone ("B♭"); false: by sharp and flat
///     ("A♯/B♭").
/// \exception std::bad_alloc if memory runs out; the text is unchanged.
MEZZO_EXPORT void GetNoteString(plinth::UTF16String& outNoteString, int inNoteIndex, int inOctave,
                                bool inFlatOnly);

/// Tells whether the flat sign (U+266D) is supported.
/// \return true, always.
MEZZO_EXPORT bool SupportsFlatSymbol();

/// Tells whether the sharp sign (U+266F) is supported.
/// \return true, always.
MEZZO_EXPORT bool SupportsSharpSymbol();

/// Finds the note nearest to a frequency.
///
/// The boundary between two adjacent notes is 50 cents from each. A frequency exactly on it belongs
/// to the upper note. All arithmetic is IEEE 754 single precision. No state, no allocation.
///
/// \param inFrequency frequency in hertz. Frequencies below about 14.15 Hz, zero, negative numbers
///     and NaN give note index 0 in octave -1; 28160 Hz and above give note index 0 in octave 10.
/// \param[out] outOctave receives the octave of the A at or below the frequency, -1 to 10; may be
///     null.
/// \return the note index, 0 to 12. Frequencies nearest to the next A, but still below it, give 12.
MEZZO_EXPORT int GetNoteFromFrequency(float inFrequency, int* outOctave);

}  // namespace mezzo::utility
