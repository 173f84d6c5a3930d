// Layouts: the tabs of a drawing, one for model space and one for each sheet. They stand in the dictionary
// ACAD_LAYOUT by their names. Drawings of R12 and before have none.
#pragma once

#include "dbmain.h"

class ACDB_PORT AcDbPlotSettings : public AcDbObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbPlotSettings);
    AcDbPlotSettings();

    // Whether they are those of model space.
    bool modelType() const;
};

// A sheet, or the model as it is plotted: plot settings with a name, a place among the tabs and a block.
class ACDB_PORT AcDbLayout : public AcDbPlotSettings {
public:
    ACRX_DECLARE_MEMBERS(AcDbLayout);
    AcDbLayout();

    // The name of the tab. The first form gives a text that the caller frees (acutDelString).
    Acad::ErrorStatus getLayoutName(ACHAR*& name) const;
    Acad::ErrorStatus getLayoutName(AcString& name) const;
    // The block that holds its entities; null when there is none.
    AcDbObjectId getBlockTableRecordId() const;
    // 0 for the Model tab, 1 and up from left to right.
    int getTabOrder() const;
    void getTabOrder(int& order) const { order = getTabOrder(); }
    // Whether it is the current tab.
    bool getTabSelected() const;
    // Its viewports, the sheet's own first; none for model space.
    AcDbObjectIdArray getViewportArray() const;
};
