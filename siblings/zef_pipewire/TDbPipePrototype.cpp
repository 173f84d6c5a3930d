#include "siblings/zef_pipewire/TDbPipePrototype.h"

#include "siblings/zef_pipewire/Drawing.h"
#include "siblings/zef_pipewire/TDxfFields.h"

ACRX_NO_CONS_DEFINE_MEMBERS(TDbPipePrototype, AcDbEntity)

CString TDbPipePrototype::GetPipeSystemName() const {
    assertReadEnabled();
    return m_systemName;
}

void TDbPipePrototype::SetPipeSystemName(LPCTSTR name) {
    assertWriteEnabled();
    m_systemName = name;
}

int TDbPipePrototype::GetSystemType() const {
    assertReadEnabled();
    return m_systemType;
}

void TDbPipePrototype::SetSystemType(int type) {
    assertWriteEnabled();
    m_systemType = type;
}

const AcDbObjectIdArray& TDbPipePrototype::GetAttachments() const {
    assertReadEnabled();
    return m_attachments;
}

void TDbPipePrototype::AddAttachment(AcDbObjectId attachment) {
    assertWriteEnabled();
    if (!m_attachments.contains(attachment))
        m_attachments.append(attachment);
}

void TDbPipePrototype::RemoveAttachment(AcDbObjectId attachment) {
    assertWriteEnabled();
    m_attachments.remove(attachment);
}

double TDbPipePrototype::GetPlotScale() const {
    assertReadEnabled();
    return m_plotScale;
}

void TDbPipePrototype::SetPlotScale(double scale) {
    assertWriteEnabled();
    if (scale > 0.0)
        m_plotScale = scale;
}

void TDbPipePrototype::InitLabelLocation(double distance) {
    assertWriteEnabled();
    m_labelDistance = distance;
    m_isLabelled = true;
}

double TDbPipePrototype::GetLabelDistance() const {
    assertReadEnabled();
    return m_labelDistance;
}

bool TDbPipePrototype::IsLabelled() const {
    assertReadEnabled();
    return m_isLabelled;
}

void TDbPipePrototype::EnableDrawLabel(bool draw) {
    assertWriteEnabled();
    m_isLabelDrawn = draw;
}

bool TDbPipePrototype::IsDrawLabelEnabled() const {
    assertReadEnabled();
    return m_isLabelDrawn;
}

bool TDbPipePrototype::IsHiddenFor(const AcGiWorldDraw& draw) const {
    return IsSystemHiddenFor(draw, database(), m_systemName);
}

TDxfFields TDbPipePrototype::Fields() {
    constexpr Adesk::Int16 version = 1;
    return {L"TDbPipePrototype",
            version,
            {{1, &m_systemName},
             {90, &m_systemType},
             {40, &m_plotScale},
             {41, &m_labelDistance},
             {290, &m_isLabelled},
             {291, &m_isLabelDrawn},
             {330, &m_attachments}}};
}

Acad::ErrorStatus TDbPipePrototype::dxfInFields(AcDbDxfFiler* filer) {
    assertWriteEnabled();
    Acad::ErrorStatus status = AcDbEntity::dxfInFields(filer);
    if (status == Acad::eOk)
        status = Fields().Read(filer);
    KeepPositive(m_plotScale, usualPlotScale);
    return status;
}

Acad::ErrorStatus TDbPipePrototype::dxfOutFields(AcDbDxfFiler* filer) const {
    assertReadEnabled();
    const Acad::ErrorStatus status = AcDbEntity::dxfOutFields(filer);
    return status == Acad::eOk ? const_cast<TDbPipePrototype*>(this)->Fields().Write(filer) : status;
}
