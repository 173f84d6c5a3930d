// Longitudinal sections: the ground and the pipe below it along the way, and where other pipes cross. There
// is one kind for drains, whose elevations are those of the inner bottom, and one for supply pipes, whose
// elevations are those of the centre.
#pragma once

#include "afx.h"
#include "dbmain.h"
#include "siblings/zef_pipewire/PipewirePort.h"

#include <vector>

class TDxfFields;
class TPen;

// What both kinds have.
class ZEF_PIPEWIRE_PORT TDbSectionPrototype : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(TDbSectionPrototype);

    // A place along the way. All in millimetres: the distance from the beginning, the elevations of the
    // ground and of the pipe.
    struct Station {
        double m_distance;
        double m_ground;
        double m_pipe;
    };
    // A pipe that crosses.
    struct Crossing {
        CString m_system;
        double m_distance;
        double m_elevation; // of its centre
        double m_dn;
    };

    // The lower left corner of the section stands for the beginning of the way and the datum.
    void SetPlace(const AcGePoint3d& corner, double datum);
    AcGePoint3d GetCorner() const;
    double GetDatum() const;
    // By what lengths are divided to draw them; elevations the same. Only positive ones are taken.
    void SetScales(double length, double height);

    void AddStation(const Station& station);
    std::vector<Station> GetStations() const;
    void AddCrossing(const Crossing& crossing);
    std::vector<Crossing> GetCrossings() const;

    // Whether crossing pipes of a system are shown, by its name or by its code: true unless it was set. The
    // two are set each by itself; what is drawn goes by the name where it was set, else by the code.
    void SetShowCrossPipe(LPCTSTR systemName, bool show);
    void SetShowCrossPipe(int systemType, bool show);
    bool IsShowCrossPipe(LPCTSTR systemName) const;
    bool IsShowCrossPipe(int systemType) const;
    // Whether the field list has an entry of that name: whether it was set for this system.
    bool HasField(LPCTSTR name) const;

    Acad::ErrorStatus dxfInFields(AcDbDxfFiler* filer) override;
    Acad::ErrorStatus dxfOutFields(AcDbDxfFiler* filer) const override;

protected:
    TDbSectionPrototype() = default;

    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    // Moves; eNotApplicable for everything else, which the scales would have to follow.
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;
    Acad::ErrorStatus subExplode(AcDbVoidPtrArray& parts) const override;

private:
    void Draw(TPen& pen) const;
    TDxfFields Fields();
    AcGePoint3d Place(double distance, double elevation) const;

    AcGePoint3d m_corner;
    double m_datum = 0.0;
    static constexpr double usualLengthScale = 1.0;
    static constexpr double usualHeightScale = 0.1;
    double m_lengthScale = usualLengthScale;
    double m_heightScale = usualHeightScale;
    std::vector<double> m_distances; // of stations, and as many elevations
    std::vector<double> m_grounds;
    std::vector<double> m_pipes;
    std::vector<CString> m_crossSystems; // and as many of what follows
    std::vector<double> m_crossDistances;
    std::vector<double> m_crossElevations;
    std::vector<double> m_crossDns;
    std::vector<CString> m_fieldNames; // and as many flags
    std::vector<int> m_fieldFlags;
    std::vector<int> m_hiddenTypes;
};

// Of drains.
class ZEF_PIPEWIRE_PORT TDbVerticalSection : public TDbSectionPrototype {
public:
    ACRX_DECLARE_MEMBERS(TDbVerticalSection);
};

// Of supply pipes.
class ZEF_PIPEWIRE_PORT TDbVerticalSectionFeed : public TDbSectionPrototype {
public:
    ACRX_DECLARE_MEMBERS(TDbVerticalSectionFeed);
};
