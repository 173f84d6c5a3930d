#include "dbdict.h"
#include "dbidmap.h"
#include "dblayout.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "dbxrecrd.h"
#include "host/db/core/blocks.h"
#include "host/db/core/entity_classes.h"
#include "host/db/core/file_status.h"
#include "host/db/core/host_classes.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/layer_facts.h"
#include "host/db/core/left_entries.h"
#include "host/db/core/notifier.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/references.h"
#include "host/db/core/symbol_names.h"
#include "host/db/creation/drawing_part.h"
#include "host/db/creation/new_drawing.h"
#include "host/db/creation/transfer.h"
#include "host/db/custom/custom_objects.h"
#include "host/db/tables/name_references.h"
#include "host/db/tables/spaces.h"
#include "host/dxf/record_header.h"
#include "host/rx/events.h"
#include "host/rx/runtime.h"
#include "rxregsvc.h"
#include "sys/folders.h"

ACRX_NO_CONS_DEFINE_MEMBERS(AcDbDatabase, AcRxObject)

namespace {

// Every class of the database, once, before the first database is made.
void register_classes() {
    static const bool done = [] {
        db::register_host_classes([] {
            AcDbObject::rxInit();
            AcDbEntity::rxInit();
            db::register_entity_classes();
            AcDbDatabase::rxInit();
            AcDbObjectReactor::rxInit();
            AcDbEntityReactor::rxInit();
            AcDbDatabaseReactor::rxInit();
            AcDbDictionary::rxInit();
            AcDbXrecord::rxInit();
            AcDbSymbolTable::rxInit();
            AcDbSymbolTableRecord::rxInit();
            AcDbLayerTable::rxInit();
            AcDbLayerTableRecord::rxInit();
            AcDbLinetypeTable::rxInit();
            AcDbLinetypeTableRecord::rxInit();
            AcDbTextStyleTable::rxInit();
            AcDbTextStyleTableRecord::rxInit();
            AcDbBlockTable::rxInit();
            AcDbBlockTableRecord::rxInit();
            AcDbRegAppTable::rxInit();
            AcDbRegAppTableRecord::rxInit();
            AcDbDimStyleTable::rxInit();
            AcDbDimStyleTableRecord::rxInit();
            AcDbViewTable::rxInit();
            AcDbViewTableRecord::rxInit();
            AcDbViewportTable::rxInit();
            AcDbViewportTableRecord::rxInit();
            AcDbUCSTable::rxInit();
            AcDbUCSTableRecord::rxInit();
            AcDbPlotSettings::rxInit();
            AcDbLayout::rxInit();
        });
        acrxBuildClassHierarchy();
        rx::runtime::instance().classes.on_removing = db::open_objects::close_objects_of;
        return true;
    }();
    static_cast<void>(done);
}

template<class Table>
Acad::ErrorStatus open_table(AcDbImpDatabase& imp, db::table_kind kind, Table*& table, AcDb::OpenMode mode) {
    table = nullptr;
    return imp.has_drawing() ? acdbOpenObject(table, imp.id(imp.names().table(kind)), mode)
                             : Acad::eNoDatabase;
}

AcDbObjectId table_id(AcDbImpDatabase& imp, db::table_kind kind) {
    return imp.has_drawing() ? imp.id(imp.names().table(kind)) : AcDbObjectId::kNull;
}

} // namespace

AcDbDatabase::AcDbDatabase(bool buildDefaultDrawing, bool /*noDocument*/) {
    register_classes();
    m_imp = std::make_unique<AcDbImpDatabase>(*this);
    if (buildDefaultDrawing)
        m_imp->set_drawing(db::new_drawing());
    rx::event_reactors().tell([&](AcRxEventReactor& reactor) { reactor.databaseConstructed(this); });
}

AcDbDatabase::~AcDbDatabase() {
    rx::event_reactors().tell([&](AcRxEventReactor& reactor) { reactor.databaseToBeDestroyed(this); });
    m_imp->notifier().goodbye();
}

Acad::ErrorStatus AcDbDatabase::dxfIn(const ACHAR* fileName, const ACHAR* /*logFileName*/) {
    if (fileName == nullptr || m_imp->has_drawing())
        return Acad::eInvalidInput;
    rx::event_reactors().tell([&](AcRxEventReactor& reactor) { reactor.beginDxfIn(this); });
    const auto read = m_imp->read(fileName);
    rx::event_reactors().tell(
        [&](AcRxEventReactor& reactor) { read ? reactor.dxfInComplete(this) : reactor.abortDxfIn(this); });
    return read ? Acad::eOk : db::status_of(read.why(), Acad::eDxfReadAborted);
}

Acad::ErrorStatus AcDbDatabase::dxfOut(const ACHAR* fileName) {
    if (fileName == nullptr || !m_imp->has_drawing())
        return Acad::eInvalidInput;
    rx::event_reactors().tell([&](AcRxEventReactor& reactor) { reactor.beginDxfOut(this); });
    db::settle_dictionaries(*m_imp);
    const bool written(m_imp->drawing().write_file(sys::to_path(fileName)));
    rx::event_reactors().tell([&](AcRxEventReactor& reactor) {
        written ? reactor.dxfOutComplete(this) : reactor.abortDxfOut(this);
    });
    return written ? Acad::eOk : Acad::eFileAccessErr;
}

