#include "host/db/custom/proxy_graphics.h"
#include "host/db/core/format_versions.h"

#include "acgi.h"
#include "base/byte_order.h"
#include "base/utf.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/custom/hex_bytes.h"
#include "host/db/custom/proxy_chunk.h"
#include "host/db/tables/properties.h"
#include "host/dxf/record_header.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <optional>

namespace db {

namespace {

// Takes values out of a chunk; what is not there, or no number, makes it bad.
class chunk_reader {
public:
    explicit chunk_reader(std::string_view bytes) : bytes_(bytes) {}

    bool good() const { return good_; }
    std::size_t left() const { return bytes_.size() - at_; }

    std::uint32_t whole() {
        if (!has(4))
            return 0;
        at_ += 4;
        return base::little_endian(bytes_, at_ - 4, 4);
    }
    double real() {
        const std::uint64_t low = whole();
        const double value = std::bit_cast<double>(std::uint64_t{whole()} << 32 | low);
        good_ = good_ && std::isfinite(value);
        return value;
    }
    AcGePoint3d point() {
        const double x = real();
        const double y = real();
        return {x, y, real()};
    }
    AcGeVector3d vector() { return point().asVector(); }
    std::vector<AcGePoint3d> points(std::size_t count) {
        std::vector<AcGePoint3d> read;
        if (!has(count, 24))
            return read;
        read.reserve(count);
        for (std::size_t i = 0; i < count; ++i)
            read.push_back(point());
        return read;
    }
    bool has(std::size_t count, std::size_t size = 1) {
        good_ = good_ && count <= left() / size;
        return good_;
    }
    // Up to its nought, and what fills it up.
    std::string_view bytes() {
        const std::size_t end = std::min(bytes_.find('\0', at_), bytes_.size());
        const std::string_view text = bytes_.substr(at_, end - at_);
        skip_filled(text.size() + 1);
        return text;
    }
    std::wstring units() {
        std::wstring halves; // units of UTF-16
        for (std::size_t at = at_; at + 1 < bytes_.size(); at += 2) {
            const auto unit = static_cast<wchar_t>(base::little_endian(bytes_, at, 2));
            if (unit == 0)
                break;
            halves += unit;
        }
        skip_filled(halves.size() * 2 + 2);
        std::wstring text;
        for (std::size_t at = 0; at < halves.size();)
            base::append_wide(text, base::take_code_point(halves, at));
        return text;
    }

private:
    void skip_filled(std::size_t count) { at_ = std::min(bytes_.size(), at_ + (count + 3) / 4 * 4); }

    std::string_view bytes_;
    std::size_t at_ = 0;
    bool good_ = true;
};

// Calls `take(type, reader)` for each chunk, until it answers false or the data end.
template<class Take>
void for_chunks(std::string_view data, Take take) {
    constexpr std::size_t head = 8;
    for (std::size_t at = head; at <= data.size() && data.size() - at >= head;) {
        const std::size_t size = base::little_endian(data, at, 4);
        const std::uint32_t type = base::little_endian(data, at + 4, 4);
        if (size < head || size > data.size() - at)
            return;
        if (!take(static_cast<proxy_chunk>(type), chunk_reader(data.substr(at + head, size - head))))
            return;
        at += size;
    }
}

bool is_geometry(proxy_chunk type) {
    const auto number = static_cast<std::uint32_t>(type);
    return (number >= 2 && number <= 13) || type == proxy_chunk::polyline_with_normal ||
           type == proxy_chunk::unicode_text || type == proxy_chunk::styled_unicode_text;
}

class player {
public:
    player(const AcDbImpObject& entity, AcGiWorldDraw& draw)
        : entity_(entity), draw_(draw), geometry_(draw.geometry()) {}
    ~player() {
        for (; pushed_ > 0; --pushed_)
            geometry_.popModelTransform();
    }
    player(const player&) = delete;
    player& operator=(const player&) = delete;

