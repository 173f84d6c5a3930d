// Draws PNG and SVG by cairo; glyphs come from the fonts that fontconfig finds.
#include "sys/image_file.h"
#include "sys/paper.h"
#include "sys/posix/paper/glyph_fonts.h"
#include "sys/posix/paper/line_raster.h"
#include "sys/posix/paper/pdf_paper.h"
#include "sys/posix/paper/png_file.h"

#include <algorithm>
#include <cairo-svg.h>
#include <cairo.h>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <fontconfig/fontconfig.h>
#include <map>

namespace sys {

namespace {

constexpr double points_per_mm = 72.0 / 25.4; // what SVG counts in

cairo_status_t append_bytes(void* closure, const unsigned char* data, unsigned int length) {
    static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

class cairo_paper final : public paper {
public:
    explicit cairo_paper(const paper_setup& setup)
        : setup_(setup), scale_(setup.format == paper_format::png ? setup.dots_per_mm : points_per_mm),
          thinnest_(setup.format == paper_format::png ? 1.0 / setup.dots_per_mm : hair) {
        const double width = setup.width * scale_;
        const double height = setup.height * scale_;
        if (setup.format == paper_format::png)
            surface_ = cairo_image_surface_create(CAIRO_FORMAT_RGB24,
                                                  std::max(1, static_cast<int>(std::lround(width))),
                                                  std::max(1, static_cast<int>(std::lround(height))));
        else
            surface_ = cairo_svg_surface_create_for_stream(append_bytes, &bytes_, width, height);
        context_ = cairo_create(surface_);
        begin_sheet();
    }
    ~cairo_paper() override {
        for (const auto& [dots, kept] : images_)
            cairo_surface_destroy(kept);
        cairo_destroy(context_);
        cairo_surface_destroy(surface_);
    }
    cairo_paper(const cairo_paper&) = delete;
    cairo_paper& operator=(const cairo_paper&) = delete;

    bool is_good() const { return cairo_status(context_) == CAIRO_STATUS_SUCCESS; }

    // Figures of one pen are stroked together, as long as they lie on each other without a trace.
    void stroke(std::span<const sheet_point> points, const pen& pen) override {
        if (points.empty() || is_drawn_by_dots(points, pen))
            return;
        if (pending_ == 0 || !(pen == pen_))
            flush();
        pen_ = pen;
        cairo_move_to(context_, points.front().x, points.front().y);
        for (const sheet_point& point : points.subspan(points.size() > 1 ? 1 : 0))
            cairo_line_to(context_, point.x, point.y);
        pending_ += points.size();
        // The time for a path grows faster than its length; what can be seen through shows where it lies on
        // itself.
        constexpr std::size_t most_together = 64;
        if (pending_ > most_together || pen.color.opacity < 1.0)
            flush();
    }
    void fill(std::span<const std::vector<sheet_point>> rims, const ink& color) override {
        flush();
        draw_rims(rims);
        use(color);
        cairo_fill(context_);
    }
    void fill_shaded(std::span<const std::vector<sheet_point>> rims, const shading& colors) override {
        flush();
        draw_rims(rims);
        const sheet_point& a = colors.from;
        const sheet_point& b = colors.to;
        cairo_pattern_t* const pattern =
            colors.round
                ? cairo_pattern_create_radial(a.x, a.y, 0.0, a.x, a.y, std::hypot(b.x - a.x, b.y - a.y))
                : cairo_pattern_create_linear(a.x, a.y, b.x, b.y);
        constexpr double most = 255.0;
        for (const auto& [at, color] : colors.stops)
            cairo_pattern_add_color_stop_rgba(pattern, at, color.red / most, color.green / most,
                                              color.blue / most, color.opacity);
        cairo_set_source(context_, pattern);
        cairo_pattern_destroy(pattern);
        cairo_fill(context_);
    }
    void text(const sheet_text& line, const sheet_font& font) override {
        flush();
        // A turn that flattens the letters has no way back from the sheet, and nothing to show.
        if (std::fabs(line.x.x * line.y.y - line.x.y * line.y.x) < smallest_area)
            return;
        double length = 0.0;
        const std::vector<glyph_run> runs = fonts_.runs(line.text, font, length);
        const double wide = line.length > 0.0 && length > 0.0 ? line.length / length : 1.0;
        cairo_save(context_);
        const cairo_matrix_t place = {line.x.x * wide, line.x.y * wide, -line.y.x,
                                      -line.y.y,       line.start.x,    line.start.y};
        cairo_transform(context_, &place);
        use(line.color);
        for (const glyph_run& run : runs) {
            cairo_set_font_face(context_, run.face);
            cairo_set_font_size(context_, run.size);
            cairo_show_text_glyphs(context_, run.utf8.data(), static_cast<int>(run.utf8.size()),
                                   run.glyphs.data(), static_cast<int>(run.glyphs.size()),
                                   run.clusters.data(), static_cast<int>(run.clusters.size()), {});
        }
        cairo_restore(context_);
    }
    void image(const std::shared_ptr<const image_dots>& dots, const image_place& place) override {
        flush();
        const cairo_matrix_t to_sheet = {place.right.x / dots->width,
                                         place.right.y / dots->width,
                                         place.down.x / dots->height,
                                         place.down.y / dots->height,
                                         place.corner.x,
                                         place.corner.y};
        if (std::fabs(place.right.x * place.down.y - place.right.y * place.down.x) < smallest_area)
            return;
        cairo_surface_t*& kept = images_[dots];
        if (kept == nullptr)
            kept = surface_of(*dots);
        cairo_save(context_);
        cairo_transform(context_, &to_sheet);
        cairo_set_source_surface(context_, kept, 0.0, 0.0);
        cairo_pattern_set_extend(cairo_get_source(context_), CAIRO_EXTEND_PAD);
        cairo_rectangle(context_, 0.0, 0.0, dots->width, dots->height);
        cairo_fill(context_);
        cairo_restore(context_);
    }
    std::wstring stand_in(const sheet_font& font, std::wstring_view wanted) override {
        return fonts_.stand_in(font, wanted);
    }
    void push_clip(std::span<const sheet_point> rim) override {
        flush();
        cairo_save(context_);
        for (const sheet_point& point : rim)
            cairo_line_to(context_, point.x, point.y);
        cairo_close_path(context_);
        cairo_clip(context_);
        find_field();
    }
    void pop_clip() override {
        flush();
        cairo_restore(context_);
        find_field();
    }
    void next_sheet(double /*width*/, double /*height*/) override {}
    base::result<std::string> finish() override {
        flush();
        cairo_status_t status = cairo_status(context_);
        if (setup_.format == paper_format::png && status == CAIRO_STATUS_SUCCESS) {
            cairo_surface_flush(surface_);
            bytes_ =
                png_file(cairo_image_surface_get_data(surface_), cairo_image_surface_get_width(surface_),
                         cairo_image_surface_get_height(surface_), cairo_image_surface_get_stride(surface_));
        }
        cairo_surface_finish(surface_);
        if (status == CAIRO_STATUS_SUCCESS)
            status = cairo_surface_status(surface_);
        if (status != CAIRO_STATUS_SUCCESS && status != CAIRO_STATUS_SURFACE_FINISHED) {
            const std::string_view why = cairo_status_to_string(status);
            return base::failure{L"the picture could not be drawn: " + std::wstring(why.begin(), why.end())};
        }
        return std::move(bytes_);
    }

private:
    static constexpr double hair = 0.05; // millimetres: the thinnest line that printers show
    static constexpr double smallest_area = 1e-12;

    void draw_rims(std::span<const std::vector<sheet_point>> rims) {
        for (const std::vector<sheet_point>& rim : rims) {
            if (rim.empty())
                continue;
            cairo_move_to(context_, rim.front().x, rim.front().y);
            for (const sheet_point& point : std::span(rim).subspan(1))
                cairo_line_to(context_, point.x, point.y);
            cairo_close_path(context_);
        }
    }
    // cairo multiplies colours by their opacity, and keeps them as numbers.
    static cairo_surface_t* surface_of(const image_dots& dots) {
        cairo_surface_t* const made =
            cairo_image_surface_create(CAIRO_FORMAT_ARGB32, dots.width, dots.height);
        std::uint8_t* const rows = cairo_image_surface_get_data(made);
        const int row_bytes = cairo_image_surface_get_stride(made);
        const std::uint8_t* from = dots.bytes.data();
        constexpr unsigned most = 255;
        for (int y = 0; y < dots.height && rows != nullptr; ++y)
            for (int x = 0; x < dots.width; ++x, from += 4) {
                const unsigned opacity = from[3];
                const std::uint32_t dot = opacity << 24 | from[0] * opacity / most << 16 |
                                          from[1] * opacity / most << 8 | from[2] * opacity / most;
                std::memcpy(rows + std::ptrdiff_t{y} * row_bytes + std::ptrdiff_t{x} * 4, &dot, sizeof dot);
            }
        cairo_surface_mark_dirty(made);
        return made;
    }
    void begin_sheet() {
        cairo_scale(context_, scale_, scale_);
        cairo_set_line_cap(context_, CAIRO_LINE_CAP_ROUND);
        cairo_set_line_join(context_, CAIRO_LINE_JOIN_ROUND);
        cairo_set_fill_rule(context_, CAIRO_FILL_RULE_EVEN_ODD);
        constexpr double tolerance = 0.1; // of a dot
        cairo_set_tolerance(context_, tolerance);
        use(setup_.background);
        cairo_paint(context_);
        find_field();
    }
    // The dots that may be drawn on; none where the clip is no rectangle of whole dots, nor in other formats.
    void find_field() {
        field_ = {};
        if (setup_.format != paper_format::png || !is_good())
            return;
        cairo_surface_flush(surface_);
        field_.dots = cairo_image_surface_get_data(surface_);
        field_.row_bytes = cairo_image_surface_get_stride(surface_);
        field_.right = cairo_image_surface_get_width(surface_);
        field_.bottom = cairo_image_surface_get_height(surface_);
        cairo_rectangle_list_t* const parts = cairo_copy_clip_rectangle_list(context_);
        const bool one = parts->status == CAIRO_STATUS_SUCCESS && parts->num_rectangles == 1;
        if (one) {
            const cairo_rectangle_t& part = parts->rectangles[0]; // in millimetres
            const auto edge = [this](double at, int least, int most) {
                return std::clamp(static_cast<int>(std::lround(at * scale_)), least, most);
            };
            field_.left = edge(part.x, 0, field_.right);
            field_.top = edge(part.y, 0, field_.bottom);
            field_.right = edge(part.x + part.width, field_.left, field_.right);
            field_.bottom = edge(part.y + part.height, field_.top, field_.bottom);
        } else {
            field_.dots = nullptr;
        }
        cairo_rectangle_list_destroy(parts);
    }
    bool is_drawn_by_dots(std::span<const sheet_point> points, const pen& pen) {
        if (field_.dots == nullptr || pen.color.opacity < 1.0)
            return false;
        flush_strokes();
        cairo_surface_flush(surface_);
        placed_.clear();
        for (const sheet_point& point : points)
            placed_.push_back({point.x * scale_, point.y * scale_});
        if (!waiting_.add(field_, placed_, pen.width * scale_, pen.color))
            draw_line(field_, placed_, pen.width * scale_, pen.color);
        cairo_surface_mark_dirty(surface_);
        return true;
    }
    void use(const ink& color) {
        constexpr double most = 255.0;
        cairo_set_source_rgba(context_, color.red / most, color.green / most, color.blue / most,
                              color.opacity);
    }
    void flush() {
        waiting_.draw(field_);
        cairo_surface_mark_dirty(surface_);
        flush_strokes();
    }
    void flush_strokes() {
        if (pending_ == 0)
            return;
        use(pen_.color);
        cairo_set_line_width(context_, std::max(pen_.width, thinnest_));
        cairo_stroke(context_);
        pending_ = 0;
    }

    paper_setup setup_;
    double scale_;
    double thinnest_;
    cairo_surface_t* surface_ = nullptr;
    cairo_t* context_ = nullptr;
    std::string bytes_;
    pen pen_;
    std::size_t pending_ = 0; // points of strokes that wait
    dot_field field_;
    waiting_lines waiting_;
    std::vector<sheet_point> placed_; // in dots
    glyph_fonts fonts_;
    std::map<std::shared_ptr<const image_dots>, cairo_surface_t*> images_;
};

} // namespace

} // namespace sys

namespace {

// What the libraries keep of fonts until the program ends: fontconfig finds it by distances, which looks like
// memory that was lost.
struct font_keeper {
    font_keeper() = default;
    font_keeper(const font_keeper&) = delete;
    font_keeper& operator=(const font_keeper&) = delete;
    ~font_keeper() {
        cairo_debug_reset_static_data();
        FcFini();
    }
};

} // namespace

extern "C" __attribute__((visibility("default"))) void
zef_make_paper(const sys::paper_setup& setup, base::result<std::unique_ptr<sys::paper>>& made) {
    static const font_keeper keeper;
    // cairo's images have at most so many dots a side.
    constexpr double most_dots = 32767.0;
    const double side = std::max(setup.width, setup.height) * setup.dots_per_mm;
    if (setup.format == sys::paper_format::png && !(side <= most_dots)) {
        made =
            base::failure{L"a picture of " + std::to_wstring(static_cast<long long>(std::min(side, 1e15))) +
                          L" dots a side is too large; 32767 is the most"};
        return;
    }
    if (setup.format == sys::paper_format::pdf) {
        made = sys::make_pdf_paper(setup);
        return;
    }
    auto paper = std::make_unique<sys::cairo_paper>(setup);
    if (paper->is_good())
        made = std::unique_ptr<sys::paper>(std::move(paper));
    else
        made = base::failure{L"there is no memory for a picture of this size"};
}
