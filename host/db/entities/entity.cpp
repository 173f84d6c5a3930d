#include "acutmem.h"
#include "base/case_fold.h"
#include "dbapserv.h"
#include "dbsymtb.h"
#include "host/db/core/fields.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/layer_facts.h"
#include "host/db/core/references.h"
#include "host/db/core/symbol_names.h"
#include "host/db/creation/new_entity.h"
#include "host/db/tables/dependent_names.h"
#include "host/db/tables/implied_entries.h"
#include "host/db/tables/properties.h"
#include "host/dxf/record_header.h"
#include "host/view/extents.h"
#include "host/view/tracer.h"

using db::entity_place;

ACRX_NO_CONS_DEFINE_MEMBERS(AcDbEntity, AcDbObject)

AcDbEntity::AcDbEntity() {
    imp().begin_as("0\nENTITY\n100\nAcDbEntity\n8\n0\n");
}
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
    if (imp.database == nullptr) {
        for (const auto& part : imp.parts)
            change(static_cast<AcDbEntity&>(*part));
        return;
    }
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

// Whether an entity is as its drawing's index has it, which knows its layer then.
bool is_as_indexed(const AcDbImpObject& imp) {
    return imp.database != nullptr && !imp.is_read() &&
           dxf::stands_on_layer(imp.database->records().kind(imp.record));
}

std::wstring layer_of(const AcDbEntity& entity, const AcDbImpObject& imp) {
    entity.assertReadEnabled();
    if (is_as_indexed(imp))
        return imp.database->layers().name_of(imp.record);
    const auto name = imp.groups().text(entity_place, 8);
    return name && !dxf::trimmed(*name).empty() ? imp.decode(dxf::trimmed(*name)) : L"0";
}

// The drawing in which an entity's names are looked up: a new one's is the one that the user works with. Null
// when there is none.
AcDbImpDatabase* names_of(const AcDbImpObject& imp) {
    if (imp.database != nullptr)
        return imp.database;
    AcDbDatabase* const working = acdbHostApplicationServices()->workingDatabase();
    return working != nullptr && working->imp().has_drawing() ? &working->imp() : nullptr;
}

// The bytes with which an entity names an entry: as the entry's own record spells it.
std::string entry_bytes(const AcDbImpObject& imp, const AcDbImpDatabase& database, dxf::record_id entry) {
    if (imp.database == &database)
        return std::string(dxf::value_of(database.records().text(entry), 2));
    return imp.encode(database.names().name_of(entry));
}

// The entry that an id names, if it is a live one of the wanted type in the entity's drawing, or for a new
// entity in any.
Acad::ErrorStatus check_entry(const AcDbImpObject& imp, AcDbObjectId id, std::uint32_t type,
                              AcDbImpDatabase*& database, dxf::record_id& entry) {
    database = AcDbImpDatabase::find(id, entry);
    if (database == nullptr || (imp.database != nullptr && imp.database != database))
        return Acad::eNullObjectId;
    if (database->records().type(entry) != type)
        return Acad::eWrongObjectType;
    return database->records().gone(entry) ? Acad::eDeletedEntry : Acad::eOk;
}

// A live entry by its name.
Acad::ErrorStatus find_entry(const AcDbImpObject& imp, const ACHAR* name, db::table_kind kind,
                             AcDbImpDatabase*& database, dxf::record_id& entry) {
    database = names_of(imp);
    if (database == nullptr)
        return Acad::eNoDatabase;
    entry = name != nullptr ? database->names().find(kind, name) : dxf::no_record;
    return entry != dxf::no_record ? Acad::eOk : Acad::eKeyNotFound;
}

// The name by which the user knows the layer: of an entity in a reference that of the drawing he works in.
std::wstring layer_told(const AcDbEntity& entity, const AcDbImpObject& imp) {
    const std::wstring name = layer_of(entity, imp);
    return imp.database != nullptr && imp.database->references().host() != nullptr
               ? db::layer_seen(*imp.database, name)
               : name;
}

