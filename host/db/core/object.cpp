#include "dbmain.h"

#include "acutmem.h"
#include "base/utf.h"
#include "host/db/core/extended_data.h"
#include "host/db/core/history.h"
#include "host/db/core/host_classes.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/layer_facts.h"
#include "host/db/core/notifier.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/references.h"
#include "host/db/core/symbol_names.h"
#include "host/dxf/record_header.h"

ACRX_NO_CONS_DEFINE_MEMBERS(AcDbObject, AcGiDrawable)

AcDbObject::AcDbObject() : m_imp(std::make_unique<AcDbImpObject>()) {
    m_imp->begin_as("0\nOBJECT\n");
}
AcDbObject::~AcDbObject() {
    if (m_imp->reactors != nullptr && m_imp->database == nullptr)
        m_imp->reactors->tell([&](AcDbObjectReactor& reactor) { reactor.goodbye(this); });
}

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
    return m_imp->database != nullptr ? m_imp->database->objects().close(*this, true) : Acad::eNoDatabase;
}

Acad::ErrorStatus AcDbObject::cancel() {
    return m_imp->database != nullptr ? m_imp->database->objects().close(*this, false) : Acad::eNoDatabase;
}

Acad::ErrorStatus AcDbObject::upgradeOpen() {
    const Acad::ErrorStatus status = m_imp->life.ask(db::object_change::upgrade);
    if (m_imp->life.is_new() || m_imp->life.is_written())
        return status;
    if (m_imp->database->references().is_referenced(m_imp->record))
        return Acad::eIsXRefObject;
    if (!m_imp->database->objects().write_locked)
        return Acad::eLockViolation;
    if (status != Acad::eOk)
        return status;
    if (dxf::stands_on_layer(m_imp->database->records().kind(m_imp->record)) &&
        m_imp->database->layers().is_locked(m_imp->record))
        return Acad::eOnLockedLayer;
    return m_imp->life.make(db::object_change::upgrade);
}

Acad::ErrorStatus AcDbObject::downgradeOpen() {
    if (m_imp->life.is_borrowed()) // until who made it closes it
        return m_imp->life.make(db::object_change::downgrade);
    const Acad::ErrorStatus status = m_imp->life.ask(db::object_change::downgrade);
    if (status == Acad::eOk && !m_imp->life.is_kept())
        m_imp->database->objects().settle(*this);
    return status;
}

Acad::ErrorStatus AcDbObject::upgradeFromNotify(Adesk::Boolean& wasWritable) {
    wasWritable = m_imp->life.is_written();
    return wasWritable ? Acad::eOk : upgradeOpen();
}

Acad::ErrorStatus AcDbObject::downgradeToNotify(Adesk::Boolean wasWritable) {
    return wasWritable ? Acad::eOk : downgradeOpen();
}

Acad::ErrorStatus AcDbObject::erase(bool erasing) {
    if (const Acad::ErrorStatus status = m_imp->life.ask(db::object_change::modify); status != Acad::eOk)
        return status;
    if (isErased() == erasing)
        return erasing ? Acad::eWasErased : Acad::eWasNotErased;
    if (const Acad::ErrorStatus refused = subErase(erasing); refused != Acad::eOk)
        return refused;
    if (!erasing && m_imp->database->names().is_taken(m_imp->record))
        return Acad::eDuplicateRecordName;
    m_imp->about_to_modify();
    m_imp->database->objects().commit(*this);
    m_imp->database->objects().set_erased(m_imp->record, erasing);
    return Acad::eOk;
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
    return !m_imp->life.is_closed();
}

bool AcDbObject::isWriteEnabled() const {
    return m_imp->life.is_new() || m_imp->life.is_written();
}

bool AcDbObject::isErased() const {
    return m_imp->database != nullptr && m_imp->database->records().gone(m_imp->record);
}

bool AcDbObject::isModified() const {
    // What an application's object holds in members of its own is compared when it is closed.
    return m_imp->changed() || (m_imp->touched && !db::is_host_class(isA()));
}

bool AcDbObject::isNewObject() const {
    return m_imp->life.is_new();
}

void AcDbObject::assertReadEnabled() const {
    if (!isReadEnabled())
        throw db::open_violation("an object was read that is not open");
}

void AcDbObject::assertWriteEnabled(bool /*autoUndo*/, bool /*recordModified*/) {
    if (!isWriteEnabled())
        throw db::open_violation("an object was changed that is not open for write");
    m_imp->touched = true;
    m_imp->about_to_modify();
}

bool AcDbObject::isNotifying() const {
    return m_imp->life.is_notifying();
}

bool AcDbObject::isUndoing() const {
    return m_imp->database != nullptr && m_imp->database->history().is_replaying();
}

bool AcDbObject::isTransactionResident() const {
    return m_imp->life.is_kept();
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
