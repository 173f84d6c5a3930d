// The sizes of flanges, as pipe entities ask for them.
#pragma once

#include "siblings/zef_pipewire/PipewirePort.h"

// Millimetres.
struct TFlangeData {
    double m_outerDiameter = 0;
    double m_thickness = 0; // of the plate
};

// Answers for a pressure class (PN, bar) and a nominal diameter, which agree within 0.001. False, and nothing
// given, when it knows no such flange.
typedef bool (*TFlangeFunction)(double pressureClass, double dn, TFlangeData& flange);

// Who answers; never null. Built in is one that knows no flange. Who puts another one here keeps the one that
// was there, and puts that back before it goes.
ZEF_PIPEWIRE_PORT extern TFlangeFunction g_pfnGetFlangeDataByDn;

// Asks it.
ZEF_PIPEWIRE_PORT bool GetFlangeDataByDn(double pressureClass, double dn, TFlangeData& flange);