void put_layer(AcDbEntity& entity, AcDbImpObject& imp, AcDbImpDatabase& database, dxf::record_id entry) {
    imp.given |= AcDbImpObject::given_layer;
    if (database.records().implied(entry)) // what is saved must not name what is not
        db::settle_entry(database, entry);
    if (imp.database == &database && is_as_indexed(imp)) {
        if (database.layers().record_of(imp.record) != entry)
            imp.set_common(entity_place, 8, database.layers().bytes_of(entry));
    } else if (!base::equal_no_case(layer_of(entity, imp), database.names().name_of(entry))) {
        imp.set_common(entity_place, 8, entry_bytes(imp, database, entry));
    }
}

void put_linetype(AcDbImpObject& imp, AcDbImpDatabase& database, dxf::record_id entry) {
    imp.given |= AcDbImpObject::given_linetype;
    if (database.records().implied(entry))
        db::settle_entry(database, entry);
    if (base::equal_no_case(database.names().name_of(entry), L"ByLayer"))
        imp.remove_common(entity_place, 6);
    else
        imp.set_common(entity_place, 6, entry_bytes(imp, database, entry));
}

} // namespace

ACHAR* AcDbEntity::layer() const {
    return copy_of(layer_told(*this, imp()));
}

Acad::ErrorStatus AcDbEntity::layer(AcString& name) const {
    name = layer_told(*this, imp()).c_str();
    return Acad::eOk;
}

AcDbObjectId AcDbEntity::layerId() const {
    const std::wstring name = layer_told(*this, imp());
    AcDbImpDatabase* database = names_of(imp());
    if (database != nullptr && database->references().host() != nullptr)
        database = database->references().host();
    if (database == nullptr || (isNewObject() && (imp().given & AcDbImpObject::given_layer) == 0))
        return AcDbObjectId::kNull;
    return database->id(database->names().find(db::table_kind::layer, name));
}

Acad::ErrorStatus AcDbEntity::setLayer(const ACHAR* name, bool doSubents, bool /*allowHiddenLayer*/) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    AcDbImpDatabase* database = nullptr;
    dxf::record_id entry = dxf::no_record;
    if (const auto status = find_entry(imp(), name, db::table_kind::layer, database, entry);
        status != Acad::eOk)
        return status;
    put_layer(*this, imp(), *database, entry);
    if (doSubents)
        for_parts(imp(), [&](AcDbEntity& part) { part.setLayer(name, false); });
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::setLayer(AcDbObjectId id, bool doSubents, bool /*allowHiddenLayer*/) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    AcDbImpDatabase* database = nullptr;
    dxf::record_id entry = dxf::no_record;
    if (const auto status = check_entry(imp(), id, dxf::type_layer, database, entry); status != Acad::eOk)
        return status;
    put_layer(*this, imp(), *database, entry);
    if (doSubents)
        for_parts(imp(), [&](AcDbEntity& part) { part.setLayer(id, false); });
    return Acad::eOk;
}

AcCmColor AcDbEntity::color() const {
    assertReadEnabled();
    const bool none_yet = isNewObject() && (imp().given & AcDbImpObject::given_color) == 0;
    return db::read_color(imp(), entity_place, none_yet ? AcCmColor::kACInone : AcCmColor::kACIbyLayer);
}

Adesk::UInt16 AcDbEntity::colorIndex() const {
    return color().colorIndex();
}

Acad::ErrorStatus AcDbEntity::setColor(const AcCmColor& color, bool doSubents) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    db::write_color(imp(), entity_place, color);
    imp().given |= AcDbImpObject::given_color;
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
    AcDbImpDatabase* const database = names_of(imp());
    if (database == nullptr)
        return AcDbObjectId::kNull;
    ACHAR* name = linetype();
    const AcDbObjectId id = database->id(database->names().find(db::table_kind::linetype, name));
    acutDelString(name);
    return id;
}

