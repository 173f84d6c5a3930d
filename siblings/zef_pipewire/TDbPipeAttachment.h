// A symbol that stands on a pipe: a valve, a meter. The pipe knows it, too
// (TDbPipePrototype::GetAttachments).
#pragma once

#include "afx.h"
#include "dbmain.h"
#include "siblings/zef_pipewire/PipewirePort.h"

class TDxfFields;
class TPen;

enum PipeAttachmentEnum {
    kGateValve = 0, // two triangles, point to point
    kCheckValve,    // the same, the one behind filled
    kWaterMeter,    // a circle with an arrow in it
    kReducer,       // a triangle that narrows along its direction
};

class ZEF_PIPEWIRE_PORT TDbPipeAttachment : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(TDbPipeAttachment);

    AcGePoint3d GetPosition() const;
    void SetPosition(const AcGePoint3d& position);
    // Along the pipe, in the plane: radians from the x axis.
    double GetRotation() const;
    void SetRotation(double angle);
    // The length of the symbol along the pipe, in the model. Only positive ones are taken.
    double GetSize() const;
    void SetSize(double size);
    // What it is: a PipeAttachmentEnum. Others are drawn as gate valves.
    int GetKind() const;
    void SetKind(int kind);

    // The system of its pipe, and the pipe.
    CString GetPipeSystemName() const;
    void SetPipeSystemName(LPCTSTR name);
    AcDbObjectId GetPipe() const;
    void SetPipe(AcDbObjectId pipe);

    Acad::ErrorStatus dxfInFields(AcDbDxfFiler* filer) override;
    Acad::ErrorStatus dxfOutFields(AcDbDxfFiler* filer) const override;

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    // eCannotScaleNonUniformly for what does not keep circles round.
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
    Acad::ErrorStatus subExplode(AcDbVoidPtrArray& parts) const override;

private:
    void Draw(TPen& pen) const;
    TDxfFields Fields();

    AcGePoint3d m_position;
    double m_rotation = 0.0;
    static constexpr double usualSize = 400.0;
    double m_size = usualSize;
    int m_kind = kGateValve;
    CString m_systemName;
    AcDbObjectId m_pipe;
};
