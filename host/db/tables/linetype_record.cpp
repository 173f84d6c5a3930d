#include "acutmem.h"
#include "base/number_text.h"
#include "dbsymtb.h"
#include "gevec2d.h"
#include "host/db/core/fields.h"
#include "host/db/core/geometry_groups.h"
#include "host/db/core/record_text.h"
#include "host/db/tables/entry_fields.h"
#include "host/db/tables/symbol_entry.h"

#include <algorithm>
#include <cstdint>
#include <limits>

ACRX_CONS_DEFINE_MEMBERS(AcDbLinetypeTableRecord, AcDbSymbolTableRecord, 0)

namespace {

// Bits of a dash's group 74.
constexpr int oriented_bit = 1;
constexpr int text_bit = 2;
constexpr int shape_bit = 4;

// One dash: the groups from a 49 to the next one.
struct dash {
    double length = 0.0;
    int flags = 0;
    int number = 0;
    std::string style = "0"; // a handle
    double scale = 1.0;
    double degrees = 0.0;
    AcGeVector2d offset;
    std::string text; // in the file's encoding
};

struct extent {
    std::size_t first, last;
};

// Where each dash stands.
std::vector<extent> dashes_of(const dxf::group_list& groups) {
    std::vector<extent> dashes;
    const auto [first, last] = groups.extent(db::linetype_place);
    for (std::size_t i = first; i < last; ++i) {
        if (groups.groups()[i].code == 49)
            dashes.push_back({i, i});
        if (!dashes.empty() && groups.groups()[i].code < 1000)
            dashes.back().last = i + 1;
    }
    return dashes;
}

// A file may say anything.
int small_whole(double real) {
    using limits = std::numeric_limits<std::int16_t>;
    return static_cast<int>(std::clamp<double>(real, limits::min(), limits::max()));
}

dash read(const dxf::group_list& groups, extent at) {
    dash read;
    for (std::size_t i = at.first; i < at.last; ++i) {
        const dxf::group& group = groups.groups()[i];
        const double real = dxf::leading_real(group.value).value_or(0.0);
        switch (group.code) {
        case 49:
            read.length = real;
            break;
        case 74:
            read.flags = small_whole(real);
            break;
        case 75:
            read.number = small_whole(real);
            break;
        case 340:
            read.style = dxf::trimmed(group.value);
            break;
        case 46:
            read.scale = real;
            break;
        case 50:
            read.degrees = real;
            break;
        case 44:
            read.offset.x = real;
            break;
        case 45:
            read.offset.y = real;
            break;
        case 9:
            read.text = group.value;
            break;
        default:
            break;
        }
    }
    return read;
}

std::vector<dxf::group_list::fresh_group> groups_of(const dash& dash) {
    std::vector<dxf::group_list::fresh_group> groups = {{49, base::real_text(dash.length)},
                                                        {74, std::to_string(dash.flags)}};
    if ((dash.flags & (text_bit | shape_bit)) == 0)
        return groups;
    groups.push_back({75, std::to_string((dash.flags & text_bit) != 0 ? 0 : dash.number)});
    groups.push_back({340, dash.style});
    groups.push_back({46, base::real_text(dash.scale)});
    groups.push_back({50, base::real_text(dash.degrees)});
    groups.push_back({44, base::real_text(dash.offset.x)});
    groups.push_back({45, base::real_text(dash.offset.y)});
    if ((dash.flags & text_bit) != 0)
        groups.push_back({9, dash.text});
    return groups;
}

bool is_dash(const std::vector<extent>& dashes, int index) {
    return index >= 0 && static_cast<std::size_t>(index) < dashes.size();
}

// The values of a new dash for one that is not there.
dash dash_at(const AcDbLinetypeTableRecord& linetype, int index) {
    linetype.assertReadEnabled();
    const dxf::group_list& groups = linetype.imp().groups();
    const std::vector<extent> dashes = dashes_of(groups);
    return is_dash(dashes, index) ? read(groups, dashes[static_cast<std::size_t>(index)]) : dash();
}

// Changes one dash and leaves the others as they are written.
template<class Change>
Acad::ErrorStatus change_dash(AcDbLinetypeTableRecord& linetype, int index, Change change) {
    if (!linetype.isWriteEnabled())
        return Acad::eNotOpenForWrite;
    linetype.assertWriteEnabled();
    const std::vector<extent> dashes = dashes_of(linetype.imp().groups());
    if (!is_dash(dashes, index))
        return Acad::eInvalidIndex;
    const extent at = dashes[static_cast<std::size_t>(index)];
    dash changed = read(linetype.imp().groups(), at);
    change(changed);
    linetype.imp().edit().splice(at.first, at.last, groups_of(changed));
    return Acad::eOk;
}

} // namespace

AcDbLinetypeTableRecord::AcDbLinetypeTableRecord() {
    imp().begin_new(db::new_entry_text("AcDbLinetypeTableRecord"));
}

FIELD_GETTER(AcDbLinetypeTableRecord, comments, db::linetype_place, 3)

Acad::ErrorStatus AcDbLinetypeTableRecord::setComments(const ACHAR* text) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    assertWriteEnabled();
    imp().edit().set_text(db::linetype_place, 3, imp().encode(text != nullptr ? text : L""));
    return Acad::eOk;
}

