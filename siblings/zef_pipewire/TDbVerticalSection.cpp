#include "siblings/zef_pipewire/TDbVerticalSection.h"

#include "dbproxy.h"
#include "siblings/zef_pipewire/PipeSystems.h"
#include "siblings/zef_pipewire/TDxfFields.h"
#include "siblings/zef_pipewire/TPen.h"

#include <algorithm>

ACRX_NO_CONS_DEFINE_MEMBERS(TDbSectionPrototype, AcDbEntity)
ACRX_DXF_DEFINE_MEMBERS(TDbVerticalSection, TDbSectionPrototype, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent,
                        AcDbProxyEntity::kAllAllowedBits, ZEF_VERTICALSECTION, "ZEF_PIPEWIRE|pipe entities")
ACRX_DXF_DEFINE_MEMBERS(TDbVerticalSectionFeed, TDbSectionPrototype, AcDb::kDHL_CURRENT,
                        AcDb::kMReleaseCurrent, AcDbProxyEntity::kAllAllowedBits, ZEF_VERTICALSECTIONFEED,
                        "ZEF_PIPEWIRE|pipe entities")

void TDbSectionPrototype::SetPlace(const AcGePoint3d& corner, double datum) {
    assertWriteEnabled();
    m_corner = corner;
    m_datum = datum;
}

AcGePoint3d TDbSectionPrototype::GetCorner() const {
    assertReadEnabled();
    return m_corner;
}

double TDbSectionPrototype::GetDatum() const {
    assertReadEnabled();
    return m_datum;
}

void TDbSectionPrototype::SetScales(double length, double height) {
    assertWriteEnabled();
    if (length <= 0.0 || height <= 0.0)
        return;
    m_lengthScale = length;
    m_heightScale = height;
}

void TDbSectionPrototype::AddStation(const Station& station) {
    assertWriteEnabled();
    m_distances.push_back(station.m_distance);
    m_grounds.push_back(station.m_ground);
    m_pipes.push_back(station.m_pipe);
}

std::vector<TDbSectionPrototype::Station> TDbSectionPrototype::GetStations() const {
    assertReadEnabled();
    std::vector<Station> stations;
    for (std::size_t i = 0; i < m_distances.size(); ++i)
        stations.push_back({m_distances[i], m_grounds[i], m_pipes[i]});
    return stations;
}

void TDbSectionPrototype::AddCrossing(const Crossing& crossing) {
    assertWriteEnabled();
    m_crossSystems.push_back(crossing.m_system);
    m_crossDistances.push_back(crossing.m_distance);
    m_crossElevations.push_back(crossing.m_elevation);
    m_crossDns.push_back(crossing.m_dn);
}

std::vector<TDbSectionPrototype::Crossing> TDbSectionPrototype::GetCrossings() const {
    assertReadEnabled();
    std::vector<Crossing> crossings;
    for (std::size_t i = 0; i < m_crossSystems.size(); ++i)
        crossings.push_back({m_crossSystems[i], m_crossDistances[i], m_crossElevations[i], m_crossDns[i]});
    return crossings;
}

void TDbSectionPrototype::SetShowCrossPipe(LPCTSTR systemName, bool show) {
    assertWriteEnabled();
    const auto found = std::ranges::find(m_fieldNames, CString(systemName));
    const auto at = static_cast<std::size_t>(found - m_fieldNames.begin());
    if (found == m_fieldNames.end()) {
        m_fieldNames.emplace_back(systemName);
        m_fieldFlags.push_back(0);
    }
    m_fieldFlags[at] = show ? 1 : 0;
}

void TDbSectionPrototype::SetShowCrossPipe(int systemType, bool show) {
    assertWriteEnabled();
    std::erase(m_hiddenTypes, systemType);
    if (!show)
        m_hiddenTypes.push_back(systemType);
}

bool TDbSectionPrototype::IsShowCrossPipe(LPCTSTR systemName) const {
    assertReadEnabled();
    const auto found = std::ranges::find(m_fieldNames, CString(systemName));
    return found == m_fieldNames.end() ||
           m_fieldFlags[static_cast<std::size_t>(found - m_fieldNames.begin())] != 0;
}

