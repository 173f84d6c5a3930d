#include "module/standard/LayerNode.h"

#include "module/standard/LinetypeLibrary.h"
#include "siblings/zef_kernal/ZefExport.h"

#include "dbapserv.h"
#include "dbobjptr.h"

#include <algorithm>

bool LayerNode::IsContainLayerAttach(LPCTSTR name) const {
    return std::ranges::any_of(m_attachments, [name](const CString& one) { return one == name; });
}

AcDbObjectId LayerNode::CreateLayer(bool* created) const {
    AcDbObjectId id = ZefExport::GetLayerIdFromString(m_layerName);
    AcDbDatabase* const database = acdbHostApplicationServices()->workingDatabase();
    if (!id.isNull() || database == nullptr)
        return id;
    AcDbObjectPointer<AcDbLayerTableRecord> layer;
    layer.create();
    if (layer->setName(m_layerName) != Acad::eOk)
        return AcDbObjectId::kNull;
    layer->setColor(m_color);
    layer->setLineWeight(static_cast<AcDb::LineWeight>(m_lineWeight));
    layer->setIsPlottable(m_canPlot);
    layer->setLinetypeObjectId(KolTool::LoadVrLineType(m_linetype));
    AcDbLayerTablePointer table(database->layerTableId(), AcDb::kForWrite);
    if (table.openStatus() != Acad::eOk || table->add(id, layer.object()) != Acad::eOk)
        return AcDbObjectId::kNull;
    if (created != nullptr)
        *created = true;
    return id;
}
