// DWG files as drawings: bits, packed pages, whole files, damage, and what a user meets.
#include "dwg_maker.h"

#include "host/dwg/bits.h"
#include "host/dwg/container.h"
#include "host/dwg/drawing_reader.h"
#include "host/dwg/type_rows.h"
#include "host/dxf/drawing.h"
#include "support.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace {

using namespace std::string_literals;

test::dwg_maker small_drawing() {
    test::dwg_maker maker;
    maker.layer(0x30, "\xB8\xF8\xCB\xAE^", 0x3F8); // 给水 in GBK, whose second byte may be a caret
    maker.line(0x40, 0x30, 1, 2, 3, 4.5);
    maker.line(0x41, 0x10, 5, 6, 7, 8);
    maker.text(0x42, 0x30, "DN50");
    return maker;
}

TEST(Dwg, bits) {
    const auto of = [](std::string_view bytes) { return dwg::bit_reader(bytes); };
    EXPECT_EQ(of("\x00\x40\x40"s).BS(), 257);
    EXPECT_EQ(of("\x41\x40"s).BS(), 5);
    EXPECT_EQ(of("\x80"s).BS(), 0);
    EXPECT_EQ(of("\xC0"s).BS(), 256);
    EXPECT_EQ(of("\x40"s).BD(), 1.0);
    EXPECT_EQ(of("\x82\x24"s).MC(), 4610U);
    EXPECT_EQ(of("\x8A\x41"s).signed_MC(), -138);
    EXPECT_EQ(of("\x0A"s).signed_MC(), 10);
    EXPECT_EQ(of("\x51\x1F"s).H(0).handle, 0x1FU);
    EXPECT_EQ(of("\x60"s).H(0x20).handle, 0x21U);
    EXPECT_EQ(of("\xC1\x02"s).H(0x20).handle, 0x1EU);
    // Of a double that is nearly another one, only the low bytes stand there.
    const double usual = std::bit_cast<double>(0x4059000000000000U);
    dwg::bit_reader four(std::string_view("\x40\x40\x80\xC1\x00", 5));
    EXPECT_EQ(std::bit_cast<std::uint64_t>(four.DD(usual)), 0x4059000004030201U);
    dwg::bit_reader short_one("\x01");
    EXPECT_EQ(short_one.RL(), 0U);
    EXPECT_TRUE(short_one.bad());
    dwg::bit_reader unused("\xC0");
    unused.BL();
    EXPECT_TRUE(unused.bad()) << "BL has no fourth code";
}

TEST(Dwg, packed_pages) {
    struct row {
        bool (*unpack)(std::string_view, std::size_t, std::string&);
        std::string packed;
        std::string plain;
        bool sound;
    };
    const std::string end = "\x11\x00\x00"s;
    for (const row& one : {
             row{dwg::unpack_2004, "\x01"s + "abcd" + end, "abcd", true},
             row{dwg::unpack_2004, "\x01"s + "abcd\x50\x00"s + end, "abcddddd", true}, // copies overlap
             row{dwg::unpack_2004, "\x01"s + "abcd\x51\x00Z"s + end, "abcdddddZ", true},
             row{dwg::unpack_2004, "\x01"s + "abcd\x5C\x04"s + end, "abcd", false}, // from before the begin
             row{dwg::unpack_2004, "\x01"s + "abcd\x05"s, "abcd", false},
             row{dwg::unpack_2004, "\x0F"s + "ab", "", false},
             row{dwg::unpack_2004, "\x01"s + "abcd", "abcd", false}, // without an end
             row{dwg::unpack_2007, "\x00"s + "abcdefgh", "abcdefgh", true},
             row{dwg::unpack_2007, "\x01"s + "abcdefghi", "iabcdefgh", true},
             row{dwg::unpack_2007, "\x20\x00\x00\x02"s + "ab", "ba", true},
             row{dwg::unpack_2007, "\x20\x00\x00\x02"s + "ab\x30\x48"s, "ba", false}, // from before the begin
         }) {
        std::string out;
        const bool sound = one.unpack(one.packed, 64, out);
        EXPECT_EQ(sound, one.sound) << testing::PrintToString(one.packed);
        if (one.sound) {
            EXPECT_EQ(out, one.plain) << testing::PrintToString(one.packed);
        }
        EXPECT_LE(out.size(), 64U);
    }
}

