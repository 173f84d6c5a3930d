// A text of the add-on: a line of text that belongs to a pipe system.
#pragma once

#include "afx.h"
#include "dbents.h"
#include "siblings/zef_pipewire/PipewirePort.h"

class TDxfFields;

class ZEF_PIPEWIRE_PORT TDbText : public AcDbText {
public:
    ACRX_DECLARE_MEMBERS(TDbText);

    CString GetPipeSystemName() const;
    void SetPipeSystemName(LPCTSTR name);
    // What it tells about; null for none. A pipe has the texts about it among its attachments.
    AcDbObjectId GetSubject() const;
    void SetSubject(AcDbObjectId subject);

    Acad::ErrorStatus dxfInFields(AcDbDxfFiler* filer) override;
    Acad::ErrorStatus dxfOutFields(AcDbDxfFiler* filer) const override;

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Acad::ErrorStatus subExplode(AcDbVoidPtrArray& parts) const override;

private:
    TDxfFields Fields();

    CString m_systemName;
    AcDbObjectId m_subject;
};
