// The materials of pipes and their diameters, from the table "pipe.dbf" of the system folder. It is read when
// it is first asked for; without it there are no materials. Millimetres, where nothing else is said.
#pragma once

#include "siblings/zef_public/PublicPort.h"

#include "afx.h"

#include <vector>

struct PipeDiameter {
    double m_dn = 0;
    double m_outer = 0;
    double m_inner = 0;
};

struct PipeMaterial {
    CString m_name;
    CString m_prefix; // of diameters in labels
    bool m_isIndoor = false;
    bool m_isOutdoor = false;
    CString m_source;                      // the standard with its edition
    std::vector<PipeDiameter> m_diameters; // in the order of the table
};

// All materials in the order of the table; a material's index is its place.
ZEF_PUBLIC_PORT const std::vector<PipeMaterial>& GetPipeMaterials();
// Reads the table anew, when it was read before.
ZEF_PUBLIC_PORT void ReloadPipeMaterials();

// Appends the names.
ZEF_PUBLIC_PORT void GetPipeMaterialList(std::vector<CString>& names);
// "" when there is no such material.
ZEF_PUBLIC_PORT CString GetPipeMaterialByIdx(int index);
// What a label says in front of a diameter of the material when it is made by itself: the material's prefix,
// "DN" for one without.
ZEF_PUBLIC_PORT CString GetDnByMat(LPCTSTR material);
// The row of a nominal diameter, which agrees within 0.001, of the material of exactly that name; null when
// the table has none.
ZEF_PUBLIC_PORT const PipeDiameter* FindPipeDiameter(LPCTSTR material, double dn);
// The outer diameter, and the inner one by which flows are reckoned, in metres; the nominal one when the
// table has none.
ZEF_PUBLIC_PORT double GetPipeOutDByDn(LPCTSTR material, double dn);
ZEF_PUBLIC_PORT double GetPipeDjByDn(LPCTSTR material, double dn);
