#include "host/db/custom/custom_objects.h"

#include "base/number_text.h"
#include "base/utf.h"
#include "host/db/core/format_versions.h"
#include "host/db/core/host_classes.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/record_text.h"
#include "host/db/core/rules.h"
#include "host/db/custom/group_filers.h"
#include "host/db/custom/memory_filer.h"
#include "host/db/custom/proxy_graphics.h"
#include "host/dxf/record_header.h"
#include "host/rx/runtime.h"

#include <optional>
#include <utility>

namespace db {

namespace {

// Whether a marker begins what an application's class writes. The host's classes, and those of the big
// program that nobody here knows, begin with the four letters; an application's may.
bool is_application_marker(const AcDbImpObject& object, std::string_view marker) {
    if (!marker.starts_with("AcDb"))
        return true;
    if (marker == dxf::common_marker) // the most frequent one need not be looked up
        return false;
    const AcRxClass* const named = rx::runtime::instance().classes.find(object.decode(marker).c_str());
    return named != nullptr && !is_host_class(named);
}

// The groups of the sections of applications' classes: [first, last).
std::pair<std::size_t, std::size_t> own_sections(const AcDbImpObject& object) {
    const auto& groups = object.groups().groups();
    std::size_t last = 0;
    while (last < groups.size() && groups[last].code < 1000)
        ++last;
    std::size_t first = 0;
    while (first < last &&
           (groups[first].code != 100 || !is_application_marker(object, dxf::trimmed(groups[first].value))))
        ++first;
    return {first, last};
}

// Whether a value means what stands there.
bool same_value(const AcDbImpObject& object, const dxf::group& there,
                const dxf::group_list::fresh_group& fresh) {
    if (there.code != fresh.code)
        return false;
    if (there.value == fresh.value)
        return true;
    const std::string_view value = dxf::trimmed(there.value);
    switch (dxf::kind_of_code(there.code)) {
    case dxf::value_kind::text:
        return object.decode(there.value) == object.decode(fresh.value);
    case dxf::value_kind::real:
        return dxf::leading_real(value) == base::parse_real(fresh.value);
    case dxf::value_kind::handle:
        return dxf::parse_handle(value) == dxf::parse_handle(fresh.value);
    case dxf::value_kind::binary:
        return value == fresh.value;
    default:
        return base::parse_integer(value) == base::parse_integer(fresh.value);
    }
}

// Puts groups into the place of others, and leaves those alone that say the same: all of them one by one
// where the codes are the same, else those at both ends.
void put_groups(AcDbImpObject& object, std::size_t first, std::size_t last,
                std::span<dxf::group_list::fresh_group> fresh) {
    const auto& groups = object.groups().groups();
    const auto same = [&](std::size_t there, std::size_t i) {
        return same_value(object, groups[there], fresh[i]);
    };
    bool same_codes = fresh.size() == last - first;
    for (std::size_t i = 0; same_codes && i < fresh.size(); ++i)
        same_codes = groups[first + i].code == fresh[i].code;
    if (same_codes) {
        for (std::size_t i = 0; i < fresh.size(); ++i)
            if (!same(first + i, i))
                object.edit().put_fresh(first + i, std::move(fresh[i].value));
        return;
    }
    while (first < last && !fresh.empty() && same(first, 0)) {
        ++first;
        fresh = fresh.subspan(1);
    }
    while (first < last && !fresh.empty() && same(last - 1, fresh.size() - 1)) {
        --last;
        fresh = fresh.first(fresh.size() - 1);
    }
    object.edit().splice(first, last, fresh);
}

// What an object's class says; nothing when it fails, in whatever way: it is not ours.
std::optional<std::vector<dxf::group_list::fresh_group>> own_groups(const AcDbObject& object,
                                                                    group_output output) {
    try {
        if (object.dxfOutFields(&output) != Acad::eOk)
            return std::nullopt;
    } catch (...) {
        return std::nullopt;
    }
    return std::move(output).groups();
}

// Lets an object read; false when it does not want to.
bool read_from(group_input& input, AcDbObject& object) {
    AcDbImpObject& imp = object.imp();
    const object_life life = imp.life;
    if (!life.is_new())
        imp.life = object_state::written;
    const bool was_told = std::exchange(imp.news.opened_for_modify, true); // what is read is no change
    bool read = false;
    try {
        const Acad::ErrorStatus status = object.dxfInFields(&input);
        read = status == Acad::eOk || status == Acad::eEndOfFile;
    } catch (...) {
        // Whatever it was: there is no object then.
    }
    imp.life = life;
    imp.news.opened_for_modify = was_told;
    imp.touched = false;
    return read;
}

void ensure_class_entry(AcDbImpDatabase& database, const AcRxClass& type) {
    const dxf::record_id section = database.drawing().ensure_section("CLASSES");
    const dxf::record_id last =
        section != dxf::no_record ? database.drawing().last_in(section) : dxf::no_record;
    if (last == dxf::no_record)
        return;
    const dxf::record_table& records = database.records();
    const dxf::text_codec& codec = database.drawing().codec();
    const std::string name = codec.encode(type.dxfName());
    for (dxf::record_id id = records.next(section); records.type(id) == dxf::type_class;
         id = records.next(id))
        if (!records.gone(id) && dxf::value_of(records.text(id), 1) == name)
            return;
    record_text text(database);
    text.add(0, "CLASS");
    text.add(1, name);
    text.add(2, codec.encode(type.name()));
    text.add(3, codec.encode(type.appName() != nullptr ? type.appName() : L""));
    text.add(90, std::to_string(type.proxyFlags()));
    if (database.drawing().version() >= release_2004)
        text.add(91, "0"); // counted when the drawing is saved
    text.add(280, "0");    // no proxy
    text.add(281, type.isDerivedFrom(AcDbEntity::desc()) ? "1" : "0");
    database.records().insert_after(last, text.text(), dxf::record_kind::structure, 0);
}

} // namespace

std::pair<std::size_t, std::size_t> host_sections(const AcDbImpObject& object) {
    const auto& groups = object.groups().groups();
    const std::size_t last = own_sections(object).first;
    std::size_t first = 0;
    while (first < last && groups[first].code != 100)
        ++first;
    return {first, last};
}

bool read_own_sections(AcDbObject& object) {
    const AcDbImpObject& imp = object.imp();
    const auto [first, last] = own_sections(imp);
    group_input input(imp, std::span(imp.groups().groups()).first(last));
    input.go_to(first);
    return read_from(input, object);
}

bool write_own_sections(AcDbObject& object) {
    auto groups = own_groups(object, group_output(object.imp(), own_sections(object.imp()).first));
    if (!groups)
        return false;
    const auto [first, last] = own_sections(object.imp());
    put_groups(object.imp(), first, last, *groups);
    if (object.imp().changed())
        save_graphics(object);
    return true;
}

void save_graphics(AcDbObject& object) {
    const AcDbEntity* const entity = AcDbEntity::cast(&object);
    AcDbImpObject& imp = object.imp();
    if (entity == nullptr || imp.database == nullptr || is_host_class(object.isA()))
        return;
    try {
        if (const std::string drawn = make_proxy_graphics(*entity, imp.database);
            drawn != read_proxy_graphics(imp))
            write_proxy_graphics(imp, drawn);
    } catch (...) {
        // Then there is nothing to be seen of it.
    }
}

Acad::ErrorStatus prepare_new(AcDbImpDatabase& database, AcDbObject& object) {
    const AcRxClass* const type = object.isA();
    if (is_host_class(type)) {
        // Most classes of the host are known by every reader of drawing files; some say that they are not.
        if (type->appName() != nullptr && std::wstring_view(type->appName()) != L"ObjectDBX Classes" &&
            database.drawing().version() >= release_13)
            ensure_class_entry(database, *type);
        return Acad::eOk;
    }
    if (type->dxfName() == nullptr)
        return Acad::eNoClassId;
    if (database.drawing().version() < release_13)
        return Acad::eIllegalEntityType;
    if (!write_own_sections(object))
        return Acad::eFilerError;
    const dxf::group_list::fresh_group name[] = {{0, base::narrow(type->dxfName())}};
    if (object.imp().groups().groups().front().value != name[0].value)
        object.imp().edit().splice(0, 1, name);
    ensure_class_entry(database, *type);
    return Acad::eOk;
}

std::string text_for_copy(const AcDbImpObject& object) {
    const dxf::group_style style{"\n", false, 0, 0};
    std::string text;
    bool in_front = true; // of the first marker, where what belongs to the original alone stands
    bool in_braces = false;
    for (const dxf::group& group : object.groups().groups()) {
        in_front = in_front && group.code != 100 && group.code < 1000;
        if (group.code == 102)
            in_braces = group.value.find('{') != std::string_view::npos;
        if (in_front &&
            (group.code == 5 || group.code == 105 || group.code == 330 || group.code == 102 || in_braces))
            continue;
        const bool words = dxf::kind_of_code(group.code) == dxf::value_kind::text;
        dxf::append_group(text, style, group.code,
                          words ? base::narrow(object.decode(group.value)) : std::string(group.value));
    }
    return text;
}

void copy_own_fields(const AcDbObject& from, AcDbObject& to) {
    if (const auto groups = own_groups(from, group_output(from.imp())); groups && !groups->empty()) {
        // Texts are in the encoding of the original's drawing, and handles name objects there.
        std::vector<dxf::group> filed;
        for (const auto& group : *groups)
            filed.push_back({group.code, group.value, {}});
        group_input input(from.imp(), filed);
        read_from(input, to);
        return;
    }
    memory_filer values;
    try {
        if (from.dwgOutFields(&values) == Acad::eOk && values.seek(0, 0) == Acad::eOk)
            to.dwgInFields(&values);
    } catch (...) {
        // The copy is what its constructor made it.
    }
}

} // namespace db