    void play(proxy_chunk type, chunk_reader chunk) {
        switch (type) {
        case proxy_chunk::circle:
        case proxy_chunk::circle_of_points:
        case proxy_chunk::arc:
        case proxy_chunk::arc_of_points:
            round(type, chunk);
            break;
        case proxy_chunk::polyline:
        case proxy_chunk::polyline_with_normal:
        case proxy_chunk::polygon:
            path(type, chunk);
            break;
        case proxy_chunk::mesh:
            mesh(chunk);
            break;
        case proxy_chunk::shell:
            shell(chunk);
            break;
        case proxy_chunk::text:
        case proxy_chunk::unicode_text:
            text(type, chunk);
            break;
        case proxy_chunk::styled_text:
        case proxy_chunk::styled_unicode_text:
            styled_text(type, chunk);
            break;
        case proxy_chunk::xline:
        case proxy_chunk::ray:
            endless(type, chunk);
            break;
        case proxy_chunk::push_matrix:
        case proxy_chunk::push_other_matrix:
            push(chunk);
            break;
        case proxy_chunk::pop_matrix:
            if (pushed_ > 0) {
                geometry_.popModelTransform();
                --pushed_;
            }
            break;
        default:
            trait(type, chunk);
            break;
        }
    }

    // A box that stands for everything.
    void box(chunk_reader chunk) {
        const AcGePoint3d a = chunk.point();
        const AcGePoint3d b = chunk.point();
        if (!chunk.good())
            return;
        for (const double z : {a.z, b.z}) {
            const AcGePoint3d rim[] = {
                {a.x, a.y, z}, {b.x, a.y, z}, {b.x, b.y, z}, {a.x, b.y, z}, {a.x, a.y, z}};
            geometry_.polyline(5, rim);
            if (a.z == b.z)
                break;
        }
    }

private:
    void round(proxy_chunk type, chunk_reader& chunk) {
        const AcGePoint3d center = chunk.point();
        if (type == proxy_chunk::circle_of_points || type == proxy_chunk::arc_of_points) {
            const AcGePoint3d second = chunk.point();
            const AcGePoint3d third = chunk.point();
            if (!chunk.good())
                return;
            if (type == proxy_chunk::circle_of_points)
                geometry_.circle(center, second, third);
            else
                geometry_.circularArc(center, second, third, arc_type(chunk));
            return;
        }
        const double radius = chunk.real();
        const AcGeVector3d normal = chunk.vector();
        if (type == proxy_chunk::circle) {
            if (chunk.good())
                geometry_.circle(center, radius, normal);
            return;
        }
        const AcGeVector3d start = chunk.vector();
        const double sweep = chunk.real();
        if (chunk.good())
            geometry_.circularArc(center, radius, normal, start, sweep, arc_type(chunk));
    }

    static AcGiArcType arc_type(chunk_reader& chunk) {
        const std::uint32_t type = chunk.whole();
        return chunk.good() && type <= kAcGiArcChord ? static_cast<AcGiArcType>(type) : kAcGiArcSimple;
    }

    void path(proxy_chunk type, chunk_reader& chunk) {
        const std::vector<AcGePoint3d> points = chunk.points(chunk.whole());
        const AcGeVector3d normal =
            type == proxy_chunk::polyline_with_normal ? chunk.vector() : AcGeVector3d::kZAxis;
        if (!chunk.good() || points.empty())
            return;
        const auto count = static_cast<Adesk::UInt32>(points.size());
        if (type == proxy_chunk::polygon)
            geometry_.polygon(count, points.data());
        else
            geometry_.polyline(count, points.data(), &normal);
    }

    void mesh(chunk_reader& chunk) {
        const std::size_t rows = chunk.whole();
        const std::size_t columns = chunk.whole();
        const std::vector<AcGePoint3d> points = chunk.points(rows * columns);
        if (chunk.good() && !points.empty())
            geometry_.mesh(static_cast<Adesk::UInt32>(rows), static_cast<Adesk::UInt32>(columns),
                           points.data());
    }

    void shell(chunk_reader& chunk) {
        const std::vector<AcGePoint3d> points = chunk.points(chunk.whole());
        const std::size_t count = chunk.whole();
        if (!chunk.has(count, 4) || points.empty())
            return;
        std::vector<Adesk::Int32> faces;
        for (std::size_t i = 0; i < count; ++i)
            faces.push_back(static_cast<Adesk::Int32>(chunk.whole()));
        geometry_.shell(static_cast<Adesk::UInt32>(points.size()), points.data(),
                        static_cast<Adesk::UInt32>(count), faces.data());
    }

