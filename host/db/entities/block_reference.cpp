#include "acgi.h"
#include "base/case_fold.h"
#include "dbelipse.h"
#include "dbents.h"
#include "host/db/core/blocks.h"
#include "host/db/core/first_groups.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/part_iterator.h"
#include "host/db/core/record_classes.h"
#include "host/db/core/symbol_names.h"
#include "host/db/creation/new_entity.h"
#include "host/db/entities/block_clip.h"
#include "host/dxf/record_header.h"
#include "host/view/extents.h"
#include "host/view/tracer.h"

#include <cmath>
#include <numbers>

ACRX_DXF_DEFINE_MEMBERS(AcDbBlockReference, AcDbEntity, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, INSERT,
                        "ObjectDBX Classes")
ACRX_CONS_DEFINE_MEMBERS(AcDbMInsertBlock, AcDbBlockReference, 0)

namespace {

constexpr int block_reference_order[] = {66, 2, 10, 20, 30, 41, 42, 43, 50, 70, 71, 44, 45, 210, 220, 230};
constexpr dxf::group_place plain_place{"AcDbBlockReference", block_reference_order};
constexpr dxf::group_place array_place{"AcDbMInsertBlock", block_reference_order};

const dxf::group_place& place_of(const AcDbImpObject& object) {
    for (const dxf::group& group : object.groups().groups())
        if (group.code == 100 && dxf::trimmed(group.value) == array_place.marker)
            return array_place;
    return plain_place;
}

// What the groups of a reference say, its position in the coordinates of its plane, its angle in radians.
struct reference_groups {
    explicit reference_groups(const AcDbImpObject& object) {
        const db::first_groups groups(object.groups());
        name = groups.text(2);
        position = groups.point(10);
        scale = {groups.real(41, 1.0), groups.real(42, 1.0), groups.real(43, 1.0)};
        rotation = db::radians(groups.real(50));
        normal = groups.normal();
        constexpr int most = 32767;
        columns = std::clamp(groups.integer(70, 1), 1, most);
        rows = std::clamp(groups.integer(71, 1), 1, most);
        column_spacing = groups.real(44);
        row_spacing = groups.real(45);
    }

    // From the block's coordinates, with its base point at the origin.
    AcGeMatrix3d placing() const {
        AcGeMatrix3d turned;
        const AcGeVector3d x(std::cos(rotation), std::sin(rotation), 0.0);
        turned.setCoordSystem(position, x * scale.sx, AcGeVector3d(-x.y, x.x, 0.0) * scale.sy,
                              AcGeVector3d::kZAxis * scale.sz);
        return AcGeMatrix3d::planeToWorld(normal) * turned;
    }
    // From one column to the next one, and from one row to the next.
    AcGeVector3d column_step() const {
        return AcGeMatrix3d::planeToWorld(normal) *
               AcGeVector3d(std::cos(rotation), std::sin(rotation), 0.0) * column_spacing;
    }
    AcGeVector3d row_step() const {
        return AcGeMatrix3d::planeToWorld(normal) *
               AcGeVector3d(-std::sin(rotation), std::cos(rotation), 0.0) * row_spacing;
    }

    std::string_view name;
    AcGePoint3d position;
    AcGeScale3d scale;
    double rotation;
    AcGeVector3d normal;
    int columns;
    int rows;
    double column_spacing;
    double row_spacing;
};

// A block and the drawing that it stands in; no database when there is none.
struct block_place {
    AcDbImpDatabase* database = nullptr;
    dxf::record_id record = dxf::no_record;

