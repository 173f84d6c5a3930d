#include "host/dwg/object_reader.h"

#include "base/utf.h"
#include "dbcolor.h"
#include "host/dwg/checksums.h"

#include <algorithm>
#include <iterator>
#include <numbers>

namespace dwg {

namespace {

constexpr double degrees = 180 / std::numbers::pi;

// Types without rows and without a class that are entities: bodies, OLE frames.
bool is_fixed_entity(int number) {
    constexpr int entities[] = {37, 38, 39, 43, 74, entity_proxy};
    return std::find(std::begin(entities), std::end(entities), number) != std::end(entities);
}

} // namespace

bool object_reader::open(std::size_t address, std::uint64_t handle, bool looks_at_sum) {
    own = handle;
    number = 0;
    of_class = nullptr;
    type = nullptr;
    is_entity = has_strings = false;
    common.clear();
    fields.clear();
    fields.segment = 0;
    owned.clear();
    applications_.clear();
    variables_.fill(0);
    if (address >= source.objects.size())
        return fail_with(L"its address lies outside of the file");
    bit_reader frame(source.objects, address * 8, source.objects.size() * 8);
    const std::size_t size = frame.MS();
    const std::size_t handle_bits = since(r2010) ? static_cast<std::size_t>(frame.MC()) : 0;
    const std::size_t begin = frame.at();
    if (frame.bad() || size == 0 || size > frame.left() / 8)
        return fail_with(L"its size can not be right");
    const std::size_t end = begin + size * 8;
    bit_reader sum(source.objects, end, source.objects.size() * 8);
    const std::uint16_t told = sum.RS();
    if (sum.bad() ||
        (looks_at_sum && crc16(source.objects.substr(address, end / 8 - address), crc_start) != told))
        return fail_with(L"its check sum is wrong");
    data = bit_reader(source.objects, begin, end);
    if (since(r2010)) {
        const unsigned kind = data.BB();
        number = kind == 0 ? data.RC() : kind == 1 ? data.RC() + 0x1F0 : data.RS();
        if (handle_bits > size * 8)
            return fail_with(L"its size can not be right");
    } else {
        number = data.BS();
    }
    const std::size_t handles_at = since(r2010) ? end - handle_bits : begin + data.RL();
    if (data.bad() || handles_at > end || handles_at < data.at())
        return fail_with(L"its size can not be right");
    handles = bit_reader(source.objects, handles_at, end);
    data.end_at(handles_at);
    if (since(r2007))
        has_strings = take_string_stream(data, strings);
    find_type();
    if (data.H(own).handle != handle)
        return fail_with(L"it has another handle");
    for (std::size_t count = data.BS(); count != 0 && !data.bad(); count = data.BS()) {
        const std::uint64_t of = data.H(own).handle;
        applications_.push_back({of, data.at(), count});
        data.skip(count * 8);
    }
    if (is_entity) {
        if (data.B()) {
            common.graphics_size = static_cast<std::size_t>(since(r2010) ? data.BLL() : data.RL());
            common.graphics_at = data.at();
            if (common.graphics_size > data.left() / 8)
                return fail_with(L"its data ends too early");
            data.skip(common.graphics_size * 8);
        }
        read_common_entity();
    } else {
        read_common_object();
    }
    return !data.bad() && !handles.bad() ? true : fail_with(L"its data ends too early");
}

void object_reader::find_type() {
    constexpr int first_class = 500;
    if (number >= first_class) {
        const auto at = static_cast<std::size_t>(number - first_class);
        if (at < source.classes.size()) {
            of_class = &source.classes[at];
            is_entity = of_class->is_entity;
            type = type_of_class(of_class->dxf_name);
        }
    } else {
        type = type_of_number(number);
        is_entity = type != nullptr ? type->row->role == role::entity : is_fixed_entity(number);
    }
    if (type != nullptr && of_class != nullptr && (type->row->role == role::entity) != is_entity)
        type = nullptr;
}

void object_reader::read_common_object() {
    reactor_count_ = data.BL();
    const bool no_dictionary = since(r2004) && data.B();
    if (since(r2013))
        data.B();
    if (reactor_count_ > handles.left() / 8) {
        data.spoil();
        return;
    }
    common.owner = next_handle().handle;
    for (std::size_t i = 0; i < reactor_count_; ++i)
        common.reactors.push_back(next_handle().handle);
    if (!no_dictionary)
        common.dictionary = next_handle().handle;
}

void object_reader::read_common_entity() {
    common.mode = data.BB();
    reactor_count_ = data.BL();
    const bool no_dictionary = since(r2004) && data.B();
    if (since(r2013))
        data.B();
    const bool linked = !since(r2004) && !data.B();
    bool from_book = false;
    if (since(r2004)) {
        const unsigned color = data.BS();
        common.color = static_cast<int>(color & 0x1FF);
        from_book = (color & 0x4000) != 0;
        if (!from_book && (color & 0x8000) != 0)
            common.true_color = data.BL() & 0xFFFFFF;
        if ((color & 0x2000) != 0)
            common.transparency = data.BL();
    } else {
        common.color = static_cast<std::int16_t>(data.BS());
    }
    common.linetype_scale = data.BD();
    common.linetype_flags = data.BB();
    unsigned material = 0;
    if (since(r2007))
        material = data.BB();
    const unsigned plot_style = data.BB();
    if (since(r2007))
        common.shadow = data.RC();
    bool styles[3] = {};
    if (since(r2010))
        for (bool& has : styles)
            has = data.B();
    common.invisible = (data.BS() & 1) != 0;
    common.line_weight = data.RC();
    if (reactor_count_ > handles.left() / 8) {
        data.spoil();
        return;
    }
    if (common.mode == 0)
        common.owner = next_handle().handle;
    for (std::size_t i = 0; i < reactor_count_; ++i)
        common.reactors.push_back(next_handle().handle);
    if (!no_dictionary)
        common.dictionary = next_handle().handle;
    if (linked) {
        next_handle();
        common.next = next_handle().handle;
    } else if (!since(r2004)) {
        common.next = own + 1;
    }
    if (from_book)
        common.color_book = next_handle().handle;
    common.layer = next_handle().handle;
    constexpr unsigned by_handle = 3;
    if (common.linetype_flags == by_handle)
        common.linetype = next_handle().handle;
    if (material == by_handle)
        common.material = next_handle().handle;
    if (plot_style == by_handle)
        common.plot_style = next_handle().handle;
    for (std::size_t i = 0; i < common.visual_styles.size(); ++i)
        if (styles[i])
            common.visual_styles[i] = next_handle().handle;
}

std::string object_reader::text() {
    if (!since(r2007)) {
        std::string bytes = take_bytes(data, data.BS());
        if (!bytes.empty() && bytes.back() == '\0')
            bytes.pop_back();
        return bytes;
    }
    if (!has_strings)
        return {};
    const std::string units = take_bytes(strings, std::size_t(2) * strings.BS());
    std::string out = utf8_of(units);
    if (!out.empty() && out.back() == '\0')
        out.pop_back();
    return out;
}

bool object_reader::read_fields() {
    if (type == nullptr)
        return false;
    if (!type->row->layout.empty())
        walk(type->fields, 0, type->fields.size());
    if (data.bad() || handles.bad() || strings.bad() || data.left() != 0 ||
        (has_strings && strings.left() != 0))
        return false;
    fields.segment = 0;
    if (type->row->settle != nullptr)
        type->row->settle(*this);
    return true;
}

bool object_reader::test(const field& one) {
    const std::int64_t held = one.variable != 0 ? variable(one.variable) : 0;
    switch (one.code) {
    case field_code::when_version:
        return source.version >= one.from && source.version <= one.to;
    case field_code::when_bits:
        return ((held & one.from) != 0) != one.negated;
    case field_code::when_equal:
        return (held == one.from) != one.negated;
    default:
        return (held != 0) != one.negated;
    }
}

void object_reader::walk(const std::vector<field>& steps, std::size_t first, std::size_t last) {
    for (std::size_t i = first; i < last && !data.bad();) {
        const field& one = steps[i];
        switch (one.code) {
        case field_code::when_version:
        case field_code::when_bits:
        case field_code::when_equal:
        case field_code::when_set:
            i = test(one) ? i + 1 : one.end;
            break;
        case field_code::repeat: {
            // Each pass takes bits of one stream or another, so there can not be more passes than bits.
            const std::int64_t count = variable(one.variable);
            if (count < 0 ||
                static_cast<std::uint64_t>(count) > data.left() + handles.left() + strings.left()) {
                fail();
                return;
            }
            for (std::int64_t pass = 0; pass < count && !data.bad() && !handles.bad(); ++pass)
                walk(steps, i + 1, one.end);
            i = one.end;
            break;
        }
        default:
            step(one);
            ++i;
        }
    }
}

void object_reader::step(const field& one) {
    const int group = one.group;
    const auto integer = [&](std::int64_t held) {
        if (one.variable != 0)
            variable(one.variable) = held;
        if (group != 0)
            fields.add_integer(group, held);
    };
    const auto real = [&](double held) {
        if (group != 0)
            fields.add_real(group, held);
    };
    const auto point = [&](double x, double y, double z) {
        if (group != 0)
            fields.add_point(group, x, y, z);
    };
    switch (one.code) {
    case field_code::B:
        return integer(data.B());
    case field_code::RC:
        return integer(data.RC());
    case field_code::RS:
        return integer(static_cast<std::int16_t>(data.RS()));
    case field_code::RL:
        return integer(static_cast<std::int32_t>(data.RL()));
    case field_code::BS:
        return integer(static_cast<std::int16_t>(data.BS()));
    case field_code::BL:
        return integer(static_cast<std::int32_t>(data.BL()));
    case field_code::BLL:
        return integer(static_cast<std::int64_t>(data.BLL()));
    case field_code::RD:
        return real(data.RD());
    case field_code::BD:
        return real(data.BD());
    case field_code::BA:
        return real(data.BD() * degrees);
    case field_code::RA:
        return real(data.RD() * degrees);
    case field_code::BT:
        return real(data.B() ? 0 : data.BD());
    case field_code::BD12:
    case field_code::BD16:
        for (int i = one.code == field_code::BD12 ? 12 : 16; i != 0; --i)
            real(data.BD());
        return;
    case field_code::RD2:
    case field_code::BD2: {
        const bool raw = one.code == field_code::RD2;
        const double x = raw ? data.RD() : data.BD();
        const double y = raw ? data.RD() : data.BD();
        if (group != 0)
            fields.add_point(group, x, y);
        return;
    }
    case field_code::RD3: {
        const double x = data.RD();
        const double y = data.RD();
        return point(x, y, data.RD());
    }
    case field_code::BE:
        if (data.B())
            return point(0, 0, 1);
        [[fallthrough]];
    case field_code::BD3: {
        const double x = data.BD();
        const double y = data.BD();
        return point(x, y, data.BD());
    }
    case field_code::T: {
        const std::string held = text();
        if (group != 0)
            fields.add_text(group, held);
        return;
    }
    case field_code::CMC:
    case field_code::CMI:
    case field_code::CMR:
        return read_color(group, one.code);
    case field_code::H:
    case field_code::H_if:
    case field_code::N: {
        const std::uint64_t handle = next_handle().handle;
        if (group == 0 || (handle == 0 && one.code == field_code::H_if))
            return;
        one.code == field_code::N ? fields.add_name(group, handle) : fields.add_handle(group, handle);
        return;
    }
    case field_code::O:
        if (const std::uint64_t handle = next_handle().handle; handle != 0)
            owned.push_back(handle);
        return;
    case field_code::data_H: {
        const std::uint64_t handle = data.H(own).handle;
        if (group != 0)
            fields.add_handle(group, handle);
        return;
    }
    case field_code::constant:
        fields.add_text(group, one.text);
        return;
    case field_code::special:
        one.read(*this);
        return;
    case field_code::segment:
        fields.segment = static_cast<std::uint8_t>(one.from);
        return;
    case field_code::add_bits:
        variable(one.variable) |= variable(static_cast<char>(one.from));
        return;
    default:
        return;
    }
}

} // namespace dwg
