// How objects are filed: what the host's classes do for those that programs derive from them. The host's part
// of an object is its record, so there is nothing to be read for it, and only filers of programs are written
// its groups.
#include "acutmem.h"
#include "base/utf.h"
#include "dbfiler.h"
#include "dbmain.h"
#include "host/db/core/extended_data.h"
#include "host/db/core/host_classes.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/notifier.h"
#include "host/db/custom/custom_objects.h"
#include "host/db/custom/group_filers.h"

#include <algorithm>
#include <span>

namespace {

// Writes groups to a program's own filer.
Acad::ErrorStatus write_groups(const AcDbImpObject& object, AcDbDxfFiler& filer,
                               std::span<const dxf::group> groups) {
    for (std::size_t at = 0; at < groups.size();) {
        resbuf* value = nullptr;
        at += db::read_value(object, groups, at, value);
        const Acad::ErrorStatus status = value != nullptr ? filer.writeResBuf(*value) : Acad::eOk;
        acutRelRb(value);
        if (status != Acad::eOk)
            return status;
    }
    return Acad::eOk;
}

} // namespace

Acad::ErrorStatus AcDbObject::dwgIn(AcDbDwgFiler* filer) {
    return dwgInFields(filer);
}

Acad::ErrorStatus AcDbObject::dwgOut(AcDbDwgFiler* filer) const {
    return dwgOutFields(filer);
}

Acad::ErrorStatus AcDbObject::dxfIn(AcDbDxfFiler* filer) {
    return dxfInFields(filer);
}

Acad::ErrorStatus AcDbObject::dxfOut(AcDbDxfFiler* filer, Adesk::Boolean allXdFlag,
                                     Adesk::uchar* /*regAppTable*/) const {
    assertReadEnabled();
    if (filer == nullptr)
        return Acad::eNullObjectPointer;
    const std::span groups(m_imp->groups().groups());
    if (const auto status = write_groups(*m_imp, *filer, groups.first(db::host_sections(*m_imp).first));
        status != Acad::eOk)
        return status;
    if (const Acad::ErrorStatus status = dxfOutFields(filer); status != Acad::eOk || !allXdFlag)
        return status;
    const auto data = std::find_if(groups.begin(), groups.end(),
                                   [](const dxf::group& group) { return group.code >= 1000; });
    return write_groups(*m_imp, *filer, groups.subspan(static_cast<std::size_t>(data - groups.begin())));
}

Acad::ErrorStatus AcDbObject::dwgOutFields(AcDbDwgFiler* filer) const {
    assertReadEnabled();
    return filer != nullptr ? filer->writeString(base::widen(db::text_for_copy(*m_imp)).c_str())
                            : Acad::eNullObjectPointer;
}

Acad::ErrorStatus AcDbObject::dwgInFields(AcDbDwgFiler* filer) {
    assertWriteEnabled();
    if (filer == nullptr)
        return Acad::eNullObjectPointer;
    AcString text;
    if (const Acad::ErrorStatus status = filer->readString(text); status != Acad::eOk)
        return status;
    if (!isNewObject()) // its record is what it is
        return Acad::eOk;
    m_imp->begin_new(base::narrow(text.kwszPtr()));
    return Acad::eOk;
}

Acad::ErrorStatus AcDbObject::dxfInFields(AcDbDxfFiler* filer) {
    assertWriteEnabled();
    if (filer == nullptr)
        return Acad::eNullObjectPointer;
    return dynamic_cast<db::group_input*>(filer) != nullptr ? filer->filerStatus() : Acad::eNotImplementedYet;
}

Acad::ErrorStatus AcDbObject::dxfOutFields(AcDbDxfFiler* filer) const {
    assertReadEnabled();
    if (filer == nullptr)
        return Acad::eNullObjectPointer;
    if (dynamic_cast<db::group_output*>(filer) != nullptr)
        return filer->filerStatus();
    const auto [first, last] = db::host_sections(*m_imp);
    return write_groups(*m_imp, *filer, std::span(m_imp->groups().groups()).subspan(first, last - first));
}

// ---- copies

AcRxObject* AcDbObject::clone() const {
    assertReadEnabled();
    auto* const copy = static_cast<AcDbObject*>(isA()->create());
    if (copy == nullptr)
        return nullptr;
    copy->imp().begin_new(db::text_for_copy(*m_imp));
    copy->imp().given = m_imp->database != nullptr ? ~0u : m_imp->given;
    if (!db::is_host_class(isA()))
        db::copy_own_fields(*this, *copy);
    if (m_imp->database != nullptr)
        m_imp->database->notifier().copied(*this, *copy);
    return copy;
}