    explicit operator bool() const { return database != nullptr && record != dxf::no_record; }
    AcGeMatrix3d to_base() const {
        return AcGeMatrix3d::translation(-database->blocks().base_of(record).asVector());
    }
};

block_place block_of(const AcDbImpObject& object, std::string_view name, AcDbObjectId new_block) {
    block_place found;
    if (object.database == nullptr) {
        found.database = AcDbImpDatabase::find(new_block, found.record);
        return found;
    }
    found.database = object.database;
    // A changed name's bytes live no longer than the object.
    found.record = object.changed() ? object.database->blocks().find(object.decode(name))
                                    : object.database->blocks().find_bytes(name);
    return found;
}

void write_rotation(AcDbImpObject& object, double angle) {
    db::write_angle(object, place_of(object), 50, angle);
}

void write_position(AcDbImpObject& object, const AcGePoint3d& in_plane) {
    const AcGePoint3d before = reference_groups(object).position;
    constexpr double little = 1e-12;
    if ((before - in_plane).length() > little * std::max(1.0, before.asVector().length()))
        db::write_point(object, place_of(object), 10, in_plane);
}

// Takes a placing of a block apart into groups; false, and nothing is written, when it has axes that are not
// at right angles. Signs of the scale stay what they are as far as they can.
bool write_placing(AcDbImpObject& object, const AcGeMatrix3d& placing) {
    AcGePoint3d origin;
    AcGeVector3d x;
    AcGeVector3d y;
    AcGeVector3d z;
    placing.getCoordSystem(origin, x, y, z);
    const auto skew = [](const AcGeVector3d& a, const AcGeVector3d& b) {
        constexpr double slack = 1e-6; // what numbers that were written with six digits leave
        return !(std::fabs(a.dotProduct(b)) <= slack * a.length() * b.length());
    };
    if (x.length() == 0.0 || y.length() == 0.0 || z.length() == 0.0 || skew(x, y) || skew(y, z) || skew(z, x))
        return false;
    const reference_groups before(object);
    const AcGeVector3d normal = (before.scale.sz < 0.0 ? -z : z) / z.length();
    const AcGeMatrix3d to_plane = AcGeMatrix3d::worldToPlane(normal);
    // One of the two other signs is free: of the two ways the one that turns less.
    const auto angle_of = [&](bool negative) {
        const AcGeVector3d flat = to_plane * (negative ? -x : x);
        return std::atan2(flat.y, flat.x);
    };
    const auto turn = [&](bool negative) {
        return std::fabs(std::remainder(angle_of(negative) - before.rotation, 2.0 * std::numbers::pi));
    };
    bool x_negative = before.scale.sx < 0.0;
    const bool mirrored = (x.crossProduct(y).dotProduct(z) < 0.0) !=
                          (before.scale.sx * before.scale.sy * before.scale.sz < 0.0);
    constexpr double little = 1e-9;
    if (mirrored && turn(!x_negative) + little < turn(x_negative))
        x_negative = !x_negative;
    const AcGeVector3d direction = (x_negative ? -x : x) / x.length();
    const bool y_negative = normal.crossProduct(direction).dotProduct(y) < 0.0;
    db::write_normal(object, place_of(object), normal);
    write_position(object, to_plane * origin);
    db::write_near(object, place_of(object), 41, x_negative ? -x.length() : x.length(), 1.0);
    db::write_near(object, place_of(object), 42, y_negative ? -y.length() : y.length(), 1.0);
    db::write_near(object, place_of(object), 43, before.scale.sz < 0.0 ? -z.length() : z.length(), 1.0);
    write_rotation(object, angle_of(x_negative));
    return true;
}

// Does something to every attribute of a reference that is not erased, open as it is wanted. Those that
// somebody has open already, or that are on locked layers, are left out.
template<class Do>
void for_attributes(const AcDbImpObject& object, AcDb::OpenMode mode, Do act) {
    if (object.database == nullptr) {
        for (const std::unique_ptr<AcDbObject>& part : object.parts)
            if (AcDbAttribute* const attribute = AcDbAttribute::cast(part.get()))
                act(*attribute);
        return;
    }
    for (const dxf::record_id part : db::parts_of(object, "ATTRIB")) {
        AcDbAttribute* attribute = nullptr;
        if (acdbOpenObject(attribute, object.database->id(part), mode) != Acad::eOk)
            continue;
        act(*attribute);
        attribute->close();
    }
}

void draw_attributes(const AcDbImpObject& object, AcGiGeometry& geometry) {
    if (object.database == nullptr) {
        for (const std::unique_ptr<AcDbObject>& part : object.parts)
            geometry.draw(part.get());
        return;
    }
    const dxf::record_table& records = object.database->records();
    for (dxf::record_id part = records.next(object.record);
         part != dxf::no_record && records.kind(part) == dxf::record_kind::part; part = records.next(part))
        if (records.type(part) == dxf::type_attrib && !records.gone(part))
            geometry.draw(object.database->objects().view(part).get());
}

// A block in its rows and columns, of which only those are drawn that are wanted.
class block_array {
public:
    block_array(const reference_groups& groups, const block_place& block, AcGiWorldDraw& draw)
        : groups_(groups), draw_(draw), view_(block.database->objects().view(block.record)),
          first_(groups.placing() * block.to_base()), across_(groups.column_step()), up_(groups.row_step()),
          one_(gi::extents_of_block(*block.database, block.record)) {
        if (!gi::is_empty(one_))
            one_.transformBy(first_);
    }

