// Texts and result buffers that travel between host and applications.
//
// All of them come from the allocator behind new[], so that either side may free what the other made.
#pragma once

#include "acadstrc.h"
#include "adsdef.h"

// A copy of a text, which the caller frees with acutDelString. eInvalidInput for a null text; the pointer is
// null then.
ACBASE_PORT Acad::ErrorStatus acutNewString(const ACHAR* text, ACHAR*& copy);

// Frees a text of acutNewString, of a result buffer or of another call that hands one over, and makes the
// pointer null. A null pointer is harmless.
ACBASE_PORT void acutDelString(ACHAR*& text);

// Replaces a text of acutNewString, which may be null, by a copy of another. eInvalidInput for a null one;
// then the old text stays.
ACBASE_PORT Acad::ErrorStatus acutUpdString(const ACHAR* text, ACHAR*& old);

// One result buffer of the given type or group code, its value nought, no text allocated. The caller frees it
// with acutRelRb.
ACBASE_PORT resbuf* acutNewRb(int type);

// Frees a chain with every text and binary value in it. A null chain is harmless. RTNORM.
ACBASE_PORT int acutRelRb(resbuf* chain);

// A chain of the given types and values, ended by 0 or RTNONE:
//
//     acutBuildList(RTDXF0, L"CIRCLE", 8, L"PIPE", 10, point, 40, 25.0, 0)
//
// Texts are copied, points given as arrays of two reals for RTPOINT and of three otherwise, names as
// ads_name, integers as int (the group codes 160 to 169 as Adesk::Int64), bytes as ads_binary* (copied),
// nothing after the types that hold nothing (-3, RTLB, RTLE, RTDOTE, RTNIL, RTT, RTVOID). RTDXF0 becomes 0 in
// the chain. The caller frees the chain. Null for a type that is none and for a null text, array or
// ads_binary.
ACBASE_PORT resbuf* acutBuildList(int type, ...);
