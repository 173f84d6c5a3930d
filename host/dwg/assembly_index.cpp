// What the map of a DWG file, its classes and its tables say of all objects, before any is written.
#include "host/dwg/assembly.h"

#include "base/byte_order.h"
#include "host/dwg/checksums.h"

#include <algorithm>

namespace dwg {

namespace {

constexpr int type_block = 4;
constexpr int type_endblk = 5;
constexpr int type_block_header = 49;
constexpr int type_mline_style = 73;
constexpr std::size_t sentinel = 16;

} // namespace

void assembly::read_map() {
    std::string_view left = file_.handles;
    std::size_t page = 0;
    while (left.size() >= 2) {
        const std::size_t size = base::big_endian(left, 0, 2);
        ++page;
        if (size <= 2)
            break;
        if (size > left.size()) {
            out_.damage.push_back(L"page " + std::to_wstring(page) +
                                  L" of the map of its objects is cut off");
            break;
        }
        if (size + 2 <= left.size() &&
            crc16(left.substr(0, size), crc_start) != base::big_endian(left, size, 2))
            out_.damage.push_back(L"the check sum of page " + std::to_wstring(page) +
                                  L" of the map of its objects is wrong");
        bit_reader pairs(left.substr(0, size), 16, size * 8);
        std::uint64_t handle = 0;
        std::int64_t address = 0;
        while (pairs.left() >= 16) {
            handle += pairs.MC();
            address += pairs.signed_MC();
            if (pairs.bad())
                break;
            entry& fresh = entries_.emplace_back();
            fresh.handle = handle;
            fresh.address = address < 0 ? source_.objects.size() : static_cast<std::size_t>(address);
        }
        left.remove_prefix(std::min(left.size(), size + 2));
    }
    std::stable_sort(entries_.begin(), entries_.end(),
                     [](const entry& a, const entry& b) { return a.handle < b.handle; });
    const auto last = std::unique(entries_.begin(), entries_.end(),
                                  [](const entry& a, const entry& b) { return a.handle == b.handle; });
    if (last != entries_.end())
        out_.damage.push_back(std::to_wstring(entries_.end() - last) +
                              L" handles stand twice in the map of its objects; the first of each is read");
    entries_.erase(last, entries_.end());
}

void assembly::read_classes() {
    bit_reader start(file_.classes);
    start.skip(sentinel * 8);
    const std::size_t size = start.RL();
    if (file_.classes.empty() || start.bad() || size > start.left() / 8)
        return;
    if (source_.version == r2018 ||
        ((source_.version == r2010 || source_.version == r2013) && source_.maintenance > 3))
        start.RL();
    const std::size_t begin = start.at();
    const std::size_t end = begin + size * 8;
    bit_reader sum(file_.classes, std::min(end, file_.classes.size() * 8), file_.classes.size() * 8);
    if (crc16(file_.classes.substr(sentinel, end / 8 - sentinel), crc_start) != sum.RS())
        out_.damage.emplace_back(L"the check sum of its classes is wrong");
    object_source bytes;
    bytes.objects = file_.classes;
    bytes.version = source_.version;
    object_reader in(bytes);
    in.data = bit_reader(file_.classes, begin, std::min(end, file_.classes.size() * 8));
    if (source_.version >= r2007) {
        const std::size_t bits = in.data.RL();
        if (bits > end - begin)
            return;
        in.data.end_at(begin + bits);
        in.has_strings = take_string_stream(in.data, in.strings);
        in.data.BL();
        in.data.B();
    } else if (source_.version >= r2004) {
        in.data.BS();
        in.data.RC();
        in.data.RC();
        in.data.B();
    }
    constexpr int first = 500;
    constexpr std::size_t least_bits = 20;
    while (in.data.left() >= least_bits && !in.data.bad()) {
        class_entry fresh;
        fresh.number = in.data.BS();
        fresh.proxy_flags = in.data.BS();
        fresh.application = in.text();
        fresh.cpp_name = in.text();
        fresh.dxf_name = in.text();
        fresh.was_proxy = in.data.B();
        fresh.is_entity = in.data.BS() == 0x1F2;
        if (source_.version >= r2004) {
            fresh.instances = in.data.BL();
            fresh.dwg_version = static_cast<std::int32_t>(in.data.BL());
            fresh.maintenance = static_cast<std::int32_t>(in.data.BL());
            in.data.BL();
            in.data.BL();
        }
        if (in.data.bad() || fresh.number != first + static_cast<int>(source_.classes.size()))
            break;
        source_.classes.push_back(std::move(fresh));
    }
}

void assembly::look_at_all() {
    model_space_ = header_.handle("MODEL_SPACE");
    paper_space_ = header_.handle("PAPER_SPACE");
    write_.known.reserve(entries_.size());
    for (entry& one : entries_) {
        if (!object_.open(one.address, one.handle)) {
            one.is_damaged = true;
            left_out(one, object_.why());
            continue;
        }
        write_.known.push_back(one.handle);
        one.number = object_.number;
        one.type = object_.type;
        one.is_entity = object_.is_entity;
        one.mode = static_cast<std::uint8_t>(object_.common.mode);
        one.owner = object_.common.owner;
        one.next = object_.common.next;
        const bool is_entry = one.type != nullptr && one.type->row->role == role::entry;
        if (is_entry || one.number == type_mline_style)
            write_.names.emplace(one.handle, object_.text());
    }
    // The file's own words may be damaged; then the blocks' names tell.
    for (const auto& [handle, name] : write_.names) {
        const entry* const of = find(handle);
        if (of->number != type_block_header)
            continue;
        if (name == "*Model_Space" && find(model_space_) == nullptr)
            model_space_ = handle;
        if (name == "*Paper_Space" && find(paper_space_) == nullptr)
            paper_space_ = handle;
    }
    for (const entry& one : entries_)
        if (one.is_entity && !one.is_damaged && one.number != type_block && one.number != type_endblk)
            children_[owner_of(one)].push_back(one.handle);
}

std::uint64_t assembly::owner_of(const entry& of) const {
    return of.mode == 1 ? paper_space_ : of.mode == 2 ? model_space_ : of.owner;
}

void assembly::find_linetypes() {
    constexpr int linetype_control = 56;
    bool is_read = false;
    if (const entry* const table = control(linetype_control);
        table != nullptr && reopen(*table, is_read) && is_read)
        source_.linetypes = object_.owned;
}

// The names of blocks without a name of their own are stored without their number: it is their place in the
// table. Further sheets are stored under one name.
void assembly::name_blocks() {
    constexpr int block_control = 48;
    const entry* const table = control(block_control);
    std::vector<std::uint64_t> handles = {model_space_, paper_space_};
    bool is_read = false;
    if (table != nullptr && reopen(*table, is_read) && is_read)
        handles.insert(handles.end(), object_.owned.begin(), object_.owned.end());
    for (const entry& one : entries_) // what the table does not tell of
        if (one.number == type_block_header && !one.is_damaged &&
            std::find(handles.begin(), handles.end(), one.handle) == handles.end())
            handles.push_back(one.handle);
    std::size_t number = 0;
    std::size_t sheet = 0;
    constexpr std::size_t first_named = 2;
    for (std::size_t i = 0; i < handles.size(); ++i) {
        if (const entry* const of = find(handles[i]);
            of == nullptr || of->is_damaged || of->number != type_block_header)
            continue;
        if (i >= first_named) {
            if (handles[i] == model_space_ || handles[i] == paper_space_)
                continue;
            ++number;
            std::string& name = write_.names[handles[i]];
            constexpr std::string_view sheets = "*Paper_Space";
            const bool is_sheet = std::equal(name.begin(), name.end(), sheets.begin(), sheets.end(),
                                             [](char a, char b) { return (a | 0x20) == (b | 0x20); });
            if (name.size() == 2 && name[0] == '*')
                name += std::to_string(number);
            else if (is_sheet)
                name += std::to_string(sheet++);
        }
        read_block(handles[i]);
    }
}

void assembly::read_block(std::uint64_t handle) {
    bool is_read = false;
    entry* const of = find(handle);
    if (!reopen(*of, is_read))
        return;
    block& fresh = blocks_.emplace_back();
    fresh.handle = handle;
    fresh.is_paper = write_.names[handle].starts_with("*P") && write_.names[handle].size() > 2;
    if (!is_read)
        return;
    fresh.begin = static_cast<std::uint64_t>(object_.variable('b'));
    fresh.end = static_cast<std::uint64_t>(object_.variable('e'));
    fresh.flags = object_.fields.integer(20070);
    fresh.owned = object_.owned;
    constexpr std::uint8_t of_block = 8;
    for (const value& one : object_.fields.all()) {
        if (one.segment != of_block)
            continue;
        if (one.code == 1)
            fresh.path = object_.fields.stored(one);
        else if (one.code == 4)
            fresh.description = object_.fields.stored(one);
        else if (one.code == 10)
            std::copy_n(&one.x, 3, fresh.base);
    }
}

} // namespace dwg
