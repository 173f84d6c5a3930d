// What the entities of this folder draw with. One pen draws for the host; another one gathers plain entities,
// so that an entity comes apart into exactly what it looks like.
#pragma once

#include "acgi.h"
#include "afx.h"
#include "dbptrar.h"

#include <vector>

class AcDbEntity;

class TPen {
public:
    TPen() = default;
    TPen(const TPen&) = delete;
    TPen& operator=(const TPen&) = delete;
    virtual ~TPen() = default;

    // The layer of what follows; null: that of the entity.
    virtual void SetLayer(AcDbObjectId layer) = 0;
    virtual void Line(const std::vector<AcGePoint3d>& points) = 0;
    // Filled.
    virtual void Area(const std::vector<AcGePoint3d>& rim) = 0;
    // In a level plane, angles in radians from the x axis.
    virtual void Circle(const AcGePoint3d& center, double radius) = 0;
    virtual void Arc(const AcGePoint3d& center, double radius, double startAngle, double endAngle) = 0;
    // From its start on its base line, with the looks of `style`, which the drawing has as `styleId`.
    virtual void Text(const AcGePoint3d& start, double angle, LPCTSTR text, const AcGiTextStyle& style,
                      AcDbObjectId styleId) = 0;
};

class TDrawingPen : public TPen {
public:
    explicit TDrawingPen(AcGiWorldDraw& draw);

    void SetLayer(AcDbObjectId layer) override;
    void Line(const std::vector<AcGePoint3d>& points) override;
    void Area(const std::vector<AcGePoint3d>& rim) override;
    void Circle(const AcGePoint3d& center, double radius) override;
    void Arc(const AcGePoint3d& center, double radius, double startAngle, double endAngle) override;
    void Text(const AcGePoint3d& start, double angle, LPCTSTR text, const AcGiTextStyle& style,
              AcDbObjectId styleId) override;

private:
    AcGiWorldDraw& m_draw;
    AcDbObjectId m_ownLayer;
};

// The pieces have the entity's properties. They are the caller's.
class TGatheringPen : public TPen {
public:
    TGatheringPen(const AcDbEntity& entity, AcDbVoidPtrArray& pieces) : m_entity(entity), m_pieces(pieces) {}

    void SetLayer(AcDbObjectId layer) override { m_layer = layer; }
    void Line(const std::vector<AcGePoint3d>& points) override;
    void Area(const std::vector<AcGePoint3d>& rim) override;
    void Circle(const AcGePoint3d& center, double radius) override;
    void Arc(const AcGePoint3d& center, double radius, double startAngle, double endAngle) override;
    void Text(const AcGePoint3d& start, double angle, LPCTSTR text, const AcGiTextStyle& style,
              AcDbObjectId styleId) override;

private:
    void Add(AcDbEntity* piece);

    const AcDbEntity& m_entity;
    AcDbVoidPtrArray& m_pieces;
    AcDbObjectId m_layer;
};
