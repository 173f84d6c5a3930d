// A pipe: its centre line from joint to joint, what the standard says about its system, and how it is
// labelled.
//
// In the plan it is a line, an arrow in it when the direction of flow is set, and the label beside it; a
// riser, which stands upright, is a circle around its start. With the default of drawing pipes as thick as
// they plot it is an area instead of a line. Sizes of symbols and labels are millimetres on paper.
#pragma once

#include "siblings/zef_pipewire/TDbPipePrototype.h"

#include <utility>
#include <vector>

class TPen;
struct TLabel;

// What a label can tell: the elements of an arrangement.
enum PipeDimElementEnum {
    kDimDn = 0,         // the label format and the nominal diameter
    kDimOuterDn,        // the outer diameter, mm
    kDimThickness,      // of the wall, mm
    kDimLength,         // m
    kDimGradient,       // fall by length
    kDimStartElevation, // m
    kDimEndElevation,   // m
    kDimSystem,         // the system's name
};

// The direction of flow.
enum PipeFlowEnum { kFlowUnknown = 0, kFlowToEnd = 1, kFlowToStart = -1 };

// What is written on a pipe and filed as it is.
struct TPipeValues {
    double m_dn = 0.0;          // nominal diameter, mm; the outer one of a pipe that is labelled with it
    int m_material = -1;        // its place in the list of materials, 16 bits; -1 when unknown
    double m_lineWidth = 0.35;  // as drawn, mm on paper
    double m_vPipeRadius = 0.5; // of the riser's symbol, mm on paper
    // What kind of symbol a riser is: above nought a circle with a second one, whose radius it is (mm on
    // paper); -1 a filled circle, -2 a circle, -3 a circle with a cross, 0 an arc, three quarters of a
    // circle.
    double m_vPipeSecond = -2.0;
    int m_flow = kFlowUnknown;
    AcDbObjectId m_labelLayer;  // null: the pipe's own
    AcDbObjectId m_labelStyle;  // of text; null: the font txt
    double m_labelHeight = 3.5; // mm on paper, or of the model where the drawing's sizes are absolute
    CString m_labelPrefix;      // of the material, in front of diameters without a format
    CString m_labelFormat;      // in front of the diameter; one with "%%c" tells the thickness too
    double m_thickness = 0.0;   // of the wall as the label tells it, mm; 0: it does not
    bool m_isChanged = false;   // whether what labels tell was changed
    bool m_isOldLabel = false;
    double m_oldDimType = 0.0;
};

class ZEF_PIPEWIRE_PORT TDbPipe : public TDbPipePrototype {
public:
    ACRX_DECLARE_MEMBERS(TDbPipe);
    ~TDbPipe() override;

    AcGePoint3d GetStartPoint() const;
    AcGePoint3d GetEndPoint() const;
    void SetEnds(const AcGePoint3d& start, const AcGePoint3d& end);
    double GetLength() const;
    // Whether it is seen end-on: its ends lie less than 0.1 apart in x and in y.
    bool IsVertical() const;

    // The pipes that pass over this one. There its centre line has a gap, as wide as the drawing's default
    // says (TDefaultCfg.h, GetPsBreakWidth), as long as they do.
    const AcDbObjectIdArray& GetPassingPipes() const;
    void SetPassingPipes(const AcDbObjectIdArray& pipes);
    // What is seen of the centre line, part by part: neither symbols that stand on the pipe nor passing pipes
    // hide it. And how long that is altogether.
    using Part = std::pair<AcGePoint3d, AcGePoint3d>;
    std::vector<Part> GetVisibleParts() const;
    double GetVisibleLength() const;

    // The joints at its ends; null when there are none.
    AcDbObjectId GetStartNode() const;
    AcDbObjectId GetEndNode() const;
    void SetNodes(AcDbObjectId start, AcDbObjectId end);

    const TPipeValues& GetValues() const;
    // To be changed in place, while the pipe is open for writing.
    TPipeValues& ChangeValues();