TEST(Dwg, becomes_a_drawing) {
    const auto read = dwg::read_drawing(small_drawing().file(39));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->objects, 26U);
    EXPECT_TRUE(read->proxies.empty());
    const auto drawing = dxf::drawing::from_bytes(small_drawing().file(39));
    ASSERT_TRUE(drawing);
    EXPECT_TRUE((*drawing)->repairs().empty());
    EXPECT_EQ((*drawing)->version(), 1015);
    EXPECT_EQ((*drawing)->header_value("$DWGCODEPAGE"), "ANSI_936");
    EXPECT_TRUE((*drawing)->messages().front().starts_with(L"DWG of 2000, 26 objects"));
    const std::string text = read->dxf;
    for (const char* record : {
             "  0\r\nLINE\r\n  5\r\n40\r\n330\r\n1F\r\n100\r\nAcDbEntity\r\n  8\r\n\xB8\xF8\xCB\xAE^ "
             "\r\n100\r\nAcDbLine\r\n"
             " 10\r\n1.0\r\n 20\r\n2.0\r\n 30\r\n0.0\r\n 11\r\n3.0\r\n 21\r\n4.5\r\n 31\r\n0.0\r\n",
             "  0\r\nTEXT\r\n  5\r\n42\r\n330\r\n1F\r\n100\r\nAcDbEntity\r\n  8\r\n\xB8\xF8\xCB\xAE^ "
             "\r\n100\r\nAcDbText\r\n"
             " 10\r\n1.0\r\n 20\r\n2.0\r\n 30\r\n0.0\r\n 40\r\n2.5\r\n  1\r\nDN50\r\n100\r\nAcDbText\r\n",
             "AcDbLayerTableRecord\r\n  2\r\n\xB8\xF8\xCB\xAE^ \r\n 70\r\n     4\r\n 62\r\n     3\r\n  "
             "6\r\nContinuous\r\n370\r\n"
             "    -3\r\n",
         })
        EXPECT_NE(text.find(record), text.npos) << record;
    EXPECT_LT(text.find("\r\n40\r\n330"), text.find("\r\n41\r\n330")) << "drawn in the order of the chain";
}

// They are read and written in parts, by several threads.
TEST(Dwg, many_objects_keep_their_order) {
    test::dwg_maker maker;
    constexpr std::uint64_t first = 0x50;
    constexpr std::uint64_t count = 9000;
    maker.line(0x40, 0x10, 0, 0, 1, 1);
    const auto is_frame = [](std::uint64_t i) { return i % 1500 == 7; };
    for (std::uint64_t i = 0; i < count; ++i)
        is_frame(i) ? maker.entity_of(first + i, 43, test::dwg_bits().RD(1))
                    : maker.line(first + i, 0x10, static_cast<double>(i), 2, 3, 4);
    std::string bytes = maker.file();
    const std::uint64_t damaged[] = {first + 5000, first + 8999};
    for (const std::uint64_t handle : damaged)
        bytes[maker.address(handle) + 20] ^= 1;
    const auto read = dwg::read_drawing(bytes);
    ASSERT_TRUE(read);
    const std::string text = read->dxf;
    std::size_t at = text.find("  5\r\n40\r\n");
    for (std::uint64_t i = 0; i < count; ++i) {
        if (first + i == damaged[0] || first + i == damaged[1])
            continue;
        char begin[64];
        std::snprintf(begin, sizeof begin, "\r\n%s\r\n  5\r\n%llX\r\n",
                      is_frame(i) ? "ACAD_PROXY_ENTITY" : "LINE", static_cast<unsigned long long>(first + i));
        const std::size_t found = text.find(begin, at);
        ASSERT_NE(found, text.npos) << begin;
        ASSERT_LT(found - at, 300U) << "not the next one: " << begin;
        at = found;
    }
    ASSERT_EQ(read->damage.size(), 3U) << "two objects, and the file has no header";
    EXPECT_TRUE(read->damage[1].starts_with(L"object 13D8: ")) << testing::PrintToString(read->damage);
    // All frames have the one class that was made for them.
    EXPECT_EQ(read->proxies.at("OLEFRAME"), 6U);
    EXPECT_NE(text.find("CLASS\r\n  1\r\nOLEFRAME\r\n"), text.npos);
    std::size_t numbers = 0;
    for (std::size_t found = 0; (found = text.find(" 91\r\n      500\r\n", found)) != text.npos; ++found)
        ++numbers;
    EXPECT_EQ(numbers, 6U);
}

