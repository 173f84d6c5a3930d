#include "host/version/r12_pictures.h"

#include "dbents.h"
#include "host/db/core/format_versions.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/record_text.h"
#include "host/version/dropped_groups.h"
#include "host/version/r12_figures.h"
#include "host/view/tracer.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace version {

namespace {

// Drawn where they stand; the others are many figures as a rule, and keep together in a block.
constexpr std::string_view in_place[] = {"ELLIPSE", "MTEXT", "RAY", "SPLINE", "XLINE"};

bool stands_in_place(std::string_view type) {
    return std::find(std::begin(in_place), std::end(in_place), type) != std::end(in_place);
}

// What users call the figures that stand for a type.
std::wstring_view fate_of(std::string_view type, bool block) {
    if (type == "MTEXT" && !block)
        return L"written as TEXT";
    return block ? L"written as blocks of lines" : L"written as lines";
}

// How far the drawing reaches from its origin: lines without end are drawn as far beyond their point.
double reach_of(const conversion& job) {
    double reach = 1.0;
    if (job.source.parts().header == dxf::no_record)
        return reach;
    dxf::group_reader groups(job.records.text(job.source.parts().header));
    dxf::raw_group group;
    bool extents = false;
    while (groups.next(group)) {
        if (group.code == 9) {
            const std::string_view name = dxf::trimmed(group.value);
            extents = name == "$EXTMIN" || name == "$EXTMAX" || name == "$LIMMAX";
        } else if (const auto number = dxf::leading_real(group.value); extents && number) {
            constexpr double unset = 1e19;
            if (std::fabs(*number) < unset)
                reach = std::max(reach, 2.0 * std::fabs(*number));
        }
    }
    return reach;
}

} // namespace

std::string r12_common(conversion& job, r12_names& names, const record_groups& groups, bool tell) {
    std::string text;
    const auto add = [&](int code, std::string_view value) {
        dxf::append_group(text, job.out.style(), code, value);
    };
    add(8, names.of(db::table_kind::layer, groups.value(8, "0")));
    // Only the groups of the entity itself count: behind its second marker a class has codes of its own.
    std::size_t markers = 0;
    bool index = false;
    bool in_braces = false;
    for (std::size_t i = 1; i < groups.extended_data() && markers < 2; ++i) {
        const dxf::raw_group& group = groups[i];
        const std::string_view value = dxf::trimmed(group.value);
        if (group.code == 102)
            in_braces = value.find('{') != value.npos;
        if (in_braces)
            continue;
        switch (group.code) {
        case 100:
            ++markers;
            break;
        case 6:
            add(6, names.of(db::table_kind::linetype, value));
            break;
        case 62:
        case 60:
            index = index || group.code == 62;
            add(group.code, value);
            break;
        case 420:
            if (!index && !groups.has(62)) {
                AcCmEntityColor color;
                const auto rgb = static_cast<std::uint32_t>(groups.integer(420));
                color.setRGB(static_cast<Adesk::UInt8>(rgb >> 16), static_cast<Adesk::UInt8>(rgb >> 8),
                             static_cast<Adesk::UInt8>(rgb));
                add(62, std::to_string(color.colorIndex()));
            }
            [[fallthrough]];
        case 48:
        case 370:
        case 440:
            if (tell)
                dropped_groups::tell(groups.type(), group.code, value, job.lost);
            break;
        default:
            break;
        }
    }
    return text;
}

r12_pictures::r12_pictures(conversion& job, r12_names& names)
    : job_(job), names_(names), reach_(reach_of(job)) {
    // Names of blocks of figures go on where those of the drawing end.
    for (const dxf::record_id begin : job.source.parts().block_begins) {
        const std::string_view name = dxf::value_of(job.records.text(begin), 2);
        if (name.size() > 2 && (name.starts_with("*X") || name.starts_with("*x")))
            number_ = std::max(number_, static_cast<std::size_t>(
                                            std::max(0.0, dxf::leading_real(name.substr(2)).value_or(0.0))));
    }
}

bool r12_pictures::is_known(std::string_view type) {
    constexpr int r12 = 1009;
    return type == "VIEWPORT" || type == "LWPOLYLINE" || type == "3DLINE" ||
           db::first_version_of(type) <= r12;
}

std::string r12_pictures::next_block() {
    return "*X" + std::to_string(++number_);
}

const r12_pictures::picture* r12_pictures::of(dxf::record_id id) const {
    const auto at = pictures_.find(id);
    return at != pictures_.end() ? &at->second : nullptr;
}

void r12_pictures::draw(dxf::record_id id, bool on_paper) {
    record_groups groups;
    groups.read(job_.records.text(id));
    const std::string_view type = groups.type();
    const std::wstring kind = job_.source.codec().decode(type);
    const bool block = !stands_in_place(type) || groups.extended_data() != groups.size();
    r12_figures::manner manner;
    manner.layer = names_.of(db::table_kind::layer, groups.value(8, "0"));
    manner.reach = reach_;
    manner.on_paper = on_paper && !block;
    const std::string_view style = groups.has(7) && type == "MTEXT" ? groups.value(7) : "STANDARD";
    manner.text_style = names_.of(db::table_kind::text_style, style);
    if (block) {
        // What is by block has the properties of the reference that stands for the entity.
        dxf::append_group(manner.common, job_.out.style(), 8, manner.layer);
        dxf::append_group(manner.common, job_.out.style(), 6, "BYBLOCK");
    } else {
        manner.common = r12_common(job_, names_, groups, true);
    }
    r12_figures figures(job_, manner);
    if (!block)
        figures.begin_first_with([&] {
            std::string text;
            dxf::append_group(text, job_.out.style(), 5, db::handle_text(job_.records.handle(id)));
            return text;
        }());
    gi::tracer tracer(figures, kAcGiSaveWorldDrawForProxy);
    if (const auto object = job_.database.objects().view(id);
        AcDbEntity* const entity = AcDbEntity::cast(object.get())) {
        figures.follow(tracer.subEntityTraits(), entity->color());
        tracer.draw(job_.database, id);
    }
    job_.lost.add(L"filled area", L"written as its rim", figures.unfilled());
    picture& made = pictures_[id];
    if (figures.groups().empty()) {
        job_.lost.add(kind);
        return;
    }
    job_.lost.add(kind, fate_of(type, block));
    if (!block) {
        made.figures = figures.groups();
        return;
    }
    made.block = next_block();
    job_.out.group(0, "BLOCK");
    job_.out.group(8, manner.layer);
    job_.out.group(2, made.block);
    job_.out.group(70, "1");
    for (const int code : {10, 20, 30})
        job_.out.group(code, "0.0");
    job_.out.group(3, made.block);
    job_.out.group(1, "");
    job_.out.raw(figures.groups());
    job_.out.group(0, "ENDBLK");
    job_.out.group(8, manner.layer);
    job_.out.end_record();
}

} // namespace version
