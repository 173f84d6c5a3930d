#include "host/db/entities/mtext_groups.h"

#include "base/number_text.h"
#include "base/utf.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/imp_database.h"
#include "host/db/tables/text_styles.h"
#include "host/gi/set_text.h"

#include <algorithm>
#include <cmath>

namespace db {

namespace {

constexpr int embedded_marker = 101;

double finite(const dxf::group& group) {
    return dxf::leading_real(group.value).value_or(0.0);
}

int whole(const dxf::group& group) {
    constexpr double most = 1e6;
    return static_cast<int>(std::clamp(finite(group), -most, most));
}

// Three groups of a point: which of them this is; -1 when it is none of them.
int axis_of(int code, int first) {
    return code == first ? 0 : code == first + 10 ? 1 : code == first + 20 ? 2 : -1;
}

// The groups of one text from here on, up to extended data or the next object in the record.
struct group_range {
    std::size_t first;
    std::size_t last;
};

group_range main_section(const dxf::group_list& groups) {
    const auto& all = groups.groups();
    std::size_t last = 0;
    while (last < all.size() && all[last].code < 1000 && all[last].code != embedded_marker)
        ++last;
    return {0, last};
}

// Behind 101: columns of a paragraph text, or the whole paragraph text of an attribute.
group_range embedded_section(const dxf::group_list& groups) {
    const auto& all = groups.groups();
    group_range found{main_section(groups).last, all.size()};
    if (found.first == all.size() || all[found.first].code != embedded_marker)
        return {all.size(), all.size()};
    ++found.first;
    found.last = found.first;
    while (found.last < all.size() && all[found.last].code < 1000 && all[found.last].code != embedded_marker)
        ++found.last;
    return found;
}

// Columns stand among the text's groups (with these heights), or in an object of their own behind the text's
// groups.
void read_columns(const dxf::group_list& groups, std::vector<double> heights, mtext_values& values) {
    const group_range where = embedded_section(groups);
    if (where.first != where.last)
        heights.clear();
    double defined_height = 0.0;
    for (std::size_t i = where.first; i < where.last; ++i) {
        const dxf::group& group = groups.groups()[i];
        switch (group.code) {
        case 41:
            defined_height = finite(group);
            break;
        case 71:
            values.column_type = std::clamp(whole(group), 0, 2);
            break;
        case 72:
            values.frame.columns = std::clamp(whole(group), 0, 1000);
            break;
        case 44:
            values.frame.column_width = finite(group);
            break;
        case 45:
            values.frame.gutter = finite(group);
            break;
        case 73:
            values.automatic_height = whole(group) != 0;
            break;
        case 74:
            values.reversed = whole(group) != 0;
            break;
        case 46:
            heights.push_back(finite(group));
            break;
        default:
            break;
        }
    }
    if (values.column_type == AcDbMText::kNoColumns) {
        values.frame.columns = 0;
        return;
    }
    values.frame.from_right = values.reversed;
    const bool manual = values.column_type == AcDbMText::kDynamicColumns && !values.automatic_height;
    if (manual && !heights.empty())
        values.frame.column_heights = std::move(heights);
    else
        values.frame.column_heights = {defined_height};
}

} // namespace

std::wstring with_heights_scaled(std::wstring_view contents, double factor) {
    std::wstring scaled;
    for (std::size_t i = 0; i < contents.size(); ++i) {
        scaled += contents[i];
        if (contents[i] != L'\\' || i + 1 == contents.size())
            continue;
        scaled += contents[++i];
        const std::size_t end = contents.find(L';', i);
        if (contents[i] != L'H' || end == contents.npos)
            continue;
        const std::wstring_view value = contents.substr(i + 1, end - i - 1);
        const auto number = dxf::leading_real(base::narrow(value));
        if (!number || value.empty() || value.back() == L'x' || value.back() == L'X')
            continue;
        scaled += base::widen(base::real_text(*number * factor));
        i = end - 1;
    }
    return scaled;
}

std::string bytes_of_contents(const dxf::group_list& groups) {
    std::string contents;
    const group_range where = main_section(groups);
    for (std::size_t i = where.first; i < where.last; ++i)
        if (const dxf::group& group = groups.groups()[i]; group.code == 1 || group.code == 3)
            contents += group.value;
    return contents;
}

void write_contents(AcDbImpObject& object, std::wstring_view contents) {
    dxf::group_list& groups = object.edit();
    if (object.decode(bytes_of_contents(groups)) == contents)
        return;
    // Pieces of 250 signs in groups 3, the last one in group 1. Source: the DXF reference.
    constexpr std::size_t longest = 250;
    std::vector<dxf::group_list::fresh_group> fresh;
    while (contents.size() > longest) {
        std::size_t length = longest;
        if constexpr (sizeof(wchar_t) == 2)
            if ((contents[length - 1] & 0xFC00) == 0xD800) // half a sign
                --length;
        fresh.push_back({3, object.encode(contents.substr(0, length))});
        contents.remove_prefix(length);
    }
    groups.set_text(mtext_place, 1, object.encode(contents));
    std::size_t at = dxf::group_list::npos;
    for (std::size_t i = main_section(groups).last; i-- > 0;) {
        if (groups.groups()[i].code == 1)
            at = i;
        if (groups.groups()[i].code == 3) {
            groups.splice(i, i + 1, {});
            at = i;
        }
    }
    groups.splice(at, at, fresh);
}

void follow_in_embedded(AcDbImpObject& object, const mtext_values& before, double factor) {
    const group_range where = embedded_section(object.groups());
    if (where.first == where.last)
        return;
    const mtext_values now(object);
    const auto put = [&](std::size_t at, double value) {
        if (finite(object.groups().groups()[at]) == value)
            return;
        const dxf::group_list::fresh_group fresh[] = {
            {object.groups().groups()[at].code, base::real_text(value)}};
        object.edit().splice(at, at + 1, fresh);
    };
    for (const int first : {10, 11}) {
        std::size_t at[3] = {};
        AcGePoint3d point;
        int found = 0;
        for (std::size_t i = where.first; i < where.last; ++i)
            if (const int axis = axis_of(object.groups().groups()[i].code, first); axis >= 0) {
                at[axis] = i;
                point[static_cast<unsigned>(axis)] = finite(object.groups().groups()[i]);
                ++found;
            }
        if (found != 3)
            continue;
        const bool is_location = point.isEqualTo(before.location);
        if (!is_location && !point.asVector().isEqualTo(before.direction))
            continue;
        const AcGePoint3d fresh = is_location ? now.location : AcGePoint3d::kOrigin + now.direction;
        for (unsigned axis = 0; axis < 3; ++axis)
            put(at[axis], fresh[axis]);
    }
    for (std::size_t i = where.first; i < where.last; ++i) {
        const dxf::group& group = object.groups().groups()[i];
        if (factor != 1.0 && group.code >= 40 && group.code <= 46)
            put(i, finite(group) * factor);
        else if (group.code == 40 && finite(group) == before.frame.width)
            put(i, now.frame.width);
    }
}

void write_direction(AcDbImpObject& object, const AcGeVector3d& direction) {
    const mtext_values now(object);
    if ((now.direction - direction).length() < 1e-14)
        return;
    dxf::group_list& groups = object.edit();
    if (const std::size_t angle = groups.find(mtext_place, 50); angle != dxf::group_list::npos)
        if (const std::size_t columns = groups.find(mtext_place, 75); angle < columns)
            groups.remove(mtext_place, 50);
    for (int axis = 0; axis < 3; ++axis)
        groups.set_real(mtext_place, 11 + axis * 10, direction[static_cast<unsigned>(axis)]);
}

mtext_values::mtext_values(const AcDbImpObject& object, AcDbImpDatabase* styles) {
    const dxf::group_list& groups = object.groups();
    const group_range where = main_section(groups);
    // Of the two ways to tell how it is turned the last one counts; without any it runs along the x axis.
    AcGeVector3d given_direction = AcGeVector3d::kXAxis;
    double rotation = 0.0;
    bool by_angle = false;
    bool in_columns = false; // whose heights have the code of the angle
    bool in_braces = false;
    double height = 0.0;
    int flow = AcDbMText::kLtoR;
    std::vector<double> heights; // of columns
    std::string_view style_name;
    AcGeVector3d given_normal;
    for (std::size_t i = where.first; i < where.last; ++i) {
        const dxf::group& group = groups.groups()[i];
        if (group.code == 102)
            in_braces = group.value.find('{') != std::string_view::npos;
        if (in_braces)
            continue;
        if (const int axis = axis_of(group.code, 10); axis >= 0)
            location[static_cast<unsigned>(axis)] = finite(group);
        if (const int axis = axis_of(group.code, 11); axis >= 0) {
            given_direction[static_cast<unsigned>(axis)] = finite(group);
            by_angle = false;
        }
        if (group.code >= 210 && group.code <= 230 && group.code % 10 == 0)
            given_normal[static_cast<unsigned>(group.code - 210) / 10] = finite(group);
        switch (group.code) {
        case 1:
        case 3:
            contents += group.value;
            break;
        case 7:
            style_name = group.value;
            break;
        case 40:
            height = finite(group);
            break;
        case 41:
            frame.width = std::max(finite(group), 0.0);
            break;
        case 44:
            if (finite(group) > 0.0)
                frame.spacing = finite(group);
            break;
        case 50:
            if (in_columns) {
                heights.push_back(finite(group));
            } else {
                rotation = radians(finite(group));
                by_angle = true;
            }
            break;
        case 71:
            frame.attachment = whole(group);
            break;
        case 72:
            flow = whole(group);
            break;
        case 73:
            frame.exact_spacing = whole(group) == AcDb::kExactly;
            break;
        case 75:
            in_columns = true;
            column_type = std::clamp(whole(group), 0, 2);
            break;
        case 76:
            frame.columns = std::clamp(whole(group), 0, 1000);
            break;
        case 78:
            reversed = whole(group) != 0;
            break;
        case 79:
            automatic_height = whole(group) != 0;
            break;
        case 48:
            frame.column_width = finite(group);
            break;
        case 49:
            frame.gutter = finite(group);
            break;
        default:
            break;
        }
    }
    if (frame.attachment < AcDbMText::kTopLeft || frame.attachment > AcDbMText::kBottomRight)
        frame.attachment = AcDbMText::kTopLeft;
    if (!given_normal.isZeroLength())
        normal = given_normal.normal();
    const AcGeMatrix3d plane = AcGeMatrix3d::planeToWorld(normal);
    direction = given_direction - normal * given_direction.dotProduct(normal);
    if (by_angle || direction.isZeroLength())
        direction = plane * AcGeVector3d(std::cos(rotation), std::sin(rotation), 0.0);
    direction.normalize();
    style = styles == object.database || styles == nullptr
                ? text_style(styles, style_name)
                : text_style(styles, styles->drawing().codec().encode(object.decode(style_name)));
    if (!(height > 0.0))
        height = style.textSize() > 0.0 ? style.textSize() : 1.0;
    frame.height = height;
    style.setTextSize(height);
    if (flow != AcDbMText::kByStyle)
        style.setVertical(flow == AcDbMText::kTtoB);
    frame.downwards = gi::runs_down(style);
    read_columns(groups, std::move(heights), *this);
}

std::unique_ptr<AcDbMText> embedded_mtext(const AcDbImpObject& object) {
    const group_range where = embedded_section(object.groups());
    if (where.first == where.last)
        return nullptr;
    const dxf::group_style style{"\n", false, 0, 0};
    std::string text = "0\nMTEXT\n100\nAcDbEntity\n8\n0\n100\nAcDbMText\n";
    bool has_contents = false;
    for (std::size_t i = where.first; i < where.last; ++i) {
        const dxf::group& group = object.groups().groups()[i];
        has_contents = has_contents || group.code == 1 || group.code == 3;
        const bool words = dxf::kind_of_code(group.code) == dxf::value_kind::text;
        dxf::append_group(text, style, group.code,
                          words ? base::narrow(object.decode(group.value)) : std::string(group.value));
    }
    if (!has_contents)
        return nullptr;
    auto mtext = std::make_unique<AcDbMText>();
    mtext->imp().begin_new(std::move(text));
    return mtext;
}

} // namespace db
