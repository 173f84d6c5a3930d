// Draws what R12 has no entity for with those that it has: lines, polylines, arcs, texts and filled corners.
#pragma once

#include "acgi.h"
#include "host/gi/canvas.h"
#include "host/version/conversion.h"

#include <string>
#include <utility>

namespace version {

class r12_figures final : public gi::canvas {
public:
    // What all figures of an entity begin with (behind their type), as groups of the file; what their texts
    // are written in; how far lines without end are drawn from their point.
    struct manner {
        std::string common;
        std::string layer;     // for vertices
        bool on_paper = false; // they stand on the sheet
        std::string text_style;
        double reach = 1.0;
    };

    r12_figures(conversion& job, manner given) : job_(job), manner_(std::move(given)) {}

    // Colours other than that of the entity are written out.
    void follow(const AcGiSubEntityTraits& traits, const AcCmEntityColor& own) {
        traits_ = &traits;
        own_ = own;
    }
    // The groups of the first figure go behind its type; `text` is written once.
    void begin_first_with(std::string text) { first_ = std::move(text); }

    const std::string& groups() const { return text_; }
    // Filled areas of which only the rim could be written.
    std::size_t unfilled() const { return unfilled_; }

    bool reads_traits() const override { return true; }
    void lines(std::span<const AcGePoint3d> points) override;
    void area(std::span<const AcGePoint3d> points) override;
    void area_of_rims(std::span<const std::vector<AcGePoint3d>> rims) override;
    bool text(const gi::text_line& line) override;
    void curve(const gi::arc& arc) override;
    void unbounded(const AcGePoint3d& from, const AcGeVector3d& direction, bool both) override;

private:
    void begin(std::string_view type);
    void group(int code, std::string_view value) { dxf::append_group(text_, job_.out.style(), code, value); }
    void real(int code, double value);
    void point(int code, const AcGePoint3d& value);
    void normal(const AcGeVector3d& value);
    void path(std::span<const AcGePoint3d> points, bool closed);
    bool corners(std::span<const AcGePoint3d> points);

    conversion& job_;
    manner manner_;
    const AcGiSubEntityTraits* traits_ = nullptr;
    AcCmEntityColor own_;
    std::string first_;
    std::string text_;
    std::size_t unfilled_ = 0;
};

} // namespace version