Acad::ErrorStatus AcDbDatabase::getFilename(const ACHAR*& fileName) const {
    fileName = m_imp->file_name.c_str();
    return Acad::eOk;
}

AcDbObjectId AcDbDatabase::layerTableId() const {
    return table_id(*m_imp, db::table_kind::layer);
}
AcDbObjectId AcDbDatabase::linetypeTableId() const {
    return table_id(*m_imp, db::table_kind::linetype);
}
AcDbObjectId AcDbDatabase::textStyleTableId() const {
    return table_id(*m_imp, db::table_kind::text_style);
}
AcDbObjectId AcDbDatabase::blockTableId() const {
    return table_id(*m_imp, db::table_kind::block);
}
AcDbObjectId AcDbDatabase::regAppTableId() const {
    return table_id(*m_imp, db::table_kind::regapp);
}
AcDbObjectId AcDbDatabase::dimStyleTableId() const {
    return table_id(*m_imp, db::table_kind::dim_style);
}
AcDbObjectId AcDbDatabase::viewTableId() const {
    return table_id(*m_imp, db::table_kind::view);
}
AcDbObjectId AcDbDatabase::viewportTableId() const {
    return table_id(*m_imp, db::table_kind::viewport);
}
AcDbObjectId AcDbDatabase::UCSTableId() const {
    return table_id(*m_imp, db::table_kind::ucs);
}

AcDbObjectId AcDbDatabase::namedObjectsDictionaryId() const {
    return m_imp->has_drawing() ? m_imp->id(m_imp->drawing().ensure_root_dictionary()) : AcDbObjectId::kNull;
}

Acad::ErrorStatus AcDbDatabase::getLayerTable(AcDbLayerTable*& table, AcDb::OpenMode mode) {
    return open_table(*m_imp, db::table_kind::layer, table, mode);
}
Acad::ErrorStatus AcDbDatabase::getLinetypeTable(AcDbLinetypeTable*& table, AcDb::OpenMode mode) {
    return open_table(*m_imp, db::table_kind::linetype, table, mode);
}
Acad::ErrorStatus AcDbDatabase::getTextStyleTable(AcDbTextStyleTable*& table, AcDb::OpenMode mode) {
    return open_table(*m_imp, db::table_kind::text_style, table, mode);
}
Acad::ErrorStatus AcDbDatabase::getBlockTable(AcDbBlockTable*& table, AcDb::OpenMode mode) {
    return open_table(*m_imp, db::table_kind::block, table, mode);
}
Acad::ErrorStatus AcDbDatabase::getRegAppTable(AcDbRegAppTable*& table, AcDb::OpenMode mode) {
    return open_table(*m_imp, db::table_kind::regapp, table, mode);
}
Acad::ErrorStatus AcDbDatabase::getDimStyleTable(AcDbDimStyleTable*& table, AcDb::OpenMode mode) {
    return open_table(*m_imp, db::table_kind::dim_style, table, mode);
}
Acad::ErrorStatus AcDbDatabase::getViewTable(AcDbViewTable*& table, AcDb::OpenMode mode) {
    return open_table(*m_imp, db::table_kind::view, table, mode);
}
Acad::ErrorStatus AcDbDatabase::getViewportTable(AcDbViewportTable*& table, AcDb::OpenMode mode) {
    return open_table(*m_imp, db::table_kind::viewport, table, mode);
}
Acad::ErrorStatus AcDbDatabase::getUCSTable(AcDbUCSTable*& table, AcDb::OpenMode mode) {
    return open_table(*m_imp, db::table_kind::ucs, table, mode);
}

Acad::ErrorStatus AcDbDatabase::getNamedObjectsDictionary(AcDbDictionary*& dictionary, AcDb::OpenMode mode) {
    dictionary = nullptr;
    const AcDbObjectId id = namedObjectsDictionaryId();
    return id.isNull() ? Acad::eKeyNotFound : acdbOpenObject(dictionary, id, mode);
}

