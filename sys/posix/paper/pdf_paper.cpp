#include "sys/posix/paper/pdf_paper.h"

#include "sys/posix/paper/glyph_fonts.h"
#include "sys/posix/paper/pdf_file.h"
#include "sys/posix/paper/pdf_fonts.h"
#include "sys/posix/paper/pdf_images.h"
#include "sys/posix/paper/pdf_shadings.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <set>

namespace sys {

namespace {

constexpr double points_per_mm = 72.0 / 25.4;
constexpr double per_mm = points_per_mm * 400.0; // coordinates are whole numbers of these: about a thousandth
constexpr double hair = 0.05;                    // millimetres: the thinnest line that printers show
constexpr int opaque = 255;

int opacity_number(const ink& color) {
    return static_cast<int>(std::lround(std::clamp(color.opacity, 0.0, 1.0) * opaque));
}

class pdf_paper final : public paper {
public:
    explicit pdf_paper(const paper_setup& setup)
        : background_(setup.background), catalog_(file_.reserve()), pages_(file_.reserve()),
          resources_(file_.reserve()) {
        begin_sheet(setup.width, setup.height);
    }

    void stroke(std::span<const sheet_point> points, const pen& pen) override {
        if (points.empty())
            return;
        if (!(pen == pen_) || !stroking_) {
            flush();
            use(pen.color);
            use_width(std::max(pen.width, hair));
            pen_ = pen;
            stroking_ = true;
        }
        move_to(points.front());
        for (const sheet_point& point : points.subspan(points.size() > 1 ? 1 : 0))
            line_to(point);
        pending_ += points.size();
        // Readers take longer for long paths; what can be seen through shows where it lies on itself.
        constexpr std::size_t most_together = 256;
        if (pending_ > most_together || pen.color.opacity < 1.0)
            paint();
    }
    void fill(std::span<const std::vector<sheet_point>> rims, const ink& color) override {
        flush();
        use(color);
        draw_rims(rims);
        out() += "f*\n";
        settle();
    }
    void fill_shaded(std::span<const std::vector<sheet_point>> rims, const shading& colors) override {
        flush();
        use(colors.stops.front().second); // its opacity
        const int number = shadings_.add(file_, colors, per_mm);
        out() += "q\n";
        draw_rims(rims);
        out() += "W* n/S" + std::to_string(number) + " sh Q\n";
        settle();
    }
    void text(const sheet_text& line, const sheet_font& font) override {
        flush();
        double length = 0.0;
        const std::vector<glyph_run> runs = glyphs_.runs(line.text, font, length);
        const double wide = line.length > 0.0 && length > 0.0 ? line.length / length : 1.0;
        constexpr double smallest_area = 1e-12;
        if (runs.empty() || std::fabs(line.x.x * line.y.y - line.x.y * line.y.x) * wide < smallest_area)
            return;
        use(line.color);
        out() += "BT\n";
        for (const glyph_run& run : runs)
            show(run, line, wide);
        out() += "ET\n";
        settle();
    }
    void image(const std::shared_ptr<const image_dots>& dots, const image_place& place) override {
        flush();
        use({0, 0, 0, 1.0});
        const int number = images_.of(file_, dots);
        out() += "q ";
        // A PDF's image lies in a square of 1, its rows from the top.
        for (const double value : {place.right.x, place.right.y, -place.down.x, -place.down.y,
                                   place.corner.x + place.down.x, place.corner.y + place.down.y}) {
            append_number(out(), value * per_mm);
            out() += ' ';
        }
        out() += "cm/I" + std::to_string(number) + " Do Q\n";
        settle();
    }
    std::wstring stand_in(const sheet_font& font, std::wstring_view wanted) override {
        return glyphs_.stand_in(font, wanted);
    }
    void push_clip(std::span<const sheet_point> rim) override {
        flush();
        end_layer();
        out() += "q\n";
        if (!rim.empty())
            move_to(rim.front());
        for (const sheet_point& point : rim.subspan(rim.empty() ? 0 : 1))
            line_to(point);
        out() += rim.empty() ? "0 0 0 0 re W n\n" : "h W* n\n";
    }
    void pop_clip() override {
        flush();
        end_layer();
        out() += "Q\n";
        forget_state();
    }
    void on_layer(std::wstring_view name) override {
        auto at = layers_.find(name);
        if (at == layers_.end())
            at = layers_.emplace(name, layer{file_.reserve(), static_cast<int>(layers_.size())}).first;
        if (wanted_layer_ == at->second.place)
            return;
        flush();
        wanted_layer_ = at->second.place;
    }
    void next_sheet(double width, double height) override {
        end_sheet();
        begin_sheet(width, height);
    }
    base::result<std::string> finish() override {
        end_sheet();
        std::string kids;
        for (const int sheet : sheets_)
            kids += std::to_string(sheet) + " 0 R ";
        file_.write(pages_,
                    "<</Type/Pages/Kids[" + kids + "]/Count " + std::to_string(sheets_.size()) + ">>");
        std::string used = "<</Font<<" + fonts_.write(file_) + ">>/ExtGState<<";
        for (const int opacity : opacities_) {
            used += "/G" + std::to_string(opacity) + "<</CA ";
            append_number(used, opacity / static_cast<double>(opaque));
            used += "/ca ";
            append_number(used, opacity / static_cast<double>(opaque));
            used += ">>";
        }
        used += ">>/Shading<<" + shadings_.names() + ">>/XObject<<" + images_.names() + ">>/Properties<<";
        std::string all;
        for (const auto& [name, entry] : layers_) {
            const std::string object = std::to_string(entry.number) + " 0 R ";
            file_.write(entry.number, "<</Type/OCG/Name" + pdf_text(name) + ">>");
            used += "/L" + std::to_string(entry.place) + ' ' + object;
            all += object;
        }
        file_.write(resources_, used + ">>>>");
        std::string catalog = "<</Type/Catalog/Pages " + std::to_string(pages_) + " 0 R";
        if (!all.empty())
            catalog += "/OCProperties<</OCGs[" + all + "]/D<</Order[" + all + "]/ON[" + all + "]>>>>";
        file_.write(catalog_, catalog + ">>");
        return file_.finish(catalog_);
    }

private:
    struct layer {
        int number = 0; // of its object
        int place = 0;  // among the layers
    };
    static constexpr int no_layer = -1;