TEST(Dwg, check_sums_are_those_of_the_format) {
    EXPECT_EQ(dwg::crc16("123456789", 0), 0xBB3D); // the published check value of this sum
    EXPECT_EQ(dwg::crc16("abcdefghijklmnopqrs", 0xC0C1),
              dwg::crc16("lmnopqrs", dwg::crc16("k", dwg::crc16("abcdefghij", 0xC0C1))));
}

TEST(Dwg, damage_is_told_and_the_rest_opens) {
    test::dwg_maker maker = small_drawing();
    std::string bytes = maker.file();
    bytes[maker.address(0x41) + 20] ^= 1;
    const auto read = dwg::read_drawing(bytes);
    ASSERT_TRUE(read);
    ASSERT_FALSE(read->damage.empty());
    EXPECT_NE(std::find(read->damage.begin(), read->damage.end(),
                        L"object 41: its check sum is wrong; it is left out"),
              read->damage.end());
    EXPECT_NE(read->dxf.find("\r\nDN50\r\n"), std::string::npos);
    EXPECT_EQ(read->dxf.find("  5\r\n41\r\n"), std::string::npos);
    // Any bit: refused with words, or opened.
    const std::string sound = maker.file();
    for (std::size_t bit = 0; bit < sound.size() * 8; bit += 97) {
        bytes = sound;
        bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ 1 << bit % 8);
        if (const auto opened = dxf::drawing::from_bytes(bytes); !opened) {
            EXPECT_FALSE(opened.error().empty());
        }
    }
    for (std::size_t size = 0; size < sound.size(); size += 397) {
        const auto opened = dxf::drawing::from_bytes(sound.substr(0, size));
        EXPECT_TRUE(opened || !opened.error().empty());
    }
}

TEST(Dwg, the_most_frequent_kinds_of_proxies_are_named) {
    dwg::drawing_text drawing;
    drawing.objects = 99;
    const auto told = [&] { return dwg::notes(drawing); };
    drawing.version = 1015;
    EXPECT_EQ(told(), L"DWG of 2000, 99 objects");
    drawing.proxies = {{"A", 1}, {"B", 2}, {"C", 9}, {"D", 2}, {"E", 3}, {"F", 1}};
    EXPECT_TRUE(told().ends_with(L"; 18 are kept as they are, as proxies: C 9, E 3, B 2, D 2, A 1, F 1"))
        << told();
    drawing.proxies.emplace("G", 1);
    EXPECT_TRUE(told().ends_with(
        L"; 19 are kept as they are, as proxies: C 9, E 3, B 2, D 2, A 1 and 2 other kinds"));
}