    void draw() {
        if (draw_.regenType() != kAcGiForExtents) {
            draw_part({0, groups_.rows, 0, groups_.columns});
            return;
        }
        // The box around all is the box around the four corners of the array.
        for (int row = 0; row < groups_.rows; row += std::max(groups_.rows - 1, 1))
            for (int column = 0; column < groups_.columns; column += std::max(groups_.columns - 1, 1))
                draw_one(row, column);
    }

private:
    struct cells {
        int row;
        int rows;
        int column;
        int columns;
    };

    // False when nothing more is wanted of the whole array.
    bool draw_one(int row, int column) {
        draw_.geometry().pushModelTransform(AcGeMatrix3d::translation(across_ * column + up_ * row) * first_);
        const Adesk::Boolean enough = draw_.geometry().draw(view_.get());
        draw_.geometry().popModelTransform();
        return !enough;
    }

    bool draw_part(const cells& part) {
        constexpr int few = 16;
        const bool is_large = part.rows > few || part.columns > few;
        if (is_large && !wants(part))
            return true;
        if (is_large && !is_told_apart(part))
            return draw_one(part.row, part.column);
        if (is_large && part.rows > part.columns) {
            const int half = part.rows / 2;
            return draw_part({part.row, half, part.column, part.columns}) &&
                   draw_part({part.row + half, part.rows - half, part.column, part.columns});
        }
        if (is_large) {
            const int half = part.columns / 2;
            return draw_part({part.row, part.rows, part.column, half}) &&
                   draw_part({part.row, part.rows, part.column + half, part.columns - half});
        }
        for (int row = part.row; row < part.row + part.rows; ++row)
            for (int column = part.column; column < part.column + part.columns; ++column)
                if (!draw_one(row, column))
                    return false;
        return true;
    }

    // Whether the blocks of a part do not all look like one.
    bool is_told_apart(const cells& part) const {
        const auto* const tracer = dynamic_cast<const gi::tracer*>(&draw_);
        return tracer == nullptr || tracer->tells_apart(across_ * (part.columns - 1) + up_ * (part.rows - 1));
    }

    bool wants(const cells& part) const {
        const auto* const tracer = dynamic_cast<const gi::tracer*>(&draw_);
        if (tracer == nullptr || gi::is_empty(one_))
            return true;
        AcDbExtents all;
        for (const int row : {part.row, part.row + part.rows - 1})
            for (const int column : {part.column, part.column + part.columns - 1}) {
                AcDbExtents moved = one_;
                moved.transformBy(AcGeMatrix3d::translation(across_ * column + up_ * row));
                all.addExt(moved);
            }
        return tracer->wants(all);
    }

    const reference_groups& groups_;
    AcGiWorldDraw& draw_;
    std::unique_ptr<AcDbObject> view_;
    AcGeMatrix3d first_;
    AcGeVector3d across_;
    AcGeVector3d up_;
    AcDbExtents one_; // of the first one, where the reference stands
};

} // namespace

AcDbBlockReference::AcDbBlockReference() {
    imp().begin_as("0\nINSERT\n100\nAcDbEntity\n8\n0\n100\nAcDbBlockReference\n"
                   "2\n\n10\n0.0\n20\n0.0\n30\n0.0\n");
}

