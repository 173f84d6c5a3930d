// The double-line pipes of the current space as they are joined: what is drawn ends in elbows, tees, crosses
// and reducers where it meets others, and is trimmed where it passes them.
//
// Two pipes that meet at an angle get an elbow, of one diameter with an arc by its radius, else with corners;
// three and four a tee and a cross; two in one line that differ in diameter a reducer on the smaller one's
// side. A pipe that is met between its ends is cut there. Pipes of one system that cross at one height are
// joined; of others the lower one has a gap, at the same height the one that was there before.
#pragma once

#include "siblings/zef_pipewire/Crossings.h"
#include "siblings/zef_pipewire/TDbDoubleLinePipe.h"

#include <memory>

// How fittings are chosen.
struct TFittingOrder {
    CString m_elbowSeries; // of the table of elbows; "" for corners
};

class CDoubleLineNetwork {
public:
    // With what the current space holds.
    CDoubleLineNetwork();

    // The nearest point of the centre line of a pipe, or the centre of a fitting, in whose walls a point
    // lies; the point itself where there is none. A point near a pipe's end is that end.
    AcGePoint3d Snap(const AcGePoint3d& point) const;

    // Draws a pipe like the model between two points, joins its ends and trims what it passes. Why it can
    // not be drawn, in words for the user; then the drawing may be changed in part, and who asked takes that
    // back. "" when it is done.
    CString Draw(const TDbDoubleLinePipe& model, const AcGePoint3d& from, const AcGePoint3d& to,
                 const TFittingOrder& order);

private:
    struct Pipe {
        AcDbObjectId id;
        AcGePoint3d start;
        AcGePoint3d end;
        double startOuter = 0;
        double endOuter = 0;
        double startDn = 0;
        double endDn = 0;
        CString system;

        bool IsVertical() const;
    };
    struct Fitting {
        AcDbObjectId id;
        AcGePoint3d position;
        double reach = 0; // of its longest branch
        std::vector<AcDbObjectId> pipes;
    };
    // The end of a pipe that a joint joins, and where it leads from there.
    struct Branch {
        AcDbObjectId pipe;
        bool isAtStart = false;
        AcGeVector3d along;
        double room = 0; // to the pipe's other end
        double outer = 0;
        double dn = 0;
    };

    void Read();
    const Pipe* Find(AcDbObjectId id) const;
    std::vector<AcGePoint3d> JoinedCrossings(const TDbDoubleLinePipe& model, const AcGePoint3d& from,
                                             const AcGePoint3d& to) const;
    CString DrawPart(const TDbDoubleLinePipe& model, const AcGePoint3d& from, const AcGePoint3d& to,
                     const TFittingOrder& order);
    std::vector<AcDbObjectId> PipesAt(const AcGePoint3d& point);
    AcDbObjectId Cut(const Pipe& pipe, const AcGePoint3d& point);
    AcDbObjectId Add(std::unique_ptr<TDbDoubleLinePipe> pipe);
    Branch BranchOf(AcDbObjectId id, const AcGePoint3d& point) const;
    CString Join(const AcGePoint3d& point, const std::vector<AcDbObjectId>& pipes,
                 const TFittingOrder& order);
    CString Reduce(const AcGePoint3d& point, const Branch& one, const Branch& other);
    CString Fit(const AcGePoint3d& point, const std::vector<Branch>& branches, const TFittingOrder& order);
    CString Pull(const AcGePoint3d& point, const Branch& branch, double length);
    void EraseFitting(const AcGePoint3d& point);

    std::vector<Pipe> m_pipes;
    std::vector<Fitting> m_fittings;
};
