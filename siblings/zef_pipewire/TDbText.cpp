#include "siblings/zef_pipewire/TDbText.h"

#include "dbproxy.h"
#include "siblings/zef_pipewire/Drawing.h"
#include "siblings/zef_pipewire/TDxfFields.h"

ACRX_DXF_DEFINE_MEMBERS(TDbText, AcDbText, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent,
                        AcDbProxyEntity::kAllAllowedBits, ZEF_TEXT, "ZEF_PIPEWIRE|pipe entities")

CString TDbText::GetPipeSystemName() const {
    assertReadEnabled();
    return m_systemName;
}

void TDbText::SetPipeSystemName(LPCTSTR name) {
    assertWriteEnabled();
    m_systemName = name;
}

AcDbObjectId TDbText::GetSubject() const {
    assertReadEnabled();
    return m_subject;
}

void TDbText::SetSubject(AcDbObjectId subject) {
    assertWriteEnabled();
    m_subject = subject;
}

Adesk::Boolean TDbText::subWorldDraw(AcGiWorldDraw* draw) {
    assertReadEnabled();
    return IsSystemHiddenFor(*draw, database(), m_systemName) || AcDbText::subWorldDraw(draw);
}

TDxfFields TDbText::Fields() {
    constexpr Adesk::Int16 version = 1;
    return {L"TDbText", version, {{1, &m_systemName}, {330, &m_subject}}};
}

Acad::ErrorStatus TDbText::dxfInFields(AcDbDxfFiler* filer) {
    assertWriteEnabled();
    const Acad::ErrorStatus status = AcDbText::dxfInFields(filer);
    return status == Acad::eOk ? Fields().Read(filer) : status;
}

Acad::ErrorStatus TDbText::dxfOutFields(AcDbDxfFiler* filer) const {
    assertReadEnabled();
    const Acad::ErrorStatus status = AcDbText::dxfOutFields(filer);
    return status == Acad::eOk ? const_cast<TDbText*>(this)->Fields().Write(filer) : status;
}
