// The tables, their iterators, and what all their records have in common.
#include "acutmem.h"
#include "adscodes.h"
#include "base/case_fold.h"
#include "dbsymtb.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/references.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/name_references.h"
#include "host/db/tables/properties.h"
#include "host/db/tables/symbol_entry.h"
#include "host/dxf/record_header.h"

#include <string>

ACRX_NO_CONS_DEFINE_MEMBERS(AcDbSymbolTableRecord, AcDbObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcDbSymbolTable, AcDbObject)

// ---- records

AcDbSymbolTableRecord::AcDbSymbolTableRecord() = default;

Acad::ErrorStatus AcDbSymbolTableRecord::getName(AcString& name) const {
    assertReadEnabled();
    // The database knows what old drawings call the spaces; a name that was set since counts first.
    if (imp().database != nullptr && !imp().changed()) {
        name = imp().database->names().name_of(imp().record).c_str();
        return Acad::eOk;
    }
    name = imp().decode(dxf::trimmed(imp().groups().text(db::name_place, 2).value_or(""))).c_str();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSymbolTableRecord::getName(ACHAR*& name) const {
    AcString text;
    getName(text);
    return acutNewString(text.kwszPtr(), name);
}

Acad::ErrorStatus AcDbSymbolTableRecord::getName(const ACHAR*& name) const {
    const Acad::ErrorStatus status = getName(m_nameSeen);
    name = m_nameSeen.kwszPtr();
    return status;
}

Acad::ErrorStatus AcDbSymbolTableRecord::setName(const ACHAR* name) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (acdbSNValid(name, isDependent() ? 1 : 0) != RTNORM)
        return Acad::eInvalidInput;
    if (imp().database != nullptr) {
        db::table_kind kind{};
        if (!imp().database->names().is_entry(imp().record, kind) || isDependent() || *name == L'*' ||
            db::is_fixed_name(kind, imp().database->names().name_of(imp().record)))
            return Acad::eInvalidInput;
        const dxf::record_id other = imp().database->names().find(kind, name);
        if (other != dxf::no_record && other != imp().record)
            return Acad::eDuplicateRecordName;
    }
    imp().edit().set_text(db::name_place, 2, imp().encode(name));
    return Acad::eOk;
}

bool AcDbSymbolTableRecord::isDependent() const {
    if (isA() == AcDbBlockTableRecord::desc()) { // whose group 70 are its units
        AcString name;
        getName(name);
        return std::wstring_view(name.kwszPtr()).find(L'|') != std::wstring_view::npos;
    }
    constexpr std::int64_t dependent = 16;
    return (imp().groups().integer(db::name_place, 70).value_or(0) & dependent) != 0;
}

bool AcDbSymbolTableRecord::isResolved() const {
    if (!isDependent())
        return false;
    if (imp().database != nullptr)
        if (const auto resolved = imp().database->references().resolved(imp().record))
            return *resolved;
    constexpr std::int64_t resolved_bit = 32;
    return (imp().groups().integer(db::name_place, 70).value_or(0) & resolved_bit) != 0;
}

Acad::ErrorStatus AcDbSymbolTableRecord::subErase(bool erasing) {
    return erasing && isDependent() ? Acad::eCannotBeErasedByCaller : Acad::eOk;
}

// ---- tables

AcDbSymbolTable::AcDbSymbolTable() = default;

namespace {

db::table_kind kind_of(const AcDbImpObject& imp) {
    return imp.database->names().kind_of_table(imp.record);
}

} // namespace