    void draw_rims(std::span<const std::vector<sheet_point>> rims) {
        for (const std::vector<sheet_point>& rim : rims) {
            if (rim.empty())
                continue;
            move_to(rim.front());
            for (const sheet_point& point : std::span(rim).subspan(1))
                line_to(point);
            out() += "h\n";
        }
    }
    std::string& out() {
        begin_layer();
        return content_->buffer();
    }
    void settle() { content_->settle(); }

    void begin_sheet(double width, double height) {
        width_ = width;
        height_ = height;
        content_.emplace();
        forget_state();
        wanted_layer_ = layer_ = no_layer;
        // From our units downwards to points upwards.
        std::string& text = content_->buffer();
        text += "q .0025 0 0 -.0025 0 ";
        append_number(text, height * points_per_mm);
        text += " cm 1 J 1 j\n";
        if (!(background_ == ink{255, 255, 255})) {
            const sheet_point corners[] = {{0.0, 0.0}, {width, 0.0}, {width, height}, {0.0, height}};
            const std::vector<sheet_point> rims[] = {{std::begin(corners), std::end(corners)}};
            fill(rims, background_);
        }
    }
    void end_sheet() {
        flush();
        end_layer();
        content_->buffer() += "Q\n";
        const int stream = file_.reserve();
        file_.write_packed(stream, "", content_->finish());
        content_.reset();
        const int sheet = file_.reserve();
        std::string page = "<</Type/Page/Parent " + std::to_string(pages_) + " 0 R/MediaBox[0 0 ";
        append_number(page, width_ * points_per_mm);
        page += ' ';
        append_number(page, height_ * points_per_mm);
        page += "]/Resources " + std::to_string(resources_) + " 0 R/Contents " + std::to_string(stream) +
                " 0 R>>";
        file_.write(sheet, page);
        sheets_.push_back(sheet);
    }

