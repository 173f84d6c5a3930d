// The tables of fittings, from the file "SpecData.xml" of the system folder:
//
//     <SpecData>
//       <Flanges Standard="GB/T 9124.1-2019" Edition="2019" Source="...">
//         <PressureClass PN="10">
//           <Flange Dn="50" OuterDiameter="165" Thickness="20"/>
//
// Millimetres; a pressure class may stand for several, its PN with blanks between. Without the file, or when
// it is no good XML, there are no tables.
#pragma once

#include "module/frame/ModulePort.h"

namespace SpecData {

// Reads the tables unless they are read, and has the pipe entities' question for flanges answered from them.
ZEF_PIPESYSTEM_PORT void Load();
// Forgets them, and lets answer who answered before.
ZEF_PIPESYSTEM_PORT void Release();

} // namespace SpecData
