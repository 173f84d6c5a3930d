#include "module/layertools/LayerDialogs.h"

#include "acutmem.h"
#include "dbobjptr.h"
#include "module/layertools/LayerStates.h"
#include "module/standard/LineWeightText.h"
#include "ui/presenter.h"

namespace {

CString NameText(const AcDbLayerTableRecord& layer) {
    AcString name;
    layer.getName(name);
    return name.kACharPtr();
}

CString DescriptionText(const AcDbLayerTableRecord& layer) {
    ACHAR* description = layer.description();
    CString text = description;
    acutDelString(description);
    return text;
}

CString ColorText(const AcDbLayerTableRecord& layer) {
    return GetColorText(layer.color());
}

} // namespace

CLayerListDlg::CLayerListDlg(const wchar_t* title) {
    m_dialog.title = title;
}

void CLayerListDlg::AddList(const std::vector<Column>& columns, const std::vector<AcDbObjectId>& layers) {
    ui::check_list list;
    for (const Column& column : columns)
        list.columns.push_back({column.name, column.width});
    for (const AcDbObjectId id : layers) {
        const AcDbObjectPointer<AcDbLayerTableRecord> layer(id, AcDb::kForRead);
        if (layer.openStatus() != Acad::eOk)
            continue;
        ui::line line;
        for (const Column& column : columns)
            line.cells.emplace_back(column.text(*layer.object()).GetString());
        list.lines.push_back(line);
        m_layers.push_back(id);
    }
    m_dialog.lists.push_back(list);
}

bool CLayerListDlg::DoModal() {
    m_chosen.clear();
    if (!ui::run(m_dialog))
        return false;
    auto layer = m_layers.begin();
    for (const ui::check_list& list : m_dialog.lists)
        for (const ui::line& line : list.lines) {
            if (line.checked)
                m_chosen.push_back(*layer);
            ++layer;
        }
    return true;
}

COpenLayerDlg::COpenLayerDlg(const std::vector<AcDbObjectId>& layersOff) : CLayerListDlg(L"打开图层") {
    std::vector<AcDbObjectId> own;
    std::vector<AcDbObjectId> external;
    for (const AcDbObjectId layer : layersOff)
        (GetLayerName(layer).Find(L'|') < 0 ? own : external).push_back(layer);
    AddList({{L"层名", 80, NameText}, {L"描述", 80, DescriptionText}}, own);
    if (!external.empty())
        AddList({{L"层名", 180, NameText}, {L"描述", 80, DescriptionText}}, external);
}

CLayerFilterDlg::CLayerFilterDlg(const std::vector<AcDbObjectId>& layers, const wchar_t* title)
    : CLayerListDlg(title) {
    AddList({{L"层名", 180, NameText}, {L"描述", 80, DescriptionText}}, layers);
}

CSelectLayerDlg::CSelectLayerDlg() : CLayerListDlg(L"选择图层") {
    AddList({{L"层名", 180, NameText}, {L"颜色", 80, ColorText}, {L"描述", 80, DescriptionText}},
            GetAllLayerIds());
}
