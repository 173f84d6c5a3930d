// The arrays that programs use without naming a template.
#pragma once

#include "afx.h"
#include "afxtempl.h"

class CStringArray : public CArray<CString> {};
// An array of unsigned numbers.
class CUIntArray : public CArray<UINT, UINT> {};
