// LIST: what is known of picked objects.
#include "acedads.h"
#include "acutads.h"
#include "acutmem.h"
#include "base/case_fold.h"
#include "base/utf.h"
#include "dbcurve.h"
#include "dbdim.h"
#include "dbents.h"
#include "dbhatch.h"
#include "dbmtext.h"
#include "dbobjptr.h"
#include "dbpl.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/symbol_names.h"
#include "host/ed/editor.h"
#include "host/ed/host_commands.h"
#include "host/ed/questions.h"

#include <cmath>

namespace ed {

namespace {

constexpr double degrees = 180.0 / 3.14159265358979323846;

std::wstring taken(ACHAR* text) {
    std::wstring copy = text != nullptr ? text : L"";
    acutDelString(text);
    return copy;
}

// One line: a title that ends in one column, and its value.
void row(const wchar_t* title, const std::wstring& value) {
    acutPrintf(L"%28ls %ls\n", title, value.c_str());
}

void row(const wchar_t* title, double value) {
    row(title, shown_number(value));
}

std::wstring color_text(const AcCmColor& color) {
    if (color.isByLayer())
        return L"BYLAYER";
    if (color.isByBlock())
        return L"BYBLOCK";
    if (color.isByColor())
        return std::to_wstring(color.red()) + L"," + std::to_wstring(color.green()) + L"," +
               std::to_wstring(color.blue());
    return std::to_wstring(color.colorIndex());
}

std::wstring name_of(AcDbObjectId id) {
    if (id.isNull() || id.database() == nullptr)
        return {};
    AcDbImpDatabase& drawing = id.database()->imp();
    return drawing.names().name_of(drawing.record(id));
}

// Type, layer, space, handle, and what is not ByLayer.
void list_common(const AcDbEntity& entity) {
    AcDbImpDatabase& drawing = entity.database()->imp();
    const std::string type(drawing.records().type_name(drawing.record(entity.objectId())));
    AcString layer;
    entity.layer(layer);
    ACHAR handle[AcDbHandle::kStrSiz];
    entity.objectId().handle().getIntoAsciiBuffer(handle);
    acutPrintf(L"\n%18S    Layer: \"%ls\"\n%28ls: %ls\n%22ls = %ls\n", type.c_str(), layer.kwszPtr(),
               L"Space", name_of(entity.blockId()).c_str(), L"Handle", handle);
    if (const AcCmColor color = entity.color(); !color.isByLayer())
        row(L"Color:", color_text(color));
    if (const std::wstring linetype = taken(entity.linetype()); !base::equal_no_case(linetype, L"ByLayer"))
        row(L"Linetype:", L"\"" + linetype + L"\"");
    if (entity.linetypeScale() != 1.0)
        row(L"Linetype scale:", entity.linetypeScale());
    if (entity.lineWeight() != AcDb::kLnWtByLayer)
        row(L"Lineweight:", std::to_wstring(static_cast<int>(entity.lineWeight())));
    if (entity.visibility() == AcDb::kInvisible)
        row(L"Invisible", L"");
}

void list_line(const AcDbLine& line) {
    const AcGeVector3d along = line.endPoint() - line.startPoint();
    row(L"from point,", shown_point(line.startPoint()));
    row(L"to point,", shown_point(line.endPoint()));
    row(L"Length =", along.length());
    row(L"Angle in XY Plane =", std::fmod(std::atan2(along.y, along.x) * degrees + 360.0, 360.0));
    row(L"Delta X =", shown_number(along.x) + L", Delta Y = " + shown_number(along.y) + L", Delta Z = " +
                          shown_number(along.z));
}

void list_circle(const AcDbCircle& circle) {
    row(L"center point,", shown_point(circle.center()));
    row(L"radius", circle.radius());
}

void list_arc(const AcDbArc& arc) {
    row(L"center point,", shown_point(arc.center()));
    row(L"radius", arc.radius());
    row(L"start angle", arc.startAngle() * degrees);
    row(L"end angle", arc.endAngle() * degrees);
}

void list_text(const AcDbText& text) {
    if (const AcDbAttributeDefinition* const definition = AcDbAttributeDefinition::cast(&text)) {
        row(L"tag", taken(definition->tag()));
        row(L"prompt", taken(definition->prompt()));
    }
    row(L"Style =", L"\"" + name_of(text.textStyle()) + L"\"");
    row(L"start point,", shown_point(text.position()));
    row(L"height", text.height());
    row(L"text", taken(text.textString()));
    row(L"rotation angle", text.rotation() * degrees);
    row(L"width scale factor", text.widthFactor());
}

void list_paragraphs(const AcDbMText& text) {
    row(L"Location:", shown_point(text.location()));
    row(L"Width:", text.width());
    row(L"Text height:", text.textHeight());
    row(L"Contents:", taken(text.contents()));
}

void list_polyline(const AcDbPolyline& polyline) {
    row(polyline.isClosed() ? L"Closed," : L"Open,",
        std::to_wstring(polyline.numVerts()) + (polyline.numVerts() == 1 ? L" vertex" : L" vertices"));
    for (unsigned i = 0; i < polyline.numVerts(); ++i) {
        AcGePoint3d point;
        polyline.getPointAt(i, point);
        double bulge = 0.0;
        polyline.getBulgeAt(i, bulge);
        row(L"at point", shown_point(point) + (bulge != 0.0 ? L"  bulge " + shown_number(bulge) : L""));
    }
}

void list_reference(const AcDbBlockReference& reference) {
    row(L"Block Name:", L"\"" + name_of(reference.blockTableRecord()) + L"\"");
    row(L"at point,", shown_point(reference.position()));
    const AcGeScale3d scale = reference.scaleFactors();
    row(L"X scale factor:", scale.sx);
    row(L"Y scale factor:", scale.sy);
    row(L"rotation angle:", reference.rotation() * degrees);
    row(L"Z scale factor:", scale.sz);
    const std::unique_ptr<AcDbObjectIterator> attributes(reference.attributeIterator());
    for (; !attributes->done(); attributes->step()) {
        const AcDbObjectPointer<AcDbAttribute> attribute(attributes->objectId());
        if (attribute.openStatus() == Acad::eOk)
            row(L"attribute", taken(attribute->tag()) + L" = \"" + taken(attribute->textString()) + L"\"");
    }
}

void list_hatch(const AcDbHatch& hatch) {
    row(L"Hatch pattern", hatch.patternName());
}

// Area and length of what is a curve.
void list_measures(const AcDbCurve& curve) {
    double area = 0.0;
    const bool closed = curve.isClosed();
    if ((closed || AcDbPolyline::cast(&curve) != nullptr) && curve.getArea(area) == Acad::eOk)
        row(L"area", area);
    double last = 0.0;
    double length = 0.0;
    if (AcDbLine::cast(&curve) == nullptr && curve.getEndParam(last) == Acad::eOk &&
        curve.getDistAtParam(last, length) == Acad::eOk)
        row(AcDbCircle::cast(&curve) != nullptr ? L"circumference"
            : closed                            ? L"perimeter"
                                                : L"length",
            length);
}

void list_extents(const AcDbEntity& entity) {
    AcDbExtents extents;
    if (entity.getGeomExtents(extents) != Acad::eOk)
        return;
    row(L"Lower bound", shown_point(extents.minPoint()));
    row(L"Upper bound", shown_point(extents.maxPoint()));
}

void list_entity(const AcDbEntity& entity) {
    list_common(entity);
    if (const auto* const line = AcDbLine::cast(&entity))
        list_line(*line);
    else if (const auto* const circle = AcDbCircle::cast(&entity))
        list_circle(*circle);
    else if (const auto* const arc = AcDbArc::cast(&entity))
        list_arc(*arc);
    else if (const auto* const point = AcDbPoint::cast(&entity))
        row(L"at point,", shown_point(point->position()));
    else if (const auto* const text = AcDbText::cast(&entity))
        list_text(*text);
    else if (const auto* const paragraphs = AcDbMText::cast(&entity))
        list_paragraphs(*paragraphs);
    else if (const auto* const polyline = AcDbPolyline::cast(&entity))
        list_polyline(*polyline);
    else if (const auto* const reference = AcDbBlockReference::cast(&entity))
        list_reference(*reference);
    else if (const auto* const hatch = AcDbHatch::cast(&entity))
        list_hatch(*hatch);
    else
        list_extents(entity);
    if (const auto* const curve = AcDbCurve::cast(&entity))
        list_measures(*curve);
    // The applications that have left data at it.
    std::wstring applications;
    resbuf* const data = entity.xData();
    for (const resbuf* node = data; node != nullptr; node = node->rbnext)
        if (node->restype == 1001)
            applications += (applications.empty() ? L"" : L", ") + std::wstring(node->resval.rstring);
    if (data != nullptr)
        acutRelRb(data);
    if (!applications.empty())
        row(L"Extended data of:", applications);
}

} // namespace

void list_command() {
    if (current_drawing() == nullptr)
        return;
    const std::vector<AcDbObjectId> chosen = ask_objects(false);
    for (const AcDbObjectId id : chosen) {
        if (acedUsrBrk() != 0)
            break;
        const AcDbEntityPointer entity(id);
        if (entity.openStatus() == Acad::eOk)
            list_entity(*entity.object());
    }
}

} // namespace ed
