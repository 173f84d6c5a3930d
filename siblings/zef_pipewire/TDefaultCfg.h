// What pipe entities take by default: flags, integers and reals under numbers of their kind.
//
// Lengths are millimetres, on paper where that is said. Numbers that are not listed are not in use.
//
//     flag     1  riser label style 2 has its lines swapped, upper and lower       off
//              2  pipes are drawn as thick as they plot                            off
//              3  the direction of flow is shown                                   off
//              4  linetype scales follow the current scale                         on
//              5  open ends of square trenches are closed                          on
//              6  labels of several pipes are checked automatically                on
//              7  the locating box of risers is visible                            off
//              8  pipes of no length are shown                                     off
//     integer  0  elbow type: 0 a sharp bend, 1 an arc                             0
//              1  decimal places of pipe lengths                                   1
//              2  decimal places of well depths                                    2
//              3  bend style of double-line pipes, 0 the first                     0
//              4  which diameter double-line pipes are labelled with, 0 the first  0
//     real     1  gap in a pipe around its text, on paper                          1.0
//              2  gap in a pipe where another one crosses, on paper                2.0
//              3  gap between flanges                                              3.0
//              4  length of the locating box of risers                             500.0
//              5  width of that box                                                500.0
#pragma once

#include "siblings/zef_pipewire/PipewirePort.h"

class AcDbDatabase;

class ZEF_PIPEWIRE_PORT TDefaultCfg {
public:
    enum Kind { kBoolean, kInteger, kReal };

    // Set and get the default of a kind and number. False, and nothing changed, when there is none, or when
    // the kind is not that of the value.
    static bool SetDefaultValue(Kind kind, int index, bool value);
    static bool SetDefaultValue(Kind kind, int index, int value);
    static bool SetDefaultValue(Kind kind, int index, double value);
    static bool GetDefaultValue(Kind kind, int index, bool& value);
    static bool GetDefaultValue(Kind kind, int index, int& value);
    static bool GetDefaultValue(Kind kind, int index, double& value);
};

// What a drawing's pipes look like, of the current one for null: as the drawing has it
// (TDbPsConfig::GetLook), else the default.

// Whether pipes are drawn as thick as they plot: flag 2.
ZEF_PIPEWIRE_PORT bool IsPsLineWeight(AcDbDatabase* database = nullptr);
// The gap in a pipe where another one crosses, in millimetres on paper: real 2.
ZEF_PIPEWIRE_PORT double GetPsBreakWidth(AcDbDatabase* database = nullptr);
// The gap in a pipe around its text, in millimetres on paper: real 1.
ZEF_PIPEWIRE_PORT double GetPsPipeTextDis(AcDbDatabase* database = nullptr);
// The elbow type: integer 0.
ZEF_PIPEWIRE_PORT int GetElbowType(AcDbDatabase* database = nullptr);
