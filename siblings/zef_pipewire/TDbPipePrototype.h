// What pipes of all kinds have: their system, what is attached to them, and whether and where they are
// labelled.
#pragma once

#include "afx.h"
#include "dbmain.h"
#include "siblings/zef_pipewire/PipewirePort.h"

class TDxfFields;

class ZEF_PIPEWIRE_PORT TDbPipePrototype : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(TDbPipePrototype);

    // The system by name, and by the code that older drawings have (PipeSystems.h). Each is set alone.
    CString GetPipeSystemName() const;
    void SetPipeSystemName(LPCTSTR name);
    int GetSystemType() const;
    void SetSystemType(int type);

    // The symbols that stand on it, and the texts about it (TDbText.h), which each have it as their subject.
    const AcDbObjectIdArray& GetAttachments() const;
    // Adds one unless it is there; takes one away, if it is there.
    void AddAttachment(AcDbObjectId attachment);
    void RemoveAttachment(AcDbObjectId attachment);

    // How many millimetres of the model are one on paper: 100 unless it is set. Only positive ones are taken.
    double GetPlotScale() const;
    void SetPlotScale(double scale);

    // Puts the label beside the middle of the pipe, this far from its centre line, in millimetres: above it
    // or to its left, by a negative distance on the other side. The pipe counts as labelled from then on.
    void InitLabelLocation(double distance);
    double GetLabelDistance() const;
    bool IsLabelled() const;
    // Whether the label is drawn, which a pipe that is labelled still may not.
    void EnableDrawLabel(bool draw);
    bool IsDrawLabelEnabled() const;

    Acad::ErrorStatus dxfInFields(AcDbDxfFiler* filer) override;
    Acad::ErrorStatus dxfOutFields(AcDbDxfFiler* filer) const override;

protected:
    TDbPipePrototype() = default;

    // Whether its system is hidden where it is drawn.
    bool IsHiddenFor(const AcGiWorldDraw& draw) const;

private:
    TDxfFields Fields();

    CString m_systemName;
    int m_systemType = -1;
    AcDbObjectIdArray m_attachments;
    static constexpr double usualPlotScale = 100.0;
    double m_plotScale = usualPlotScale;
    double m_labelDistance = 0.0;
    bool m_isLabelled = false;
    bool m_isLabelDrawn = true;
};
