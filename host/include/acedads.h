// Input, selection and system variables, by functions of the C interface.
//
// Calls answer with the codes of adscodes.h: RTNORM, RTNONE for Enter, RTCAN for Escape, RTKWORD for a
// keyword, RTERROR and RTREJ. A prompt may be null.
#pragma once

#include "acstring.h"
#include "acutads.h"
#include "adscodes.h"
#include "adsdef.h"

#include <cstddef>
#include <type_traits>

// ---- input

// What the next input call accepts: RSG_ bits, and keywords by blanks ("Yes No", "LType", "LTYPE,LT"; behind
// a lone "_" the global names). It holds for one call, whether that looks at it or not. RTNORM. Bits that
// only a screen could tell apart (RSG_DASH, RSG_TRACKUCS, RSG_NOORTHOZ, RSG_NOOSNAP) change nothing.
ACCORE_PORT int acedInitGet(int bits, const ACHAR* keywords);

// Give the value in `result`, which stays as it is for RTNONE. Text that is none is refused and asked for
// again; with RSG_OTHER it is RTKWORD, and acedGetInput has it.
ACCORE_PORT int acedGetInt(const ACHAR* prompt, int* result);
ACCORE_PORT int acedGetReal(const ACHAR* prompt, ads_real* result);
// A distance in the forms of LUNITS ("12.5", "3-1/2"; with feet and inches where these are the units), or
// between two points, of which `base` is the first unless it is null. RSG_2D: in the plane.
ACCORE_PORT int acedGetDist(const ads_point base, const ACHAR* prompt, ads_real* result);
// An angle in the forms of AUNITS and with "45d30'15\"", "50g", "1.5r" in any, or the direction of two
// points: in radians from 0 to a full turn, counterclockwise, whatever ANGDIR says of what is typed. Angles
// count from ANGBASE, orientations from the x axis.
ACCORE_PORT int acedGetAngle(const ads_point base, const ACHAR* prompt, ads_real* result);
ACCORE_PORT int acedGetOrient(const ads_point base, const ACHAR* prompt, ads_real* result);
// A point in the user's coordinates: "x,y" at the height of ELEVATION, "x,y,z", "d<a", "d<a,z", "d<a<b";
// behind "@" from LASTPOINT, behind "*" in the world's. `base` may be null; a corner needs one, else
// RTERROR. With LIMCHECK what lies outside of the limits is refused, unless RSG_NOLIM.
ACCORE_PORT int acedGetPoint(const ads_point base, const ACHAR* prompt, ads_point result);
ACCORE_PORT int acedGetCorner(const ads_point base, const ACHAR* prompt, ads_point result);
// One of the keywords of acedInitGet, as spelled there. `size` is that of the buffer in characters, with the
// end; what does not fit is cut.
ACCORE_PORT int acedGetKword(const ACHAR* prompt, ACHAR* result, size_t size);
ACCORE_PORT int acedGetKword(const ACHAR* prompt, AcString& result);
// A text; with cronly 0 a blank ends it. Enter alone gives RTNORM and an empty text.
ACCORE_PORT int acedGetString(int cronly, const ACHAR* prompt, ACHAR* result, size_t size);
ACCORE_PORT int acedGetString(int cronly, const ACHAR* prompt, AcString& result);
// The keyword, or other text, behind the last RTKWORD. RTERROR when there was none.
ACCORE_PORT int acedGetInput(ACHAR* result, size_t size);
ACCORE_PORT int acedGetInput(AcString& result);

// The same for a buffer whose size is not told: an array tells it, a pointer is taken to have 133 characters.
template<class Text>
constexpr size_t acedInputSize() {
    if constexpr (std::is_array_v<Text>)
        return std::extent_v<Text>;
    else
        return 133;
}
template<class Text>
requires std::is_convertible_v<Text&, ACHAR*>
int acedGetKword(const ACHAR* prompt, Text&& result) {
    return acedGetKword(prompt, result, acedInputSize<std::remove_reference_t<Text>>());
}
template<class Text>
requires std::is_convertible_v<Text&, ACHAR*>
int acedGetString(int cronly, const ACHAR* prompt, Text&& result) {
    return acedGetString(cronly, prompt, result, acedInputSize<std::remove_reference_t<Text>>());
}
template<class Text>
requires std::is_convertible_v<Text&, ACHAR*>
int acedGetInput(Text&& result) {
    return acedGetInput(result, acedInputSize<std::remove_reference_t<Text>>());
}

// Asks for the name of a file on the command line, Enter for the `initial` one: RTNORM and a text in
// `result`, which the caller frees, or RTCAN. Without an extension the name gets that one. Of the flags 1 is
// looked at: the file need not be there.
ACCORE_PORT int acedGetFileD(const ACHAR* title, const ACHAR* initial, const ACHAR* extension, int flags,
                             resbuf* result);

// Not supported, RTERROR: there is no cursor that could drag a selection.
ACCORE_PORT int acedDragGen(const ads_name set, const ACHAR* prompt, int cursor,
                            int (*sample)(ads_point point, ads_matrix transform), ads_point result);

// A point, or with `displacement` not 0 a vector, from one coordinate system to another: RTSHORT 0 the
// world's, 1 the user's, RT3DPOINT that of an extrusion direction. RTERROR for others: those of displays and
// of entities by name are not supported.
ACCORE_PORT int acedTrans(const ads_point point, const resbuf* from, const resbuf* to, int displacement,
                          ads_point result);

