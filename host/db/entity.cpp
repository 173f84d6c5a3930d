#include "acutmem.h"
#include "base/case_fold.h"
#include "dbsymtb.h"
#include "host/db/imp_database.h"
#include "host/db/imp_object.h"
#include "host/db/properties.h"
#include "host/dxf/record_header.h"
#include "host/gi/extents.h"
#include "host/gi/tracer.h"

using db::entity_place;

ACRX_NO_CONS_DEFINE_MEMBERS(AcDbEntity, AcDbObject)

AcDbEntity::AcDbEntity() = default;
AcDbEntity::~AcDbEntity() = default;

namespace {

ACHAR* copy_of(const std::wstring& text) {
    ACHAR* copy = nullptr;
    acutNewString(text.c_str(), copy);
    return copy;
}

// Does to the parts behind an entity (vertices, attributes, the end of their sequence) what was done to it.
// Parts that are open elsewhere, or on locked layers, stay as they are.
template<class Change>
void for_parts(const AcDbImpObject& imp, Change change) {
    const dxf::record_table& records = imp.database->records();
    for (dxf::record_id part = records.next(imp.record);
         part != dxf::no_record && records.kind(part) == dxf::record_kind::part; part = records.next(part)) {
        AcDbEntity* entity = nullptr;
        if (acdbOpenAcDbEntity(entity, imp.database->id(part), AcDb::kForWrite) != Acad::eOk)
            continue;
        change(*entity);
        entity->close();
    }
}

std::wstring layer_of(const AcDbEntity& entity, const AcDbImpObject& imp) {
    entity.assertReadEnabled();
    const auto name = imp.groups().text(entity_place, 8);
    return name && !dxf::trimmed(*name).empty() ? imp.decode(dxf::trimmed(*name)) : L"0";
}

std::wstring name_of_entry(const AcDbImpObject& imp, AcDbObjectId id) {
    const dxf::record_id record = imp.database->record(id);
    return record != dxf::no_record ? imp.database->name_of(record) : std::wstring();
}

// The entry that an id names, if it is a live one of the wanted type.
Acad::ErrorStatus check_entry(const AcDbImpObject& imp, AcDbObjectId id, std::uint32_t type) {
    const dxf::record_id record = imp.database->record(id);
    if (record == dxf::no_record)
        return Acad::eNullObjectId;
    if (imp.database->records().type(record) != type)
        return Acad::eWrongObjectType;
    return imp.database->records().gone(record) ? Acad::eDeletedEntry : Acad::eOk;
}

} // namespace

ACHAR* AcDbEntity::layer() const {
    return copy_of(layer_of(*this, imp()));
}

Acad::ErrorStatus AcDbEntity::layer(AcString& name) const {
    name = layer_of(*this, imp()).c_str();
    return Acad::eOk;
}

AcDbObjectId AcDbEntity::layerId() const {
    return imp().database->id(imp().database->find_entry(db::table_kind::layer, layer_of(*this, imp())));
}

Acad::ErrorStatus AcDbEntity::setLayer(const ACHAR* name, bool doSubents, bool /*allowHiddenLayer*/) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (name == nullptr || imp().database->find_entry(db::table_kind::layer, name) == dxf::no_record)
        return Acad::eKeyNotFound;
    if (!base::equal_no_case(layer_of(*this, imp()), name))
        imp().edit().set_text(entity_place, 8, imp().database->layer_bytes(name));
    if (doSubents)
        for_parts(imp(), [&](AcDbEntity& part) { part.setLayer(name, false); });
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::setLayer(AcDbObjectId id, bool doSubents, bool allowHiddenLayer) {
    if (const Acad::ErrorStatus status = check_entry(imp(), id, dxf::type_layer); status != Acad::eOk)
        return status;
    return setLayer(name_of_entry(imp(), id).c_str(), doSubents, allowHiddenLayer);
}

AcCmColor AcDbEntity::color() const {
    assertReadEnabled();
    return db::read_color(imp(), entity_place, AcCmColor::kACIbyLayer);
}

Adesk::UInt16 AcDbEntity::colorIndex() const {
    return color().colorIndex();
}

Acad::ErrorStatus AcDbEntity::setColor(const AcCmColor& color, bool doSubents) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    db::write_color(imp(), entity_place, color);
    if (doSubents)
        for_parts(imp(), [&](AcDbEntity& part) { part.setColor(color, false); });
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::setColorIndex(Adesk::UInt16 index, bool doSubents) {
    AcCmColor color;
    const Acad::ErrorStatus status = color.setColorIndex(index);
    return status == Acad::eOk ? setColor(color, doSubents) : status;
}

ACHAR* AcDbEntity::linetype() const {
    assertReadEnabled();
    const auto name = imp().groups().text(entity_place, 6);
    return copy_of(name ? imp().decode(dxf::trimmed(*name)) : L"ByLayer");
}

AcDbObjectId AcDbEntity::linetypeId() const {
    ACHAR* name = linetype();
    const AcDbObjectId id = imp().database->id(imp().database->find_entry(db::table_kind::linetype, name));
    acutDelString(name);
    return id;
}

Acad::ErrorStatus AcDbEntity::setLinetype(const ACHAR* name, bool doSubents) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    const dxf::record_id entry =
        name != nullptr ? imp().database->find_entry(db::table_kind::linetype, name) : dxf::no_record;
    if (entry == dxf::no_record)
        return Acad::eKeyNotFound;
    if (base::equal_no_case(name, L"ByLayer"))
        imp().edit().remove(entity_place, 6);
    else
        imp().edit().set_text(entity_place, 6, dxf::value_of(imp().database->records().text(entry), 2));
    if (doSubents)
        for_parts(imp(), [&](AcDbEntity& part) { part.setLinetype(name, false); });
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::setLinetype(AcDbObjectId id, bool doSubents) {
    if (const Acad::ErrorStatus status = check_entry(imp(), id, dxf::type_ltype); status != Acad::eOk)
        return status;
    return setLinetype(name_of_entry(imp(), id).c_str(), doSubents);
}

