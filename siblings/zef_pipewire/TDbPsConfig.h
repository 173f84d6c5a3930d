// The pipe systems as the current drawing shows them: one object below the key "ZEF_PSCONFIG" of the
// drawing's named objects.
//
// Pipes, attachments and texts of a hidden system are not drawn and so not picked. They keep their extents,
// and what other programs see of them stays as it was.
#pragma once

#include "afx.h"
#include "dbmain.h"
#include "siblings/zef_pipewire/PipewirePort.h"

#include <optional>
#include <vector>

class TDxfFields;

// How a drawing has its pipes otherwise than by default. What is absent is as TDefaultCfg has it.
struct TPsLook {
    std::optional<bool> m_isLineWeight = {}; // drawn as thick as they plot
    std::optional<double> m_breakWidth = {}; // gap where another pipe crosses, mm on paper
    std::optional<double> m_textGap = {};    // gap around a pipe's text, mm on paper
    std::optional<int> m_elbowType = {};     // 0 a sharp bend, 1 an arc

    friend bool operator==(const TPsLook&, const TPsLook&) = default;
};

class ZEF_PIPEWIRE_PORT TDbPsConfig : public AcDbObject {
public:
    ACRX_DECLARE_MEMBERS(TDbPsConfig);

    // Show or hide a system that has a code (GetSysType), or one that has a name alone.
    void ShowSystem(int systemType, bool show);
    void ShowCustomPipeSystem(LPCTSTR systemName, bool show);
    bool IsSystemShown(int systemType) const;
    bool IsCustomPipeSystemShown(LPCTSTR systemName) const;

    // How many millimetres of the model are one on paper: 100 unless it is set. Only positive ones are taken.
    double GetPlotScale() const;
    void SetPlotScale(double scale);
    // Whether sizes of annotation are those of the model, whatever the plot scale.
    bool IsAbsoluteSize() const;
    void SetAbsoluteSize(bool absolute);
    // Gaps below nought are taken as absent.
    const TPsLook& GetLook() const;
    void SetLook(const TPsLook& look);

    Acad::ErrorStatus dxfInFields(AcDbDxfFiler* filer) override;
    Acad::ErrorStatus dxfOutFields(AcDbDxfFiler* filer) const override;

private:
    TDxfFields Fields();

    static constexpr double usualPlotScale = 100.0;
    std::vector<int> m_hiddenTypes;
    std::vector<CString> m_hiddenNames;
    double m_plotScale = usualPlotScale;
    bool m_isAbsoluteSize = false;
    TPsLook m_look;
};

// Opens the configuration of a drawing, or of the current one; the caller closes it. eNoDatabase without a
// drawing, eKeyNotFound when the drawing has none, and what opening answers.
ZEF_PIPEWIRE_PORT Acad::ErrorStatus GetDwgPsGlobal(TDbPsConfig*& config, AcDb::OpenMode mode,
                                                   AcDbDatabase* database = nullptr);
// The same for writing; one is made when there is none.
ZEF_PIPEWIRE_PORT Acad::ErrorStatus InitDwgPsGlobal(TDbPsConfig*& config, AcDbDatabase* database = nullptr);

// What a drawing's configuration says, or the current one's; of a drawing without one what a new one says.
struct TPsSettings {
    double m_plotScale = 100.0;
    bool m_isAbsoluteSize = false;
    TPsLook m_look;
};
ZEF_PIPEWIRE_PORT TPsSettings DocGetSettings(AcDbDatabase* database = nullptr);
// Its plot scale alone.
ZEF_PIPEWIRE_PORT double DocGetPScale(AcDbDatabase* database = nullptr);

// Whether a drawing shows the system, by its code or its name. True without a configuration.
ZEF_PIPEWIRE_PORT bool IsPipeSystemShown(AcDbDatabase* database, LPCTSTR systemName);
