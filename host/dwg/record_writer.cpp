#include "host/dwg/record_writer.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace dwg {

namespace {

constexpr std::string_view line_end = "\r\n";

// Whole numbers stand in columns: those of one byte or two in six, longer ones in nine.
std::size_t columns_of(int group) {
    const auto within = [&](int low, int high) { return group >= low && group <= high; };
    if (within(60, 79) || within(170, 179) || within(270, 299) || within(370, 389) || within(400, 409) ||
        within(1060, 1070))
        return 6;
    return within(90, 99) || within(420, 429) || within(440, 459) || group == 1071 ? 9 : 0;
}

// What ends a sequence of vertices or attributes casts no shadow.
bool is_end_of_sequence(const object_reader& object) {
    return object.type != nullptr && object.type->row->record == "SEQEND";
}

// A code is at least three columns wide. Room for code_room characters is needed; gives their end.
constexpr std::size_t code_room = 16;
inline char* put_code(char* at, int group) {
    if (group >= 0 && group < 1000) {
        const auto digit = [](int number) { return static_cast<char>('0' + number); };
        at[0] = group < 100 ? ' ' : digit(group / 100);
        at[1] = group < 10 ? ' ' : digit(group / 10 % 10);
        at[2] = digit(group % 10);
        at += 3;
    } else {
        at = std::to_chars(at, at + code_room, group).ptr;
    }
    *at++ = '\r';
    *at++ = '\n';
    return at;
}

} // namespace

const std::string* record_writer::name_if_any(std::uint64_t handle) const {
    if (handle != last_named_) {
        const auto found = source_.names.find(handle);
        last_named_ = handle;
        last_name_ = found != source_.names.end() ? &found->second : nullptr;
    }
    return last_name_;
}

void record_writer::code(int group) {
    char line[code_room];
    out_.append(line, static_cast<std::size_t>(put_code(line, group) - line));
}

// Control characters are written as a caret and a letter, a caret with a blank behind it.
void record_writer::text(int group, std::string_view value) {
    const auto is_plain = [](char c) { return static_cast<unsigned char>(c) >= 0x20 && c != '^'; };
    const bool plain = std::all_of(value.begin(), value.end(), is_plain);
    constexpr std::size_t short_text = 64;
    if (plain && value.size() <= short_text) {
        char line[code_room + short_text];
        return finish(line, std::copy(value.begin(), value.end(), put_code(line, group)));
    }
    code(group);
    if (plain) {
        out_.append(value).append(line_end);
        return;
    }
    for (std::size_t i = 0; i < value.size(); ++i) {
        const char c = value[i];
        if (source_.two_byte_text && static_cast<unsigned char>(c) > 0x80 && i + 1 < value.size() &&
            static_cast<unsigned char>(value[i + 1]) >= 0x40) {
            out_ += c;
            out_ += value[++i];
        } else if (is_plain(c)) {
            out_ += c;
        } else {
            out_ += '^';
            out_ += c == '^' ? ' ' : static_cast<char>(c + 0x40);
        }
    }
    out_.append(line_end);
}

void record_writer::integer(int group, std::int64_t value) {
    char line[code_room + 32];
    char* at = put_code(line, group);
    char digits[24];
    char* const end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    const auto size = static_cast<std::size_t>(end - digits);
    if (const std::size_t columns = columns_of(group); size < columns)
        at = std::fill_n(at, columns - size, ' ');
    finish(line, std::copy(digits, end, at));
}

void record_writer::real(int group, double value) {
    char line[code_room + 40];
    char* at = put_code(line, group);
    char* const limit = line + sizeof line - 4; // what stands behind the digits
    if (!std::isfinite(value))
        value = 0;
    const double size = std::fabs(value);
    constexpr double longest = 1e15; // digits in front of the point
    if (size < longest && std::trunc(value) == value && !(value == 0 && std::signbit(value))) {
        at = std::to_chars(at, limit, static_cast<std::int64_t>(value)).ptr;
        *at++ = '.';
        *at++ = '0';
    } else {
        const bool fixed = size == 0 || (size >= 1e-4 && size < longest);
        const auto form = fixed ? std::chars_format::fixed : std::chars_format::scientific;
        at = std::to_chars(at, limit, value, form).ptr;
        if (size == 0)
            at = std::copy_n(".0", 2, at);
    }
    finish(line, at);
}

void record_writer::handle(int group, std::uint64_t value) {
    char line[code_room + 20];
    char* const digits = put_code(line, group);
    char* const end = std::to_chars(digits, line + sizeof line, value, 16).ptr;
    for (char* at = digits; at != end; ++at)
        if (*at >= 'a')
            *at = static_cast<char>(*at - 'a' + 'A');
    finish(line, end);
}

