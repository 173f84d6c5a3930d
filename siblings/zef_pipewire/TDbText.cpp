#include "siblings/zef_pipewire/TDbText.h"

#include "dbproxy.h"
#include "siblings/zef_pipewire/Drawing.h"
#include "siblings/zef_pipewire/TDxfFields.h"

#include <memory>

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

// A text that is no more than that.
Acad::ErrorStatus TDbText::subExplode(AcDbVoidPtrArray& parts) const {
    assertReadEnabled();
    auto text = std::make_unique<AcDbText>(position(), textStringConst(), textStyle(), height(), rotation());
    text->setPropertiesFrom(this);
    text->setNormal(normal());
    text->setWidthFactor(widthFactor());
    text->setOblique(oblique());
    text->setThickness(thickness());
    text->mirrorInX(isMirroredInX());
    text->mirrorInY(isMirroredInY());
    text->setHorizontalMode(horizontalMode());
    text->setVerticalMode(verticalMode());
    if (!isDefaultAlignment())
        text->setAlignmentPoint(alignmentPoint());
    text->setPosition(position());
    parts.append(text.release());
    return Acad::eOk;
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