AcDbBlockReference::AcDbBlockReference(const AcGePoint3d& position, AcDbObjectId block)
    : AcDbBlockReference() {
    setBlockTableRecord(block);
    setPosition(position);
}

AcDbBlockReference::~AcDbBlockReference() = default;

AcDbObjectId AcDbBlockReference::blockTableRecord() const {
    assertReadEnabled();
    if (imp().database == nullptr)
        return m_newBlock;
    const block_place block = block_of(imp(), reference_groups(imp()).name, m_newBlock);
    return block ? block.database->id(block.record) : AcDbObjectId::kNull;
}

Acad::ErrorStatus AcDbBlockReference::setBlockTableRecord(AcDbObjectId block) {
    assertWriteEnabled();
    dxf::record_id record = dxf::no_record;
    AcDbImpDatabase* const database = AcDbImpDatabase::find(block, record);
    if (database == nullptr || db::class_of(*database, record) != AcDbBlockTableRecord::desc())
        return Acad::eWrongObjectType;
    if (imp().database != nullptr && imp().database != database)
        return Acad::eWrongDatabase;
    const std::wstring name = database->names().name_of(record);
    const dxf::group_place& place = place_of(imp());
    if (!base::equal_no_case(imp().decode(imp().groups().text(place, 2).value_or("")), name))
        imp().edit().set_text(place, 2, imp().encode(name));
    if (imp().database == nullptr)
        m_newBlock = block;
    return Acad::eOk;
}

AcGePoint3d AcDbBlockReference::position() const {
    assertReadEnabled();
    const reference_groups groups(imp());
    return AcGeMatrix3d::planeToWorld(groups.normal) * groups.position;
}

Acad::ErrorStatus AcDbBlockReference::setPosition(const AcGePoint3d& position) {
    assertWriteEnabled();
    write_position(imp(), AcGeMatrix3d::worldToPlane(normal()) * position);
    return Acad::eOk;
}

AcGeScale3d AcDbBlockReference::scaleFactors() const {
    assertReadEnabled();
    return reference_groups(imp()).scale;
}

Acad::ErrorStatus AcDbBlockReference::setScaleFactors(const AcGeScale3d& scale) {
    assertWriteEnabled();
    for (unsigned axis = 0; axis < 3; ++axis)
        if (scale[axis] == 0.0 || !std::isfinite(scale[axis]))
            return Acad::eInvalidInput;
    for (unsigned axis = 0; axis < 3; ++axis)
        db::write_real(imp(), place_of(imp()), 41 + static_cast<int>(axis), scale[axis], 1.0);
    return Acad::eOk;
}

double AcDbBlockReference::rotation() const {
    assertReadEnabled();
    return db::in_one_turn(reference_groups(imp()).rotation);
}

Acad::ErrorStatus AcDbBlockReference::setRotation(double angle) {
    assertWriteEnabled();
    if (!std::isfinite(angle))
        return Acad::eInvalidInput;
    write_rotation(imp(), angle);
    return Acad::eOk;
}

AcGeVector3d AcDbBlockReference::normal() const {
    assertReadEnabled();
    return reference_groups(imp()).normal;
}

Acad::ErrorStatus AcDbBlockReference::setNormal(const AcGeVector3d& normal) {
    assertWriteEnabled();
    if (normal.isZeroLength())
        return Acad::eInvalidInput;
    const AcGePoint3d kept = position();
    db::write_normal(imp(), place_of(imp()), normal.normal());
    return setPosition(kept);
}

AcGeMatrix3d AcDbBlockReference::blockTransform() const {
    assertReadEnabled();
    const reference_groups groups(imp());
    const block_place block = block_of(imp(), groups.name, m_newBlock);
    return block ? groups.placing() * block.to_base() : groups.placing();
}

Acad::ErrorStatus AcDbBlockReference::setBlockTransform(const AcGeMatrix3d& transform) {
    assertWriteEnabled();
    const block_place block = block_of(imp(), reference_groups(imp()).name, m_newBlock);
    const AcGeMatrix3d placing = block ? transform * block.to_base().inverse() : transform;
    return write_placing(imp(), placing) ? Acad::eOk : Acad::eCannotScaleNonUniformly;
}

