// What joins double-line pipes in a point: an elbow of two, a tee of three, a cross of four of them. It shows
// the walls from one pipe's end to the other's.
//
// Branches lead away from the centre, each to the end of a pipe. Of an elbow with a bend radius the walls are
// arcs; otherwise walls of neighbouring branches meet in a corner. In the plan; where branches have different
// diameters each has its own.
#pragma once

#include "siblings/zef_pipewire/TDbPipePrototype.h"

#include <vector>

class TPen;

// Where a branch leads, and how it ends.
struct TFittingBranch {
    double m_angle = 0.0;    // from the centre, radians from the x axis
    double m_length = 0.0;   // to the pipe's end
    double m_diameter = 0.0; // from wall to wall
};

class ZEF_PIPEWIRE_PORT TDbDoubleLineFitting : public TDbPipePrototype {
public:
    ACRX_DECLARE_MEMBERS(TDbDoubleLineFitting);

    AcGePoint3d GetPosition() const;
    void SetPosition(const AcGePoint3d& position);

    std::vector<TFittingBranch> GetBranches() const;
    void SetBranches(const std::vector<TFittingBranch>& branches);

    // Of the centre line of an elbow's arc; 0 for a corner. The arc begins and ends where it touches the
    // branches.
    double GetBendRadius() const;
    void SetBendRadius(double radius);

    Acad::ErrorStatus dxfInFields(AcDbDxfFiler* filer) override;
    Acad::ErrorStatus dxfOutFields(AcDbDxfFiler* filer) const override;

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    // eCannotScaleNonUniformly for what does not keep circles round.
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
    Acad::ErrorStatus subExplode(AcDbVoidPtrArray& parts) const override;

private:
    TDxfFields Fields();
    void Draw(TPen& pen) const;
    bool DrawArcs(TPen& pen) const;
    void DrawCorners(TPen& pen) const;

    AcGePoint3d m_position;
    double m_bendRadius = 0.0;
    std::vector<double> m_angles; // of the branches, and the rest, one for each
    std::vector<double> m_lengths;
    std::vector<double> m_diameters;
};