    void text(proxy_chunk type, chunk_reader& chunk) {
        const AcGePoint3d position = chunk.point();
        const AcGeVector3d normal = chunk.vector();
        const AcGeVector3d direction = chunk.vector();
        const double height = chunk.real();
        const double width = chunk.real();
        const double slant = chunk.real();
        const std::wstring words = words_of(chunk, type == proxy_chunk::unicode_text);
        if (chunk.good())
            geometry_.text(position, normal, direction, height, width, slant, words.c_str());
    }

    void styled_text(proxy_chunk type, chunk_reader& chunk) {
        const bool wide = type == proxy_chunk::styled_unicode_text;
        const AcGePoint3d position = chunk.point();
        const AcGeVector3d normal = chunk.vector();
        const AcGeVector3d direction = chunk.vector();
        const std::wstring words = words_of(chunk, wide);
        const auto length = static_cast<Adesk::Int32>(chunk.whole());
        const bool raw = chunk.whole() != 0;
        AcGiTextStyle style;
        style.setTextSize(chunk.real());
        style.setXScale(chunk.real());
        style.setObliquingAngle(chunk.real());
        style.setTrackingPercent(chunk.real());
        style.setBackward(chunk.whole() != 0);
        style.setUpsideDown(chunk.whole() != 0);
        style.setVertical(chunk.whole() != 0);
        style.setUnderlined(chunk.whole() != 0);
        style.setOverlined(chunk.whole() != 0);
        if (!chunk.good())
            return;
        read_font(chunk, wide, style);
        geometry_.text(position, normal, direction, words.c_str(), wide ? length : -1, raw, style);
    }

    // The font's file, and of those of the system the typeface.
    void read_font(chunk_reader& chunk, bool wide, AcGiTextStyle& style) {
        std::wstring typeface;
        bool bold = false;
        bool italic = false;
        if (wide) {
            bold = chunk.whole() != 0;
            italic = chunk.whole() != 0;
            chunk.whole(); // signs
            chunk.whole(); // pitch and family
            typeface = words_of(chunk, true);
        }
        style.setFileName(words_of(chunk, wide).c_str());
        style.setBigFontFileName(words_of(chunk, wide).c_str());
        if (!typeface.empty())
            style.setFont(typeface.c_str(), bold, italic, kAnsiCharset,
                          Autodesk::AutoCAD::PAL::FontUtils::FontPitch::kDefault,
                          Autodesk::AutoCAD::PAL::FontUtils::FontFamily::kDoNotCare);
    }

    std::wstring words_of(chunk_reader& chunk, bool wide) {
        return wide ? chunk.units() : entity_.decode(chunk.bytes());
    }

    void endless(proxy_chunk type, chunk_reader& chunk) {
        const AcGePoint3d first = chunk.point();
        const AcGePoint3d second = chunk.point();
        if (!chunk.good())
            return;
        if (type == proxy_chunk::ray)
            geometry_.ray(first, second);
        else
            geometry_.xline(first, second);
    }

    void push(chunk_reader& chunk) {
        AcGeMatrix3d matrix; // row by row
        for (auto& row : matrix.entry)
            for (double& value : row)
                value = chunk.real();
        constexpr int deepest = 64;
        if (!chunk.good() || pushed_ >= deepest)
            return;
        geometry_.pushModelTransform(matrix);
        ++pushed_;
    }

    void trait(proxy_chunk type, chunk_reader& chunk) {
        AcGiSubEntityTraits& traits = draw_.subEntityTraits();
        const bool is_real = type == proxy_chunk::linetype_scale || type == proxy_chunk::thickness;
        const double real = is_real ? chunk.real() : 0.0;
        const std::uint32_t whole = is_real ? 0 : chunk.whole();
        if (!chunk.good())
            return;
        switch (type) {
        case proxy_chunk::color:
            traits.setColor(static_cast<Adesk::UInt16>(std::min(whole, 256u)));
            break;
        case proxy_chunk::true_color:
            traits.setTrueColor(color_of(whole));
            break;
        case proxy_chunk::fill:
            traits.setFillType(whole == kAcGiFillNever ? kAcGiFillNever : kAcGiFillAlways);
            break;
        case proxy_chunk::line_weight:
            if (is_line_weight(static_cast<std::int32_t>(whole)))
                traits.setLineWeight(static_cast<AcDb::LineWeight>(static_cast<std::int32_t>(whole)));
            break;
        case proxy_chunk::linetype_scale:
            traits.setLineTypeScale(real);
            break;
        case proxy_chunk::thickness:
            traits.setThickness(real);
            break;
        default: // markers, and layers and linetypes, whose numbers are those of the program that saved them
            break;
        }
    }