Acad::ErrorStatus AcDbBlockReference::appendAttribute(AcDbAttribute* attribute) {
    AcDbObjectId id;
    return appendAttribute(id, attribute);
}

Acad::ErrorStatus AcDbBlockReference::appendAttribute(AcDbObjectId& id, AcDbAttribute* attribute) {
    if (attribute == nullptr)
        return Acad::eNullObjectPointer;
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (!attribute->isNewObject())
        return Acad::eAlreadyInDb;
    if (imp().database != nullptr)
        return db::add_part(*imp().database, imp().record, *attribute, id);
    imp().parts.emplace_back(attribute); // the reference's from now on
    id = AcDbObjectId::kNull;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockReference::openAttribute(AcDbAttribute*& attribute, AcDbObjectId id,
                                                    AcDb::OpenMode mode, bool openErasedOne) const {
    attribute = nullptr;
    assertReadEnabled();
    const dxf::record_id wanted =
        imp().database != nullptr ? imp().database->record(id) : static_cast<dxf::record_id>(dxf::no_record);
    for (const dxf::record_id part : db::parts_of(imp(), "ATTRIB"))
        if (part == wanted)
            return acdbOpenObject(attribute, id, mode, openErasedOne);
    return Acad::eInvalidInput;
}

AcDbObjectIterator* AcDbBlockReference::attributeIterator() const {
    assertReadEnabled();
    return db::iterate_parts(imp(), "ATTRIB").release(); // the caller's
}

Acad::ErrorStatus AcDbBlockReference::geomExtentsBestFit(AcDbExtents& extents,
                                                         const AcGeMatrix3d& parent) const {
    assertReadEnabled();
    gi::extents_canvas canvas;
    gi::tracer(canvas, kAcGiForExtents, parent).draw(*this);
    if (gi::is_empty(canvas.extents()))
        return Acad::eInvalidExtents;
    extents = canvas.extents();
    return Acad::eOk;
}

void AcDbBlockReference::getEcs(AcGeMatrix3d& matrix) const {
    matrix.setToPlaneToWorld(normal());
}

AcRxObject* AcDbBlockReference::clone() const {
    auto* const copy = static_cast<AcDbBlockReference*>(AcDbEntity::clone());
    if (copy == nullptr)
        return nullptr;
    copy->m_newBlock = blockTableRecord();
    const auto add = [&](const AcDbObject& attribute) {
        if (AcRxObject* const made = attribute.clone())
            copy->imp().parts.emplace_back(static_cast<AcDbObject*>(made));
    };
    for (const std::unique_ptr<AcDbObject>& part : imp().parts)
        add(*part);
    for (const dxf::record_id part : db::parts_of(imp(), "ATTRIB"))
        if (!imp().database->records().gone(part))
            add(*imp().database->objects().view(part));
    return copy;
}

Adesk::Boolean AcDbBlockReference::subWorldDraw(AcGiWorldDraw* draw) {
    const reference_groups groups(imp());
    if (const block_place block = block_of(imp(), groups.name, m_newBlock)) {
        bool clipped = false;
        if (std::optional<AcGiClipBoundary> clip = db::clip_of(*this)) {
            // The boundary stands still over all rows and columns.
            draw->geometry().pushModelTransform(groups.placing() * block.to_base());
            clipped = draw->geometry().pushClipBoundary(&*clip);
            draw->geometry().popModelTransform();
        }
        block_array(groups, block, *draw).draw();
        if (clipped)
            draw->geometry().popClipBoundary();
    }
    draw_attributes(imp(), draw->geometry());
    return true;
}

Acad::ErrorStatus AcDbBlockReference::subTransformBy(const AcGeMatrix3d& matrix) {
    const reference_groups before(imp());
    const AcGeVector3d across = matrix * before.column_step();
    const AcGeVector3d up = matrix * before.row_step();
    if (!write_placing(imp(), matrix * before.placing()))
        return Acad::eCannotScaleNonUniformly;
    // Steps along axes that may point the other way now.
    const AcGeMatrix3d plane = AcGeMatrix3d::planeToWorld(normal());
    const AcGeVector3d x = plane * AcGeVector3d(std::cos(rotation()), std::sin(rotation()), 0.0);
    if (before.column_spacing != 0.0)
        db::write_near(imp(), place_of(imp()), 44, across.dotProduct(x), 0.0);
    if (before.row_spacing != 0.0)
        db::write_near(imp(), place_of(imp()), 45, up.dotProduct(normal().crossProduct(x)), 0.0);
    for_attributes(imp(), AcDb::kForWrite, [&](AcDbAttribute& attribute) { attribute.transformBy(matrix); });
    return Acad::eOk;
}

// ---- taking apart

namespace {

void destroy(AcDbVoidPtrArray& parts, int from) {
    while (parts.length() > from) {
        delete static_cast<AcDbEntity*>(parts.last());
        parts.removeLast();
    }
}

// A circle or an arc as an ellipse, which stands uneven scales; null for other entities.
std::unique_ptr<AcDbEntity> as_ellipse(const AcDbEntity& entity) {
    const AcDbCircle* const circle = AcDbCircle::cast(&entity);
    const AcDbArc* const arc = AcDbArc::cast(&entity);
    if (circle == nullptr && arc == nullptr)
        return nullptr;
    const AcGeVector3d normal = circle != nullptr ? circle->normal() : arc->normal();
    const AcGeVector3d x = AcGeMatrix3d::planeToWorld(normal) * AcGeVector3d::kXAxis;
    auto ellipse =
        circle != nullptr
            ? std::make_unique<AcDbEllipse>(circle->center(), normal, x * circle->radius(), 1.0)
            : std::make_unique<AcDbEllipse>(arc->center(), normal, x * arc->radius(), 1.0, arc->startAngle(),
                                            arc->startAngle() + arc->totalAngle());
    ellipse->setPropertiesFrom(&entity);
    return ellipse;
}

// Appends a transformed copy of an entity, or of what it is made of where it can not follow as a whole.
Acad::ErrorStatus add_transformed(const AcDbEntity& entity, const AcGeMatrix3d& matrix,
                                  AcDbVoidPtrArray& parts, int depth = 0) {
    AcDbEntity* copy = nullptr;
    const Acad::ErrorStatus status = entity.getTransformedCopy(matrix, copy);
    if (status == Acad::eOk) {
        parts.append(copy);
        return status;
    }
    if (std::unique_ptr<AcDbEntity> ellipse = as_ellipse(entity);
        ellipse != nullptr && ellipse->transformBy(matrix) == Acad::eOk) {
        parts.append(ellipse.release()); // the caller's
        return Acad::eOk;
    }
    constexpr int deepest = 8;
    if (status != Acad::eCannotScaleNonUniformly || depth == deepest)
        return status;
    AcDbVoidPtrArray pieces;
    const Acad::ErrorStatus exploded = entity.explode(pieces);
    Acad::ErrorStatus worst = exploded == Acad::eOk ? Acad::eOk : status;
    for (int i = 0; i < pieces.length() && worst == Acad::eOk; ++i)
        worst = add_transformed(*static_cast<AcDbEntity*>(pieces[i]), matrix, parts, depth + 1);
    destroy(pieces, 0);
    return worst;
}

} // namespace

Acad::ErrorStatus AcDbBlockReference::subExplode(AcDbVoidPtrArray& parts) const {
    assertReadEnabled();
    const reference_groups groups(imp());
    const block_place block = block_of(imp(), groups.name, m_newBlock);
    if (!block)
        return Acad::eCannotExplodeEntity;
    const std::unique_ptr<AcDbObject> view = block.database->objects().view(block.record);
    const auto& record = static_cast<const AcDbBlockTableRecord&>(*view);
    if (record.isFromExternalReference() || !record.explodable())
        return Acad::eCannotExplodeEntity;
    const AcGeMatrix3d transform = groups.placing() * block.to_base();
    const int before = parts.length();
    for (const dxf::record_id id : block.database->blocks().entities(block.record)) {
        if (block.database->records().gone(id))
            continue;
        const std::unique_ptr<AcDbObject> entity = block.database->objects().view(id);
        if (add_transformed(static_cast<const AcDbEntity&>(*entity), transform, parts) != Acad::eOk) {
            destroy(parts, before); // nothing gets lost by half
            return Acad::eCannotExplodeEntity;
        }
    }
    return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockReference::explodeToOwnerSpace() const {
    assertReadEnabled();
    if (imp().database == nullptr)
        return Acad::eNoDatabase;
    const dxf::record_table& records = imp().database->records();
    const dxf::record_id owner = records.find(records.owner_handle(imp().record));
    if (owner == dxf::no_record)
        return Acad::eInvalidInput;
    AcDbVoidPtrArray parts;
    Acad::ErrorStatus status = explode(parts);
    std::vector<dxf::record_id> added;
    for (int i = 0; i < parts.length(); ++i) {
        std::unique_ptr<AcDbEntity> entity(static_cast<AcDbEntity*>(parts[i]));
        AcDbObjectId id;
        if (status == Acad::eOk)
            status = db::add_entity(*imp().database, owner, *entity, id);
        if (status != Acad::eOk)
            continue;
        added.push_back(imp().database->record(id));
        entity.release()->close(); // the database's now
    }
    if (status != Acad::eOk)
        for (const dxf::record_id record : added)
            imp().database->objects().set_erased(record, true);
    return status;
}

// ---- arrays

AcDbMInsertBlock::AcDbMInsertBlock() {
    imp().begin_as("0\nINSERT\n100\nAcDbEntity\n8\n0\n100\nAcDbMInsertBlock\n"
                   "2\n\n10\n0.0\n20\n0.0\n30\n0.0\n70\n1\n71\n1\n44\n0.0\n45\n0.0\n");
}

AcDbMInsertBlock::AcDbMInsertBlock(const AcGePoint3d& position, AcDbObjectId block, Adesk::Int16 columns,
                                   Adesk::Int16 rows, double columnSpacing, double rowSpacing)
    : AcDbMInsertBlock() {
    setBlockTableRecord(block);
    setPosition(position);
    setColumns(columns);
    setRows(rows);
    setColumnSpacing(columnSpacing);
    setRowSpacing(rowSpacing);
}

AcDbMInsertBlock::~AcDbMInsertBlock() = default;

Adesk::Int16 AcDbMInsertBlock::columns() const {
    assertReadEnabled();
    return static_cast<Adesk::Int16>(reference_groups(imp()).columns);
}

Acad::ErrorStatus AcDbMInsertBlock::setColumns(Adesk::Int16 columns) {
    assertWriteEnabled();
    if (columns < 1)
        return Acad::eInvalidInput;
    db::write_integer(imp(), place_of(imp()), 70, columns, 1);
    return Acad::eOk;
}

Adesk::Int16 AcDbMInsertBlock::rows() const {
    assertReadEnabled();
    return static_cast<Adesk::Int16>(reference_groups(imp()).rows);
}

Acad::ErrorStatus AcDbMInsertBlock::setRows(Adesk::Int16 rows) {
    assertWriteEnabled();
    if (rows < 1)
        return Acad::eInvalidInput;
    db::write_integer(imp(), place_of(imp()), 71, rows, 1);
    return Acad::eOk;
}

double AcDbMInsertBlock::columnSpacing() const {
    assertReadEnabled();
    return reference_groups(imp()).column_spacing;
}

Acad::ErrorStatus AcDbMInsertBlock::setColumnSpacing(double spacing) {
    assertWriteEnabled();
    db::write_real(imp(), place_of(imp()), 44, spacing);
    return Acad::eOk;
}

double AcDbMInsertBlock::rowSpacing() const {
    assertReadEnabled();
    return reference_groups(imp()).row_spacing;
}

Acad::ErrorStatus AcDbMInsertBlock::setRowSpacing(double spacing) {
    assertWriteEnabled();
    db::write_real(imp(), place_of(imp()), 45, spacing);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbMInsertBlock::subExplode(AcDbVoidPtrArray& /*parts*/) const {
    return Acad::eCannotExplodeEntity;
}
