#include "acgi.h"
#include "base/byte_order.h"
#include "base/utf.h"
#include "host/db/core/format_versions.h"
#include "host/db/core/imp_database.h"
#include "host/db/custom/proxy_chunk.h"
#include "host/db/custom/proxy_graphics.h"
#include "host/view/tracer.h"

#include <bit>
#include <cmath>

namespace db {

namespace {

constexpr char32_t first_of_pairs = 0x10000; // what takes two units of UTF-16

class writer final : public gi::canvas {
public:
    explicit writer(const AcDbImpDatabase* database) : database_(database) {
        wide_ = database == nullptr || database->drawing().version() >= release_2007;
    }

    // What is drawn from then on has the colour that the traits say; that of the entity needs no saying.
    void follow(const AcGiSubEntityTraits& traits, const AcDbEntity* entity) {
        traits_ = &traits;
        color_ = entity != nullptr ? entity->color() : traits.trueColor();
    }

    // Nothing for what draws nothing.
    std::string data() {
        if (count_ == 0)
            return {};
        std::string data(8, '\0');
        base::put_little_endian(data, 0, 4, static_cast<std::uint32_t>(chunks_.size() + data.size()));
        base::put_little_endian(data, 4, 4, count_);
        return data + chunks_;
    }

    bool reads_traits() const override { return true; }
    void lines(std::span<const AcGePoint3d> points) override {
        begin(proxy_chunk::polyline);
        put_points(points);
        end();
    }
    void area(std::span<const AcGePoint3d> points) override {
        begin(proxy_chunk::polygon);
        put_points(points);
        end();
    }
    // A shell of one face, the other rims its holes.
    void area_of_rims(std::span<const std::vector<AcGePoint3d>> rims) override {
        std::vector<AcGePoint3d> points;
        std::vector<std::uint32_t> faces;
        for (const std::vector<AcGePoint3d>& rim : rims) {
            const auto count = static_cast<std::uint32_t>(rim.size());
            faces.push_back(faces.empty() ? count : 0u - count);
            for (std::uint32_t i = 0; i < count; ++i)
                faces.push_back(static_cast<std::uint32_t>(points.size()) + i);
            points.insert(points.end(), rim.begin(), rim.end());
        }
        begin(proxy_chunk::shell);
        put_points(points);
        put_whole(static_cast<std::uint32_t>(faces.size()));
        for (const std::uint32_t entry : faces)
            put_whole(entry);
        constexpr int property_lists = 3; // of edges, faces and vertices: empty
        for (int i = 0; i < property_lists; ++i)
            put_whole(0);
        end();
    }
    void curve(const gi::arc& arc) override {
        const double radius = arc.u.length();
        constexpr double slack = 1e-9;
        if (std::fabs(arc.v.length() - radius) > slack * radius ||
            std::fabs(arc.u.dotProduct(arc.v)) > slack * radius * radius) {
            constexpr double fine = 1e-3; // of the radius: there are no chunks for ellipses
            lines(gi::flattened(arc, std::max(radius, arc.v.length()) * fine));
            return;
        }
        begin(arc.is_whole() ? proxy_chunk::circle : proxy_chunk::arc);
        put(arc.center);
        put(radius);
        put(arc.u.crossProduct(arc.v).normal());
        if (!arc.is_whole()) {
            put((arc.at(arc.start) - arc.center).normal());
            put(arc.sweep);
            put_whole(static_cast<std::uint32_t>(kAcGiArcSimple));
        }
        end();
    }
    void unbounded(const AcGePoint3d& from, const AcGeVector3d& direction, bool both) override {
        begin(both ? proxy_chunk::xline : proxy_chunk::ray);
        put(from);
        put(from + direction);
        end();
    }
    bool text(const gi::text_line& line) override {
        begin(wide_ ? proxy_chunk::styled_unicode_text : proxy_chunk::styled_text);
        put(line.position);
        put(line.x.crossProduct(line.y).normal());
        put(line.x.normal());
        put_words(line.text);
        put_whole(wide_ ? units_of(line.text) : ~0u); // its length; -1: up to its nought
        put_whole(1);                                 // no codes in it
        const double height = line.y.length();
        put(height);
        put(height > 0.0 ? line.x.length() / height : 1.0);
        put(line.oblique);
        put(1.0);                   // the usual steps between its letters
        constexpr int switches = 5; // backward, upside down, vertical, underlined, overlined
        for (int i = 0; i < switches; ++i)
            put_whole(0);
        if (wide_) {
            constexpr int of_typeface = 4; // bold, italic, signs, pitch and family
            for (int i = 0; i < of_typeface; ++i)
                put_whole(0);
            put_words(L"");
        }
        put_words(L"txt");
        put_words(L"");
        end();
        return true;
    }

private:
    void begin(proxy_chunk type) {
        if (const AcCmEntityColor color = traits_->trueColor(); color != color_) {
            color_ = color;
            put_color();
        }
        begin_chunk(type);
    }
    void put_color() {
        if (color_.isByColor()) {
            begin_chunk(proxy_chunk::true_color);
            put_whole(std::uint32_t{AcCmEntityColor::kByColor} << 24 | std::uint32_t{color_.red()} << 16 |
                      std::uint32_t{color_.green()} << 8 | color_.blue());
        } else {
            begin_chunk(proxy_chunk::color);
            put_whole(color_.colorIndex());
        }
        end();
    }
    void begin_chunk(proxy_chunk type) {
        begin_ = chunks_.size();
        put_whole(0); // its size, when that is known
        put_whole(static_cast<std::uint32_t>(type));
    }
    void end() {
        base::put_little_endian(chunks_, begin_, 4, static_cast<std::uint32_t>(chunks_.size() - begin_));
        ++count_;
    }
    void put_whole(std::uint32_t value) {
        chunks_.append(4, '\0');
        base::put_little_endian(chunks_, chunks_.size() - 4, 4, value);
    }
    void put(double value) {
        const auto bits = std::bit_cast<std::uint64_t>(value);
        put_whole(static_cast<std::uint32_t>(bits));
        put_whole(static_cast<std::uint32_t>(bits >> 32));
    }
    void put(const AcGePoint3d& point) {
        put(point.x);
        put(point.y);
        put(point.z);
    }
    void put(const AcGeVector3d& vector) { put(AcGePoint3d(vector.x, vector.y, vector.z)); }
    void put_points(std::span<const AcGePoint3d> points) {
        put_whole(static_cast<std::uint32_t>(points.size()));
        for (const AcGePoint3d& point : points)
            put(point);
    }
    // How many units of UTF-16 the words take.
    static std::uint32_t units_of(std::wstring_view words) {
        std::uint32_t count = 0;
        for (std::size_t at = 0; at < words.size();)
            count += base::take_code_point(words, at) >= first_of_pairs ? 2 : 1;
        return count;
    }
    // With a nought behind, and filled up.
    void put_words(std::wstring_view words) {
        std::string bytes;
        if (!wide_) {
            bytes = database_->drawing().codec().encode(words) + '\0';
        } else {
            const auto unit = [&](char32_t value) {
                bytes.append(2, '\0');
                base::put_little_endian(bytes, bytes.size() - 2, 2, value);
            };
            for (std::size_t at = 0; at < words.size();) {
                const char32_t c = base::take_code_point(words, at);
                if (c >= first_of_pairs) {
                    unit(0xD800 + ((c - first_of_pairs) >> 10));
                    unit(0xDC00 + ((c - first_of_pairs) & 0x3FF));
                } else {
                    unit(c);
                }
            }
            unit(0);
        }
        bytes.resize((bytes.size() + 3) / 4 * 4);
        chunks_ += bytes;
    }

    const AcDbImpDatabase* database_;
    const AcGiSubEntityTraits* traits_ = nullptr;
    AcCmEntityColor color_; // of what was drawn last
    bool wide_;
    std::string chunks_;
    std::size_t begin_ = 0; // of the chunk that is being written
    std::uint32_t count_ = 0;
};

} // namespace

std::string make_proxy_graphics(const AcGiDrawable& drawable, const AcDbImpDatabase* database) {
    writer target(database);
    gi::tracer tracer(target, kAcGiSaveWorldDrawForProxy);
    target.follow(tracer.subEntityTraits(), AcDbEntity::cast(&drawable));
    tracer.draw(drawable);
    return target.data();
}

} // namespace db
