// A joint: the place where pipes begin and end. It helps and is no part of the picture: nothing is drawn of
// it unless it is shown, and then a small circle.
#pragma once

#include "afx.h"
#include "dbmain.h"
#include "siblings/zef_pipewire/PipewirePort.h"

class TDxfFields;
class TPen;

class ZEF_PIPEWIRE_PORT TDbPipeNode : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(TDbPipeNode);

    AcGePoint3d GetPosition() const;
    void SetPosition(const AcGePoint3d& position);
    // The pipes that meet in it.
    const AcDbObjectIdArray& GetPipes() const;
    // Adds one unless it is there.
    void AddPipe(AcDbObjectId pipe);
    bool IsShown() const;
    void Show(bool show);

    Acad::ErrorStatus dxfInFields(AcDbDxfFiler* filer) override;
    Acad::ErrorStatus dxfOutFields(AcDbDxfFiler* filer) const override;

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
    // A joint that is not shown has no pieces.
    Acad::ErrorStatus subExplode(AcDbVoidPtrArray& parts) const override;

private:
    void Draw(TPen& pen) const;
    TDxfFields Fields();

    AcGePoint3d m_position;
    AcDbObjectIdArray m_pipes;
    bool m_isShown = false;
};

// Whether an entity helps and draws nothing: a joint that is not shown.
ZEF_PIPEWIRE_PORT bool IsNoDrawingObject(const AcDbEntity* entity);
