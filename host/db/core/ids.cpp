// Handles and object ids, and opening by id.
#include "dbid.h"

#include "dbmain.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/record_classes.h"

#include <cwchar>

AcDbHandle::AcDbHandle(const ACHAR* digits) {
    Adesk::UInt64 value = 0;
    int count = 0;
    for (; digits != nullptr && *digits != 0; ++digits, ++count) {
        const ACHAR c = *digits;
        const int digit = c >= L'0' && c <= L'9'   ? c - L'0'
                          : c >= L'A' && c <= L'F' ? c - L'A' + 10
                          : c >= L'a' && c <= L'f' ? c - L'a' + 10
                                                   : -1;
        if (digit < 0 || count == 16)
            return;
        value = value << 4 | static_cast<Adesk::UInt64>(digit);
    }
    m_value = value;
}

bool AcDbHandle::getIntoAsciiBuffer(ACHAR* buffer, size_t size) const {
    int digits = 1;
    while (digits < 16 && m_value >> (4 * digits) != 0)
        ++digits;
    if (buffer == nullptr || size < static_cast<size_t>(digits) + 1)
        return false;
    for (int i = 0; i < digits; ++i)
        buffer[i] = L"0123456789ABCDEF"[m_value >> (4 * (digits - 1 - i)) & 15];
    buffer[digits] = 0;
    return true;
}

bool AcDbObjectId::isValid() const {
    return database() != nullptr;
}

bool AcDbObjectId::isErased() const {
    dxf::record_id record = dxf::no_record;
    const AcDbImpDatabase* const database = AcDbImpDatabase::find(*this, record);
    return database == nullptr || database->records().gone(record);
}

bool AcDbObjectId::isEffectivelyErased() const {
    dxf::record_id record = dxf::no_record;
    const AcDbImpDatabase* const database = AcDbImpDatabase::find(*this, record);
    if (database == nullptr)
        return true;
    // Owners of damaged drawings may go round in a circle.
    for (int depth = 0; record != dxf::no_record && depth < 100; ++depth) {
        if (database->records().gone(record))
            return true;
        record = database->records().find(database->records().owner_handle(record));
    }
    return false;
}

bool AcDbObjectId::isResident() const {
    dxf::record_id record = dxf::no_record;
    const AcDbImpDatabase* const database = AcDbImpDatabase::find(*this, record);
    return database != nullptr && database->objects().is_open(record);
}

AcDbDatabase* AcDbObjectId::database() const {
    dxf::record_id record = dxf::no_record;
    const AcDbImpDatabase* const database = AcDbImpDatabase::find(*this, record);
    return database != nullptr ? &database->self() : nullptr;
}

AcDbHandle AcDbObjectId::handle() const {
    dxf::record_id record = dxf::no_record;
    const AcDbImpDatabase* const database = AcDbImpDatabase::find(*this, record);
    return database != nullptr ? AcDbHandle(database->records().handle(record)) : AcDbHandle();
}

AcRxClass* AcDbObjectId::objectClass() const {
    dxf::record_id record = dxf::no_record;
    const AcDbImpDatabase* const database = AcDbImpDatabase::find(*this, record);
    return database != nullptr ? db::class_of(*database, record) : nullptr;
}

Acad::ErrorStatus acdbOpenObject(AcDbObject*& object, AcDbObjectId id, AcDb::OpenMode mode,
                                 bool openErasedObject) {
    object = nullptr;
    dxf::record_id record = dxf::no_record;
    AcDbImpDatabase* const database = AcDbImpDatabase::find(id, record);
    return database != nullptr ? database->objects().open(object, record, mode, openErasedObject)
                               : Acad::eNullObjectId;
}

Acad::ErrorStatus acdbOpenAcDbEntity(AcDbEntity*& entity, AcDbObjectId id, AcDb::OpenMode mode,
                                     bool openErasedEntity) {
    entity = nullptr;
    AcDbObject* object = nullptr;
    if (const Acad::ErrorStatus status = acdbOpenObject(object, id, mode, openErasedEntity);
        status != Acad::eOk)
        return status;
    entity = AcDbEntity::cast(object);
    if (entity != nullptr)
        return Acad::eOk;
    object->close();
    return Acad::eNotAnEntity;
}
