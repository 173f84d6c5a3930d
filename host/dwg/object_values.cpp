// Values of objects that are more than a number: texts, streams, colours, lineweights, application data.
#include "base/utf.h"
#include "dbcolor.h"
#include "host/dwg/object_reader.h"

#include <algorithm>
#include <iterator>

namespace dwg {

std::string take_bytes(bit_reader& from, std::size_t count) {
    std::string out;
    if (count > from.left() / 8) {
        from.spoil();
        return out;
    }
    if (from.at() % 8 == 0) {
        out = from.bytes().substr(from.at() / 8, count);
        from.skip(count * 8);
        return out;
    }
    out.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
        out += static_cast<char>(from.RC());
    return out;
}

std::string bits_as_bytes(bit_reader from, std::size_t begin, std::size_t end) {
    bit_reader part(from.bytes(), begin, std::max(begin, end));
    std::string out = take_bytes(part, part.left() / 8);
    if (const auto rest = static_cast<unsigned>(part.left()); rest != 0)
        out += static_cast<char>(part.take(rest) << (8 - rest));
    return out;
}

std::string utf8_of(std::string_view utf16) {
    std::string out;
    out.reserve(utf16.size() / 2);
    const auto unit = [&](std::size_t at) {
        return static_cast<char32_t>(static_cast<unsigned char>(utf16[at]) |
                                     static_cast<unsigned char>(utf16[at + 1]) << 8);
    };
    for (std::size_t i = 0; i + 1 < utf16.size(); i += 2) {
        char32_t c = unit(i);
        if (c < 0x80) {
            out += static_cast<char>(c);
            continue;
        }
        if (c >= 0xD800 && c < 0xDC00 && i + 3 < utf16.size() && (unit(i + 2) & 0xFC00) == 0xDC00) {
            c = 0x10000 + ((c - 0xD800) << 10) + (unit(i + 2) - 0xDC00);
            i += 2;
        }
        const bool lone = c >= 0xD800 && c < 0xE000;
        base::append_utf8(out, lone ? base::replacement_character : c);
    }
    return out;
}

int line_weight(unsigned code) {
    constexpr int weights[] = {0,  5,  9,  13, 15, 18,  20,  25,  30,  35,  40,  50,
                               53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211};
    if (code < std::size(weights))
        return weights[code];
    constexpr unsigned by_block = 30;
    constexpr unsigned usual_weight = 31;
    return code == by_block ? -2 : code == usual_weight ? -3 : -1;
}

std::int32_t raw_color(int index) {
    const std::uint32_t raw = index == 256 ? 0xC0000000U
                              : index == 0 ? 0xC1000000U
                                           : 0xC3000000U | static_cast<std::uint32_t>(index & 0xFF);
    return static_cast<std::int32_t>(raw);
}

// The stream of texts ends before the handles; its length stands behind it.
bool take_string_stream(bit_reader& data, bit_reader& strings) {
    constexpr std::size_t word = 16;
    if (data.left() == 0)
        return false;
    const std::size_t flag = data.end() - 1;
    const bool has = bit_reader(data.bytes(), flag, flag + 1).B();
    data.end_at(flag);
    if (!has)
        return false;
    const auto word_at = [&](std::size_t at) { return bit_reader(data.bytes(), at, at + word).RS(); };
    if (data.left() < word) {
        data.spoil();
        return true;
    }
    std::size_t end = flag - word;
    std::size_t length = word_at(end);
    if ((length & 0x8000) != 0 && data.left() >= 2 * word) {
        end -= word;
        length = (length & 0x7FFF) | static_cast<std::size_t>(word_at(end)) << 15;
    }
    if (length > end - data.at()) {
        data.spoil();
        return true;
    }
    strings = bit_reader(data.bytes(), end - length, end);
    data.end_at(end - length);
    return true;
}

void object_reader::read_point(int group) {
    const double x = data.BD();
    const double y = data.BD();
    fields.add_point(group, x, y, data.BD());
}

// A colour is an index, and since 2004 a number with the way it is meant, and names of colour books.
void object_reader::read_color(int group, field_code code, bool is_long) {
    constexpr int true_color = 420 - 62;
    constexpr int book_name = 430 - 62;
    int index = static_cast<std::int16_t>(data.BS());
    std::uint32_t raw = static_cast<std::uint32_t>(raw_color(index));
    std::string name;
    std::string book;
    const bool has_number = is_long || since(r2004);
    if (has_number) {
        raw = data.BL();
        const unsigned flags = data.RC();
        if ((flags & 1) != 0)
            name = text();
        if ((flags & 2) != 0)
            book = text();
    }
    if (group == 0)
        return;
    if (code == field_code::CMR) {
        fields.add_integer(group, static_cast<std::int32_t>(raw));
        return;
    }
    bool is_true = false;
    switch (has_number ? raw >> 24 : 0) {
    case 0xC0:
        index = 256;
        break;
    case 0xC1:
        index = 0;
        break;
    case 0xC2:
        is_true = true;
        break;
    case 0xC3:
        index = static_cast<int>(raw & 0xFF);
        break;
    case 0xC5:
        index = 7;
        break;
    case 0xC8:
        index = 257;
        break;
    default:
        break;
    }
    if (is_true && index == 0)
        index =
            AcCmEntityColor::lookUpACI(static_cast<Adesk::UInt8>(raw >> 16),
                                       static_cast<Adesk::UInt8>(raw >> 8), static_cast<Adesk::UInt8>(raw));
    fields.add_integer(group, index);
    if (code == field_code::CMC && is_true)
        fields.add_integer(group + true_color, raw & 0xFFFFFF);
    if (code == field_code::CMC && !(name.empty() && book.empty()))
        fields.add_text(group + book_name, book.empty() ? name : book + "$" + name);
}

void object_reader::read_extended_data() {
    extended.clear();
    for (const application_data& of : applications_) {
        extended.add_name(1001, of.handle);
        bit_reader in(source.objects, of.at, of.at + of.size * 8);
        while (in.left() >= 8 && !in.bad()) {
            const int item = in.RC();
            const int group = 1000 + item;
            switch (item) {
            case 0: {
                std::size_t length = since(r2007) ? in.RS() : in.RC();
                if (!since(r2007))
                    in.RS();
                const std::string bytes = take_bytes(in, since(r2007) ? length * 2 : length);
                extended.add_text(group, since(r2007) ? utf8_of(bytes) : bytes);
                break;
            }
            case 2:
                extended.add_text(group, in.RC() == 0 ? "{" : "}");
                break;
            case 3:
            case 5: {
                std::uint64_t handle = 0;
                for (int i = 0; i < 8; ++i)
                    handle = handle << 8 | in.RC();
                item == 3 ? extended.add_name(group, handle) : extended.add_handle(group, handle);
                break;
            }
            case 4:
                extended.add_chunk(group, take_bytes(in, in.RC()));
                break;
            case 10:
            case 11:
            case 12:
            case 13:
            case 14:
            case 15: {
                const double x = in.RD();
                const double y = in.RD();
                extended.add_point(group, x, y, in.RD());
                break;
            }
            case 40:
            case 41:
            case 42:
                extended.add_real(group, in.RD());
                break;
            case 70:
                extended.add_integer(group, static_cast<std::int16_t>(in.RS()));
                break;
            case 71:
                extended.add_integer(group, static_cast<std::int32_t>(in.RL()));
                break;
            default:
                in.spoil();
            }
        }
    }
}

} // namespace dwg