FIELD_MEMBERS(AcDbLinetypeTableRecord, patternLength, setPatternLength, db::linetype_place, 40)
FIELD_GETTER(AcDbLinetypeTableRecord, numDashes, db::linetype_place, 73)

void AcDbLinetypeTableRecord::setNumDashes(int count) {
    assertWriteEnabled();
    const std::vector<extent> dashes = dashes_of(imp().groups());
    const std::size_t wanted = static_cast<std::size_t>(std::max(count, 0));
    db::write_integer(imp(), db::linetype_place, 73, static_cast<int>(wanted));
    if (wanted < dashes.size()) {
        imp().edit().splice(dashes[wanted].first, dashes.back().last, {});
    } else if (wanted > dashes.size()) {
        std::vector<dxf::group_list::fresh_group> fresh;
        for (std::size_t i = dashes.size(); i < wanted; ++i)
            for (auto& group : groups_of({}))
                fresh.push_back(std::move(group));
        const std::size_t length = imp().groups().find(db::linetype_place, 40);
        const std::size_t end = dashes.empty() ? (length != dxf::group_list::npos
                                                      ? length + 1
                                                      : imp().groups().extent(db::linetype_place).second)
                                               : dashes.back().last;
        imp().edit().splice(end, end, fresh);
    }
}

double AcDbLinetypeTableRecord::dashLengthAt(int index) const {
    return dash_at(*this, index).length;
}

void AcDbLinetypeTableRecord::setDashLengthAt(int index, double length) {
    change_dash(*this, index, [=](dash& changed) { changed.length = length; });
}

Acad::ErrorStatus AcDbLinetypeTableRecord::textAt(int index, ACHAR*& text) const {
    text = nullptr;
    if (!is_dash(dashes_of(imp().groups()), index))
        return Acad::eInvalidIndex;
    const dash dash = dash_at(*this, index);
    if ((dash.flags & text_bit) == 0)
        return Acad::eKeyNotFound;
    return acutNewString(imp().decode(dash.text).c_str(), text);
}

Acad::ErrorStatus AcDbLinetypeTableRecord::setTextAt(int index, const ACHAR* text) {
    const std::string encoded = imp().encode(text != nullptr ? text : L"");
    return change_dash(*this, index, [&](dash& changed) {
        changed.text = encoded;
        changed.flags = (changed.flags & oriented_bit) | (encoded.empty() ? 0 : text_bit);
    });
}

AcDbObjectId AcDbLinetypeTableRecord::shapeStyleAt(int index) const {
    const std::string style = dash_at(*this, index).style;
    return imp().database == nullptr ? AcDbObjectId::kNull
                                     : imp().database->id(imp().database->records().find(
                                           std::strtoull(style.c_str(), nullptr, 16)));
}

Acad::ErrorStatus AcDbLinetypeTableRecord::setShapeStyleAt(int index, AcDbObjectId style) {
    dxf::record_id record = dxf::no_record;
    const AcDbImpDatabase* const database = AcDbImpDatabase::find(style, record);
    if (database == nullptr || database->records().type(record) != dxf::type_style)
        return Acad::eWrongObjectType;
    if (imp().database != nullptr && imp().database != database)
        return Acad::eWrongDatabase;
    return change_dash(*this, index, [&](dash& changed) {
        changed.style = db::handle_text(database->records().handle(record));
    });
}

int AcDbLinetypeTableRecord::shapeNumberAt(int index) const {
    return dash_at(*this, index).number;
}

Acad::ErrorStatus AcDbLinetypeTableRecord::setShapeNumberAt(int index, int number) {
    return change_dash(*this, index, [=](dash& changed) {
        changed.number = number;
        changed.flags = (changed.flags & oriented_bit) | (number != 0 ? shape_bit : 0);
    });
}

AcGeVector2d AcDbLinetypeTableRecord::shapeOffsetAt(int index) const {
    return dash_at(*this, index).offset;
}

void AcDbLinetypeTableRecord::setShapeOffsetAt(int index, const AcGeVector2d& offset) {
    change_dash(*this, index, [&](dash& changed) { changed.offset = offset; });
}

double AcDbLinetypeTableRecord::shapeScaleAt(int index) const {
    return dash_at(*this, index).scale;
}

Acad::ErrorStatus AcDbLinetypeTableRecord::setShapeScaleAt(int index, double scale) {
    return change_dash(*this, index, [=](dash& changed) { changed.scale = scale; });
}

double AcDbLinetypeTableRecord::shapeRotationAt(int index) const {
    return db::radians(dash_at(*this, index).degrees);
}

void AcDbLinetypeTableRecord::setShapeRotationAt(int index, double radians) {
    change_dash(*this, index, [=](dash& changed) { changed.degrees = db::degrees(radians); });
}

Adesk::Boolean AcDbLinetypeTableRecord::shapeIsUcsOrientedAt(int index) const {
    return (dash_at(*this, index).flags & oriented_bit) != 0;
}

void AcDbLinetypeTableRecord::setShapeIsUcsOrientedAt(int index, bool oriented) {
    change_dash(*this, index, [=](dash& changed) {
        changed.flags = oriented ? changed.flags | oriented_bit : changed.flags & ~oriented_bit;
    });
}
