// Diameter labels of pipes. The pipe draws its label itself; what it says and where it stands is set here.
#pragma once

#include "module/frame/ModulePort.h"
#include "siblings/zef_kernal/TEntitySet.h"

#include "afx.h"

class TDbPipe;

namespace KolTool {

// What a pipe's label gets in front of its diameter by a style:
//
//     "φ外径", "外径壁厚"  "%%c", the sign of outer diameters
//     "外径壁厚2"          the prefix of the pipe's layer (g_csPipeDim), a blank and "%%c"
//     "自动"               what stands before diameters of the pipe's material (GetDnByMat)
//     others               the style itself
ZEF_PIPESYSTEM_PORT CString GetPipeLabelFormat(const TDbPipe& pipe, LPCTSTR labelStyle);

// Labels the first pipe of a set; what is no pipe, or can not be changed, is passed over.
//
// dn           the nominal diameter that the pipe gets, mm; 0, or below, keeps its own
// labelStyle   as above. One with "%%c" turns the pipe to outer diameters: its DN becomes the outer diameter
//              of its material's row, the DN itself without one, and the label tells the wall's thickness
//              with "外径壁厚" and "外径壁厚2", no thickness with others.
// textHeight   of the label, mm on paper, or of the model where the drawing's sizes are absolute; what is not
//              above nought keeps the pipe's own
// otherSide    not 0: the label stands on the other side of the pipe
// force        not 0: a label that is there is placed anew
//
// A label is placed the drawing's plot scale times g_nDnDimDist2Pipe from the pipe. It is drawn when the pipe
// is longer than the scale / 200 (for texts below 2.99: / 150 from there on), in metres; in drawings of
// absolute sizes longer than 5 (8) units of the drawing. A pipe of an old label type below 0 is not labelled.
//
// Outer diameter and "PIPE_THICK" follow, and so do the texts about the pipe. A riser gets its diameter and
// these two alone; its texts stay. A double-line pipe gets the DN at both ends when it is 1 at least, with
// the flange for its pressure class ("VR-PIPE-FLANGE-PN" in its extended data: "0.25MPa", "0.6MPa", "1.6MPa",
// else 1.0), none where the tables have none, and the text style of diameters; it draws its label from these.
ZEF_PIPESYSTEM_PORT void DoDimPipeDn(TEntitySet pipes, int dn, LPCTSTR labelStyle, double textHeight,
                                     int otherSide, int force);

} // namespace KolTool