    // Marks begin and end where something is written, so that layers with nothing on a sheet leave no trace.
    void begin_layer() {
        if (layer_ == wanted_layer_)
            return;
        end_layer();
        content_->buffer() += "/OC/L";
        append_whole(content_->buffer(), wanted_layer_);
        content_->buffer() += " BDC\n";
        layer_ = wanted_layer_;
    }
    void end_layer() {
        if (layer_ != no_layer)
            content_->buffer() += "EMC\n";
        layer_ = no_layer;
    }

    void point(const sheet_point& at) {
        constexpr double most = 2e9; // what readers can count to
        const auto coordinate = [&](double value) {
            append_whole(content_->buffer(), std::llround(std::clamp(value * per_mm, -most, most)));
            content_->buffer() += ' ';
        };
        coordinate(at.x);
        coordinate(at.y);
    }
    void move_to(const sheet_point& at) {
        begin_layer();
        point(at);
        content_->buffer() += "m\n";
    }
    void line_to(const sheet_point& at) {
        point(at);
        content_->buffer() += "l\n";
    }
    void paint() {
        if (pending_ != 0)
            content_->buffer() += "S\n";
        pending_ = 0;
        settle();
    }
    void flush() {
        paint();
        stroking_ = false;
    }
    // What a reader's state holds from here on is not known.
    void forget_state() {
        color_.reset();
        written_width_ = -1.0;
        stroking_ = false;
    }
    void use(const ink& color) {
        if (color_ && *color_ == color)
            return;
        const int opacity = opacity_number(color);
        if (opacity != (color_ ? opacity_number(*color_) : opaque) || !color_) {
            opacities_.insert(opacity);
            out() += "/G" + std::to_string(opacity) + " gs\n";
        }
        color_ = color;
        constexpr double most = 255.0;
        std::string parts;
        for (const unsigned char part : {color.red, color.green, color.blue}) {
            append_number(parts, part / most);
            parts += ' ';
        }
        out() += parts + "RG " + parts + "rg\n";
    }
    void use_width(double width) {
        if (width == written_width_)
            return;
        written_width_ = width;
        append_whole(out(), std::llround(width * per_mm));
        out() += " w\n";
    }

    // Letters of one font after the other; they stand as far apart as their font has them.
    void show(const glyph_run& run, const sheet_text& line, double wide) {
        constexpr std::string_view digits = "0123456789ABCDEF";
        int font = -1;
        std::string hex;
        const auto end = [&] {
            if (!hex.empty())
                out() += '<' + hex + "> Tj\n";
            hex.clear();
        };
        for (std::size_t i = 0; i < run.glyphs.size(); ++i) {
            const cairo_glyph_t& glyph = run.glyphs[i];
            const pdf_fonts::place where = fonts_.of(run.face, glyph.index, run.signs[i]);
            if (where.font != font) {
                end();
                font = where.font;
                out() += "/F" + std::to_string(font) + " 1 Tf\n";
                const double x = line.start.x + line.x.x * glyph.x * wide;
                const double y = line.start.y + line.x.y * glyph.x * wide;
                for (const double value : {line.x.x * wide * run.size, line.x.y * wide * run.size,
                                           line.y.x * run.size, line.y.y * run.size, x, y}) {
                    append_number(out(), value * per_mm);
                    out() += ' ';
                }
                out() += "Tm\n";
            }
            const auto code = static_cast<std::size_t>(where.code);
            hex += digits[code / 16];
            hex += digits[code % 16];
        }
        end();
    }

    ink background_;
    pdf_file file_;
    int catalog_;
    int pages_;
    int resources_;
    std::vector<int> sheets_;
    double width_ = 0.0;
    double height_ = 0.0;
    std::optional<packed_bytes> content_; // of the sheet
    glyph_fonts glyphs_;
    pdf_fonts fonts_;
    pdf_images images_;
    pdf_shadings shadings_;
    std::map<std::wstring, layer, std::less<>> layers_;
    int layer_ = no_layer;        // that is marked
    int wanted_layer_ = no_layer; // of what comes
    std::set<int> opacities_;
    std::optional<ink> color_; // that the reader has
    double written_width_ = -1.0;
    pen pen_;
    bool stroking_ = false;   // with this pen
    std::size_t pending_ = 0; // points of strokes that are not painted
};

} // namespace

std::unique_ptr<paper> make_pdf_paper(const paper_setup& setup) {
    return std::make_unique<pdf_paper>(setup);
}

} // namespace sys