Acad::ErrorStatus AcDbEntity::setLinetype(const ACHAR* name, bool doSubents) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    AcDbImpDatabase* database = nullptr;
    dxf::record_id entry = dxf::no_record;
    if (const auto status = find_entry(imp(), name, db::table_kind::linetype, database, entry);
        status != Acad::eOk)
        return status;
    put_linetype(imp(), *database, entry);
    if (doSubents)
        for_parts(imp(), [&](AcDbEntity& part) { part.setLinetype(name, false); });
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::setLinetype(AcDbObjectId id, bool doSubents) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    AcDbImpDatabase* database = nullptr;
    dxf::record_id entry = dxf::no_record;
    if (const auto status = check_entry(imp(), id, dxf::type_ltype, database, entry); status != Acad::eOk)
        return status;
    put_linetype(imp(), *database, entry);
    if (doSubents)
        for_parts(imp(), [&](AcDbEntity& part) { part.setLinetype(id, false); });
    return Acad::eOk;
}

VALUE_GETTER(AcDbEntity, linetypeScale, imp().groups().real(entity_place, 48).value_or(1.0))

Acad::ErrorStatus AcDbEntity::setLinetypeScale(double scale, bool doSubents) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (!(scale > 0.0))
        return Acad::eBadLinetypeScale;
    if (linetypeScale() != scale)
        imp().edit().set_real(entity_place, 48, scale);
    imp().given |= AcDbImpObject::given_scale;
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
    imp().given |= AcDbImpObject::given_weight;
    if (doSubents)
        for_parts(imp(), [&](AcDbEntity& part) { part.setLineWeight(weight, false); });
    return Acad::eOk;
}

AcDb::Visibility AcDbEntity::visibility() const {
    assertReadEnabled();
    return imp().common_integer(entity_place, 60).value_or(0) == 1 ? AcDb::kInvisible : AcDb::kVisible;
}

Acad::ErrorStatus AcDbEntity::setVisibility(AcDb::Visibility visibility, bool doSubents) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (this->visibility() != visibility) {
        if (visibility == AcDb::kVisible)
            imp().remove_common(entity_place, 60);
        else
            imp().set_common(entity_place, 60, "1");
    }
    if (doSubents)
        for_parts(imp(), [&](AcDbEntity& part) { part.setVisibility(visibility, false); });
    return Acad::eOk;
}

AcDbObjectId AcDbEntity::blockId() const {
    // A part belongs to its entity, and with it to the entity's block.
    AcDbObjectId owner = ownerId();
    if (imp().database == nullptr)
        return owner;
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
    if (const Acad::ErrorStatus status = static_cast<AcDbEntity*>(made.get())->transformBy(matrix);
        status != Acad::eOk)
        return status;
    copy = static_cast<AcDbEntity*>(made.release()); // the caller's
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::subExplode(AcDbVoidPtrArray& /*parts*/) const {
    return Acad::eNotApplicable;
}

void AcDbEntity::setDatabaseDefaults() {
    setDatabaseDefaults(nullptr);
}

void AcDbEntity::setDatabaseDefaults(AcDbDatabase* database) {
    assertWriteEnabled();
    AcDbImpDatabase* const from = database != nullptr ? &database->imp() : names_of(imp());
    if (from != nullptr && from->has_drawing())
        db::give_defaults(*from, imp(), true);
}

Acad::ErrorStatus AcDbEntity::setPropertiesFrom(const AcDbEntity* entity, bool doSubents) {
    if (entity == nullptr)
        return Acad::eInvalidInput;
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    db::copy_properties(entity->imp(), imp());
    if (doSubents)
        for_parts(imp(), [&](AcDbEntity& part) { part.setPropertiesFrom(entity, false); });
    return Acad::eOk;
}

void AcDbEntity::getEcs(AcGeMatrix3d& matrix) const {
    matrix.setToIdentity();
}