// Adds a line, and its end, for which there is room behind it.
void record_writer::finish(char* line, char* end) {
    *end++ = '\r';
    *end++ = '\n';
    out_.append(line, static_cast<std::size_t>(end - line));
}

void record_writer::hexadecimal(int group, std::string_view bytes) {
    constexpr std::size_t in_a_line = 127;
    constexpr char digits[] = "0123456789ABCDEF";
    do {
        code(group);
        for (const char byte : bytes.substr(0, in_a_line)) {
            out_ += digits[static_cast<unsigned char>(byte) >> 4];
            out_ += digits[byte & 15];
        }
        out_.append(line_end);
        bytes.remove_prefix(std::min(bytes.size(), in_a_line));
    } while (!bytes.empty());
}

void record_writer::field(const values& of, const value& one) {
    const int group = group_of(one.code);
    switch (one.type) {
    case value_type::integer:
        return integer(group, one.integer());
    case value_type::real:
        return real(group, one.x);
    case value_type::point2:
    case value_type::point3:
        real(group, one.x);
        real(group + 10, one.y);
        if (one.type == value_type::point3)
            real(group + 20, one.z);
        return;
    case value_type::text:
        return text(group, of.stored(one));
    case value_type::chunk:
        return hexadecimal(group, of.stored(one));
    case value_type::handle:
        return handle(group, one.number);
    case value_type::name:
        return text(group, name_of(one.number));
    case value_type::nothing:
        return;
    }
}

void record_writer::begin(std::string_view type, const object_reader& object, std::uint64_t owner,
                          int handle_group) {
    text(0, type);
    handle(handle_group, object.own);
    if (object.common.dictionary != 0 && is_known(object.common.dictionary)) {
        text(102, "{ACAD_XDICTIONARY");
        handle(360, object.common.dictionary);
        text(102, "}");
    }
    const auto& reactors = object.common.reactors;
    if (std::any_of(reactors.begin(), reactors.end(), [&](std::uint64_t one) { return is_known(one); })) {
        text(102, "{ACAD_REACTORS");
        for (const std::uint64_t reactor : reactors)
            if (is_known(reactor))
                handle(330, reactor);
        text(102, "}");
    }
    handle(330, owner);
}

void record_writer::entity(const object_reader& object, bool in_paper_space, std::string_view graphics) {
    const common_data& held = object.common;
    text(100, "AcDbEntity");
    if (in_paper_space)
        integer(67, 1);
    text(8, name_of(held.layer, "0"));
    if (held.linetype_flags == 3)
        text(6, name_of(held.linetype, "ByLayer"));
    else if (held.linetype_flags != 0)
        text(6, held.linetype_flags == 1 ? "ByBlock" : "Continuous");
    if (held.material != 0)
        handle(347, held.material);
    if (held.color != 256)
        integer(62, held.color);
    if (held.true_color >= 0)
        integer(420, held.true_color);
    if (held.color_book != 0)
        if (const std::string* const name = name_if_any(held.color_book))
            text(430, *name);
    if (held.transparency >= 0)
        integer(440, held.transparency);
    if (held.linetype_scale != 1)
        real(48, held.linetype_scale);
    if (held.invisible)
        integer(60, 1);
    if (const int weight = line_weight(held.line_weight); weight != -1)
        integer(370, weight);
    if (held.plot_style != 0)
        handle(390, held.plot_style);
    if (held.shadow != 0 && !is_end_of_sequence(object))
        integer(284, held.shadow);
    if (held.visual_styles[0] != 0)
        handle(348, held.visual_styles[0]);
    if (!graphics.empty()) {
        integer(source_.version >= r2010 ? 160 : 92, static_cast<std::int64_t>(graphics.size()));
        hexadecimal(310, graphics);
    }
}

bool record_writer::is_left_out(const values& of, const value& one, const order_step& step) const {
    switch (step.left_out) {
    case usual::number:
        return one.type == value_type::integer ? static_cast<double>(one.integer()) == step.number
                                               : one.x == step.number;
    case usual::text: {
        if (one.type == value_type::text)
            return of.stored(one) == step.text;
        if (one.type != value_type::name)
            return false;
        const std::string* const name = name_if_any(one.number);
        return name != nullptr && *name == step.text;
    }
    case usual::x_axis:
        return one.x == 1 && one.y == 0 && one.z == 0;
    case usual::z_axis:
        return one.x == 0 && one.y == 0 && one.z == 1;
    case usual::origin:
        return one.x == 0 && one.y == 0 && one.z == 0;
    case usual::none:
        return false;
    }
    return false;
}

void record_writer::segment(values& of, int number) {
    for (value& one : of.all())
        if (one.segment == number && !one.written) {
            one.written = true;
            field(of, one);
        }
}

