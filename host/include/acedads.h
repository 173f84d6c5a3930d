// Input, selection and system variables, by functions of the C interface.
//
// Calls answer with the codes of adscodes.h: RTNORM, RTNONE for Enter, RTCAN for Escape, RTKWORD for a
// keyword, RTERROR and RTREJ. A prompt may be null.
#pragma once

#include "acutads.h"
#include "adscodes.h"
#include "adsdef.h"

// ---- input

// What the next input call accepts: RSG_ bits, and keywords by blanks ("Yes No", "LType", "LTYPE,LT"; behind
// a lone
// "_" the global names). It holds for one call, whether that looks at it or not. RTNORM, RTERROR for a bad
// list.
ACCORE_PORT int acedInitGet(int bits, const ACHAR* keywords);

// Give the value in `result`, which stays as it is for RTNONE. Text that is none is refused and asked for
// again.
ACCORE_PORT int acedGetInt(const ACHAR* prompt, int* result);
ACCORE_PORT int acedGetReal(const ACHAR* prompt, ads_real* result);
// A point: `base` may be null.
ACCORE_PORT int acedGetPoint(const ads_point base, const ACHAR* prompt, ads_point result);
// One of the keywords of acedInitGet, as spelled there. `size` is that of the buffer in characters, with the
// end.
ACCORE_PORT int acedGetKword(const ACHAR* prompt, ACHAR* result, size_t size = 133);
// A text; with cronly 0 a blank ends it. Enter alone gives RTNORM and an empty text.
ACCORE_PORT int acedGetString(int cronly, const ACHAR* prompt, ACHAR* result, size_t size = 133);
// The keyword, or other text, behind the last RTKWORD. RTERROR when there was none.
ACCORE_PORT int acedGetInput(ACHAR* result, size_t size = 133);

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

// Whether the user pressed Escape since it was last asked: 1 or 0.
ACCORE_PORT int acedUsrBrk();

// ---- selection sets

// Selects. Modes: null or "" asks the user, "X" all of the drawing, "A" what is neither frozen nor locked,
// "L" the newest visible entity, "P" the previous set, "I" what was picked first (nothing, where input is a
// command line), "W" and "C" a window and a crossing between the points pt1 and pt2, "WP", "CP" and "F" a
// polygon or a fence whose points pt1 is a chain of, "" with pt1 alone what a point hits, ":S" one operation,
// ":$" prompts from pt1 (an array of two texts); "_" in front is allowed. `filter` is a chain of group codes
// and values, RTREJ when it is malformed. RTNORM only for a set with at least one entity, which the caller
// frees.
ACCORE_PORT int acedSSGet(const ACHAR* mode, const void* pt1, const void* pt2, const resbuf* filter,
                          ads_name set);
ACCORE_PORT int acedSSFree(const ads_name set);
ACCORE_PORT int acedSSLength(const ads_name set, Adesk::Int32* length);
// RTERROR for an index that is out of range.
ACCORE_PORT int acedSSName(const ads_name set, Adesk::Int32 index, ads_name entity);
// Both null: an empty set. No set: a new one with the entity. Else the entity is added, unless it is in it.
ACCORE_PORT int acedSSAdd(const ads_name entity, const ads_name set, ads_name result);
ACCORE_PORT int acedSSDel(const ads_name entity, const ads_name set);
// RTNORM when it is in the set.
ACCORE_PORT int acedSSMemb(const ads_name entity, const ads_name set);

// ---- system variables

// Fills a result buffer that the caller owns; a text in it is the caller's to free. RTERROR for an unknown
// name.
ACCORE_PORT int acedGetVar(const ACHAR* name, resbuf* result);
// RTERROR and ERRNO 20 for one that is read only, 22 for a value out of range; the type must fit.
ACCORE_PORT int acedSetVar(const ACHAR* name, const resbuf* value);

// ---- output

// Shows a text on the command line as it stands.
ACCORE_PORT int acedPrompt(const ACHAR* text);
// Shows a message and waits for nothing.
ACCORE_PORT int acedAlert(const ACHAR* text);
