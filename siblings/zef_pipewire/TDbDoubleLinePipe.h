// A pipe that shows both its walls: two lines as far apart as it is wide at each end, and the flanges there.
// Below pipes that pass over it both walls have a gap, as wide as those are and the drawing's break width.
// One that stands upright shows its walls and flanges as circles.
//
// It is labelled with its own diameter, beside the wall, as soon as it has a text style for that: that at its
// start, or that at its end where the default says so (TDefaultCfg.h, integer 4 is 1).
#pragma once

#include "siblings/zef_pipewire/TDbPipe.h"

class ZEF_PIPEWIRE_PORT TDbDoubleLinePipe : public TDbPipe {
public:
    ACRX_DECLARE_MEMBERS(TDbDoubleLinePipe);

    // Diameters at start and end, mm.
    double GetStartDn() const;
    double GetEndDn() const;
    void SetDns(double start, double end);

    // The distance of its walls at start and end, mm: the diameters above until it is set. Kept as the
    // numbers "START_OUTER" and "END_OUTER".
    double GetStartOuter() const;
    double GetEndOuter() const;
    void SetOuters(double start, double end);

    // Diameter and thickness of the flanges, mm; without a diameter there are none.
    double GetFlangeDiameter() const;
    double GetFlangeThickness() const;
    void SetFlange(double diameter, double thickness);

    Acad::ErrorStatus dxfInFields(AcDbDxfFiler* filer) override;
    Acad::ErrorStatus dxfOutFields(AcDbDxfFiler* filer) const override;

    // Nominal, as its diameters are: "DN100".
    CString GetLabelText() const override;

protected:
    void DrawBody(TPen& pen) const override;
    void DrawRiser(TPen& pen) const override;
    double GetPassingGap(const TDbPipe& passing) const override;
    bool HasLabel() const override;
    double GetLabelGap() const override;

private:
    TDxfFields Fields();
    double GetLabelDn() const;

    double m_startDn = 0.0;
    double m_endDn = 0.0;
    double m_flangeDiameter = 0.0;
    double m_flangeThickness = 0.0;
};
