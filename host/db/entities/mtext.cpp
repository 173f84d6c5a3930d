#include "host/db/entities/mtext.h"

#include "acutmem.h"
#include "base/number_text.h"
#include "base/utf.h"
#include "dbents.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/imp_database.h"
#include "host/db/tables/text_styles.h"
#include "host/dxf/record_header.h"

#include <cmath>

ACRX_DXF_DEFINE_MEMBERS(AcDbMText, AcDbEntity, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, MTEXT,
                        "ObjectDBX Classes")

namespace {

constexpr int mtext_order[] = {10,  20, 30, 40, 41, 46, 71, 72, 3,  1,  7,  210, 220,
                               230, 11, 21, 31, 42, 43, 50, 73, 44, 90, 63, 45,  441};
constexpr dxf::group_place mtext_place{"AcDbMText", mtext_order};

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
struct section {
    std::size_t first;
    std::size_t last;
};

section main_section(const dxf::group_list& groups) {
    const auto& all = groups.groups();
    std::size_t last = 0;
    while (last < all.size() && all[last].code < 1000 && all[last].code != embedded_marker)
        ++last;
    return {0, last};
}

// Behind 101: columns of a paragraph text, or the whole paragraph text of an attribute.
section embedded_section(const dxf::group_list& groups) {
    const auto& all = groups.groups();
    section found{main_section(groups).last, all.size()};
    if (found.first == all.size() || all[found.first].code != embedded_marker)
        return {all.size(), all.size()};
    ++found.first;
    found.last = found.first;
    while (found.last < all.size() && all[found.last].code < 1000 && all[found.last].code != embedded_marker)
        ++found.last;
    return found;
}

// Columns stand in an object of their own behind the text's groups.
void read_columns(const dxf::group_list& groups, db::mtext_values& values) {
    const section where = embedded_section(groups);
    std::vector<double> heights;
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

// The new text with every absolute height (\H2.5;) by a factor.
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
    const section where = main_section(groups);
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

// A text that also tells where it stands in the object with its columns: keeps that one true. What it has of
// the old place and direction becomes the new one, and lengths grow.
void follow_in_embedded(AcDbImpObject& object, const db::mtext_values& before, double factor) {
    const section where = embedded_section(object.groups());
    if (where.first == where.last)
        return;
    const db::mtext_values now(object);
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

void write_real(AcDbImpObject& object, int code, double value, double missing) {
    db::write_real(object, mtext_place, code, value, missing);
}

// The direction alone tells how the text is turned: what an angle said goes.
void write_direction(AcDbImpObject& object, const AcGeVector3d& direction) {
    const db::mtext_values now(object);
    if ((now.direction - direction).length() < 1e-14)
        return;
    dxf::group_list& groups = object.edit();
    if (const std::size_t angle = groups.find(mtext_place, 50); angle != dxf::group_list::npos)
        if (const std::size_t columns = groups.find(mtext_place, 75); angle < columns)
            groups.remove(mtext_place, 50);
    for (int axis = 0; axis < 3; ++axis)
        groups.set_real(mtext_place, 11 + axis * 10, direction[static_cast<unsigned>(axis)]);
}

} // namespace

namespace db {

mtext_values::mtext_values(const AcDbImpObject& object, AcDbImpDatabase* styles) {
    const dxf::group_list& groups = object.groups();
    const section where = main_section(groups);
    // Of the two ways to tell how it is turned the last one counts; without any it runs along the x axis.
    AcGeVector3d given_direction = AcGeVector3d::kXAxis;
    double rotation = 0.0;
    bool by_angle = false;
    bool in_columns = false; // whose heights have the code of the angle
    bool in_braces = false;
    double height = 0.0;
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
            if (!in_columns) {
                rotation = radians(finite(group));
                by_angle = true;
            }
            break;
        case 71:
            frame.attachment = whole(group);
            break;
        case 73:
            frame.exact_spacing = whole(group) == AcDb::kExactly;
            break;
        case 75:
            in_columns = true;
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
    read_columns(groups, *this);
}

std::unique_ptr<AcDbMText> embedded_mtext(const AcDbImpObject& object) {
    const section where = embedded_section(object.groups());
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

AcDbMText::AcDbMText() {
    imp().begin_as("0\nMTEXT\n100\nAcDbEntity\n8\n0\n100\nAcDbMText\n10\n0.0\n20\n0.0\n30\n0.0\n"
                   "40\n1.0\n41\n0.0\n71\n1\n72\n1\n1\n\n");
}

AcDbMText::~AcDbMText() = default;

AcGePoint3d AcDbMText::location() const {
    assertReadEnabled();
    return db::mtext_values(imp()).location;
}

Acad::ErrorStatus AcDbMText::setLocation(const AcGePoint3d& location) {
    assertWriteEnabled();
    const db::mtext_values before(imp());
    db::write_point(imp(), mtext_place, 10, location);
    follow_in_embedded(imp(), before, 1.0);
    return Acad::eOk;
}

AcGeVector3d AcDbMText::normal() const {
    assertReadEnabled();
    return db::mtext_values(imp()).normal;
}

Acad::ErrorStatus AcDbMText::setNormal(const AcGeVector3d& normal) {
    assertWriteEnabled();
    if (normal.isZeroLength())
        return Acad::eInvalidInput;
    const db::mtext_values before(imp());
    const double angle = rotation();
    db::write_normal(imp(), mtext_place, normal.normal());
    write_direction(imp(),
                    AcGeMatrix3d::planeToWorld(normal) * AcGeVector3d(std::cos(angle), std::sin(angle), 0.0));
    follow_in_embedded(imp(), before, 1.0);
    return Acad::eOk;
}

AcGeVector3d AcDbMText::direction() const {
    assertReadEnabled();
    return db::mtext_values(imp()).direction;
}

Acad::ErrorStatus AcDbMText::setDirection(const AcGeVector3d& direction) {
    assertWriteEnabled();
    const db::mtext_values before(imp());
    const AcGeVector3d flat = direction - before.normal * direction.dotProduct(before.normal);
    if (flat.isZeroLength())
        return Acad::eInvalidInput;
    write_direction(imp(), flat.normal());
    follow_in_embedded(imp(), before, 1.0);
    return Acad::eOk;
}

double AcDbMText::rotation() const {
    assertReadEnabled();
    const db::mtext_values values(imp());
    const AcGeVector3d flat = AcGeMatrix3d::worldToPlane(values.normal) * values.direction;
    const double angle = std::atan2(flat.y, flat.x);
    return angle < 0.0 ? angle + 2.0 * std::acos(-1.0) : angle;
}

Acad::ErrorStatus AcDbMText::setRotation(double angle) {
    if (!std::isfinite(angle))
        return Acad::eInvalidInput;
    return setDirection(AcGeMatrix3d::planeToWorld(normal()) *
                        AcGeVector3d(std::cos(angle), std::sin(angle), 0.0));
}

double AcDbMText::width() const {
    assertReadEnabled();
    return db::mtext_values(imp()).frame.width;
}

Acad::ErrorStatus AcDbMText::setWidth(double width) {
    assertWriteEnabled();
    if (!(width >= 0.0) || !std::isfinite(width))
        return Acad::eInvalidInput;
    const db::mtext_values before(imp());
    write_real(imp(), 41, width, 0.0);
    follow_in_embedded(imp(), before, 1.0);
    return Acad::eOk;
}

double AcDbMText::textHeight() const {
    assertReadEnabled();
    return db::mtext_values(imp()).frame.height;
}

Acad::ErrorStatus AcDbMText::setTextHeight(double height) {
    assertWriteEnabled();
    if (!(height > 0.0) || !std::isfinite(height))
        return Acad::eInvalidInput;
    write_real(imp(), 40, height, 0.0);
    return Acad::eOk;
}

AcDbMText::AttachmentPoint AcDbMText::attachment() const {
    assertReadEnabled();
    return static_cast<AttachmentPoint>(db::mtext_values(imp()).frame.attachment);
}

Acad::ErrorStatus AcDbMText::setAttachment(AttachmentPoint attachment) {
    assertWriteEnabled();
    if (attachment < kTopLeft || attachment > kBottomRight)
        return Acad::eInvalidInput;
    db::write_integer(imp(), mtext_place, 71, attachment, kTopLeft);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbMText::setAttachmentMovingLocation(AttachmentPoint attachment) {
    assertWriteEnabled();
    if (attachment < kTopLeft || attachment > kBottomRight)
        return Acad::eInvalidInput;
    const db::mtext_values before(imp());
    const double width = before.frame.width > 0.0 ? before.frame.width : actualWidth();
    const int columns = (attachment - 1) % 3 - (before.frame.attachment - 1) % 3;
    const int rows = (attachment - 1) / 3 - (before.frame.attachment - 1) / 3;
    setLocation(before.location + before.direction * (columns * width / 2.0) -
                before.up() * (rows * actualHeight() / 2.0));
    return setAttachment(attachment);
}

AcDbMText::FlowDirection AcDbMText::flowDirection() const {
    assertReadEnabled();
    return static_cast<FlowDirection>(std::clamp(db::read_integer(imp(), mtext_place, 72, kLtoR), 1, 5));
}

Acad::ErrorStatus AcDbMText::setFlowDirection(FlowDirection direction) {
    assertWriteEnabled();
    db::write_integer(imp(), mtext_place, 72, direction, kLtoR);
    return Acad::eOk;
}

AcDb::LineSpacingStyle AcDbMText::lineSpacingStyle() const {
    assertReadEnabled();
    return db::mtext_values(imp()).frame.exact_spacing ? AcDb::kExactly : AcDb::kAtLeast;
}

Acad::ErrorStatus AcDbMText::setLineSpacingStyle(AcDb::LineSpacingStyle style) {
    assertWriteEnabled();
    db::write_integer(imp(), mtext_place, 73, style, AcDb::kAtLeast);
    return Acad::eOk;
}

double AcDbMText::lineSpacingFactor() const {
    assertReadEnabled();
    return db::mtext_values(imp()).frame.spacing;
}

Acad::ErrorStatus AcDbMText::setLineSpacingFactor(double factor) {
    assertWriteEnabled();
    constexpr double least = 0.25;
    constexpr double most = 4.0;
    if (!(factor >= least && factor <= most))
        return Acad::eInvalidInput;
    write_real(imp(), 44, factor, 1.0);
    return Acad::eOk;
}

AcDbObjectId AcDbMText::textStyle() const {
    assertReadEnabled();
    return db::style_of(imp(), mtext_place);
}

Acad::ErrorStatus AcDbMText::setTextStyle(AcDbObjectId style) {
    assertWriteEnabled();
    return db::set_style(imp(), mtext_place, style);
}

Acad::ErrorStatus AcDbMText::contents(AcString& contents) const {
    assertReadEnabled();
    contents = imp().decode(bytes_of_contents(imp().groups())).c_str();
    return Acad::eOk;
}

ACHAR* AcDbMText::contents() const {
    AcString found;
    contents(found);
    ACHAR* copy = nullptr;
    acutNewString(found, copy);
    return copy;
}

int AcDbMText::setContents(const ACHAR* contents) {
    assertWriteEnabled();
    if (contents == nullptr)
        return 0;
    write_contents(imp(), contents);
    return 1;
}

Acad::ErrorStatus AcDbMText::text(AcString& text) const {
    AcString all;
    contents(all);
    text = db::plain_mtext(all.kwszPtr()).c_str();
    return Acad::eOk;
}

ACHAR* AcDbMText::text() const {
    AcString found;
    text(found);
    ACHAR* copy = nullptr;
    acutNewString(found, copy);
    return copy;
}

namespace {

db::mtext_layout layout_of(const AcDbImpObject& object, const db::mtext_values& values) {
    return db::lay_out(db::read_mtext(object.decode(values.contents), values.style), values.frame);
}

} // namespace

double AcDbMText::actualHeight(AcGiWorldDraw* /*context*/) const {
    assertReadEnabled();
    return layout_of(imp(), db::mtext_values(imp())).height;
}

double AcDbMText::actualWidth() const {
    assertReadEnabled();
    return layout_of(imp(), db::mtext_values(imp())).width;
}

Acad::ErrorStatus AcDbMText::getColumnType(ColumnType& type) const {
    assertReadEnabled();
    type = static_cast<ColumnType>(db::mtext_values(imp()).column_type);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbMText::getColumnCount(int& count) const {
    assertReadEnabled();
    count = db::mtext_values(imp()).frame.columns;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbMText::getColumnWidth(double& width) const {
    assertReadEnabled();
    width = db::mtext_values(imp()).frame.column_width;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbMText::getColumnGutterWidth(double& gutter) const {
    assertReadEnabled();
    gutter = db::mtext_values(imp()).frame.gutter;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbMText::getColumnFlowReversed(bool& reversed) const {
    assertReadEnabled();
    reversed = db::mtext_values(imp()).reversed;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbMText::getColumnAutoHeight(bool& automatic) const {
    assertReadEnabled();
    automatic = db::mtext_values(imp()).automatic_height;
    return Acad::eOk;
}

void AcDbMText::getEcs(AcGeMatrix3d& matrix) const {
    matrix.setToPlaneToWorld(normal());
}

namespace {

template<class Color>
Color color_of(Adesk::UInt32 color) {
    Color made;
    if ((color & db::mtext_format::true_color) != 0)
        made.setRGB(static_cast<Adesk::UInt8>(color), static_cast<Adesk::UInt8>(color >> 8),
                    static_cast<Adesk::UInt8>(color >> 16));
    else
        made.setColorIndex(static_cast<Adesk::UInt16>(color));
    return made;
}

} // namespace

void db::draw_mtext(const AcDbImpObject& object, AcDbImpDatabase* styles, AcGiWorldDraw& draw) {
    const mtext_values values(object, styles);
    const AcCmEntityColor own = draw.subEntityTraits().trueColor();
    for (const mtext_piece& piece : layout_of(object, values).pieces) {
        draw.subEntityTraits().setTrueColor(piece.color != 0 ? color_of<AcCmEntityColor>(piece.color) : own);
        draw.geometry().text(values.location + values.direction * piece.start.x + values.up() * piece.start.y,
                             values.normal, values.direction, piece.text.c_str(), -1, true, piece.style);
    }
}

Adesk::Boolean AcDbMText::subWorldDraw(AcGiWorldDraw* draw) {
    db::draw_mtext(imp(), imp().database, *draw);
    return true;
}

Acad::ErrorStatus AcDbMText::subTransformBy(const AcGeMatrix3d& matrix) {
    const db::mtext_values before(imp());
    const AcGeVector3d x = matrix * before.direction;
    const AcGeVector3d y = matrix * before.up();
    const double factor = x.length();
    constexpr double slack = 1e-6; // of the length: what scales that were written with six digits leave
    if (factor == 0.0 || std::fabs(y.length() - factor) > slack * factor ||
        std::fabs(x.dotProduct(y)) > slack * factor * factor)
        return Acad::eCannotScaleNonUniformly;
    const bool same_size = std::fabs(factor - 1.0) <= 1e-12;
    db::write_point(imp(), mtext_place, 10, matrix * before.location);
    db::write_normal(imp(), mtext_place, x.crossProduct(y).normal());
    write_direction(imp(), x / factor);
    if (!same_size) {
        write_real(imp(), 40, before.frame.height * factor, 0.0);
        for (const int code : {41, 42, 43, 46})
            if (imp().groups().find(mtext_place, code) != dxf::group_list::npos)
                imp().edit().set_real(mtext_place, code, db::read_real(imp(), mtext_place, code) * factor);
        write_contents(imp(), with_heights_scaled(imp().decode(before.contents), factor));
    }
    follow_in_embedded(imp(), before, same_size ? 1.0 : factor);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbMText::subExplode(AcDbVoidPtrArray& parts) const {
    assertReadEnabled();
    const db::mtext_values values(imp());
    for (const db::mtext_piece& piece : layout_of(imp(), values).pieces) {
        auto text = std::make_unique<AcDbText>();
        text->setPropertiesFrom(this);
        text->setNormal(values.normal);
        text->setPosition(values.location + values.direction * piece.start.x + values.up() * piece.start.y);
        text->setTextString(piece.text.c_str());
        if (const AcDbObjectId style = textStyle(); !style.isNull())
            text->setTextStyle(style);
        text->setHeight(piece.style.textSize());
        text->setWidthFactor(piece.style.xScale());
        text->setOblique(piece.style.obliquingAngle());
        text->setRotation(rotation());
        if (piece.color != 0)
            text->setColor(color_of<AcCmColor>(piece.color));
        parts.append(text.release()); // the caller's
    }
    return Acad::eOk;
}
