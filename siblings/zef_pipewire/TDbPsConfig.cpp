#include "siblings/zef_pipewire/TDbPsConfig.h"

#include "dbapserv.h"
#include "dbdict.h"
#include "dbobjptr.h"
#include "siblings/zef_kernal/TDrawingWatch.h"
#include "siblings/zef_pipewire/PipeSystems.h"
#include "siblings/zef_pipewire/TDxfFields.h"

#include <algorithm>
#include <cmath>
#include <memory>

ACRX_DXF_DEFINE_MEMBERS(TDbPsConfig, AcDbObject, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, ZEF_PSCONFIG,
                        "ZEF_PIPEWIRE|pipe entities")

namespace {

constexpr wchar_t dictionaryKey[] = L"ZEF_PSCONFIG";

template<class Value>
void Hide(std::vector<Value>& hidden, const Value& one, bool hide) {
    const auto found = std::ranges::find(hidden, one);
    if (hide && found == hidden.end())
        hidden.push_back(one);
    else if (!hide && found != hidden.end())
        hidden.erase(found);
}

template<class Value>
bool IsShown(const std::vector<Value>& hidden, const Value& one) {
    return std::ranges::find(hidden, one) == hidden.end();
}

void DropBadGap(std::optional<double>& gap) {
    if (gap && !(*gap >= 0.0 && std::isfinite(*gap)))
        gap.reset();
}

void DropBadGaps(TPsLook& look) {
    DropBadGap(look.m_breakWidth);
    DropBadGap(look.m_textGap);
}

AcDbDatabase* DatabaseOr(AcDbDatabase* database) {
    return database != nullptr ? database : acdbHostApplicationServices()->workingDatabase();
}

} // namespace

void TDbPsConfig::ShowSystem(int systemType, bool show) {
    assertWriteEnabled();
    Hide(m_hiddenTypes, systemType, !show);
}

void TDbPsConfig::ShowCustomPipeSystem(LPCTSTR systemName, bool show) {
    assertWriteEnabled();
    Hide(m_hiddenNames, CString(systemName), !show);
}

bool TDbPsConfig::IsSystemShown(int systemType) const {
    assertReadEnabled();
    return IsShown(m_hiddenTypes, systemType);
}

bool TDbPsConfig::IsCustomPipeSystemShown(LPCTSTR systemName) const {
    assertReadEnabled();
    return IsShown(m_hiddenNames, CString(systemName));
}

double TDbPsConfig::GetPlotScale() const {
    assertReadEnabled();
    return m_plotScale;
}

void TDbPsConfig::SetPlotScale(double scale) {
    assertWriteEnabled();
    if (scale > 0.0)
        m_plotScale = scale;
}

bool TDbPsConfig::IsAbsoluteSize() const {
    assertReadEnabled();
    return m_isAbsoluteSize;
}

void TDbPsConfig::SetAbsoluteSize(bool absolute) {
    assertWriteEnabled();
    m_isAbsoluteSize = absolute;
}

const TPsLook& TDbPsConfig::GetLook() const {
    assertReadEnabled();
    return m_look;
}

void TDbPsConfig::SetLook(const TPsLook& look) {
    assertWriteEnabled();
    m_look = look;
    DropBadGaps(m_look);
}

TDxfFields TDbPsConfig::Fields() {
    constexpr Adesk::Int16 version = 1;
    return {L"TDbPsConfig",
            version,
            {{40, &m_plotScale},
             {290, &m_isAbsoluteSize},
             {291, &m_look.m_isLineWeight},
             {41, &m_look.m_breakWidth},
             {42, &m_look.m_textGap},
             {91, &m_look.m_elbowType},
             {90, &m_hiddenTypes},
             {300, &m_hiddenNames}}};
}

Acad::ErrorStatus TDbPsConfig::dxfInFields(AcDbDxfFiler* filer) {
    assertWriteEnabled();
    Acad::ErrorStatus status = AcDbObject::dxfInFields(filer);
    if (status == Acad::eOk)
        status = Fields().Read(filer);
    KeepPositive(m_plotScale, usualPlotScale);
    DropBadGaps(m_look);
    return status;
}

Acad::ErrorStatus TDbPsConfig::dxfOutFields(AcDbDxfFiler* filer) const {
    assertReadEnabled();
    const Acad::ErrorStatus status = AcDbObject::dxfOutFields(filer);
    return status == Acad::eOk ? const_cast<TDbPsConfig*>(this)->Fields().Write(filer) : status;
}

Acad::ErrorStatus GetDwgPsGlobal(TDbPsConfig*& config, AcDb::OpenMode mode, AcDbDatabase* database) {
    config = nullptr;
    database = DatabaseOr(database);
    if (database == nullptr)
        return Acad::eNoDatabase;
    const AcDbDictionaryPointer named(database->namedObjectsDictionaryId(), AcDb::kForRead);
    return named.openStatus() == Acad::eOk ? named->getAt(dictionaryKey, config, mode) : named.openStatus();
}

Acad::ErrorStatus InitDwgPsGlobal(TDbPsConfig*& config, AcDbDatabase* database) {
    Acad::ErrorStatus status = GetDwgPsGlobal(config, AcDb::kForWrite, database);
    if (status != Acad::eKeyNotFound)
        return status;
    const AcDbDictionaryPointer named(DatabaseOr(database)->namedObjectsDictionaryId(), AcDb::kForWrite);
    if (named.openStatus() != Acad::eOk)
        return named.openStatus();
    auto made = std::make_unique<TDbPsConfig>();
    AcDbObjectId id;
    status = named->setAt(dictionaryKey, made.get(), id);
    if (status == Acad::eOk)
        config = made.release();
    return status;
}

// Each pipe that is drawn asks for it.
TPsSettings DocGetSettings(AcDbDatabase* database) {
    static TDrawingWatch watch({&TDbPsConfig::desc, &AcDbDictionary::desc});
    static TPsSettings settings;
    static Acad::ErrorStatus status = Acad::eNoDatabase;
    database = DatabaseOr(database);
    const bool isKnown = status == Acad::eOk || status == Acad::eKeyNotFound; // not while another writes it
    if (watch.IsUnchanged(database) && isKnown)
        return settings;
    settings = {};
    TDbPsConfig* config = nullptr;
    status = GetDwgPsGlobal(config, AcDb::kForRead, database);
    if (status == Acad::eOk) {
        settings = {config->GetPlotScale(), config->IsAbsoluteSize(), config->GetLook()};
        config->close();
    }
    return settings;
}

double DocGetPScale(AcDbDatabase* database) {
    return DocGetSettings(database).m_plotScale;
}

bool IsPipeSystemShown(AcDbDatabase* database, LPCTSTR systemName) {
    TDbPsConfig* config = nullptr;
    if (database == nullptr || GetDwgPsGlobal(config, AcDb::kForRead, database) != Acad::eOk)
        return true;
    const int type = GetSysType(systemName);
    const bool shown =
        type != kCustomSystemType ? config->IsSystemShown(type) : config->IsCustomPipeSystemShown(systemName);
    config->close();
    return shown;
}
