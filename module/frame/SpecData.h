// The tables of fittings, from the file "SpecData.xml" of the system folder:
//
//     <SpecData>
//       <Flanges Standard="GB/T 9124.1-2019" Edition="2019" Source="...">
//         <PressureClass PN="10">
//           <Flange Dn="50" OuterDiameter="165" Thickness="20"/>
//       <Elbows Series="长半径"> <Elbow Dn="50" Radius="76"/>
//       <Tees> <Tee Dn="50" CenterToEnd="64"/>
//       <Reducers> <Reducer Dn="50" Length="76"/>
//
// Millimetres; a pressure class may stand for several, its PN with blanks between. Without the file, or when
// it is no good XML, there are no tables.
#pragma once

#include "afx.h"
#include "module/frame/ModulePort.h"

#include <vector>

namespace SpecData {

// Reads the tables unless they are read, and has the pipe entities' question for flanges answered from them.
ZEF_PIPESYSTEM_PORT void Load();
// Forgets them, and lets answer who answered before.
ZEF_PIPESYSTEM_PORT void Release();

// The series of elbows, in the order of the file.
ZEF_PIPESYSTEM_PORT std::vector<CString> GetElbowSeries();
// Sizes by the nominal diameter, which agrees within 0.001: the radius of an elbow's centre line, the
// distance of a tee's ends from its centre, the length of a reducer by its larger end. 0 when the table has
// none.
ZEF_PIPESYSTEM_PORT double GetElbowRadius(LPCTSTR series, double dn);
ZEF_PIPESYSTEM_PORT double GetTeeLength(double dn);
ZEF_PIPESYSTEM_PORT double GetReducerLength(double dn);

} // namespace SpecData