// Every command that takes a drawing takes this one: opened, put in as a block, attached; and when the
// drawing that it is attached to is opened again.
TEST(Dwg, is_opened_inserted_and_attached) {
    const test::folder folder;
    const std::string plan = folder.write("plan.dwg", small_drawing().file(39)).string();
    const std::string out = (folder / "out.dxf").string();
    const auto opened = test::zefhost({"--no-module", "-c", "OPEN\n" + plan + "\nLIST (handent \"42\") "});
    EXPECT_EQ(opened.status, 0) << opened.err;
    EXPECT_NE(opened.out.find("DN50"), std::string::npos) << opened.out;
    const auto attached = test::zefhost(
        {test::drawing("r2018.dxf").string(), "--no-module", "-c",
         "XATTACH\n" + plan + "\nA 0,0 1 1 0\n-INSERT\nblock=" + plan + "\n9,9\n\n\n\n", "-o", out});
    EXPECT_EQ(attached.status, 0) << attached.out << attached.err;
    EXPECT_NE(attached.err.find("plan.dwg: DWG of 2000, 26 objects"), std::string::npos) << attached.err;
    const auto again = test::zefhost({out, "--no-module", "-c", "-LAYER ? *\n\nINSERT ?\n*"});
    EXPECT_EQ(again.status, 0) << again.err;
    EXPECT_NE(again.out.find("Resolve Xref \"plan\": " + plan + "\n"), std::string::npos) << again.out;
    EXPECT_NE(again.out.find("plan|给水"), std::string::npos) << again.out;
    EXPECT_NE(again.out.find("\"block\""), std::string::npos) << again.out;
}

TEST(Dwg, what_can_not_be_read_is_refused) {
    for (const auto& [version, words] :
         std::vector<std::pair<std::string, std::wstring>>{{"AC1014", L"before AutoCAD 2000"},
                                                           {"AC1009", L"before AutoCAD 2000"},
                                                           {"AC1099", L"unknown"}}) {
        std::string bytes = small_drawing().file();
        bytes.replace(0, 6, version);
        const auto opened = dxf::drawing::from_bytes(bytes);
        ASSERT_FALSE(opened);
        EXPECT_NE(opened.error().find(words), std::wstring::npos) << version;
    }
    EXPECT_FALSE(dwg::is_dwg("AC1015\nSECTION"));
}

TEST(Dwg, is_used_and_never_overwritten) {
    const test::folder folder;
    const std::string bytes = small_drawing().file(39);
    const std::string plan = folder.write("plan.dwg", bytes).string();
    const std::string out = (folder / "out.dxf").string();
    const std::string session =
        "CLOSESELLAYER\n(handent \"40\")\n\n-INSERT\nplan2=" + plan + "\n0,0\n\n\n\nQUIT\n";
    const auto run = test::zefhost({plan, "-o", out}, session);
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    EXPECT_NE(run.err.find("DWG of 2000, 26 objects"), std::string::npos) << run.err;
    const std::string saved = test::read(out);
    EXPECT_NE(saved.find("BLOCK\r\n"), std::string::npos);
    EXPECT_NE(saved.find("plan2"), std::string::npos);
    EXPECT_NE(saved.find(" 62\r\n    -3\r\n"), std::string::npos) << "the layer is off";
    // Saving goes to DXF alone.
    constexpr int not_saved = 6;
    EXPECT_EQ(test::zefhost({plan, "-o", plan}, "LINE\n0,0\n1,1\n\nQUIT\n").status, not_saved);
    const auto saveas = test::zefhost({plan}, "LINE\n0,0\n1,1\n\nQSAVE\n\n\nQUIT\n");
    EXPECT_EQ(saveas.status, 0) << saveas.out << saveas.err;
    EXPECT_TRUE(std::filesystem::exists(folder / "plan.dxf"));
    EXPECT_EQ(test::read(plan), bytes);
}

// Every object of the drawings of $ZEF_DWG: its check sum is right, and its row ends where its data ends.
TEST(Dwg, drawings_of_the_field) {
    const char* const named = std::getenv("ZEF_DWG");
    if (named == nullptr)
        return;
    for (const auto& file : std::filesystem::directory_iterator(named)) {
        if (file.path().extension() != ".dwg")
            continue;
        SCOPED_TRACE(file.path().filename());
        const auto read = dwg::read_drawing(test::read(file.path()));
        ASSERT_TRUE(read);
        EXPECT_TRUE(read->damage.empty());
        for (const dwg::object_type& type : dwg::object_types())
            EXPECT_FALSE(read->proxies.contains(std::string(type.row->record))) << type.row->record;
        const auto drawing = dxf::drawing::from_bytes(test::read(file.path()));
        ASSERT_TRUE(drawing);
        EXPECT_TRUE((*drawing)->repairs().empty());
    }
}

} // namespace
