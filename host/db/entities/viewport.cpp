
#include "acgi.h"
#include "dbents.h"
#include "host/db/core/fields.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/tables/properties.h"
#include "host/db/tables/spaces.h"
#include "host/db/tables/viewport_groups.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace {

using field = db::viewport_field;

constexpr field center[] = {{10}, {20}, {30}};
constexpr field width_field{40};
constexpr field height_field{41};
// The list's first group, its version, stands at 0.
constexpr field target[] = {{17, 1}, {27, 2}, {37, 3}};
constexpr field direction[] = {{16, 4}, {26, 5}, {36, 6}};
constexpr field twist{51, 7};
constexpr field view_height{45, 8};
constexpr field view_center[] = {{12, 9}, {22, 10}};

// Bits of group 90.
constexpr std::int64_t locked_bit = 0x4000;
constexpr std::int64_t usual_bits = 0x8000; // set in every viewport
constexpr std::int64_t off_bit = 0x20000;

double real(const AcDbViewport& viewport, const field& which, double missing = 0.0) {
    viewport.assertReadEnabled();
    return db::viewport_real(viewport.imp().groups(), which, missing);
}

Acad::ErrorStatus set(AcDbViewport& viewport, std::span<const field> which,
                      std::initializer_list<double> values) {
    if (!viewport.isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (!std::all_of(values.begin(), values.end(), [](double value) { return std::isfinite(value); }))
        return Acad::eInvalidInput;
    const double* value = values.begin();
    for (const field& one : which)
        db::set_viewport_real(viewport.imp(), one, *value++);
    return Acad::eOk;
}

Acad::ErrorStatus set_size(AcDbViewport& viewport, const field& which, double value) {
    return value > 0.0 ? set(viewport, {&which, 1}, {value}) : Acad::eInvalidInput;
}

// They came with the groups of the view.
bool knows_flags(const AcDbImpObject& imp) {
    return !db::uses_list(imp);
}

std::int64_t flags(const AcDbImpObject& imp) {
    return imp.groups().integer(db::viewport_place, 90).value_or(usual_bits);
}

void set_flag(AcDbImpObject& imp, std::int64_t bit, bool on) {
    imp.edit().set_integer(db::viewport_place, 90, on ? flags(imp) | bit : flags(imp) & ~bit);
}

Acad::ErrorStatus set_locked(AcDbViewport& viewport, bool locked) {
    if (!viewport.isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (!knows_flags(viewport.imp()))
        return Acad::eNotApplicable;
    if (viewport.isLocked() != locked)
        set_flag(viewport.imp(), locked_bit, locked);
    return Acad::eOk;
}

Acad::ErrorStatus turn(AcDbViewport& viewport, bool on) {
    AcDbImpObject& imp = viewport.imp();
    if (imp.database == nullptr)
        return Acad::eNotInDatabase;
    if (!viewport.isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (db::in_tile_mode(*imp.database))
        return Acad::eNotInPaperspace;
    if (db::viewport_is_on(imp.groups()) == on)
        return Acad::eOk;
    if (knows_flags(imp))
        set_flag(imp, off_bit, !on);
    // Group 68 is the order in which viewports that are on were gone into last; its number serves.
    imp.edit().set_integer(db::viewport_place, 68,
                           on ? std::max(db::viewport_number(*imp.database, imp.record), 1) : 0);
    return Acad::eOk;
}

// Whether ids are layers of the viewport's drawing, and the viewport can be changed.
Acad::ErrorStatus check(const AcDbViewport& viewport, const AcDbObjectIdArray& layers) {
    if (!viewport.isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (viewport.imp().database == nullptr)
        return Acad::eNoDatabase;
    for (const AcDbObjectId id : layers) {
        dxf::record_id record = dxf::no_record;
        const AcDbImpDatabase* const database = AcDbImpDatabase::find(id, record);
        if (database == nullptr || database->records().type(record) != dxf::type_layer)
            return Acad::eWrongObjectType;
        if (database != viewport.imp().database)
            return Acad::eWrongDatabase;
    }
    return Acad::eOk;
}

} // namespace

ENTITY_CLASS(AcDbViewport, AcDbEntity, VIEWPORT, db::viewport_place)

AcGePoint3d AcDbViewport::centerPoint() const {
    return {real(*this, center[0]), real(*this, center[1]), real(*this, center[2])};
}
Acad::ErrorStatus AcDbViewport::setCenterPoint(const AcGePoint3d& point) {
    return set(*this, center, {point.x, point.y, point.z});
}

double AcDbViewport::width() const {
    return real(*this, width_field);
}
Acad::ErrorStatus AcDbViewport::setWidth(double width) {
    return set_size(*this, width_field, width);
}

double AcDbViewport::height() const {
    return real(*this, height_field);
}
Acad::ErrorStatus AcDbViewport::setHeight(double height) {
    return set_size(*this, height_field, height);
}

AcGePoint2d AcDbViewport::viewCenter() const {
    return {real(*this, view_center[0]), real(*this, view_center[1])};
}
Acad::ErrorStatus AcDbViewport::setViewCenter(const AcGePoint2d& point) {
    return set(*this, view_center, {point.x, point.y});
}

double AcDbViewport::viewHeight() const {
    return real(*this, view_height, height());
}
Acad::ErrorStatus AcDbViewport::setViewHeight(double height) {
    return set_size(*this, view_height, height);
}

AcGePoint3d AcDbViewport::viewTarget() const {
    return {real(*this, target[0]), real(*this, target[1]), real(*this, target[2])};
}
Acad::ErrorStatus AcDbViewport::setViewTarget(const AcGePoint3d& point) {
    return set(*this, target, {point.x, point.y, point.z});
}

AcGeVector3d AcDbViewport::viewDirection() const {
    return {real(*this, direction[0]), real(*this, direction[1]), real(*this, direction[2], 1.0)};
}
Acad::ErrorStatus AcDbViewport::setViewDirection(const AcGeVector3d& vector) {
    return vector.isZeroLength() ? Acad::eInvalidInput
                                 : set(*this, direction, {vector.x, vector.y, vector.z});
}

// In degrees where it is a group; a value of extended data is as the editor has it, in radians.

double AcDbViewport::twistAngle() const {
    assertReadEnabled();
    const auto degrees = imp().groups().real(db::viewport_place, twist.code);
    return degrees ? db::radians(*degrees) : real(*this, twist);
}
Acad::ErrorStatus AcDbViewport::setTwistAngle(double angle) {
    if (angle == twistAngle())
        return isWriteEnabled() ? Acad::eOk : Acad::eNotOpenForWrite;
    return set(*this, {&twist, 1}, {db::uses_list(imp()) ? angle : db::degrees(angle)});
}

double AcDbViewport::customScale() const {
    const double seen = viewHeight();
    return seen > 0.0 ? height() / seen : 1.0;
}
Acad::ErrorStatus AcDbViewport::setCustomScale(double scale) {
    return scale > 0.0 ? setViewHeight(height() / scale) : Acad::eInvalidInput;
}

Adesk::Int16 AcDbViewport::number() const {
    assertReadEnabled();
    if (imp().database == nullptr)
        return -1;
    return static_cast<Adesk::Int16>(db::viewport_number(*imp().database, imp().record));
}

bool AcDbViewport::isOn() const {
    return number() > 0 && db::viewport_is_on(imp().groups());
}
Acad::ErrorStatus AcDbViewport::setOn() {
    return turn(*this, true);
}
Acad::ErrorStatus AcDbViewport::setOff() {
    return turn(*this, false);
}

// Without it the first one that is left would be the sheet.
Acad::ErrorStatus AcDbViewport::subErase(bool erasing) {
    const bool is_sheet = imp().groups().integer(db::viewport_place, 69) == 1 &&
                          db::is_sheet_itself(*imp().database, imp().record);
    return erasing && is_sheet ? Acad::eCannotBeErasedByCaller : AcDbEntity::subErase(erasing);
}

VALUE_GETTER(AcDbViewport, isLocked, (flags(imp()) & locked_bit) != 0)
Acad::ErrorStatus AcDbViewport::setLocked() {
    return set_locked(*this, true);
}
Acad::ErrorStatus AcDbViewport::setUnlocked() {
    return set_locked(*this, false);
}

Acad::ErrorStatus AcDbViewport::freezeLayersInViewport(const AcDbObjectIdArray& layers) {
    if (const Acad::ErrorStatus status = check(*this, layers); status != Acad::eOk)
        return status;
    for (const AcDbObjectId id : layers)
        if (!isLayerFrozenInViewport(id))
            db::freeze_in_viewport(imp(), imp().database->record(id));
    return Acad::eOk;
}

Acad::ErrorStatus AcDbViewport::thawLayersInViewport(const AcDbObjectIdArray& layers) {
    if (const Acad::ErrorStatus status = check(*this, layers); status != Acad::eOk)
        return status;
    for (const AcDbObjectId id : layers)
        db::thaw_in_viewport(imp(), imp().database->record(id));
    return Acad::eOk;
}

Acad::ErrorStatus AcDbViewport::thawAllLayersInViewport() {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    db::thaw_all_in_viewport(imp());
    return Acad::eOk;
}

bool AcDbViewport::isLayerFrozenInViewport(const AcDbObjectId& layer) const {
    assertReadEnabled();
    const auto frozen = db::frozen_layers(imp());
    return std::any_of(frozen.begin(), frozen.end(),
                       [&](dxf::record_id record) { return imp().database->id(record) == layer; });
}

Acad::ErrorStatus AcDbViewport::getFrozenLayerList(AcDbObjectIdArray& layers) const {
    assertReadEnabled();
    for (const dxf::record_id layer : db::frozen_layers(imp()))
        layers.append(imp().database->id(layer));
    return Acad::eOk;
}

// ---- drawing: its frame, where it is not the sheet itself

Adesk::Boolean AcDbViewport::subWorldDraw(AcGiWorldDraw* draw) {
    if (imp().database != nullptr && db::is_sheet_itself(*imp().database, imp().record))
        return true;
    const AcGePoint3d middle = centerPoint();
    const double x = width() / 2.0;
    const double y = height() / 2.0;
    const AcGePoint3d corners[] = {middle + AcGeVector3d(-x, -y, 0.0), middle + AcGeVector3d(x, -y, 0.0),
                                   middle + AcGeVector3d(x, y, 0.0), middle + AcGeVector3d(-x, y, 0.0),
                                   middle + AcGeVector3d(-x, -y, 0.0)};
    draw->geometry().polyline(5, corners);
    return true;
}

// The frame stays upright.
Acad::ErrorStatus AcDbViewport::subTransformBy(const AcGeMatrix3d& matrix) {
    db::plane_change change;
    if (!db::change_plane(AcGeVector3d::kZAxis, matrix, change))
        return Acad::eCannotScaleNonUniformly;
    setCenterPoint(matrix * centerPoint());
    setWidth(width() * change.scale);
    return setHeight(height() * change.scale);
}
