// Brings the linetypes of the current drawing in order.
#pragma once

#include "afx.h"
#include "dbid.h"
#include "module/layertools/StayedEntities.h"

#include <cstddef>
#include <map>
#include <set>
#include <vector>

class AcDbEntity;
class AcDbLinetypeTableRecord;

class CLinetypeOrder {
public:
    // What can be done.
    enum Job {
        Unite,    // of linetypes that look the same one stays: the module's own, else the first
        Rescale,  // the drawing's scale of linetypes, and of entities in model space those that do not fit it
        Continue, // patterns run through the vertices of polylines
        Purge,    // linetypes that nothing names go
    };
    static constexpr int jobCount = 4;

    // Looks through the drawing, with model millimetres for one on paper. False from IsWhole when the user
    // stopped it.
    explicit CLinetypeOrder(double plotScale);
    bool IsWhole() const { return m_isWhole; }

    // How much there is to do.
    std::size_t Count(Job job) const;
    // The drawing's scale, and what it becomes.
    double GetScale() const { return m_scale; }
    double GetNewScale() const { return m_newScale; }

    // Does some of the jobs; the drawing is locked for writing. Gives how much was done of each.
    std::map<Job, std::size_t> Run(const std::set<Job>& jobs);
    const CStayedEntities& GetStayed() const { return m_stayed; }

private:
    struct Pattern {
        CString m_name;
        double m_length = 0.0;
        AcDbObjectId m_sameAs; // the one that stays; null for one that stays itself
    };
    struct Scaled {
        AcDbObjectId m_entity;
        double m_length; // of its pattern, before any scale
        double m_scale;
    };

    void ReadPatterns();
    void Walk();
    void LookAt(const AcDbEntity& entity, bool isInModel);
    void ChooseScale(double plotScale);
    bool IsReadable(double length, double plotScale) const;
    std::size_t UniteAll();
    std::size_t RescaleAll();
    std::size_t ContinueAll();
    static std::size_t EraseUnused(const std::vector<AcDbObjectId>& linetypes);

    std::map<AcDbObjectId, Pattern> m_patterns;
    std::map<AcDbObjectId, AcDbObjectId> m_ofLayers;
    std::vector<std::pair<AcDbObjectId, AcDbObjectId>> m_replaced; // entities and layers, and their linetype
    std::vector<Scaled> m_scaled;                                  // in model space
    std::vector<std::pair<AcDbObjectId, double>> m_rescaled;
    std::vector<AcDbObjectId> m_polylines;
    AcDbObjectId m_byLayer;
    AcDbObjectId m_continuous;
    double m_scale = 1.0;
    double m_newScale = 1.0;
    std::size_t m_united = 0;
    std::size_t m_unused = 0;
    bool m_isWhole = true;
    CStayedEntities m_stayed;
};
