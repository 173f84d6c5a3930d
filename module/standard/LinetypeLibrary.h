// The linetypes that the module brings along: the table "linetype.dbf" of the system folder, with the columns
// NAME, DESCR and PATTERN. It is read when it is first asked for.
//
// A pattern is written as in files of linetypes: "A," and then the lengths of dashes (above nought), gaps
// (below) and dots (nought) in millimetres on paper; behind a length may stand what is written in the line
// there: ["TEXT",STYLE,S=size,R=rotation,X=offset,Y=offset], R in degrees against the line, A in its place
// against the drawing.
#pragma once

#include "module/frame/ModulePort.h"

#include "afx.h"
#include "dbid.h"

#include <optional>
#include <vector>

struct LinetypeDash {
    double m_length = 0;
    CString m_text;
    CString m_style;
    double m_size = 1;
    double m_rotation = 0; // degrees
    bool m_isAbsolute = false;
    double m_x = 0;
    double m_y = 0;
};

// Nothing for what is no pattern: no dash, or something else between the commas.
ZEF_PIPESYSTEM_PORT std::optional<std::vector<LinetypeDash>> ParseLinetypePattern(LPCTSTR pattern);

// Reads the table anew.
ZEF_PIPESYSTEM_PORT void ReloadLinetypes();
// Appends the names of the table, in its order.
ZEF_PIPESYSTEM_PORT void GetLinetypeNames(std::vector<CString>& names);

namespace KolTool {

// The linetype of that name, without case, in the working drawing; it is made from the table when it is
// missing, or as a linetype file (".lin") of the support path says. The drawing's style "Standard" stands in
// for a text style that it lacks. Null when none of them has it.
ZEF_PIPESYSTEM_PORT AcDbObjectId LoadVrLineType(LPCTSTR name);

} // namespace KolTool
