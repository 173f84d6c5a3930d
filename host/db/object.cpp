#include "dbmain.h"

#include "acutmem.h"
#include "base/utf.h"
#include "host/db/custom_objects.h"
#include "host/db/extended_data.h"
#include "host/db/imp_database.h"
#include "host/db/imp_object.h"
#include "host/dxf/record_header.h"

ACRX_NO_CONS_DEFINE_MEMBERS(AcDbObject, AcGiDrawable)

AcDbObject::AcDbObject() : m_imp(std::make_unique<AcDbImpObject>()) {
    m_imp->begin_as("0\nOBJECT\n");
}
AcDbObject::~AcDbObject() = default;

AcDbObjectId AcDbObject::objectId() const {
    return m_imp->database != nullptr ? m_imp->database->id(m_imp->record) : AcDbObjectId::kNull;
}

void AcDbObject::getAcDbHandle(AcDbHandle& handle) const {
    handle = objectId().handle();
}

AcDbObjectId AcDbObject::ownerId() const {
    if (m_imp->database == nullptr)
        return AcDbObjectId::kNull;
    const dxf::record_table& records = m_imp->database->records();
    return m_imp->database->id(records.find(records.owner_handle(m_imp->record)));
}

AcDbDatabase* AcDbObject::database() const {
    return m_imp->database != nullptr ? &m_imp->database->self() : nullptr;
}

Acad::ErrorStatus AcDbObject::close() {
    return m_imp->database != nullptr ? m_imp->database->close(*this, true) : Acad::eNoDatabase;
}

Acad::ErrorStatus AcDbObject::cancel() {
    if (m_imp->database == nullptr)
        return Acad::eNoDatabase;
    return m_imp->writing ? m_imp->database->close(*this, false) : Acad::eNotOpenForWrite;
}

Acad::ErrorStatus AcDbObject::upgradeOpen() {
    if (m_imp->database == nullptr)
        return Acad::eNoDatabase;
    if (m_imp->writing)
        return Acad::eWasOpenForWrite;
    if (m_imp->database->is_referenced(m_imp->record))
        return Acad::eIsXRefObject;
    if (m_imp->readers > 1)
        return Acad::eHadMultipleReaders;
    if (dxf::stands_on_layer(m_imp->database->records().kind(m_imp->record)) &&
        m_imp->database->on_locked_layer(m_imp->record))
        return Acad::eOnLockedLayer;
    m_imp->readers = 0;
    m_imp->writing = true;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbObject::downgradeOpen() {
    if (m_imp->database == nullptr)
        return Acad::eNoDatabase;
    if (!m_imp->writing)
        return Acad::eNotOpenForWrite;
    m_imp->database->commit(*this);
    m_imp->writing = false;
    m_imp->readers = 1;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbObject::erase(bool erasing) {
    if (m_imp->database == nullptr)
        return Acad::eNoDatabase;
    if (!m_imp->writing)
        return Acad::eNotOpenForWrite;
    if (isErased() == erasing)
        return erasing ? Acad::eWasErased : Acad::eWasNotErased;
    if (const Acad::ErrorStatus refused = subErase(erasing); refused != Acad::eOk)
        return refused;
    if (!erasing && m_imp->database->name_is_taken(m_imp->record))
        return Acad::eDuplicateRecordName;
    m_imp->database->commit(*this);
    m_imp->database->set_erased(m_imp->record, erasing);
    return Acad::eOk;
}

AcRxObject* AcDbObject::clone() const {
    assertReadEnabled();
    auto* const copy = static_cast<AcDbObject*>(isA()->create());
    if (copy == nullptr)
        return nullptr;
    copy->imp().begin_new(db::text_for_copy(*m_imp));
    copy->imp().given = m_imp->database != nullptr ? ~0u : m_imp->given;
    if (!db::is_host_class(isA()))
        db::copy_own_fields(*this, *copy);
    return copy;
}

Adesk::UInt32 AcDbObject::subSetAttributes(AcGiDrawableTraits* /*traits*/) {
    return kDrawableNone;
}

Adesk::Boolean AcDbObject::subWorldDraw(AcGiWorldDraw* /*draw*/) {
    return true;
}

void AcDbObject::subViewportDraw(AcGiViewportDraw* /*draw*/) {
}

Acad::ErrorStatus AcDbObject::subErase(bool /*erasing*/) {
    return Acad::eOk;
}

bool AcDbObject::isReadEnabled() const {
    return isNewObject() || m_imp->writing || m_imp->readers > 0;
}

bool AcDbObject::isWriteEnabled() const {
    return isNewObject() || m_imp->writing;
}

bool AcDbObject::isErased() const {
    return m_imp->database != nullptr && m_imp->database->records().gone(m_imp->record);
}

bool AcDbObject::isModified() const {
    // What an application's object holds in members of its own is compared when it is closed.
    return m_imp->changed() || (m_imp->touched && !db::is_host_class(isA()));
}

bool AcDbObject::isNewObject() const {
    return m_imp->database == nullptr;
}

void AcDbObject::assertReadEnabled() const {
    if (!isReadEnabled())
        throw db::open_violation("an object was read that is not open");
}

void AcDbObject::assertWriteEnabled(bool /*autoUndo*/, bool /*recordModified*/) {
    if (!isWriteEnabled())
        throw db::open_violation("an object was changed that is not open for write");
    m_imp->touched = true;
}

AcDbObjectId AcDbObject::extensionDictionary() const {
    assertReadEnabled();
    if (m_imp->database == nullptr)
        return AcDbObjectId::kNull;
    // 102 {ACAD_XDICTIONARY, 360 handle, 102 }
    bool inside = false;
    for (const dxf::group& group : m_imp->groups().groups()) {
        if (group.code == 102)
            inside = group.value.find("{ACAD_XDICTIONARY") != std::string_view::npos;
        else if (inside && group.code == 360) {
            const dxf::record_id found = m_imp->database->records().find(dxf::parse_handle(group.value));
            return found != dxf::no_record && !m_imp->database->records().gone(found)
                       ? m_imp->database->id(found)
                       : AcDbObjectId::kNull;
        }
    }
    return AcDbObjectId::kNull;
}

resbuf* AcDbObject::xData(const ACHAR* regappName) const {
    assertReadEnabled();
    return db::read_extended_data(*m_imp, regappName);
}

Acad::ErrorStatus AcDbObject::setXData(const resbuf* xdata) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    return db::write_extended_data(*m_imp, xdata);
}