// One entity, and the point at which it was picked. Nothing hit: RTERROR, ERRNO 7. Enter: RTERROR, ERRNO 52.
ACCORE_PORT int acedEntSel(const ACHAR* prompt, ads_name entity, ads_point point);

// The same for what lies in blocks and references: the innermost entity (an attribute, too), the
// transformation from its block to the world, to be multiplied with columns, and the chain of references
// around it (RTENAME, the innermost first; null for none), which the caller frees. With usePoint not 0 the
// point is taken instead of asked for. transform and containers may be null.
ACCORE_PORT int acedNEntSelP(const ACHAR* prompt, ads_name entity, ads_point point, int usePoint,
                             ads_matrix transform, resbuf** containers);
// The older form: always asks, and gives the transformation as four rows: the images of the axes and of the
// origin.
ACCORE_PORT int acedNEntSel(const ACHAR* prompt, ads_name entity, ads_point point, ads_point transform[4],
                            resbuf** containers);

// Whether the user pressed Escape since it was last asked: 1 or 0. An Escape that is never asked for ends the
// next question at once, with RTCAN.
ACCORE_PORT int acedUsrBrk();

// ---- selection sets

// Selects; the set is the caller's to free. Modes, with "_" in front or not:
//
//   null, ""   the set that was picked before the command, for a command that uses it (ACRX_CMD_USEPICKSET);
//              else the user is asked. With pt1 alone what a point hits
//   X, A       all of the drawing, the newest first; what is neither frozen nor locked
//   L, P, I    the newest visible entity of the current space; the previous set; only what was picked before
//   W, C, B    a window, a crossing, or either by the order of the corners pt1 and pt2
//   WP, CP, F  polygons and a fence, whose points pt1 is a chain of
//   G          the group whose name pt1 is
//   M, .       asks for many points, or for one
//
// Behind it stand in any number: ":$" prompts from pt1 (an array of two texts), ":D" doubles are kept, ":E" a
// pick takes all in the pick box, ":K" keywords of acedInitGet call a function (acedSSSetKwordCallbackPtr),
// ":L" nothing on locked layers, ":N" picks take what lies in blocks, ":S" one answer is all; "+." the user
// can but pick, "-X" he can not choose a way, "#" only Last, Previous and ALL. Parts of entities (":U", ":V")
// are not supported.
//
// `filter` is a chain of group codes and values. RTNORM only for a set with at least one entity. Else RTERROR
// with ERRNO 52 for Enter, 7 when a pick hit nothing, 0 when nothing was found or fits the filter, 3 when 128
// sets are in use; RTCAN for Escape, RTKWORD for a keyword, RTREJ for a malformed mode or filter.
ACCORE_PORT int acedSSGet(const ACHAR* mode, const void* pt1, const void* pt2, const resbuf* filter,
                          ads_name set);
// What is picked before a command, for the next one if that uses it (ACRX_CMD_USEPICKSET); it is forgotten
// when that one ends, and when another begins. A null set for nothing. RTERROR, ERRNO 2, for a set that is
// none.
ACCORE_PORT int acedSSSetFirst(const ads_name set, const ads_name unused);
// Gives the same as a new set (RTPICKS), or RTNONE when there is none; of grips, which no screen shows,
// always RTNONE. The caller frees the result buffers, and the set. Either may be null; without `picked` the
// first one gets what it would.
ACCORE_PORT int acedSSGetFirst(resbuf** grips, resbuf** picked);
// The function that ":K" calls with a keyword. Of the chain that it gives, which is freed, entities (RTENAME)
// and sets (RTPICKS) are selected and a text (RTSTR) is shown. Null for none: then a keyword ends the call
// with RTKWORD.
ACCORE_PORT int acedSSSetKwordCallbackPtr(resbuf* (*callback)(const ACHAR* keyword));
ACCORE_PORT int acedSSGetKwordCallbackPtr(resbuf* (**callback)(const ACHAR* keyword));
ACCORE_PORT int acedSSFree(const ads_name set);
ACCORE_PORT int acedSSLength(const ads_name set, Adesk::Int32* length);
// For older sources.
inline int acedSSLength(const ads_name set, long* length) {
    Adesk::Int32 count = 0;
    const int answered = acedSSLength(set, &count);
    if (answered == RTNORM && length != nullptr)
        *length = count;
    return answered;
}
// RTERROR for an index that is out of range.
ACCORE_PORT int acedSSName(const ads_name set, Adesk::Int32 index, ads_name entity);
// Both null: an empty set. No set: a new one with the entity. Else the entity is added, unless it is in it.
ACCORE_PORT int acedSSAdd(const ads_name entity, const ads_name set, ads_name result);
ACCORE_PORT int acedSSDel(const ads_name entity, const ads_name set);
// RTNORM when it is in the set.
ACCORE_PORT int acedSSMemb(const ads_name entity, const ads_name set);

// ---- system variables

// Fills a result buffer that the caller owns: whole numbers as RTSHORT, real ones as RTREAL, texts as RTSTR,
// which the caller frees, points as RT3DPOINT, or RTPOINT for those of the plane. RTERROR for an unknown
// name.
ACCORE_PORT int acedGetVar(const ACHAR* name, resbuf* result);
// RTERROR and ERRNO 20 for one that is read only, 22 for a value out of range; the type must fit.
ACCORE_PORT int acedSetVar(const ACHAR* name, const resbuf* value);

// ---- output

// Shows a text on the command line as it stands.
ACCORE_PORT int acedPrompt(const ACHAR* text);
// Shows a message and waits for nothing.
ACCORE_PORT int acedAlert(const ACHAR* text);
