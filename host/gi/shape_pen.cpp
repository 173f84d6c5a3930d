#include "host/gi/shape_pen.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace gi {

namespace {

constexpr int most_steps = 20'000; // of a shape with all that it draws
constexpr int deepest = 8;
constexpr std::size_t most_kept = 16;
constexpr double eighth = std::numbers::pi / 4.0;

enum : unsigned {
    pen_down = 1,
    pen_up = 2,
    divide = 3,
    multiply = 4,
    keep_place = 5,
    go_back = 6,
    draw_other = 7,
    one_move = 8,
    many_moves = 9,
    octants = 10,
    part_of_octants = 11,
    one_bulge = 12,
    many_bulges = 13,
    if_vertical = 14,
};

// What a length of 1 goes into each of the sixteen directions.
constexpr double direction_x[] = {1, 1, 1, 0.5, 0, -0.5, -1, -1, -1, -1, -1, -0.5, 0, 0.5, 1, 1};
constexpr double direction_y[] = {0, 0.5, 1, 1, 1, 1, 1, 0.5, 0, -0.5, -1, -1, -1, -1, -1, -0.5};

} // namespace

class shape_pen::reader {
public:
    explicit reader(std::string_view codes) : codes_(codes) {}

    bool ended() const { return at_ >= codes_.size(); }
    unsigned byte() { return ended() ? 0U : static_cast<unsigned char>(codes_[at_++]); }
    int number() {
        const auto value = static_cast<int>(byte());
        return value < 128 ? value : value - 256;
    }

private:
    std::string_view codes_;
    std::size_t at_ = 0;
};

shape shape_pen::draw(std::string_view codes) {
    follow(codes, 0);
    made_.end = now_.at;
    bool first = true;
    for (const auto& stroke : made_.strokes)
        for (const AcGePoint2d& point : stroke) {
            made_.least =
                first ? point
                      : AcGePoint2d(std::min(made_.least.x, point.x), std::min(made_.least.y, point.y));
            made_.most =
                first ? point : AcGePoint2d(std::max(made_.most.x, point.x), std::max(made_.most.y, point.y));
            first = false;
        }
    return std::move(made_);
}

void shape_pen::follow(std::string_view codes, int depth) {
    reader reading(codes);
    bool drawn = true;
    while (!reading.ended()) {
        const unsigned code = reading.byte();
        if (code == if_vertical) { // the next one is for text that runs down; letters are drawn for rows
            drawn = false;
            continue;
        }
        if (!step(code, reading, depth, drawn))
            break;
        drawn = true;
    }
}

AcGePoint2d shape_pen::on_sheet(const state& now, const AcGePoint2d& point) {
    return {now.origin.x + point.x * now.stretch_x, now.origin.y + point.y * now.stretch_y};
}

void shape_pen::go_to(const AcGePoint2d& point) {
    if (now_.down) {
        if (!now_.drawing)
            made_.strokes.push_back({on_sheet(now_, now_.at)});
        made_.strokes.back().push_back(on_sheet(now_, point));
    }
    now_.drawing = now_.down;
    now_.at = point;
}

void shape_pen::move(double x, double y) {
    go_to({now_.at.x + x * now_.scale, now_.at.y + y * now_.scale});
}

// From where the pen is; that is at the angle `start` of the circle.
void shape_pen::arc(double radius, double start, double sweep) {
    const double r = radius * now_.scale;
    const AcGePoint2d middle(now_.at.x - r * std::cos(start), now_.at.y - r * std::sin(start));
    const double parts = std::max(1.0, std::ceil(std::fabs(sweep) / eighth * 6.0));
    for (double i = 1.0; i <= parts; i += 1.0) {
        const double angle = start + sweep * i / parts;
        go_to({middle.x + r * std::cos(angle), middle.y + r * std::sin(angle)});
    }
}

// An arc to a place; the bulge is the tangent of a quarter of its angle, above nought counter-clockwise.
void shape_pen::bulge(double x, double y, double bulge) {
    const double chord = std::hypot(x, y);
    if (bulge == 0.0 || chord == 0.0) {
        move(x, y);
        return;
    }
    const double angle = 4.0 * std::atan(bulge);
    const double radius = chord / 2.0 / std::fabs(std::sin(angle / 2.0));
    const double side = bulge > 0.0 ? -1.0 : 1.0;
    // The start lies a quarter turn, and half of the angle, from the chord's direction.
    const double start = std::atan2(y, x) - angle / 2.0 + side * std::numbers::pi / 2.0;
    const AcGePoint2d end(now_.at.x + x * now_.scale, now_.at.y + y * now_.scale);
    arc(radius, start, angle);
    now_.at = end; // without what rounding left
}