    // The method in the highest byte, then red, green, blue, or an index in the lowest.
    static AcCmEntityColor color_of(std::uint32_t value) {
        AcCmEntityColor color;
        switch (value >> 24) {
        case AcCmEntityColor::kByColor:
            color.setRGB(static_cast<Adesk::UInt8>(value >> 16), static_cast<Adesk::UInt8>(value >> 8),
                         static_cast<Adesk::UInt8>(value));
            break;
        case AcCmEntityColor::kByACI:
            color.setColorIndex(static_cast<Adesk::UInt16>(value & 0xFF));
            break;
        case AcCmEntityColor::kByBlock:
            color.setColorIndex(AcCmEntityColor::kACIbyBlock);
            break;
        default:
            color.setColorIndex(AcCmEntityColor::kACIbyLayer);
            break;
        }
        return color;
    }

    const AcDbImpObject& entity_;
    AcGiWorldDraw& draw_;
    AcGiWorldGeometry& geometry_;
    int pushed_ = 0;
};

// The groups of the data: the size and behind it the bytes, [first, last).
std::pair<std::size_t, std::size_t> range_of_graphics(const dxf::group_list& groups) {
    const auto& all = groups.groups();
    // An entity's own stand with what all entities have; a proxy's may stand with what is the proxy's.
    for (const dxf::group_place& place :
         {dxf::group_place{"AcDbEntity"}, dxf::group_place{"AcDbProxyEntity"}})
        for (const int code : {160, 92}) {
            const std::size_t first = groups.find(place, code);
            if (first == dxf::group_list::npos)
                continue;
            std::size_t last = first + 1;
            while (last < all.size() && all[last].code == 310)
                ++last;
            if (last > first + 1)
                return {first, last};
        }
    return {all.size(), all.size()};
}

} // namespace

std::string read_proxy_graphics(const AcDbImpObject& entity) {
    const auto& all = entity.groups().groups();
    const auto [first, last] = range_of_graphics(entity.groups());
    std::string data;
    for (std::size_t i = first + 1; i < last; ++i)
        append_bytes(data, dxf::trimmed(all[i].value));
    return data;
}

void write_proxy_graphics(AcDbImpObject& entity, std::string_view data) {
    dxf::group_list& groups = entity.edit();
    if (const auto [first, last] = range_of_graphics(groups); first < last)
        groups.splice(first, last, {});
    if (data.empty())
        return;
    const bool recent = entity.database == nullptr || entity.database->drawing().version() >= release_2010;
    const int size_code = recent ? 160 : 92;
    groups.set_integer(entity_place, size_code, static_cast<std::int64_t>(data.size()));
    std::vector<dxf::group_list::fresh_group> lines;
    constexpr std::size_t line = 127; // bytes, as the editor writes them
    for (std::size_t at = 0; at < data.size(); at += line)
        lines.push_back({310, digits_of(data.substr(at, line))});
    const std::size_t behind = groups.find(entity_place, size_code) + 1;
    groups.splice(behind, behind, lines);
}

void draw_proxy_graphics(std::string_view data, const AcDbImpObject& entity, AcGiWorldDraw& draw) {
    player plays(entity, draw);
    std::optional<chunk_reader> box;
    bool drawn = false;
    for_chunks(data, [&](proxy_chunk type, chunk_reader chunk) {
        if (type == proxy_chunk::extents)
            box = chunk;
        else
            plays.play(type, chunk);
        drawn = drawn || is_geometry(type);
        return true;
    });
    if (!drawn && box)
        plays.box(*box);
}

metafile kind_of_proxy_graphics(std::string_view data) {
    metafile kind = metafile::none;
    for_chunks(data, [&](proxy_chunk type, const chunk_reader&) {
        if (is_geometry(type))
            kind = metafile::graphics;
        else if (type == proxy_chunk::extents)
            kind = metafile::bounding_box;
        return kind != metafile::graphics;
    });
    return kind;
}

} // namespace db
