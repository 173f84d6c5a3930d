#include "acgi.h"
#include "dbents.h"
#include "host/db/core/fields.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/lines_alike.h"
#include "host/db/core/plain_figures.h"
#include "host/db/entities/imp_curve.h"
#include "host/db/tables/properties.h"

using db::line_place;

ENTITY_CLASS(AcDbLine, AcDbCurve, LINE, line_place)

// What is taken apart becomes many lines, so each is written at once.
AcDbLine::AcDbLine(const AcGePoint3d& start, const AcGePoint3d& end) {
    std::string text = "0\nLINE\n100\nAcDbEntity\n8\n0\n100\nAcDbLine\n";
    db::append_ends(text, db::plain_style, start, end);
    imp().begin_new(std::move(text));
}

FIELD_MEMBERS(AcDbLine, startPoint, setStartPoint, line_place, 10)
FIELD_MEMBERS(AcDbLine, endPoint, setEndPoint, line_place, 11)
FIELD_MEMBERS(AcDbLine, thickness, setThickness, line_place, 39)
FIELD_MEMBERS(AcDbLine, normal, setNormal, line_place, 210)

bool AcDbLine::subMakePieces(AcDbImpCurve& pieces) const {
    const AcGePoint3d start = startPoint();
    const AcGePoint3d end = endPoint();
    pieces.add_line(start, end, 0.0, start.distanceTo(end));
    return true;
}

Acad::ErrorStatus AcDbLine::reverseCurve() {
    assertWriteEnabled();
    const AcGePoint3d start = startPoint();
    setStartPoint(endPoint());
    return setEndPoint(start);
}

Adesk::Boolean AcDbLine::subWorldDraw(AcGiWorldDraw* draw) {
    const AcGePoint3d ends[] = {startPoint(), endPoint()};
    const AcGeVector3d up = normal();
    draw->subEntityTraits().setThickness(thickness());
    draw->geometry().polyline(2, ends, &up);
    return true;
}

Acad::ErrorStatus AcDbLine::subTransformBy(const AcGeMatrix3d& matrix) {
    setStartPoint(matrix * startPoint());
    setEndPoint(matrix * endPoint());
    const AcGeVector3d up = matrix * normal();
    setThickness(thickness() * up.length());
    setNormal(up.normal());
    return Acad::eOk;
}