bool TDbSectionPrototype::IsShowCrossPipe(int systemType) const {
    assertReadEnabled();
    return std::ranges::find(m_hiddenTypes, systemType) == m_hiddenTypes.end();
}

bool TDbSectionPrototype::HasField(LPCTSTR name) const {
    assertReadEnabled();
    return std::ranges::find(m_fieldNames, CString(name)) != m_fieldNames.end();
}

AcGePoint3d TDbSectionPrototype::Place(double distance, double elevation) const {
    return m_corner + AcGeVector3d(distance / m_lengthScale, (elevation - m_datum) / m_heightScale, 0.0);
}

Adesk::Boolean TDbSectionPrototype::subWorldDraw(AcGiWorldDraw* draw) {
    assertReadEnabled();
    TDrawingPen pen(*draw);
    Draw(pen);
    return true;
}

Acad::ErrorStatus TDbSectionPrototype::subExplode(AcDbVoidPtrArray& parts) const {
    assertReadEnabled();
    TGatheringPen pen(*this, parts);
    Draw(pen);
    return Acad::eOk;
}

// The ground, the pipe, an upright line at each station down to the datum, and circles where pipes cross.
void TDbSectionPrototype::Draw(TPen& pen) const {
    std::vector<AcGePoint3d> ground;
    std::vector<AcGePoint3d> pipe;
    for (const Station& station : GetStations()) {
        ground.push_back(Place(station.m_distance, station.m_ground));
        pipe.push_back(Place(station.m_distance, station.m_pipe));
        pen.Line({Place(station.m_distance, m_datum), ground.back()});
    }
    if (!ground.empty()) {
        pen.Line({Place(m_distances.front(), m_datum), Place(m_distances.back(), m_datum)});
        pen.Line(ground);
        pen.Line(pipe);
    }
    for (const Crossing& crossing : GetCrossings()) {
        const bool shown = HasField(crossing.m_system) ? IsShowCrossPipe(crossing.m_system.GetString())
                                                       : IsShowCrossPipe(GetSysType(crossing.m_system));
        if (shown && crossing.m_dn > 0.0)
            pen.Circle(Place(crossing.m_distance, crossing.m_elevation), crossing.m_dn / 2 / m_heightScale);
    }
}

Acad::ErrorStatus TDbSectionPrototype::subTransformBy(const AcGeMatrix3d& matrix) {
    AcGeMatrix3d move;
    if (!matrix.isEqualTo(move.setToTranslation(matrix.translation())))
        return Acad::eNotApplicable;
    assertWriteEnabled();
    m_corner = matrix * m_corner;
    return Acad::eOk;
}

TDxfFields TDbSectionPrototype::Fields() {
    constexpr Adesk::Int16 version = 1;
    return {L"TDbSectionPrototype",
            version,
            {{10, &m_corner},
             {40, &m_datum},
             {41, &m_lengthScale},
             {42, &m_heightScale},
             {140, &m_distances},
             {141, &m_grounds},
             {142, &m_pipes},
             {300, &m_crossSystems},
             {143, &m_crossDistances},
             {144, &m_crossElevations},
             {145, &m_crossDns},
             {301, &m_fieldNames},
             {71, &m_fieldFlags},
             {90, &m_hiddenTypes}}};
}

Acad::ErrorStatus TDbSectionPrototype::dxfInFields(AcDbDxfFiler* filer) {
    assertWriteEnabled();
    Acad::ErrorStatus status = AcDbEntity::dxfInFields(filer);
    if (status == Acad::eOk)
        status = Fields().Read(filer);
    KeepPositive(m_lengthScale, usualLengthScale);
    KeepPositive(m_heightScale, usualHeightScale);
    CutToShortest(m_distances, m_grounds, m_pipes);
    CutToShortest(m_crossSystems, m_crossDistances, m_crossElevations, m_crossDns);
    CutToShortest(m_fieldNames, m_fieldFlags);
    return status;
}

Acad::ErrorStatus TDbSectionPrototype::dxfOutFields(AcDbDxfFiler* filer) const {
    assertReadEnabled();
    const Acad::ErrorStatus status = AcDbEntity::dxfOutFields(filer);
    return status == Acad::eOk ? const_cast<TDbSectionPrototype*>(this)->Fields().Write(filer) : status;
}
