// Bodies of solids: their text made of their binary form, and the data store in which they stand since 2013.
#include "dwg_maker.h"

#include "host/dwg/data_store.h"
#include "host/dwg/modeler_text.h"
#include "host/dwg/object_reader.h"
#include "host/dwg/record_writer.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace {

std::string bytes_of(std::string_view hexadecimal) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hexadecimal.size(); i += 2)
        bytes += static_cast<char>(std::stoi(std::string(hexadecimal.substr(i, 2)), nullptr, 16));
    return bytes;
}

// The begin and the end of a body of a drawing of 2004.
const std::string begin = bytes_of(
    "414349532042696E61727946696C654051000000000000020000000000000007104175746F6465736B204175746F434144071441"
    "534D203232332E302E312E31393330204F535807184D6F6E204A756E2031382031313A30393A3332203230313806000000000000"
    "F03F068DEDB5A0F7C6B03E06BBBDD7D9DF7CDB3D");
const std::string end = bytes_of("0E03456E640E026F660E04414349530D0464617461");

std::string text_of(const std::string& body, bool* bad = nullptr) {
    dwg::bit_reader in(body);
    std::string text = dwg::modeler_text(in);
    if (bad != nullptr)
        *bad = in.bad();
    else
        EXPECT_FALSE(in.bad()) << "or it ends elsewhere: " << in.left();
    return text;
}

// Records of the drawing and the lines that the editor wrote for them.
constexpr std::pair<std::string_view, std::string_view> records[] = {
    {"0D0961736D6865616465720CFFFFFFFF04FFFFFFFF070C3232332E302E312E3139333011",
     "asmheader $-1 -1 @12 223.0.1.1930 #"},
    {"0D04666163650C0500000004FFFFFFFF0CFFFFFFFF0CFFFFFFFF0C060000000C030000000CFFFFFFFF0C070000000B0A0B11",
     "face $5 -1 $-1 $-1 $6 $3 $-1 $7 forward double out #"},
    {"0E05706C616E650D07737572666163650CFFFFFFFF04FFFFFFFF0CFFFFFFFF13A1D16D0D164392C07BCDAB2D205CC6400000000"
     "0000000001400000000000000000000000000000000000000000000F03F14000000000000F03F00000000000000000000000000"
     "0"
     "000000B0B0B0B0B11",
     "plane-surface $-1 -1 $-1 -1168.771535602493032 11448.25139377148844 0 0 0 1 1 0 0 forward_v I I I I #"},
    {"0D04656467650C0F00000004FFFFFFFF0CFFFFFFFF0C100000000600000000000000000C1100000006FA77BF4FE79F95400C080"
     "000000C120000000B0707756E6B6E6F776E11",
     "edge $15 -1 $-1 $16 0 $17 1383.975890151689327 $8 $18 forward @7 unknown #"},
    {"0E0873747261696768740D0563757276650CFFFFFFFF04FFFFFFFF0CFFFFFFFF13F0671BE501074BC01C8E6815D306C74000000"
     "0000000000014D40ED628D7F4EABF3FD3932F703EE13F00000000000000000A0600000000000000000A06FA77BF4FE79F95401"
     "1",
     "straight-curve $-1 -1 $-1 -54.0547453292673481 11789.64909083308157 0 -0.8423877523022960112 "
     "0.5388718537566105082 0 F 0 F 1383.975890151689327 #"},
};

TEST(DwgBodies, have_the_lines_that_the_editor_writes) {
    std::string body = begin;
    std::string lines = "20800 5 2 0\n16 Autodesk AutoCAD 20 ASM 223.0.1.1930 OSX 0\n"
                        "1 9.999999999999999547e-07 1.000000000000000036e-10\n";
    for (const auto& [bytes, line] : records) {
        body += bytes_of(bytes);
        lines.append(line) += '\n';
    }
    EXPECT_EQ(text_of(body + end), lines);
    for (std::size_t size = 0; size < body.size() + end.size(); ++size) {
        bool bad = false;
        text_of((body + end).substr(0, size), &bad);
        EXPECT_TRUE(bad) << size;
    }
}

std::string record(std::string_view name, std::string_view rest) {
    std::string bytes;
    for (std::size_t at = 0; at < name.size();) {
        const std::size_t dash = std::min(name.find('-', at), name.size());
        bytes += dash < name.size() ? '\x0E' : '\x0D';
        bytes += static_cast<char>(dash - at);
        bytes += name.substr(at, dash - at);
        at = dash + 1;
    }
    return bytes.append(rest) + '\x11';
}

TEST(DwgBodies, have_words_for_yes_and_no) {
    constexpr struct {
        std::string_view name, no, yes;
    } all[] = {
        {"coedge", "forward", "reversed"},
        {"face", "forward single out", "reversed double in"},
        {"transform", "no_rotate no_reflect no_shear", "rotate reflect shear"},
        {"cone-surface", "I I forward I I I I", "F F reversed F F F F"},
        {"sphere-surface", "forward_v I I I I", "reverse_v F F F F"},
        {"ellipse-curve", "I I", "F F"},
    };
    for (const auto& one : all)
        for (const bool yes : {false, true}) {
            const std::string_view words = yes ? one.yes : one.no;
            const auto count = static_cast<std::size_t>(std::count(words.begin(), words.end(), ' ') + 1);
            const std::string text =
                text_of(begin + record(one.name, std::string(count, yes ? '\x0A' : '\x0B')) + end);
            EXPECT_NE(text.find('\n' + std::string(one.name) + ' ' + std::string(words) + " #\n"), text.npos)
                << text;
        }
}