    double GetOuterDn() const;
    void SetOuterDn(double outer);
    AcDbObjectId GetArrowLayerId() const;
    void SetArrowLayerId(AcDbObjectId layer);
    double GetOldDimType() const;

    // Numbers by name, as "PIPE_THICK", the thickness of the wall in millimetres. False, and the value as it
    // was, when there is none.
    bool GetField(LPCTSTR name, double& value) const;
    void SetField(LPCTSTR name, double value);

    // The arrangement of the label: what it tells, in that order, and how many of them stand in one line (0:
    // all). Without elements the label is GetLabelText.
    void SetDimElements(const std::vector<int>& types, int elementsInLine);
    const std::vector<int>& GetDimElements() const;
    // How an element is written wherever it stands: what is in front of it and behind it, its decimal places
    // (below 0: as usual for it) and whether noughts at their end are written.
    void SetDimElementPrefix(int type, LPCTSTR prefix);
    void SetDimElementSuffix(int type, LPCTSTR suffix);
    void SetDimElementPrecision(int type, int precision, bool keepZeros);

    // The sign of the label format, else of the prefix, else "DN", and the diameter that belongs to it:
    // "DN100", "%%c108x4". Behind De, dn and Dw it is the outer one, behind others the pipe's DN, which is
    // the outer one when it is labelled by a format with "%%c".
    virtual CString GetLabelText() const;
    // The height of a line of it, in the model.
    double GetLabelHeight() const;
    // The label by its arrangement, line by line; GetLabelText without one.
    std::vector<CString> GetMultiLineDimTextByDimElements() const;

    Acad::ErrorStatus dxfInFields(AcDbDxfFiler* filer) override;
    Acad::ErrorStatus dxfOutFields(AcDbDxfFiler* filer) const override;

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    // eCannotScaleNonUniformly for what does not keep circles round.
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
    // What it draws, in lines, circles, areas and texts.
    Acad::ErrorStatus subExplode(AcDbVoidPtrArray& parts) const override;
    // Its joints that are not shown go with the last of their pipes, and come back with it.
    Acad::ErrorStatus subErase(bool erasing) override;

    // The pipe itself, which does not stand upright: its visible parts, as thick as they plot where that is
    // the default.
    virtual void DrawBody(TPen& pen) const;
    // The symbol of one that does.
    virtual void DrawRiser(TPen& pen) const;
    // How long the gap is in it below another pipe that passes over it: the drawing's break width.
    virtual double GetPassingGap(const TDbPipe& passing) const;
    // A sign and the diameter behind it.
    static CString SignedDiameter(const CString& sign, double diameter);
    // Whether its label is drawn, which a riser never has; and how far from its centre line that begins.
    virtual bool HasLabel() const;
    virtual double GetLabelGap() const;
    // Along the pipe, level; of no length for a riser.
    AcGeVector3d GetDirection() const;

private:
    TDxfFields Fields();
    void Draw(TPen& pen) const;
    void DrawArrow(TPen& pen) const;
    TLabel GetLabel() const;
    CString ElementText(int type) const;
    std::size_t FindElement(int type) const;
    std::size_t AddElement(int type);

    AcGePoint3d m_start;
    AcGePoint3d m_end;
    AcDbObjectId m_startNode;
    AcDbObjectId m_endNode;
    AcDbObjectId m_arrowLayer;
    AcDbObjectIdArray m_passingPipes;
    double m_outerDn = 0.0;
    TPipeValues m_values;
    std::vector<CString> m_fieldNames; // and their values, one for each
    std::vector<double> m_fieldValues;
    std::vector<int> m_dimElements;
    int m_elementsInLine = 0;
    std::vector<int> m_styledElements; // and how each of them is written
    std::vector<CString> m_prefixes;
    std::vector<CString> m_suffixes;
    std::vector<int> m_precisions;
    std::vector<int> m_keepZeros;
};