double AcDbEntity::linetypeScale() const {
    assertReadEnabled();
    return imp().groups().real(entity_place, 48).value_or(1.0);
}

Acad::ErrorStatus AcDbEntity::setLinetypeScale(double scale, bool doSubents) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (!(scale > 0.0))
        return Acad::eBadLinetypeScale;
    if (linetypeScale() != scale)
        imp().edit().set_real(entity_place, 48, scale);
    if (doSubents)
        for_parts(imp(), [&](AcDbEntity& part) { part.setLinetypeScale(scale, false); });
    return Acad::eOk;
}

AcDb::LineWeight AcDbEntity::lineWeight() const {
    assertReadEnabled();
    const auto weight =
        static_cast<int>(imp().groups().integer(entity_place, 370).value_or(AcDb::kLnWtByLayer));
    return db::is_line_weight(weight) ? static_cast<AcDb::LineWeight>(weight) : AcDb::kLnWtByLayer;
}

Acad::ErrorStatus AcDbEntity::setLineWeight(AcDb::LineWeight weight, bool doSubents) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (!db::is_line_weight(weight))
        return Acad::eBadLineWeightValue;
    if (!db::knows_line_weights(imp()))
        return Acad::eNotApplicable;
    if (lineWeight() != weight)
        imp().edit().set_integer(entity_place, 370, weight);
    if (doSubents)
        for_parts(imp(), [&](AcDbEntity& part) { part.setLineWeight(weight, false); });
    return Acad::eOk;
}

AcDb::Visibility AcDbEntity::visibility() const {
    assertReadEnabled();
    return imp().groups().integer(entity_place, 60).value_or(0) == 1 ? AcDb::kInvisible : AcDb::kVisible;
}

Acad::ErrorStatus AcDbEntity::setVisibility(AcDb::Visibility visibility, bool doSubents) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (this->visibility() != visibility) {
        if (visibility == AcDb::kVisible)
            imp().edit().remove(entity_place, 60);
        else
            imp().edit().set_integer(entity_place, 60, 1);
    }
    if (doSubents)
        for_parts(imp(), [&](AcDbEntity& part) { part.setVisibility(visibility, false); });
    return Acad::eOk;
}

AcDbObjectId AcDbEntity::blockId() const {
    // A part belongs to its entity, and with it to the entity's block.
    AcDbObjectId owner = ownerId();
    const dxf::record_id record = imp().database->record(owner);
    const dxf::record_table& records = imp().database->records();
    if (record != dxf::no_record && records.kind(record) == dxf::record_kind::entity)
        owner = imp().database->id(records.find(records.owner_handle(record)));
    return owner;
}

// ---- drawing and changing as a whole

Adesk::UInt32 AcDbEntity::subSetAttributes(AcGiDrawableTraits* traits) {
    if (visibility() == AcDb::kInvisible)
        return kDrawableIsInvisible;
    if (imp().database == nullptr || !gi::tracer::reads(traits))
        return kDrawableNone;
    traits->setLayer(layerId());
    traits->setTrueColor(color());
    traits->setLineType(linetypeId());
    traits->setLineTypeScale(linetypeScale());
    traits->setLineWeight(lineWeight());
    return kDrawableNone;
}

Acad::ErrorStatus AcDbEntity::subGetGeomExtents(AcDbExtents& extents) const {
    assertReadEnabled();
    gi::extents_canvas canvas;
    gi::tracer(canvas, kAcGiForExtents).draw(*this);
    if (gi::is_empty(canvas.extents()))
        return Acad::eInvalidExtents;
    extents = canvas.extents();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::transformBy(const AcGeMatrix3d& matrix) {
    return isWriteEnabled() ? subTransformBy(matrix) : Acad::eNotOpenForWrite;
}

Acad::ErrorStatus AcDbEntity::subTransformBy(const AcGeMatrix3d& /*matrix*/) {
    return Acad::eNotImplementedYet;
}

Acad::ErrorStatus AcDbEntity::subGetTransformedCopy(const AcGeMatrix3d& matrix, AcDbEntity*& copy) const {
    copy = nullptr;
    std::unique_ptr<AcRxObject> made(clone());
    if (made == nullptr)
        return Acad::eNotImplementedYet;
    auto* const entity = static_cast<AcDbEntity*>(made.get());
    if (const Acad::ErrorStatus status = entity->transformBy(matrix); status != Acad::eOk)
        return status;
    made.release();
    copy = entity; // the caller's
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::subExplode(AcDbVoidPtrArray& /*parts*/) const {
    return Acad::eNotApplicable;
}

Acad::ErrorStatus AcDbEntity::setPropertiesFrom(const AcDbEntity* entity, bool doSubents) {
    if (entity == nullptr)
        return Acad::eInvalidInput;
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    db::copy_properties(entity->imp(), imp());
    if (doSubents && imp().database != nullptr)
        for_parts(imp(), [&](AcDbEntity& part) { part.setPropertiesFrom(entity, false); });
    return Acad::eOk;
}

void AcDbEntity::getEcs(AcGeMatrix3d& matrix) const {
    matrix.setToIdentity();
}
