#include "host/dwg/assembly.h"

#include "base/utf.h"

#include <algorithm>

namespace dwg {

namespace {

constexpr int type_block = 4;
constexpr int type_endblk = 5;
constexpr int type_seqend = 6;
constexpr int type_vertex_2d = 10;
constexpr int type_polyline_2d = 15;

std::wstring hexadecimal(std::uint64_t handle) {
    std::wstring out;
    do
        out.insert(out.begin(), L"0123456789ABCDEF"[handle & 15]);
    while ((handle >>= 4) != 0);
    return out;
}

// What types are called that have neither row nor class.
struct fixed_name {
    int number;
    std::string_view dxf, cpp;
};
constexpr fixed_name fixed_names[] = {{37, "REGION", "AcDbRegion"},
                                      {38, "3DSOLID", "AcDb3dSolid"},
                                      {39, "BODY", "AcDbBody"},
                                      {43, "OLEFRAME", "AcDbOleFrame"},
                                      {74, "OLE2FRAME", "AcDbOle2Frame"},
                                      {76, "LONG_TRANSACTION", "AcDbLongTransaction"},
                                      {81, "VBA_PROJECT", "AcDbVbaProject"}};

} // namespace

assembly::assembly(const container& file, drawing_text& out)
    : file_(file), out_(out), write_(out.dxf, source_), object_(source_) {
    source_.objects = file.objects;
    source_.version = file.version;
    source_.maintenance = file.maintenance;
    const std::string_view page = code_page_name(file.code_page);
    source_.two_byte_text = file.version < r2007 && (page.ends_with("932") || page.ends_with("936") ||
                                                     page.ends_with("949") || page.ends_with("950") ||
                                                     page == "GB2312" || page == "BIG5" || page == "KSC5601");
}

void assembly::run() {
    read_classes();
    header_.read(file_, source_, out_.damage);
    read_map();
    out_.objects = entries_.size();
    out_.version = file_.version;
    out_.dxf.reserve(file_.objects.size() * 5 + 100000);
    look_at_all();
    find_linetypes();
    name_blocks();
    header_.write(write_, file_, source_, "");
    const std::size_t classes_at = out_.dxf.size();
    write_tables();
    write_blocks();
    write_objects();
    write_.text(0, "EOF");
    // Only now it is known which classes there must be.
    std::string whole = std::move(out_.dxf);
    out_.dxf.clear();
    write_classes();
    whole.insert(classes_at, out_.dxf);
    out_.dxf = std::move(whole);
}

void assembly::left_out(const entry& of, const std::wstring& why) {
    out_.damage.push_back(L"object " + hexadecimal(of.handle) + L": " + why + L"; it is left out");
}

assembly::entry* assembly::find(std::uint64_t handle) {
    const auto at =
        std::lower_bound(entries_.begin(), entries_.end(), handle,
                         [](const entry& one, std::uint64_t wanted) { return one.handle < wanted; });
    return at != entries_.end() && at->handle == handle ? &*at : nullptr;
}

assembly::entry* assembly::control(int number) {
    const auto at = std::find_if(entries_.begin(), entries_.end(),
                                 [&](const entry& one) { return one.number == number && !one.is_damaged; });
    return at != entries_.end() ? &*at : nullptr;
}

bool assembly::reopen(const entry& of, bool& known) {
    known = false;
    if (!object_.open(of.address, of.handle, false))
        return false;
    known = object_.read_fields();
    if (!known)
        object_.open(of.address, of.handle, false);
    return true;
}

std::vector<assembly::entry*> assembly::members(std::uint64_t owner,
                                                const std::vector<std::uint64_t>& listed) {
    std::vector<entry*> found;
    const auto place = [&](std::uint64_t handle) -> entry* {
        entry* const of = find(handle);
        if (of == nullptr || of->is_damaged || of->is_placed || !of->is_entity || of->number == type_block ||
            of->number == type_endblk || owner_of(*of) != owner)
            return nullptr;
        of->is_placed = true;
        if (of->number != type_seqend)
            found.push_back(of);
        return of;
    };
    if (source_.version >= r2004) {
        for (const std::uint64_t handle : listed)
            place(handle);
    } else if (!listed.empty()) {
        for (const entry* of = place(listed.front()); of != nullptr;)
            of = place(of->next);
    }
    if (const auto all = children_.find(owner); all != children_.end())
        for (const std::uint64_t handle : all->second)
            place(handle);
    return found;
}

// ---- proxies

std::string assembly::kind_of_object() const {
    if (object_.of_class != nullptr)
        return object_.of_class->dxf_name;
    if (object_.type != nullptr)
        return std::string(object_.type->row->record);
    for (const fixed_name& one : fixed_names)
        if (one.number == object_.number)
            return std::string(one.dxf);
    constexpr int first_proxy = 0x1F2;
    if (object_.number == first_proxy || object_.number == first_proxy + 1)
        return "proxy of an unknown class";
    return "type " + std::to_string(object_.number);
}

int assembly::proxy_class() {
    if (object_.of_class != nullptr)
        return object_.of_class->number;
    constexpr std::size_t first = 500;
    const std::string kind = kind_of_object();
    const auto at = std::find(more_classes_.begin(), more_classes_.end(), kind) - more_classes_.begin();
    if (static_cast<std::size_t>(at) == more_classes_.size())
        more_classes_.push_back(kind);
    return static_cast<int>(first + source_.classes.size() + static_cast<std::size_t>(at));
}

// ---- sections

void assembly::section(std::string_view name) {
    write_.text(0, "SECTION");
    write_.text(2, name);
}

void assembly::write_classes() {
    section("CLASSES");
    for (const class_entry& one : source_.classes) {
        write_.text(0, "CLASS");
        write_.text(1, one.dxf_name);
        write_.text(2, one.cpp_name);
        write_.text(3, one.application);
        write_.integer(90, one.proxy_flags);
        if (one.instances >= 0)
            write_.integer(91, one.instances);
        write_.integer(280, one.was_proxy ? 1 : 0);
        write_.integer(281, one.is_entity ? 1 : 0);
    }
    for (const std::string& name : more_classes_) {
        std::string_view cpp = name;
        for (const fixed_name& one : fixed_names)
            if (one.dxf == name)
                cpp = one.cpp;
        write_.text(0, "CLASS");
        write_.text(1, name);
        write_.text(2, cpp);
        write_.text(3, "ObjectDBX Classes");
        write_.integer(90, 0);
        if (source_.version >= r2004)
            write_.integer(91, 0);
        write_.integer(280, 1);
        write_.integer(281, 0);
    }
    write_.text(0, "ENDSEC");
}

void assembly::end_record() {
    object_.read_extended_data();
    write_.extended_data(object_.extended);
}

void assembly::write_tables() {
    constexpr std::pair<std::string_view, int> tables[] = {
        {"VPORT", 64}, {"LTYPE", 56}, {"LAYER", 50},    {"STYLE", 52},       {"VIEW", 60},
        {"UCS", 62},   {"APPID", 66}, {"DIMSTYLE", 68}, {"BLOCK_RECORD", 48}};
    section("TABLES");
    for (const auto& [name, number] : tables)
        write_table(name, number);
    write_.text(0, "ENDSEC");
}

void assembly::write_table(std::string_view name, int control_number) {
    const entry* const head = control(control_number);
    std::vector<entry*> all;
    const auto add = [&](std::uint64_t handle) {
        entry* const of = find(handle);
        if (of != nullptr && !of->is_damaged && !of->is_placed && of->number == control_number + 1) {
            of->is_placed = true;
            all.push_back(of);
        }
    };
    constexpr int block_control = 48;
    bool is_read = false;
    if (control_number == block_control)
        for (const block& one : blocks_)
            add(one.handle);
    else if (head != nullptr && reopen(*head, is_read))
        for (const std::uint64_t handle : std::vector<std::uint64_t>(object_.owned))
            add(handle);
    for (const entry& one : entries_)
        if (one.number == control_number + 1)
            add(one.handle);
    if (head == nullptr && all.empty())
        return;
    write_.text(0, "TABLE");
    write_.text(2, name);
    if (head != nullptr && reopen(*head, is_read)) {
        const std::size_t at = out_.dxf.size();
        write_.begin("", object_, 0); // the name stands between type and handle
        out_.dxf.erase(at, out_.dxf.find('\n', out_.dxf.find('\n', at) + 1) + 1 - at);
    }
    write_.text(100, "AcDbSymbolTable");
    write_.integer(70, static_cast<std::int64_t>(all.size()));
    constexpr int dimension_styles = 68;
    if (control_number == dimension_styles) {
        const auto count = std::count_if(object_.fields.all().begin(), object_.fields.all().end(),
                                         [](const value& one) { return one.code == 340; });
        write_.text(100, "AcDbDimStyleTable");
        write_.integer(71, count);
        write_.segment(object_.fields, 0);
    }
    if (head != nullptr)
        end_record();
    for (entry* const one : all)
        write_entry(*one, name, head != nullptr ? head->handle : 0);
    write_.text(0, "ENDTAB");
}

void assembly::write_entry(entry& of, std::string_view name, std::uint64_t owner) {
    bool is_read = false;
    if (!reopen(of, is_read) || !is_read) {
        left_out(of, L"what this " + base::widen(name) + L" holds can not be read");
        return;
    }
    constexpr int dimension_style = 69;
    write_.begin(name, object_, owner, of.number == dimension_style ? 105 : 5);
    write_.fields(object_, of.type->order);
    end_record();
}

void assembly::write_blocks() {
    section("BLOCKS");
    for (const block& one : blocks_) {
        write_block_end(one, false);
        if (one.handle != model_space_ && one.handle != paper_space_)
            write_members(one.handle, one.owned, one.is_paper);
        write_block_end(one, true);
    }
    write_.text(0, "ENDSEC");
    section("ENTITIES");
    for (const block& one : blocks_)
        if (one.handle == model_space_ || one.handle == paper_space_)
            write_members(one.handle, one.owned, one.is_paper);
    write_.text(0, "ENDSEC");
    for (entry& one : entries_)
        if (one.is_entity && !one.is_damaged && !one.is_placed && one.number != type_block &&
            one.number != type_endblk && one.number != type_seqend)
            left_out(one, L"what it belongs to, " + hexadecimal(owner_of(one)) + L", is not there");
}

void assembly::write_block_end(const block& of, bool is_end) {
    bool is_read = false;
    entry* const at = find(is_end ? of.end : of.begin);
    if (at == nullptr || at->is_damaged || !reopen(*at, is_read)) {
        write_.text(0, is_end ? "ENDBLK" : "BLOCK"); // its handle is lost
        write_.text(100, "AcDbEntity");
        write_.text(8, "0");
    } else {
        write_.begin(is_end ? "ENDBLK" : "BLOCK", object_, of.handle);
        write_.entity(object_, of.is_paper, {});
    }
    if (is_end) {
        write_.text(100, "AcDbBlockEnd");
    } else {
        const std::string& name = write_.names[of.handle];
        write_.text(100, "AcDbBlockBegin");
        write_.text(2, name);
        write_.integer(70, of.flags);
        for (int axis = 0; axis < 3; ++axis)
            write_.real(10 * (axis + 1), of.base[axis]);
        write_.text(3, name);
        write_.text(1, of.path);
        if (!of.description.empty())
            write_.text(4, of.description);
    }
    if (at != nullptr && !at->is_damaged)
        end_record();
}

void assembly::write_members(std::uint64_t owner, const std::vector<std::uint64_t>& listed,
                             bool in_paper_space) {
    for (entry* const one : members(owner, listed))
        write_entity(*one, in_paper_space);
}

void assembly::write_entity(entry& of, bool in_paper_space) {
    bool is_read = false;
    if (!reopen(of, is_read))
        return;
    std::string graphics;
    if (is_read && object_.of_class != nullptr && object_.common.graphics_size != 0) {
        bit_reader from(source_.objects, object_.common.graphics_at,
                        object_.common.graphics_at + object_.common.graphics_size * 8);
        graphics = take_bytes(from, object_.common.graphics_size);
    }
    write_.begin(is_read ? of.type->row->record : "ACAD_PROXY_ENTITY", object_, owner_of(of));
    write_.entity(object_, in_paper_space, graphics);
    if (!is_read) {
        ++out_.proxies[kind_of_object()];
        write_.proxy(object_, object_.data.at(), proxy_class());
        end_record();
        return;
    }
    if (of.number == type_vertex_2d)
        if (value* point = object_.fields.find(10))
            point->z = point->z == 0 ? elevation_ : point->z;
    const double elevation = of.number == type_polyline_2d ? object_.fields.find(10)->z : 0;
    write_.fields(object_, of.type->order);
    end_record();
    const auto children = children_.find(of.handle);
    if (children == children_.end())
        return;
    const std::vector<std::uint64_t> listed = object_.owned;
    elevation_ = elevation;
    write_members(of.handle, listed, in_paper_space);
    for (const std::uint64_t handle : children->second)
        if (entry* const one = find(handle); one->number == type_seqend)
            write_entity(*one, in_paper_space);
}

void assembly::write_objects() {
    section("OBJECTS");
    std::vector<std::uint64_t> waiting = {header_.handle("NAMED_OBJECTS")};
    constexpr int dictionary = 42;
    if (find(waiting.front()) == nullptr) // its header is damaged: the dictionary that nobody owns
        for (const entry& one : entries_)
            if (one.number == dictionary && one.owner == 0 && !one.is_damaged)
                waiting.push_back(one.handle);
    for (std::size_t i = 0; i < waiting.size(); ++i) // level by level from the root
        if (entry* const of = find(waiting[i]))
            write_object(*of, waiting);
    for (entry& one : entries_)
        write_object(one, waiting);
    write_.text(0, "ENDSEC");
}

void assembly::write_object(entry& of, std::vector<std::uint64_t>& children) {
    constexpr int first_header_object = 70; // those of the views that R2000 keeps for sheets
    const bool is_other = of.type != nullptr && of.type->row->role != role::object;
    const bool is_view_header = of.number == first_header_object || of.number == first_header_object + 1;
    if (of.is_entity || of.is_damaged || of.is_placed || is_other || is_view_header)
        return;
    of.is_placed = true;
    bool is_read = false;
    if (!reopen(of, is_read))
        return;
    write_.begin(is_read ? of.type->row->record : "ACAD_PROXY_OBJECT", object_, object_.common.owner);
    if (is_read) {
        constexpr int dictionary_entry = 350;
        constexpr int owned_entry = 360;
        if (of.type->row->record.find("DICTIONARY") != std::string_view::npos)
            for (const value& one : object_.fields.all())
                if (one.code == dictionary_entry || one.code == owned_entry)
                    children.push_back(one.number);
        write_.fields(object_, of.type->order);
    } else {
        ++out_.proxies[kind_of_object()];
        write_.proxy(object_, object_.data.at(), proxy_class());
    }
    end_record();
}

} // namespace dwg
