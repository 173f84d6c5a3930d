// The pen that follows the codes of a shape.
#pragma once

#include "host/gi/shape_font.h"

#include <functional>

namespace gi {

class shape_pen {
public:
    // What shapes draw other shapes from.
    struct source {
        std::function<std::string_view(unsigned number)> codes; // empty for one that is not there
        bool wide_numbers = false;                              // of two bytes
        bool is_big = false;                                    // whose shapes may be fitted into others
        double height = 0.0;
    };

    explicit shape_pen(const source& shapes) : file_(shapes) {}

    // Draws codes from the origin on, as far as they make sense.
    shape draw(std::string_view codes);

private:
    class reader;

    void follow(std::string_view codes, int depth);
    // One command; false at the end. `drawn` false: it is passed over.
    bool step(unsigned code, reader& codes, int depth, bool drawn);
    void moves(reader& codes, bool many, bool drawn);
    void bulges(reader& codes, bool many, bool drawn);
    void octant_arc(reader& codes, bool in_parts, bool drawn);
    void other_shape(reader& codes, int depth, bool drawn);
    void move(double x, double y);
    void arc(double radius, double start, double sweep);
    void bulge(double x, double y, double bulge);
    void go_to(const AcGePoint2d& point);

    struct state {
        AcGePoint2d at;
        double scale = 1.0;
        AcGePoint2d origin; // of shapes that are fitted into others
        double stretch_x = 1.0;
        double stretch_y = 1.0;
        bool down = true;
        bool drawing = false; // a stroke has begun
    };

    static AcGePoint2d on_sheet(const state& now, const AcGePoint2d& point);

    const source& file_;
    shape made_;
    state now_;
    std::vector<AcGePoint2d> kept_;
    int steps_ = 0;
};

} // namespace gi
