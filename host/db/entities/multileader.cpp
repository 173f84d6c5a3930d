#include "acgi.h"
#include "dbmleader.h"
#include "dbmtext.h"
#include "dbsymtb.h"
#include "host/db/core/fields.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/record_classes.h"
#include "host/db/custom/proxy_graphics.h"
#include "host/db/entities/arrowhead.h"
#include "host/db/entities/multileader_context.h"
#include "host/dxf/record_header.h"

namespace {

constexpr db::field multileader_fields[] = {
    db::number(270, "2"),  db::number(300, "CONTEXT_DATA{"),
    db::number(40, "1.0"), db::number(290, "0"),
    db::number(296, "0"),  db::number(301, "}"),
    db::number(172, "0"),
};
constexpr db::section multileader_place{{"AcDbMLeader"}, multileader_fields};

// The vertices of all leader lines, each as far as the landing.
std::vector<std::vector<AcGePoint3d>> lines_of(const db::multileader_context& context) {
    std::vector<std::vector<AcGePoint3d>> lines;
    for (const db::multileader_context::leader& leader : context.leaders)
        for (const std::vector<AcGePoint3d>& line : leader.lines) {
            lines.push_back(line);
            if (leader.has_landing)
                lines.back().push_back(leader.landing);
        }
    return lines;
}

Acad::ErrorStatus vertex_of(const AcDbImpObject& imp, int line, int index, AcGePoint3d& point) {
    const auto lines = lines_of(db::read_context(imp));
    if (line < 0 || static_cast<std::size_t>(line) >= lines.size())
        return Acad::eInvalidIndex;
    const auto& vertices = lines[static_cast<std::size_t>(line)];
    const std::size_t at = index < 0 ? vertices.size() - 1 : static_cast<std::size_t>(index);
    if (at >= vertices.size())
        return Acad::eInvalidIndex;
    point = vertices[at];
    return Acad::eOk;
}

std::unique_ptr<AcDbMText> text_of(const AcDbImpObject& imp, const db::multileader_context& context) {
    auto text = std::make_unique<AcDbMText>();
    text->setNormal(context.normal.isZeroLength() ? AcGeVector3d::kZAxis : context.normal);
    text->setDirection(context.text_direction);
    text->setLocation(context.text_location);
    // Left, middle or right, always hung from the first row.
    text->setAttachment(static_cast<AcDbMText::AttachmentPoint>(std::min(context.attachment, 3)));
    text->setWidth(std::max(context.text_width, 0.0));
    if (context.text_height > 0.0)
        text->setTextHeight(context.text_height);
    text->setContents(imp.decode(context.text).c_str());
    return text;
}

} // namespace

ENTITY_CLASS_OF(AcDbMLeader, AcDbEntity, MULTILEADER, "ACDB_MLEADER_CLASS", multileader_place)

AcDbMLeader::ContentType AcDbMLeader::contentType() const {
    assertReadEnabled();
    const db::multileader_context context = db::read_context(imp());
    return context.has_text ? kMTextContent : context.has_block ? kBlockContent : kNoneContent;
}

VALUE_GETTER(AcDbMLeader, numLeaders, static_cast<int>(db::read_context(imp()).leaders.size()))
VALUE_GETTER(AcDbMLeader, numLeaderLines, static_cast<int>(lines_of(db::read_context(imp())).size()))

Acad::ErrorStatus AcDbMLeader::numVertices(int leaderLineIndex, int& count) const {
    assertReadEnabled();
    const auto lines = lines_of(db::read_context(imp()));
    if (leaderLineIndex < 0 || static_cast<std::size_t>(leaderLineIndex) >= lines.size())
        return Acad::eInvalidIndex;
    count = static_cast<int>(lines[static_cast<std::size_t>(leaderLineIndex)].size());
    return Acad::eOk;
}

Acad::ErrorStatus AcDbMLeader::getVertex(int leaderLineIndex, int index, AcGePoint3d& point) const {
    assertReadEnabled();
    return index < 0 ? Acad::eInvalidIndex : vertex_of(imp(), leaderLineIndex, index, point);
}

