// A drawing that is looked over in pieces has the same records, repairs and messages as one that is read from
// front to back, wherever the pieces begin and whatever is wrong in it.
#include "host/dxf/piece_scan.h"
#include "tests/dxf_support.h"
#include "tests/support.h"

#include <random>
#include <sstream>

namespace {

class Pieces : public testing::Test {
protected:
    ~Pieces() override { dxf::piece_scan::usual_manner() = m_manner; }

    // All that reading finds out: the records with their properties, what was told, and the bytes written.
    static std::string read_in_pieces(const std::string& bytes, std::size_t size, unsigned threads) {
        dxf::piece_scan::usual_manner() = {size, threads};
        const auto drawing = dxf::drawing::from_bytes(bytes);
        if (!drawing)
            return base::narrow(drawing.error());
        std::ostringstream all;
        const dxf::record_table& records = (*drawing)->records();
        for (dxf::record_id id = 0; id < records.size(); ++id)
            all << static_cast<int>(records.kind(id)) << ' ' << records.type_name(id) << ' ' << std::hex
                << records.handle(id) << ' ' << records.owner_handle(id) << ' '
                << records.layer_names()[records.layer(id)] << ' ' << records.layer(id) << '\n'
                << records.text(id);
        return all.str() + test::messages(**drawing) + test::written(**drawing);
    }

    // The bytes of the records that pieces offer.
    static std::size_t taken_from_pieces(const std::string& bytes) {
        const dxf::padded_string padded(bytes);
        dxf::piece_scan pieces(padded.view(), {1000, 2});
        std::size_t taken = 0;
        const char* at = padded.view().data();
        while (const dxf::scanned_piece* const piece = pieces.from(at)) {
            taken += static_cast<std::size_t>(piece->end - piece->begin);
            at = piece->end;
        }
        return taken;
    }

    const dxf::scan_manner m_manner = dxf::piece_scan::usual_manner();
};

constexpr std::size_t whole = 1 << 30; // larger than any drawing here

// A drawing with much of what can mislead: values 0 and type names as values, blocks, parts, braces, layers
// behind other markers, records without handles.
std::string drawing_of(const char* line_end, bool padded) {
    std::string entities;
    for (int i = 0; i < 40; ++i) {
        const std::string handle = test::groups("5 " + std::to_string(1000 + i));
        entities += test::groups("0 LINE") + (i % 7 != 0 ? handle : "") +
                    test::groups(i % 5 != 0 ? "100 AcDbEntity|8 0|62 0|100 AcDbLine|10 0|20 0|11 1|21 0"
                                            : "100 AcDbEntity|67 1|100 AcDbLine|8 L" + std::to_string(i) +
                                                  "|10 0.5|20 0|11 1|21 0");
        if (i % 6 == 0)
            entities += test::groups("0 TEXT|8 \xC7\xBD|1 0|10 0|20 0|40 1|7 LINE|0 3DFACE|8 T|10 0|20 0");
        if (i % 9 == 0)
            entities += test::groups("0 POLYLINE|102 {ACAD_REACTORS|330 C|102 }|330 1F|8 P|66 1|0 VERTEX|8 P|"
                                     "10 0|20 0|0 VERTEX|8 P|10 1|20 0|0 SEQEND|8 P");
    }
    std::string all =
        test::groups("0 SECTION|2 HEADER|9 $ACADVER|1 AC1015|0 ENDSEC|0 SECTION|2 TABLES|"
                     "0 TABLE|2 LAYER|70 1|0 LAYER|2 0|70 0|62 7|6 CONTINUOUS|0 ENDTAB|0 ENDSEC|"
                     "0 SECTION|2 BLOCKS|0 BLOCK|8 0|2 DOOR|70 0|10 0|20 0") +
        entities + test::groups("0 ENDBLK|8 0|0 ENDSEC|0 SECTION|2 ENTITIES") + entities +
        test::groups("0 INSERT|8 0|2 DOOR|10 0|20 0|0 ENDSEC|0 EOF");
    std::istringstream lines(all);
    std::string written;
    bool is_code = true;
    for (std::string line; std::getline(lines, line); is_code = !is_code)
        written += (is_code && padded ? std::string(3 - std::min<std::size_t>(3, line.size()), ' ') : "") +
                   line + line_end;
    return written;
}

// Takes out, doubles, or puts in front of it one line.
std::string damaged(const std::string& bytes, std::mt19937& random) {
    constexpr const char* lines[] = {"", " ", "0", "LINE", "  8", "x", "  0\nEOF", "-3.5"};
    std::size_t from = bytes.find('\n', random() % (bytes.size() - 100)) + 1;
    const std::size_t to = bytes.find('\n', from) + 1;
    switch (random() % 4) {
    case 0:
        return bytes.substr(0, from) + bytes.substr(to);
    case 1:
        return bytes.substr(0, to) + bytes.substr(from);
    case 2:
        return bytes.substr(0, from + 1) + '\0' + bytes.substr(from + 1);
    default:
        return bytes.substr(0, from) + lines[random() % std::size(lines)] + "\n" + bytes.substr(from);
    }
}

} // namespace

TEST_F(Pieces, FindWhatReadingFromFrontToBackFinds) {
    std::vector<std::string> drawings = {drawing_of("\n", false), drawing_of("\r\n", true)};
    for (const char* const name : {"r12.dxf", "r2000_gbk.dxf", "r2018.dxf"})
        drawings.push_back(test::read(test::drawing(name)));
    EXPECT_GT(taken_from_pieces(drawings[0]), drawings[0].size() / 2);
    EXPECT_GT(taken_from_pieces(drawings[1]), drawings[1].size() / 2);
    for (const std::string& bytes : drawings) {
        const std::string expected = read_in_pieces(bytes, whole, 1);
        for (const std::size_t size : {200U, 512U, 1000U, 4096U})
            for (const unsigned threads : {1U, 3U})
                EXPECT_EQ(read_in_pieces(bytes, size, threads), expected) << size << " " << threads;
    }
}

TEST_F(Pieces, LeaveWhatIsDamagedToWhoReadsWithCare) {
    std::mt19937 random(7); // always the same
    const std::string sound[] = {drawing_of("\n", true), drawing_of("\r\n", false)};
    for (int i = 0; i < 200; ++i) {
        const std::string bytes = damaged(sound[i % 2], random);
        EXPECT_EQ(read_in_pieces(bytes, 300, 2), read_in_pieces(bytes, whole, 1)) << i;
    }
}
