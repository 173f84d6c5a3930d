// What the classes of a DWG file and its tables say, before any object is written.
#include "host/dwg/assembly.h"

#include "base/byte_order.h"
#include "host/dwg/checksums.h"

#include <algorithm>

namespace dwg {

namespace {

constexpr std::size_t sentinel = 16;

} // namespace

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
        if (in.data.bad() || fresh.number != first_class + static_cast<int>(source_.classes.size()))
            break;
        source_.classes.push_back(std::move(fresh));
    }
}

void assembly::find_linetypes() {
    bool is_read = false;
    if (const entry* const table = index_.first_of(type_linetype_control);
        table != nullptr && main_.reopen(*table, is_read) && is_read)
        source_.linetypes = main_.object.owned;
}

// The names of blocks without a name of their own are stored without their number: it is their place in the
// table. Further sheets are stored under one name.
void assembly::name_blocks() {
    const entry* const table = index_.first_of(type_block_control);
    std::vector<std::uint64_t> handles = {index_.model_space, index_.paper_space};
    bool is_read = false;
    if (table != nullptr && main_.reopen(*table, is_read) && is_read)
        handles.insert(handles.end(), main_.object.owned.begin(), main_.object.owned.end());
    std::vector<std::uint64_t> listed = handles;
    std::sort(listed.begin(), listed.end());
    for (const entry* const one : index_.others()) // what the table does not tell of
        if (one->number == type_block_header &&
            !std::binary_search(listed.begin(), listed.end(), one->handle))
            handles.push_back(one->handle);
    std::size_t number = 0;
    std::size_t sheet = 0;
    constexpr std::size_t first_named = 2;
    for (std::size_t i = 0; i < handles.size(); ++i) {
        if (const entry* const of = index_.find(handles[i]);
            of == nullptr || of->is_damaged || of->number != type_block_header)
            continue;
        if (i >= first_named) {
            if (handles[i] == index_.model_space || handles[i] == index_.paper_space)
                continue;
            ++number;
            std::string& name = source_.names[handles[i]];
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
    entry* const of = index_.find(handle);
    if (!main_.reopen(*of, is_read))
        return;
    block& fresh = blocks_.emplace_back();
    fresh.handle = handle;
    fresh.is_paper = source_.names[handle].starts_with("*P") && source_.names[handle].size() > 2;
    if (!is_read)
        return;
    fresh.begin = static_cast<std::uint64_t>(main_.object.variable('b'));
    fresh.end = static_cast<std::uint64_t>(main_.object.variable('e'));
    fresh.flags = main_.object.fields.integer(20070);
    fresh.owned = main_.object.owned;
    constexpr std::uint8_t of_block = 8;
    for (const value& one : main_.object.fields.all()) {
        if (one.segment != of_block)
            continue;
        if (one.code == 1)
            fresh.path = main_.object.fields.stored(one);
        else if (one.code == 4)
            fresh.description = main_.object.fields.stored(one);
        else if (one.code == 10)
            std::copy_n(&one.x, 3, fresh.base);
    }
}

} // namespace dwg