Acad::ErrorStatus AcDbSymbolTable::getAt(const ACHAR* name, AcDbObjectId& id, bool getErasedRecord) const {
    assertReadEnabled();
    if (name == nullptr)
        return Acad::eInvalidInput;
    AcDbImpDatabase& database = *imp().database;
    dxf::record_id found = database.names().find(kind_of(imp()), name);
    if (found == dxf::no_record && getErasedRecord)
        for (const dxf::record_id entry : database.names().entries(kind_of(imp())))
            if (base::equal_no_case(database.names().name_of(entry), name))
                found = entry;
    if (found == dxf::no_record)
        return Acad::eKeyNotFound;
    id = database.id(found);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSymbolTable::getAtAny(const ACHAR* name, AcDbObject*& record, AcDb::OpenMode mode,
                                            bool openErased) const {
    record = nullptr;
    AcDbObjectId id;
    // An erased record is told apart from one that never was.
    if (const Acad::ErrorStatus status = getAt(name, id, true); status != Acad::eOk)
        return status;
    return acdbOpenObject(record, id, mode, openErased);
}

bool AcDbSymbolTable::has(const ACHAR* name) const {
    AcDbObjectId id;
    return getAt(name, id) == Acad::eOk;
}

bool AcDbSymbolTable::has(AcDbObjectId id) const {
    const dxf::record_id record = imp().database->record(id);
    if (record == dxf::no_record || imp().database->records().gone(record))
        return false;
    for (const dxf::record_id entry : imp().database->names().entries(kind_of(imp())))
        if (entry == record)
            return true;
    return false;
}

Acad::ErrorStatus AcDbSymbolTable::add(AcDbSymbolTableRecord* record) {
    AcDbObjectId id;
    return add(id, record);
}

Acad::ErrorStatus AcDbSymbolTable::newIterator(AcDbSymbolTableIterator*& iterator, bool atBeginning,
                                               bool skipDeleted) const {
    assertReadEnabled();
    AcDbObjectIdArray ids;
    for (const dxf::record_id entry : imp().database->names().entries(kind_of(imp())))
        ids.append(imp().database->id(entry));
    iterator = new AcDbSymbolTableIterator(std::move(ids)); // the caller's
    iterator->start(atBeginning, skipDeleted);
    return Acad::eOk;
}

// ---- iterators

namespace {

// Where the walk over ids goes on from `at`, which may stand at once.
int walk(const AcDbObjectIdArray& ids, int at, bool forward, bool skip_erased) {
    while (at >= 0 && at < ids.length() && skip_erased && ids[at].isErased())
        at += forward ? 1 : -1;
    return at;
}

} // namespace

AcDbSymbolTableIterator::AcDbSymbolTableIterator(AcDbObjectIdArray records) : m_records(std::move(records)) {
}
AcDbSymbolTableIterator::~AcDbSymbolTableIterator() = default;

void AcDbSymbolTableIterator::start(bool atBeginning, bool skipDeleted) {
    m_at = walk(m_records, atBeginning ? 0 : m_records.length() - 1, atBeginning, skipDeleted);
}

bool AcDbSymbolTableIterator::done() const {
    return m_at < 0 || m_at >= m_records.length();
}

void AcDbSymbolTableIterator::step(bool forward, bool skipDeleted) {
    if (!done())
        m_at = walk(m_records, forward ? m_at + 1 : m_at - 1, forward, skipDeleted);
}

Acad::ErrorStatus AcDbSymbolTableIterator::getRecordId(AcDbObjectId& id) const {
    if (done())
        return Acad::eInvalidIndex;
    id = m_records[m_at];
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSymbolTableIterator::getRecord(AcDbSymbolTableRecord*& record, AcDb::OpenMode mode,
                                                     bool openErasedRecord) const {
    record = nullptr;
    return done() ? Acad::eInvalidIndex : acdbOpenObject(record, m_records[m_at], mode, openErasedRecord);
}

AcDbBlockTableRecordIterator::AcDbBlockTableRecordIterator(AcDbObjectIdArray entities)
    : m_entities(std::move(entities)) {
}
AcDbBlockTableRecordIterator::~AcDbBlockTableRecordIterator() = default;

void AcDbBlockTableRecordIterator::start(bool atBeginning, bool skipDeleted) {
    m_at = walk(m_entities, atBeginning ? 0 : m_entities.length() - 1, atBeginning, skipDeleted);
}

bool AcDbBlockTableRecordIterator::done() const {
    return m_at < 0 || m_at >= m_entities.length();
}

void AcDbBlockTableRecordIterator::step(bool forward, bool skipDeleted) {
    if (!done())
        m_at = walk(m_entities, forward ? m_at + 1 : m_at - 1, forward, skipDeleted);
}

Acad::ErrorStatus AcDbBlockTableRecordIterator::getEntityId(AcDbObjectId& id) const {
    if (done())
        return Acad::eInvalidIndex;
    id = m_entities[m_at];
    return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTableRecordIterator::getEntity(AcDbEntity*& entity, AcDb::OpenMode mode,
                                                          bool openErasedEntity) const {
    entity = nullptr;
    return done() ? Acad::eInvalidIndex
                  : acdbOpenAcDbEntity(entity, m_entities[m_at], mode, openErasedEntity);
}

// ---- the tables and records that say nothing more

#define DEFINE_TABLE(TABLE)                                                                                  \
    ACRX_CONS_DEFINE_MEMBERS(TABLE, AcDbSymbolTable, 0)                                                      \
    TABLE::TABLE() = default;

DEFINE_TABLE(AcDbLayerTable)
DEFINE_TABLE(AcDbLinetypeTable)
DEFINE_TABLE(AcDbTextStyleTable)
DEFINE_TABLE(AcDbBlockTable)
DEFINE_TABLE(AcDbRegAppTable)
DEFINE_TABLE(AcDbDimStyleTable)
DEFINE_TABLE(AcDbViewTable)
DEFINE_TABLE(AcDbViewportTable)
DEFINE_TABLE(AcDbUCSTable)

#define DEFINE_RECORD(RECORD)                                                                                \
    ACRX_CONS_DEFINE_MEMBERS(RECORD, AcDbSymbolTableRecord, 0)                                               \
    RECORD::RECORD() {                                                                                       \
        imp().begin_new(db::new_entry_text(#RECORD));                                                        \
    }

DEFINE_RECORD(AcDbRegAppTableRecord)
DEFINE_RECORD(AcDbDimStyleTableRecord)
DEFINE_RECORD(AcDbViewTableRecord)
DEFINE_RECORD(AcDbViewportTableRecord)
DEFINE_RECORD(AcDbUCSTableRecord)
int acdbSNValid(const ACHAR* name, int pipeTest) {
    if (name == nullptr)
        return RTERROR;
    const std::wstring_view text(name);
    constexpr std::size_t longest = 255;
    if (text.empty() || text.size() > longest)
        return RTERROR;
    int pipes = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const wchar_t c = text[i];
        if (c < 32 || std::wstring_view(L"<>/\\\":;?,=`").find(c) != std::wstring_view::npos)
            return RTERROR;
        if (c == L'*' && (i != 0 || text.size() == 1)) // anonymous blocks and spaces begin with one
            return RTERROR;
        if (c == L'|')
            ++pipes;
    }
    return pipes == 0 || (pipes == 1 && pipeTest != 0 && text.front() != L'|' && text.back() != L'|')
               ? RTNORM
               : RTERROR;
}