Acad::ErrorStatus AcDbMLeader::getFirstVertex(int leaderLineIndex, AcGePoint3d& point) const {
    assertReadEnabled();
    return vertex_of(imp(), leaderLineIndex, 0, point);
}

Acad::ErrorStatus AcDbMLeader::getLastVertex(int leaderLineIndex, AcGePoint3d& point) const {
    assertReadEnabled();
    return vertex_of(imp(), leaderLineIndex, -1, point);
}

AcDbMText* AcDbMLeader::mtext() const {
    assertReadEnabled();
    const db::multileader_context context = db::read_context(imp());
    return context.has_text ? text_of(imp(), context).release() : nullptr; // the caller's
}

Acad::ErrorStatus AcDbMLeader::getTextLocation(AcGePoint3d& location) const {
    assertReadEnabled();
    const db::multileader_context context = db::read_context(imp());
    if (!context.has_text)
        return Acad::eNotApplicable;
    location = context.text_location;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbMLeader::getBlockPosition(AcGePoint3d& position) const {
    assertReadEnabled();
    const db::multileader_context context = db::read_context(imp());
    if (!context.has_block)
        return Acad::eNotApplicable;
    position = context.block_position;
    return Acad::eOk;
}

AcDbObjectId AcDbMLeader::blockContentId() const {
    assertReadEnabled();
    const db::multileader_context context = db::read_context(imp());
    return context.has_block && imp().database != nullptr
               ? imp().database->id(imp().database->records().find(context.block))
               : AcDbObjectId::kNull;
}

VALUE_GETTER(AcDbMLeader, scale, db::read_context(imp()).scale)
VALUE_GETTER(AcDbMLeader, textHeight, db::read_context(imp()).text_height)
VALUE_GETTER(AcDbMLeader, arrowSize, db::read_context(imp()).arrow_size)

Adesk::Boolean AcDbMLeader::subWorldDraw(AcGiWorldDraw* draw) {
    const std::string saved = db::read_proxy_graphics(imp());
    if (db::kind_of_proxy_graphics(saved) == db::metafile::graphics) {
        db::draw_proxy_graphics(saved, imp(), *draw);
        return true;
    }
    const db::multileader_context context = db::read_context(imp());
    AcGiWorldGeometry& geometry = draw->geometry();
    for (const std::vector<AcGePoint3d>& line : lines_of(context)) {
        geometry.polyline(static_cast<Adesk::UInt32>(line.size()), line.data());
        if (line.size() > 1 && context.arrow_size > 0.0)
            db::draw_arrowhead(imp(), imp().groups().handle(multileader_place, 342), line[0],
                               line[0] - line[1], context.normal, context.arrow_size, *draw);
    }
    for (const db::multileader_context::leader& leader : context.leaders)
        if (leader.has_landing && leader.has_dogleg) {
            const AcGePoint3d dogleg[] = {leader.landing, leader.landing + leader.dogleg};
            geometry.polyline(2, dogleg);
        }
    if (context.has_text)
        geometry.draw(text_of(imp(), context).get());
    if (context.has_block && imp().database != nullptr) {
        const dxf::record_id block = imp().database->records().find(context.block);
        if (block != dxf::no_record && db::class_of(*imp().database, block) == AcDbBlockTableRecord::desc()) {
            geometry.pushModelTransform(context.block_to_world);
            geometry.draw(imp().database->objects().view(block).get());
            geometry.popModelTransform();
        }
    }
    return true;
}

Acad::ErrorStatus AcDbMLeader::subTransformBy(const AcGeMatrix3d& matrix) {
    db::plane_change change;
    if (!db::change_plane(db::read_context(imp()).normal, matrix, change))
        return Acad::eCannotScaleNonUniformly;
    db::transform_context(imp(), matrix, change.scale);
    db::write_real(imp(), multileader_place, 45,
                   db::read_real(imp(), multileader_place, 45, 1.0) * change.scale, 1.0);
    db::write_proxy_graphics(imp(), {});
    return Acad::eOk;
}
