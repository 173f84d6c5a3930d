// How pipes that are drawn twice, or that end beside their neighbour, are mended.
#pragma once

#include "module/check/Findings.h"

// Takes out the object of a finding.
Acad::ErrorStatus MendByErasing(const Finding& finding);

// Takes out what lies wholly in the other one, or makes one line of two that overlap; the earlier one stays.
// They have the same properties, and pipes all the same values; a pipe to which something is attached stays.
// With `onlyAsked` nothing is changed: eOk tells that it can be done.
Acad::ErrorStatus MendOverlap(AcDbObjectId object, AcDbObjectId other, const CheckTolerances& tolerances,
                              bool onlyAsked);

// Moves the end of a line or a polyline from the place of a finding to its goal, if the other one still comes
// there.
Acad::ErrorStatus MendGap(const Finding& finding, const CheckTolerances& tolerances, bool onlyAsked);
