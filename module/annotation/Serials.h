// Serial numbers of pipes and risers, like "A12" and "JL-3": their order, and which one comes next.
//
// Serials that stand in drawings were ordered and counted by these rules. They are kept to the letter, also
// where they are odd; this is not the usual comparison of numbers inside of texts.
#pragma once

#include "module/frame/ModulePort.h"

#include "afx.h"

#include <cstddef>
#include <vector>

namespace KolTool {

// Whether a text is made of the digits 0 to 9 and not empty; with the flag, whether it does not begin with 0
// either.
ZEF_PIPESYSTEM_PORT bool IsDigit(LPCTSTR text, bool noLeadingZero);

// Puts the pieces of a serial, by which it is compared, in the place of what the list held. A piece is a run
// of digits or a run of others, oddly counted: behind the first piece a run is of the kind of its second
// character, and where the serial ends such a run loses its last character, or of two its first; a single one
// is left out. False when there is no piece.
//
//     123 -> 123    A123 -> A, 12    A12 -> A, 2    A1 -> A    A1B -> A, B    A12B3 -> A, 12, 3    AB1 -> AB
ZEF_PIPESYSTEM_PORT bool SplitSerial(LPCTSTR serial, std::vector<CString>& pieces);

// Below, at or above 0 as the first serial goes before, with or behind the second. With an empty one the
// texts are compared as they are. Else piece by piece: where the first serial's piece is none of digits the
// pieces count, by their characters; where it is, the numbers that the whole serials begin with count (0 for
// none, of any length). When no pair differs, fewer pieces go first.
//
// So bare numbers go by value, and others by their letters; of JL-2, JL-9, JL-11 and JL-12 those with one
// digit go before those with two, and which digits these are does not count.
//
// This is no order in the strict sense: of "1-2" and "A" each goes behind the other. Do not hand it to a sort
// that relies on one; OrderOfSerials does not.
ZEF_PIPESYSTEM_PORT int CompareSerial(LPCTSTR a, LPCTSTR b);

// The places of serials in the list, in their order. Every place is in it once. Of neighbours either the
// first one does not go behind the second, or the second does not go before the first; serials that go with
// each other stay in the order of the list.
ZEF_PIPESYSTEM_PORT std::vector<std::size_t> OrderOfSerials(const std::vector<CString>& serials);

// Replaces a serial by the next one. A number at its end grows by 1, whatever the step, and keeps its noughts
// (A9 -> A10, A009 -> A010, 099 -> 100). Without one the letters and digits count up by the step from the
// right, each within its kind (AZ -> BA, Z -> AA, 000 -> 001); with neither a 1 is put behind (- -> -1). An
// empty serial becomes the step. What is left over when the count comes from a digit to a letter is put
// right of that letter, as a number (A9Z -> A10A). Steps below 1 leave letters as they are.
ZEF_PIPESYSTEM_PORT void IncreaseSerial(CString& serial, int step);

} // namespace KolTool
