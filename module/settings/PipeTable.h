// The table of pipe materials and their diameters ("pipe.dbf" of the system folder) as it is edited: each
// change is written to the file at once, whole or not at all, and read again by who asks for materials.
//
// Drawings hold a material by its place among the others, so a new one comes last, and only the last one can
// go.
#pragma once

#include "afx.h"

namespace PipeTable {

struct Diameter {
    CString material;
    double dn = 0;
    double outer = 0;
    double wall = 0;
};
struct Material {
    CString name;
    CString prefix; // of diameters in labels
    CString use;    // "I" indoors, "O" outdoors, "B" both
    CString source; // the standard with its edition
};

// The file's path.
CString FileName();

// Each gives why it can not be done, "" when it is done. A diameter that the material lacks is added; a
// material without one is added with it.
CString SetDiameter(const Diameter& diameter);
CString DeleteDiameter(const CString& material, double dn);
// Of a material that there is.
CString SetMaterial(const Material& material);
CString DeleteMaterial(const CString& material);

} // namespace PipeTable
