// The arrays that programs use without naming a template.
#pragma once

#include "afx.h"
#include "afxtempl.h"

class CStringArray : public CArray<CString> {};
class CUIntArray : public CArray<UINT, UINT> {};