void record_writer::fields(object_reader& object, const std::vector<order_step>& order) {
    first_free_ = 0;
    for (std::size_t at = 0; at < order.size();)
        at = step(object, order, at);
}

// Writes what a step of an order says; gives the step behind it.
std::size_t record_writer::step(object_reader& object, const std::vector<order_step>& order, std::size_t at) {
    const order_step& now = order[at];
    values& held = object.fields;
    const auto is_free = [](const value& one, int group) {
        return one.code == group && one.segment == 0 && !one.written && one.type != value_type::nothing;
    };
    const auto put = [&](value& one, const order_step& as) {
        one.written = true;
        if (!is_left_out(held, one, as))
            field(held, one);
    };
    switch (now.code) {
    case order_code::group: {
        // Most groups stand in the order in which they were read.
        std::vector<value>& all = held.all();
        while (first_free_ < all.size() && all[first_free_].written)
            ++first_free_;
        for (std::size_t i = first_free_; i < all.size(); ++i)
            if (is_free(all[i], now.group)) {
                put(all[i], now);
                break;
            }
        return at + 1;
    }
    case order_code::together: {
        std::vector<std::size_t> cursors(now.end - at - 1, 0);
        const auto next = [&](std::size_t which) {
            std::size_t& cursor = cursors[which];
            while (cursor < held.all().size() && !is_free(held.all()[cursor], order[at + 1 + which].group))
                ++cursor;
            return cursor < held.all().size();
        };
        while (next(0))
            for (std::size_t which = 0; which < cursors.size(); ++which)
                if (next(which))
                    put(held.all()[cursors[which]], order[at + 1 + which]);
        return now.end;
    }
    case order_code::run:
        for (value& one : held.all())
            for (std::size_t which = at + 1; which < now.end; ++which)
                if (is_free(one, order[which].group)) {
                    put(one, order[which]);
                    break;
                }
        return now.end;
    case order_code::segment:
        segment(held, now.from);
        return at + 1;
    case order_code::rest:
        segment(held, 0);
        return at + 1;
    case order_code::constant:
        text(now.group, now.text);
        return at + 1;
    case order_code::when_version:
        return source_.version >= now.from && source_.version <= now.to ? at + 1 : now.end;
    }
    return at + 1;
}

void record_writer::extended_data(const values& of) {
    for (const value& one : of.all())
        field(of, one);
}

// Source of the groups: what the editor writes for objects of classes that it does not know.
void record_writer::proxy(object_reader& object, std::size_t begin, int class_number) {
    const bool bits_64 = source_.version >= r2010;
    bit_reader in = object.data;
    in.seek(begin);
    std::int64_t format = 0;
    std::int64_t maintenance = 0;
    if (object.of_class != nullptr) {
        format = object.of_class->dwg_version;
        maintenance = object.of_class->maintenance;
        if (source_.version < r2018)
            format |= maintenance << 16;
    }
    bool from_dxf = false;
    if (object.is_proxy()) {
        class_number = static_cast<int>(in.BL());
        format = in.BL();
        if (source_.version >= r2018)
            maintenance = in.BL();
        from_dxf = in.B();
    }
    text(100, object.is_entity ? "AcDbProxyEntity" : "AcDbProxyObject");
    integer(90, object.is_entity ? 498 : 499);
    integer(91, class_number);
    if (source_.version >= r2018) {
        integer(71, format);
        integer(97, maintenance);
    } else {
        integer(95, format);
    }
    integer(70, from_dxf ? 1 : 0);
    if (object.is_entity && object.common.graphics_size != 0) {
        integer(bits_64 ? 160 : 92, static_cast<std::int64_t>(object.common.graphics_size));
        bit_reader graphics(source_.objects, object.common.graphics_at,
                            object.common.graphics_at + object.common.graphics_size * 8);
        hexadecimal(310, take_bytes(graphics, object.common.graphics_size));
    }
    if (object.has_strings) {
        const std::size_t end = object.strings.end();
        const std::size_t first = object.data.end(); // the data ends where the strings begin
        integer(162, static_cast<std::int64_t>(end - first));
        hexadecimal(311, bits_as_bytes(object.strings, first, end));
    } else if (source_.version >= r2007) {
        integer(162, 0);
    }
    if (in.left() != 0) {
        integer(bits_64 ? 161 : 93, static_cast<std::int64_t>(in.left()));
        hexadecimal(310, bits_as_bytes(in, in.at(), in.end()));
    }
    while (object.handles.left() >= 8) {
        const reference to = object.next_handle();
        if (object.handles.bad())
            break;
        if (to.code == 0)
            continue; // what fills the last byte
        handle(to.code == 2 ? 350 : to.code == 3 ? 360 : to.code == 5 ? 340 : 330, to.handle);
    }
    integer(94, 0);
}

} // namespace dwg