Acad::ErrorStatus AcDbDatabase::getAcDbObjectId(AcDbObjectId& id, bool createIfNotFound,
                                                const AcDbHandle& handle, Adesk::UInt32 /*xRefId*/) {
    if (createIfNotFound)
        return Acad::eNotImplementedYet;
    const dxf::record_id found = m_imp->has_drawing() ? m_imp->records().find(handle) : dxf::no_record;
    if (found == dxf::no_record)
        return Acad::eUnknownHandle;
    id = m_imp->id(found);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::addAcDbObject(AcDbObject* object) {
    AcDbObjectId id;
    return addAcDbObject(id, object);
}

Acad::ErrorStatus AcDbDatabase::purge(AcDbObjectIdArray& ids) {
    if (!m_imp->has_drawing())
        return Acad::eNoDatabase;
    db::keep_purgeable(*m_imp, ids);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::wblock(AcDbDatabase*& outputDb, const AcDbObjectIdArray& entities,
                                       const AcGePoint3d& basePoint) {
    outputDb = nullptr;
    if (!m_imp->has_drawing())
        return Acad::eNoDatabase;
    if (basePoint != AcGePoint3d::kOrigin)
        return Acad::eNotImplementedYet;
    std::vector<dxf::record_id> records;
    for (const AcDbObjectId& id : entities) {
        const dxf::record_id record = m_imp->record(id);
        if (record == dxf::no_record || m_imp->records().kind(record) != dxf::record_kind::entity ||
            m_imp->records().gone(record) || !m_imp->blocks().in_space(record))
            return Acad::eInvalidInput;
        records.push_back(record);
    }
    auto part = db::part_of_drawing(*m_imp, records);
    if (!part)
        return Acad::eInvalidInput;
    outputDb = new AcDbDatabase(false, true);
    outputDb->imp().set_drawing(std::move(*part));
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::wblockCloneObjects(AcDbObjectIdArray& objectIds, const AcDbObjectId& owner,
                                                   AcDbIdMapping& idMap, AcDb::DuplicateRecordCloning drc,
                                                   bool deferXlation) {
    if ((drc != AcDb::kDrcIgnore && drc != AcDb::kDrcMangleName) || deferXlation)
        return Acad::eNotImplementedYet;
    dxf::record_id block = dxf::no_record;
    AcDbImpDatabase* const to = AcDbImpDatabase::find(owner, block);
    AcDbImpDatabase* from = nullptr;
    std::vector<dxf::record_id> records;
    for (const AcDbObjectId& id : objectIds) {
        AcDbImpDatabase* const of = AcDbImpDatabase::find(id, records.emplace_back());
        if (of == nullptr || of == to || (from != nullptr && from != of) ||
            of->records().kind(records.back()) != dxf::record_kind::entity)
            return Acad::eInvalidInput;
        from = of;
    }
    if (from == nullptr || to == nullptr)
        return to == nullptr ? Acad::eNullObjectId : Acad::eOk;
    const AcDbObjectPointer<AcDbBlockTableRecord> target(owner, AcDb::kForWrite);
    if (target.openStatus() != Acad::eOk)
        return target.openStatus();
    std::wstring prefix;
    if (drc == AcDb::kDrcMangleName)
        prefix = from->references().name().empty() ? sys::from_path(sys::to_path(from->file_name).stem())
                                                   : from->references().name();
    db::transfer copying(*from, *to, prefix);
    for (std::size_t i = 0; i < records.size(); ++i)
        if (const AcDbObjectId copy = copying.copy_entity(records[i], *target.object()); !copy.isNull())
            idMap.assign({objectIds[static_cast<int>(i)], copy, true, true});
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::deepCloneObjects(AcDbObjectIdArray& /*objectIds*/,
                                                 const AcDbObjectId& /*owner*/, AcDbIdMapping& /*idMap*/,
                                                 bool /*deferXlation*/) {
    return Acad::eNotImplementedYet;
}

Acad::ErrorStatus AcDbDatabase::insert(AcDbObjectId& /*blockId*/, const ACHAR* /*blockName*/,
                                       AcDbDatabase* /*database*/, bool /*preserveSourceDatabase*/) {
    return Acad::eNotImplementedYet;
}

AcDbObjectId AcDbDatabase::clayer() const {
    return m_imp->has_drawing() ? m_imp->id(m_imp->layers().current()) : AcDbObjectId::kNull;
}

Acad::ErrorStatus AcDbDatabase::setClayer(AcDbObjectId id) {
    const dxf::record_id record = m_imp->record(id);
    if (record == dxf::no_record)
        return Acad::eNullObjectId;
    if (m_imp->records().type(record) != dxf::type_layer)
        return Acad::eWrongObjectType;
    if (m_imp->records().gone(record))
        return Acad::eDeletedEntry;
    AcDbLayerTableRecord* layer = nullptr;
    if (const Acad::ErrorStatus status = acdbOpenObject(layer, id, AcDb::kForRead); status != Acad::eOk)
        return status;
    const bool usable = !layer->isFrozen() && !layer->isDependent();
    layer->close();
    if (!usable)
        return Acad::eInvalidLayer;
    if (id == clayer()) {
        m_imp->notifier().header_value_set_again("$CLAYER");
        return Acad::eOk;
    }
    const std::string_view name = dxf::value_of(m_imp->records().text(record), 2);
    return m_imp->notifier().set_header_value("$CLAYER", 8, name) ? Acad::eOk : Acad::eNotApplicable;
}

bool AcDbDatabase::tilemode() const {
    return !m_imp->has_drawing() || db::in_tile_mode(*m_imp);
}

AcDbObjectId AcDbDatabase::currentSpaceId() const {
    return m_imp->has_drawing() ? m_imp->id(db::current_space(*m_imp)) : AcDbObjectId::kNull;
}
