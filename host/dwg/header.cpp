#include "host/dwg/header.h"

#include "base/byte_order.h"
#include "host/dwg/checksums.h"

namespace dwg {

namespace {

constexpr std::size_t sentinel = 16;

// Who saved the drawing last: the sixth text of the summary, each of which has its length in front and a zero
// behind it.
std::string last_saver(const container& file) {
    constexpr int before = 5;
    bit_reader in(file.summary);
    const std::size_t bytes_of_character = file.version >= r2007 ? 2 : 1;
    std::string text;
    for (int i = 0; i <= before; ++i)
        text = take_bytes(in, bytes_of_character * in.RS());
    if (file.version >= r2007)
        text = utf8_of(text);
    while (text.ends_with('\0'))
        text.pop_back();
    return text;
}

bool is_name(int group) {
    return group == 1 || group == 2 || group == 6 || group == 7 || group == 8;
}

} // namespace

std::string_view code_page_name(int number) {
    constexpr std::string_view names[] = {
        "",          "ASCII",     "8859_1",    "8859_2",   "8859_3",    "8859_4",    "8859_5",
        "8859_6",    "8859_7",    "8859_8",    "8859_9",   "DOS437",    "DOS850",    "DOS852",
        "DOS855",    "DOS857",    "DOS860",    "DOS861",   "DOS863",    "DOS864",    "DOS865",
        "DOS869",    "DOS932",    "MACINTOSH", "BIG5",     "KSC5601",   "JOHAB",     "DOS866",
        "ANSI_1250", "ANSI_1251", "ANSI_1252", "GB2312",   "ANSI_1253", "ANSI_1254", "ANSI_1255",
        "ANSI_1256", "ANSI_1257", "ANSI_874",  "ANSI_932", "ANSI_936",  "ANSI_949",  "ANSI_950",
        "ANSI_1361", "ANSI_1200", "ANSI_1258"};
    return number > 0 && number < static_cast<int>(std::size(names)) ? names[number] : "ANSI_1252";
}

void header::read(const container& file, const object_source& source, std::vector<std::wstring>& damage) {
    bit_reader start(file.header);
    start.skip(sentinel * 8);
    const std::size_t size = start.RL();
    std::size_t begin = start.at();
    const bool wide =
        file.version == r2018 || ((file.version == r2010 || file.version == r2013) && file.maintenance > 3);
    if (wide)
        start.RL();
    if (start.bad() || size > start.left() / 8) {
        damage.emplace_back(L"its header can not be read; variables have their defaults");
        return;
    }
    begin = start.at();
    const std::size_t end = begin + size * 8;
    bit_reader sum(file.header, end, file.header.size() * 8);
    if (crc16(file.header.substr(sentinel, end / 8 - sentinel), crc_start) != sum.RS())
        damage.emplace_back(L"the check sum of its header is wrong");
    object_source bytes;
    bytes.objects = file.header;
    bytes.version = source.version;
    object_reader in(bytes);
    in.data = bit_reader(file.header, begin, end);
    const bool apart = source.version >= r2007;
    if (apart) {
        const std::size_t bits = in.data.RL();
        if (bits > end - begin) {
            damage.emplace_back(L"its header can not be read; variables have their defaults");
            return;
        }
        in.handles = bit_reader(file.header, begin + bits, end);
        in.data.end_at(begin + bits);
        in.has_strings = take_string_stream(in.data, in.strings);
    }
    for (const variable_row& row : variable_rows()) {
        if (source.version < row.from || source.version > row.to || in.data.bad())
            continue;
        if (row.name == "CPSNID" && in.fields.integer(1000) != 3)
            continue;
        constexpr int plot_style_type = 1000; // the code under which $CEPSNTYPE is kept
        const std::size_t at = in.fields.all().size();
        const int code = row.name == "$CEPSNTYPE" ? plot_style_type : 1;
        switch (row.code) {
        case field_code::RL: { // a date
            const double days = in.data.BL();
            constexpr double in_a_day = 86400000;
            in.fields.add_real(code, days + in.data.BL() / in_a_day);
            break;
        }
        case field_code::H:
        case field_code::data_H: {
            const bool here = !apart || row.code == field_code::data_H;
            const std::uint64_t handle = here ? in.data.H(0).handle : in.handles.H(0).handle;
            is_name(row.group) ? in.fields.add_name(code, handle) : in.fields.add_handle(code, handle);
            break;
        }
        default: {
            field one;
            one.code = row.code;
            one.group = static_cast<std::int16_t>(code);
            in.walk({one}, 0, 1);
        }
        }
        if (!row.name.empty() && at < in.fields.all().size() && !in.data.bad())
            at_.emplace(row.name, at);
    }
    held_ = std::move(in.fields);
    if (in.data.bad())
        damage.emplace_back(L"its header ends too early");
}

std::uint64_t header::handle(std::string_view name) const {
    const auto found = at_.find(name);
    return found != at_.end() ? held_.all()[found->second].number : 0;
}

void header::write(record_writer& to, const container& file, const object_source& source) const {
    to.text(0, "SECTION");
    to.text(2, "HEADER");
    std::unordered_map<std::string_view, const variable_row*> rows;
    for (const variable_row& row : variable_rows())
        if (!row.name.empty())
            rows.emplace(row.name, &row);
    const auto held = [&](std::string_view name) -> const value* {
        const auto found = at_.find(name);
        return found != at_.end() ? &held_.all()[found->second] : nullptr;
    };
    const value* const flag_field = held("FLAGS");
    const std::int64_t flags = flag_field != nullptr ? flag_field->integer() : 0;
    const auto bit = [&](std::int64_t mask) { return (flags & mask) != 0 ? 1 : 0; };
    struct computed {
        std::string_view name;
        int group;
        std::int64_t number;
    };
    const std::size_t unit_bytes = file.measurement.size();
    const computed of_flags[] = {
        {"$CELWEIGHT", 370, line_weight(static_cast<unsigned>(flags & 0x1F))},
        {"$ENDCAPS", 280, flags >> 5 & 3},
        {"$JOINSTYLE", 280, flags >> 7 & 3},
        {"$LWDISPLAY", 290, 1 - bit(0x200)},
        {"$XEDIT", 290, 1 - bit(0x400)},
        {"$EXTNAMES", 290, bit(0x800)},
        {"$PSTYLEMODE", 290, bit(0x2000)},
        {"$OLESTARTUP", 290, bit(0x4000)},
        {"$MEASUREMENT", 70,
         unit_bytes >= 2 ? static_cast<std::int64_t>(base::little_endian(file.measurement, unit_bytes - 2, 2))
                         : 0},
        {"$ACADMAINTVER", source.version >= r2018 ? 90 : 70, file.maintenance},
    };
    std::string_view order = variable_order();
    std::string name;
    while (!order.empty()) {
        const std::size_t blank = order.find(' ');
        name = "$";
        name += order.substr(0, blank);
        order.remove_prefix(blank + 1);
        if (name == "$ACADVER" || name == "$DWGCODEPAGE" ||
            (name == "$LASTSAVEDBY" && source.version >= r2004)) {
            to.text(9, name);
            name == "$ACADVER"       ? to.text(1, "AC" + std::to_string(source.version))
            : name == "$LASTSAVEDBY" ? to.text(1, last_saver(file))
                                     : to.text(3, code_page_name(file.code_page));
            continue;
        }
        bool done = false;
        for (const computed& one : of_flags)
            if (one.name == name &&
                (flag_field != nullptr || one.name == "$MEASUREMENT" || one.name == "$ACADMAINTVER")) {
                to.text(9, name);
                to.integer(one.group, one.number);
                done = true;
            }
        if (done)
            continue;
        const bool universal = name == "$TDUCREATE" || name == "$TDUUPDATE";
        const std::string stored = universal ? "$TD" + name.substr(4) : name;
        const value* const found = held(stored);
        const auto row = rows.find(stored);
        if (found == nullptr || row == rows.end() || row->second->group == 0)
            continue;
        to.text(9, name);
        value one = *found;
        one.code = static_cast<std::int16_t>(row->second->group);
        if (one.type == value_type::integer && one.code == 40)
            to.real(40, static_cast<double>(one.integer()));
        else
            to.field(held_, one);
    }
    to.text(0, "ENDSEC");
}

} // namespace dwg