void shape_pen::other_shape(reader& codes, int depth, bool drawn) {
    unsigned number = codes.byte();
    const bool fitted = file_.is_big && number == 0;
    if (file_.wide_numbers || fitted) {
        number = fitted ? codes.byte() : number;
        number = number * 256 + codes.byte();
    }
    double box[4] = {};
    if (fitted) {
        box[0] = codes.number();
        box[1] = codes.number();
        box[2] = codes.byte();
        box[3] = codes.byte();
    }
    if (!drawn || depth >= deepest)
        return;
    if (!fitted) {
        follow(file_.codes(number), depth + 1);
        return;
    }
    // A part of a letter, fitted into a box; the pen is where it was after it.
    const state before = now_;
    const double height = file_.height > 0.0 ? file_.height : 1.0;
    now_ = {};
    now_.origin =
        on_sheet(before, {before.at.x + box[0] * before.scale, before.at.y + box[1] * before.scale});
    now_.stretch_x = before.stretch_x * box[2] * before.scale / height;
    now_.stretch_y = before.stretch_y * box[3] * before.scale / height;
    follow(file_.codes(number), depth + 1);
    now_ = before;
    now_.drawing = false;
}

void shape_pen::moves(reader& codes, bool many, bool drawn) {
    do {
        const int x = codes.number();
        const int y = codes.number();
        if (many && x == 0 && y == 0)
            break;
        if (drawn)
            move(x, y);
    } while (many && !codes.ended() && ++steps_ < most_steps);
}

void shape_pen::bulges(reader& codes, bool many, bool drawn) {
    do {
        const int x = codes.number();
        const int y = codes.number();
        if (many && x == 0 && y == 0)
            break;
        constexpr double half_circle = 127.0;
        const double curved = codes.number() / half_circle;
        if (drawn)
            bulge(x, y, curved);
    } while (many && !codes.ended() && ++steps_ < most_steps);
}

// Eighths of a circle, from one of the eight corners; or a part of the first one and of the last one, in
// 256ths.
void shape_pen::octant_arc(reader& codes, bool in_parts, bool drawn) {
    const double first_part = in_parts ? codes.byte() : 0U;
    const double last_part = in_parts ? codes.byte() : 0U;
    const unsigned high = in_parts ? codes.byte() : 0U;
    const double radius = high * 256 + codes.byte();
    const int which = codes.number();
    const int turn = which < 0 ? -1 : 1;
    const int told = std::abs(which);
    const double first = (told >> 4) & 7;
    const double count = (told & 7) == 0 ? 8.0 : told & 7;
    constexpr double parts = 256.0;
    const double sweep = count - first_part / parts - (last_part > 0.0 ? 1.0 - last_part / parts : 0.0);
    if (drawn)
        arc(radius, (first + turn * first_part / parts) * eighth, turn * sweep * eighth);
}

bool shape_pen::step(unsigned code, reader& codes, int depth, bool drawn) {
    if (++steps_ > most_steps)
        return false;
    constexpr unsigned first_vector = 16;
    if (code >= first_vector) {
        const unsigned times = code / first_vector;
        const double length = times;
        if (drawn)
            move(direction_x[code % first_vector] * length, direction_y[code % first_vector] * length);
        return true;
    }
    switch (code) {
    case 0:
        return false;
    case pen_down:
    case pen_up:
        if (drawn) {
            now_.down = code == pen_down;
            now_.drawing = now_.drawing && now_.down;
        }
        break;
    case divide:
    case multiply: {
        const double factor = codes.byte();
        if (drawn && factor > 0.0)
            now_.scale = std::clamp(code == divide ? now_.scale / factor : now_.scale * factor, 1e-6, 1e6);
        break;
    }
    case keep_place:
        if (drawn && kept_.size() < most_kept)
            kept_.push_back(now_.at);
        break;
    case go_back:
        if (drawn && !kept_.empty()) {
            now_.at = kept_.back();
            kept_.pop_back();
            now_.drawing = false;
        }
        break;
    case draw_other:
        other_shape(codes, depth, drawn);
        break;
    case one_move:
    case many_moves:
        moves(codes, code == many_moves, drawn);
        break;
    case octants:
    case part_of_octants:
        octant_arc(codes, code == part_of_octants, drawn);
        break;
    case one_bulge:
    case many_bulges:
        bulges(codes, code == many_bulges, drawn);
        break;
    default:
        break;
    }
    return true;
}

} // namespace gi
