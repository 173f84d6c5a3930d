#include "module/layertools/LayerExport.h"
#include "module/layertools/DrawingWalk.h"

#include "acutmem.h"
#include "adscodes.h"
#include "dbapserv.h"
#include "dbdxfas.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "module/layertools/DrawingRecords.h"
#include "module/layertools/LayerStates.h"
#include "module/layertools/TakenApart.h"
#include "siblings/zef_kernal/TPickEntSet.h"
#include "siblings/zef_kernal/ZefExport.h"

namespace {

AcDbDatabase& Drawing() {
    return *acdbHostApplicationServices()->workingDatabase();
}

// How many entities stand in model space and on sheets.
int CountInSpaces(AcDbDatabase& drawing) {
    int count = 0;
    for (const AcDbObjectId id : RecordsOf(drawing.blockTableId())) {
        const AcDbBlockTableRecordPointer block(id, AcDb::kForRead);
        if (block.openStatus() == Acad::eOk && block->isLayout())
            for ([[maybe_unused]] const AcDbObjectId entity : EntitiesOf(*block.object()))
                ++count;
    }
    return count;
}

} // namespace

const std::vector<FileVersion>& GetFileVersions() {
    static const std::vector<FileVersion> versions = {
        {L"2018", acdbDxfOutAs2018}, {L"2013", acdbDxfOutAs2013}, {L"2010", acdbDxfOutAs2010},
        {L"2007", acdbDxfOutAs2007}, {L"2004", acdbDxfOutAs2004}, {L"2000", acdbDxfOutAs2000},
        {L"R12", acdbDxfOutAsR12}};
    return versions;
}

CLayerExport::CLayerExport(const std::vector<AcDbObjectId>& layers) {
    for (const AcDbObjectId layer : layers) {
        const CString pattern = ZefExport::GetLiteralPattern(GetLayerName(layer));
        const Chain filter(acutBuildList(8, pattern.GetString(), 0));
        TPickEntSet found;
        found.SelectDrawing(filter.get());
        for (const AcDbObjectId entity : found)
            m_entities.append(entity);
        if (found.GetCount() == 0)
            m_emptyLayers.push_back(layer);
    }
}

CLayerExport::~CLayerExport() = default;

Acad::ErrorStatus CLayerExport::Make(bool takesApart) {
    AcDbDatabase* made = nullptr;
    if (const Acad::ErrorStatus status = Drawing().wblock(made, m_entities, AcGePoint3d::kOrigin);
        status != Acad::eOk)
        return status;
    m_drawing.reset(made);
    m_followed = CountInSpaces(*m_drawing) - m_entities.length();
    if (takesApart) {
        const TakenApart count = TakeAllApart(*m_drawing);
        m_takenApart = count.m_taken;
        m_kept = count.m_kept;
    }
    return Acad::eOk;
}

Acad::ErrorStatus CLayerExport::Write(const CString& fileName, const FileVersion* version) {
    return version == nullptr ? m_drawing->dxfOut(fileName) : version->m_write(m_drawing.get(), fileName, 16);
}
