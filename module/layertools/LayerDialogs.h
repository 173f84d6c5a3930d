// The dialogs in which the user chooses layers from lists.
#pragma once

#include "afx.h"
#include "dbsymtb.h"
#include "ui/dialog.h"

#include <vector>

// What they have in common: each line is a layer, which the user checks.
class CLayerListDlg {
public:
    // Shows the dialog until the user ends it; true for OK.
    bool DoModal();
    // The layers that were checked then, in the order of the lists.
    const std::vector<AcDbObjectId>& GetChosenLayers() const { return m_chosen; }

protected:
    struct Column {
        const wchar_t* name;
        int width;
        CString (*text)(const AcDbLayerTableRecord& layer);
    };

    explicit CLayerListDlg(const wchar_t* title);
    // Adds a list below those that are there. A layer that cannot be opened is left out.
    void AddList(const std::vector<Column>& columns, const std::vector<AcDbObjectId>& layers);

private:
    ui::dialog m_dialog;
    std::vector<AcDbObjectId> m_layers; // of the lines through all lists
    std::vector<AcDbObjectId> m_chosen;
};

// Layers that are off: the drawing's own, and below them those of external references, when there are any.
class COpenLayerDlg : public CLayerListDlg {
public:
    explicit COpenLayerDlg(const std::vector<AcDbObjectId>& layersOff);
};

// Layers to choose from, under a title.
class CLayerFilterDlg : public CLayerListDlg {
public:
    CLayerFilterDlg(const std::vector<AcDbObjectId>& layers, const wchar_t* title);
};

// All layers of the drawing with their colours.
class CSelectLayerDlg : public CLayerListDlg {
public:
    CSelectLayerDlg();
};