TEST(DwgBodies, that_are_not_understood_are_refused) {
    for (const std::string& what :
         {record("intcurve-curve", "\x0B"), record("edge", "\x0F"),
          record("edge", std::string("\x15\1\0\0\0", 5)), record("edge", "\x07\x02\xC3\x9C"),
          record("edge", std::string("\x06\0\0\0\0\0\0\xF0\x7F", 9)), std::string("\x0B\x11")}) {
        bool bad = false;
        text_of(begin + what + end, &bad);
        EXPECT_TRUE(bad);
    }
}

// ---- the data store

std::string number(std::uint64_t value, unsigned bytes) {
    return test::dwg_bits().raw(value, bytes).bytes();
}

std::string segment(std::string_view name, std::uint32_t first, std::uint32_t second,
                    const std::string& held) {
    return number(0xD5AC, 2) + std::string(name) + number(0, 24) + number(first, 4) + number(second, 4) +
           std::string(8, 'U') + held;
}

// Three segments: schemas, the list of data, the data of two owners and of one that was deleted.
// The list may name the first of them many times.
std::string store_of(std::uint32_t size_of_first, std::uint32_t times = 1,
                     const std::string& first = "solid") {
    const std::string names = number(2, 4) + std::string("AcDb_Thumbnail_Schema\0AcDb3DSolid_ASM_Data\0", 43);
    const auto entry = [](std::uint32_t segment, std::uint32_t at, std::uint32_t schema) {
        return number(segment, 4) + number(at, 4) + number(schema, 4);
    };
    const auto head = [](std::uint64_t owner, std::uint32_t at) {
        return number(20, 4) + number(1, 4) + number(owner, 8) + number(at, 4);
    };
    std::string entries = number(times + 2, 4) + number(0, 4) + entry(0, 0, 0) + entry(3, 20, 0);
    for (std::uint32_t i = 0; i < times; ++i)
        entries += entry(3, 0, 1);
    const std::string segments[] = {segment("schidx", 3, 0, names), segment("datidx", 0, 0, entries),
                                    segment("_data_", 0, 6,
                                            head(0x2E1, 7) + head(0x22, 0) + std::string(8, 'b') +
                                                number(3, 4) + "PNG" + number(size_of_first, 4) + first)};
    std::string list = segment("segidx", 0, 0, number(0, 12));
    constexpr std::size_t head_size = 128;
    std::string bytes;
    std::size_t at = head_size + list.size() + 3 * 12;
    for (const std::string& one : segments) {
        list += number(at, 8) + number(one.size(), 4);
        bytes += one;
        at += one.size();
    }
    std::string whole = number(0x6472616A, 4) + number(head_size, 4) + number(0, 16) + number(head_size, 8) +
                        number(4, 4) + number(1, 4) + number(2, 4);
    whole.resize(head_size);
    return whole + list + bytes;
}

TEST(DwgDataStore, is_written_as_a_section) {
    std::vector<std::wstring> damage;
    const std::string bytes = store_of(5);
    const auto all = dwg::read_data_store(bytes, damage);
    EXPECT_TRUE(damage.empty());
    const dwg::object_source source;
    std::string text;
    dwg::record_writer write(text, source);
    dwg::write_data_store(write, all);
    std::erase(text, ' ');
    for (const char* part :
         {"  2\r\nACDSDATA\r\n", "90\r\n1\r\n1\r\nAcDb3DSolid_ASM_Data\r\n",
          "90\r\n1\r\n2\r\nAcDbDs::ID\r\n280\r\n10\r\n320\r\n2E1\r\n2\r\nASM_Data\r\n280\r\n15\r\n94"
          "\r\n5\r\n310\r\n736F6C6964\r\n",
          "320\r\n22\r\n2\r\nThumbnail_Data\r\n280\r\n15\r\n94\r\n3\r\n310\r\n504E47\r\n"}) {
        std::string wanted = part;
        std::erase(wanted, ' ');
        EXPECT_NE(text.find(wanted), text.npos) << wanted << text;
    }
}

TEST(DwgDataStore, damage_is_told) {
    const std::string bytes = store_of(500);
    std::vector<std::wstring> damage;
    EXPECT_EQ(dwg::read_data_store(bytes, damage).size(), 1U);
    EXPECT_EQ(damage, std::vector<std::wstring>{L"a part of the data store is too large to be read"});
    damage.clear();
    const std::string nested = store_of(300, 100, std::string(300, 's'));
    EXPECT_LT(dwg::read_data_store(nested, damage).size(), 10U) << "more than the file is long";
    EXPECT_FALSE(damage.empty());
    for (std::size_t bit = 0; bit < bytes.size() * 8; bit += 3) {
        std::string flipped = store_of(5);
        flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ 1 << bit % 8);
        dwg::read_data_store(std::string_view(flipped).substr(0, flipped.size() - bit % 3), damage);
    }
}

} // namespace
