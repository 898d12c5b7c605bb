/// \file
/// Names of musical notes, and the note nearest to a frequency, in equal temperament with A4 at
/// 440 Hz.
///
/// A note index is the pitch class in semitones above A, 0 to 12; 12 is the A one octave above 0.
/// An octave here is the octave of the A at or below the note. The written octave number changes at
/// C, as in scientific pitch notation: note index 3 in octave 3 is the C that is written C4.
#pragma once

#include <Module/Export.h>

#include <plinth/string/UTF16String.h>

namespace mezzo::utility {

/// Writes the name of a note, such as "A4", "C5" or "A♯/B♭4".
///
/// The letters come from the host's localiser, asked anew on every call under the keys
/// "$$$/mezzo/MusicalNotes/A=A" to "$$$/mezzo/MusicalNotes/G=G".
///
/// \param[in,out] outNoteString replaced by the name; an index outside 0 to 12 leaves it as it is.
///     The octave number is appended in either case.
/// \param inNoteIndex semitones above A, 0 to 12.
/// \param inOctave octave of the A at or below the note; negative: no number is written. The number
///     written is one higher for every index above 2.
/// \param inFlatOnly true: a black key is named by its flat alone ("B♭"); false: by sharp and flat
///     ("A♯/B♭").
/// \exception std::bad_alloc when memory runs out; the text is then unchanged.
MEZZO_EXPORT void GetNoteString(plinth::UTF16String& outNoteString, int inNoteIndex, int inOctave,
                                bool inFlatOnly);

/// Tells whether the flat sign (U+266D) can be shown.
/// \return true, always.
MEZZO_EXPORT bool SupportsFlatSymbol();

/// Tells whether the sharp sign (U+266F) can be shown.
/// \return true, always.
MEZZO_EXPORT bool SupportsSharpSymbol();

/// Finds the note nearest to a frequency.
///
/// Neighbouring notes meet halfway, 50 cents from each; a frequency exactly between them belongs to
/// the upper. All arithmetic is IEEE 754 single precision. Pure: no state, no allocation.
///
/// \param inFrequency frequency in hertz. Below about 14.15 Hz, zero, negative and not a number all
///     give note index 0 in octave -1; 28160 Hz and more give note index 0 in octave 10.
/// \param[out] outOctave receives the octave of the A at or below the frequency, -1 to 10; may be
///     null.
/// \return the note index, 0 to 12; 12 is the A that closes the octave, for frequencies nearer
///     to it than to the note below.
MEZZO_EXPORT int GetNoteFromFrequency(float inFrequency, int* outOctave);

}  // namespace mezzo::utility
