// Where a finding is, for people and programs.
#pragma once

#include "afx.h"
#include "module/check/Findings.h"

struct FindingPlace {
    CString m_handle;
    CString m_type;  // as drawing files name it
    CString m_layer; // of an entity; of a layer or a text style its own name
    CString m_block; // the block that it stands in; empty in model space, and for what stands in none
    bool m_hasPoint = false;
    AcGePoint3d m_point;
};

CString GetHandleText(AcDbObjectId object);
FindingPlace GetPlace(const Finding& finding);
// "C01 (7650,6600)", with its block when it stands in one.
CString GetPlaceText(const FindingPlace& place);
