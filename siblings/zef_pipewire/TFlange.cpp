#include "siblings/zef_pipewire/TFlange.h"

TFlangeFunction g_pfnGetFlangeDataByDn = [](double, double, TFlangeData&) { return false; };

bool GetFlangeDataByDn(double pressureClass, double dn, TFlangeData& flange) {
    return g_pfnGetFlangeDataByDn(pressureClass, dn, flange);
}
