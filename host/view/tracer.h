// Lets a drawable draw itself, and hands what it draws to a canvas as plain figures in world coordinates.
#pragma once

#include "acgi.h"
#include "host/gi/canvas.h"

#include <vector>

class AcDbEntity;

namespace gi {

class ACGI_PORT tracer final : public AcGiWorldDraw {
public:
    // Draws for `target`, which must outlive the tracer; from the coordinates of the drawable to the world
    // by `to_world`.
    explicit tracer(canvas& target, AcGiRegenType purpose = kAcGiStandardDisplay,
                    const AcGeMatrix3d& to_world = AcGeMatrix3d::kIdentity);
    ~tracer() override;

    // Draws an entity of a database as it stands there closed, whoever has it open.
    void draw(AcDbImpDatabase& database, dxf::record_id entity);
    // Draws a drawable as it is now.
    void draw(const AcGiDrawable& drawable);

    // Whether anything is wanted of what lies within these corners, in the coordinates that hold now.
    bool wants(const AcDbExtents& extents) const;
    // Whether figures that lie so far apart, in these coordinates, are two.
    bool tells_apart(const AcGeVector3d& step) const;

    // Whether anybody will look at these attributes: looking up layers and linetypes costs more than drawing
    // a line.
    static bool reads(const AcGiDrawableTraits* attributes);

    AcGiRegenType regenType() const override { return purpose_; }
    bool regenAbort() const override { return canvas_.is_done(); }
    AcGiSubEntityTraits& subEntityTraits() const override;
    AcGiGeometry* rawGeometry() const override;
    AcGiWorldGeometry& geometry() const override;
    bool isDragging() const override { return false; }
    double deviation(const AcGiDeviationType type, const AcGePoint3d& point) const override;

private:
    class traits;
    class sink;

    canvas& canvas_;
    AcGiRegenType purpose_;
    std::unique_ptr<traits> traits_;
    std::unique_ptr<sink> sink_;
};

} // namespace gi
