#include "base/dbase_table.h"

#include "base/byte_order.h"
#include "base/utf.h"

#include <gtest/gtest.h>

namespace {

using base::dbase_memo_form;
using base::dbase_table;
using namespace std::chrono_literals;

constexpr auto today = 2021y / 3 / 4;

base::dbase_encoding utf8() {
    return {base::widen, [](char32_t c, std::string& out) {
                base::append_utf8(out, c);
                return c != U'☹';
            }};
}

std::string little(std::uint32_t value, std::size_t count) {
    std::string bytes;
    for (; count > 0; --count, value >>= 8)
        bytes += static_cast<char>(value & 0xFF);
    return bytes;
}

std::string padded(std::string bytes, std::size_t size) {
    bytes.resize(size);
    return bytes;
}

struct entry {
    std::string name;
    char type;
    unsigned length;
    unsigned decimals = 0;
};

// A table as the documents of the format have it; `rows` are its rows' bytes with their marks.
std::string table_bytes(int version, const std::vector<entry>& fields, const std::vector<std::string>& rows,
                        std::string after_header = {}, std::string after_rows = "\x1A") {
    std::string list;
    for (const entry& field : fields)
        list += padded(padded(field.name, 11) + field.type + std::string(4, '\0') +
                           static_cast<char>(field.length) + static_cast<char>(field.decimals),
                       32);
    list += "\r" + after_header;
    const std::size_t row_size = rows.empty() ? 1 : rows[0].size();
    std::string bytes(1, static_cast<char>(version));
    bytes += "\x79\x03\x04" + little(static_cast<std::uint32_t>(rows.size()), 4) +
             little(static_cast<std::uint32_t>(32 + list.size()), 2) +
             little(static_cast<std::uint32_t>(row_size), 2);
    bytes = padded(bytes, 32) + list;
    for (const std::string& row : rows)
        bytes += row;
    return bytes + after_rows;
}

const std::vector<entry> pipe_fields = {
    {"NAME", 'C', 8}, {"DN", 'N', 6, 1}, {"WEIGHT", 'F', 8, 3}, {"PLASTIC", 'L', 1}, {"MADE", 'D', 8}};

std::string pipe_table() {
    // The last is filled with zeros, as some writers do.
    return table_bytes(0x03, pipe_fields,
                       {" \xE9\x95\x80\xE9\x94\x8C  20.0     1.250F20210304",
                        "*PPR     ******        ?00000000",
                        " PE" + std::string(6, '\0') + std::string(23, ' ')});
}

// What parse says of some bytes, "" when nothing.
std::wstring fault(std::string table, std::optional<std::string> memo = {}) {
    const auto read = dbase_table::parse(std::move(table), std::move(memo), utf8());
    return read ? L"" : read.error();
}

TEST(BaseDbase, ReadsValues) {
    const auto table = dbase_table::parse(pipe_table(), {}, utf8());
    ASSERT_TRUE(table) << base::narrow(table.error());
    ASSERT_EQ(table->row_count(), 3u);
    EXPECT_EQ(table->find_field(L"Weight"), 2u);
    EXPECT_EQ(table->find_field(L"WEIGH"), std::nullopt);
    const std::wstring names[] = {L"镀锌", L"PPR", L"PE"};
    const std::optional<double> diameters[] = {20.0, {}, {}};
    const std::optional<double> weights[] = {1.25, {}, {}};
    const std::optional<bool> plastic[] = {false, {}, {}};
    const std::optional<std::chrono::year_month_day> made[] = {today, {}, {}};
    for (std::size_t row = 0; row < 3; ++row) {
        EXPECT_EQ(table->is_deleted(row), row == 1) << row;
        EXPECT_EQ(table->text(row, 0), names[row]) << row;
        EXPECT_EQ(table->number(row, 1), diameters[row]) << row;
        EXPECT_EQ(table->number(row, 2), weights[row]) << row;
        EXPECT_EQ(table->logical(row, 3), plastic[row]) << row;
        EXPECT_EQ(table->date(row, 4), made[row]) << row;
    }
    // Another type, row or field than there is.
    EXPECT_EQ(table->number(0, 0), std::nullopt);
    EXPECT_EQ(table->logical(0, 9), std::nullopt);
    EXPECT_EQ(table->date(3, 4), std::nullopt);
    EXPECT_EQ(table->text(3, 0), L"");
}

// Each variant is read, is the same bytes when nothing was changed, and takes a row more.
TEST(BaseDbase, KeepsWhatItDoesNotKnow) {
    const std::string long_text(300, 'x');
    const struct {
        const char* what;
        std::string bytes;
        std::wstring first; // text of the last row's first field
    } rows[] = {
        {"no end mark behind the rows", table_bytes(3, {{"A", 'C', 2}}, {" ab"}, {}, {}), L"ab"},
        {"bytes behind the end", table_bytes(3, {{"A", 'C', 2}}, {" ab"}, {}, "\x1A\x1A tail"), L"ab"},
        {"old header with one byte more", table_bytes(3, {{"A", 'C', 2}}, {" ab"}, std::string(1, '\0')),
         L"ab"},
        {"Visual FoxPro's header",
         table_bytes(0x30, {{"A", 'C', 2}, {"T", 'T', 8}}, {" ab" + std::string(8, 1)},
                     std::string(263, '\0')),
         L"ab"},
        {"text of 300", table_bytes(0xF5, {{"A", 'C', 300 % 256, 300 / 256}}, {" " + long_text}),
         base::widen(long_text)},
        {"decimals of a text mean nothing", table_bytes(3, {{"A", 'C', 2, 7}}, {" ab"}), L"ab"},
        {"garbage behind a name", table_bytes(3, {{std::string("A\0zzzz", 6), 'C', 2}}, {" ab"}), L"ab"},
        {"undecodable bytes", table_bytes(3, {{"A", 'C', 2}}, {" \xFF\x80"}), L"\xDCFF\xDC80"},
    };
    for (const auto& row : rows) {
        auto table = dbase_table::parse(row.bytes, {}, utf8());
        ASSERT_TRUE(table) << row.what << ": " << base::narrow(table.error());
        EXPECT_EQ(table->bytes(), row.bytes) << row.what;
        EXPECT_EQ(table->find_field(L"a"), 0u) << row.what;
        const std::size_t last = table->row_count() - 1;
        EXPECT_EQ(table->text(last, 0), row.first) << row.what;
        EXPECT_EQ(table->append_row().operator*(), last + 1) << row.what;
        EXPECT_TRUE(table->set_text(last + 1, 0, L"x")) << row.what;
        const auto again = dbase_table::parse(table->bytes(), {}, utf8());
        ASSERT_TRUE(again) << row.what << ": " << base::narrow(again.error());
        EXPECT_EQ(again->text(last, 0), row.first) << row.what;
        EXPECT_EQ(again->text(last + 1, 0), L"x") << row.what;
    }
}

TEST(BaseDbase, ChangesOnlyTheValuesBytes) {
    auto table = *dbase_table::parse(pipe_table(), {}, utf8());
    std::string expected = table.bytes();
    const std::size_t first_row = 32 + 5 * 32 + 1;
    const auto expect = [&](const char* what, const base::result<void>& done, std::size_t row, std::size_t at,
                            std::string_view bytes) {
        EXPECT_TRUE(done) << what;
        expected.replace(first_row + row * 32 + at, bytes.size(), bytes);
        EXPECT_EQ(table.bytes(), expected) << what;
    };
    // The value that stands there, also where its bytes are not those that we would write.
    expect("text", table.set_text(2, 0, L"PE"), 0, 0, "");
    expect("number", table.set_number(0, 1, 20), 0, 0, "");
    expect("logical", table.set_logical(0, 3, false), 0, 0, "");
    expect("date", table.set_date(0, 4, today), 0, 0, "");
    expect("mark", table.set_deleted(1, true), 0, 0, "");

    expect("text", table.set_text(2, 0, L"铜"), 2, 1, "\xE9\x93\x9C     ");
    expect("number", table.set_number(1, 1, -2.25), 1, 9, "  -2.2");
    expect("no minus", table.set_number(1, 1, -0.04), 1, 9, "   0.0");
    expect("real", table.set_number(2, 2, 1234.5), 2, 15, "1234.500");
    expect("blank", table.set_number(0, 2, {}), 0, 15, "        ");
    expect("logical", table.set_logical(1, 3, true), 1, 23, "T");
    expect("unknown", table.set_logical(0, 3, {}), 0, 23, " ");
    expect("date", table.set_date(1, 4, 987y / 12 / 1), 1, 24, "09871201");
    expect("unmark", table.set_deleted(1, false), 1, 0, " ");
    expect("mark", table.set_deleted(2, true), 2, 0, "*");
}

TEST(BaseDbase, RefusesWhatDoesNotFit) {
    auto table = *dbase_table::parse(pipe_table(), {}, utf8());
    const std::string before = table.bytes();
    const std::pair<base::result<void>, std::wstring> rows[] = {
        {table.set_text(0, 0, L"镀锌管"), L"row 1, field 'NAME': '镀锌管' has 9 bytes, the field has 8"},
        {table.set_text(1, 0, L"a☹b"), L"row 2, field 'NAME': '☹' is not in the table's code page"},
        {table.set_text(0, 1, L"1"), L"row 1, field 'DN': a field of type N has no such value"},
        {table.set_number(0, 1, 12345), L"row 1, field 'DN': '12345.0' has 7 bytes, the field has 6"},
        {table.set_number(0, 1, 1e308 * 10),
         L"row 1, field 'DN': no field can hold a number that is not finite"},
        {table.set_number(0, 0, 1), L"row 1, field 'NAME': a field of type C has no such value"},
        {table.set_date(0, 4, 2021y / 2 / 30),
         L"row 1, field 'MADE': this is no date of the years 0 to 9999"},
        {table.set_memo(0, 0, L""), L"row 1, field 'NAME': a field of type C has no such value"},
        {table.set_logical(3, 3, true), L"row 4, field 'PLASTIC': the table has 3 rows and 5 fields"},
        {table.set_logical(0, 5, true), L"row 1, field 6: the table has 3 rows and 5 fields"},
        {table.set_deleted(3, true), L"there is no row 4, the table has 3"},
    };
    for (const auto& [done, words] : rows) {
        ASSERT_FALSE(done) << base::narrow(words);
        EXPECT_EQ(done.error(), words);
    }
    EXPECT_EQ(table.bytes(), before);
}

TEST(BaseDbase, BrokenTables) {
    const std::string good = pipe_table();
    const auto changed = [&](std::size_t at, std::string_view bytes) {
        return std::string(good).replace(at, bytes.size(), bytes);
    };
    const std::pair<std::string, std::wstring> rows[] = {
        {"", L"a dBASE table's header has at least 32 bytes, here are 0"},
        {changed(0, "\xE5"), L"byte 0 is 229, which is no version of dBASE III, dBASE IV or FoxPro"},
        {changed(15, "\x01"), L"the table is encrypted (byte 15)"},
        {changed(8, "\xFF\xFF"), L"the header (byte 8) should have 65535 bytes, the file has 290"},
        {changed(8, std::string_view("\x05\0", 2)),
         L"the header (byte 8) should have 5 bytes, the file has 290"},
        {changed(8, std::string_view("\x30\0", 2)),
         L"the list of fields has no end before the header's at byte 48"},
        {changed(32, "\r"), L"the table has no fields"},
        {changed(32 + 11, std::string_view("\0", 1)), L"field 1 'NAME' (byte 43) has no type"},
        {changed(32 + 16, std::string_view("\0", 1)),
         L"field 'NAME' of type C cannot have a length of 0 (byte 48)"},
        {changed(32 + 4 * 32 + 16, "\x07"), L"field 'MADE' of type D cannot have a length of 7 (byte 176)"},
        {changed(32 + 16, "\x09"),
         L"the fields and the mark of deleted rows have 33 bytes together, a row (byte 10) has 32"},
        {changed(10, std::string_view("\0\0", 2)),
         L"the fields and the mark of deleted rows have 32 bytes together, a row (byte 10) has 0"},
        {good.substr(0, good.size() - 2), L"the file ends at byte 288, before the end of row 3 of 3"},
        {changed(4, "\xFF\xFF\xFF\xFF"), L"the file ends at byte 290, before the end of row 4 of 4294967295"},
    };
    for (const auto& [bytes, words] : rows)
        EXPECT_EQ(fault(bytes), words);
    // However much is cut off but the end mark, it is told.
    for (std::size_t size = 0; size + 1 < good.size(); ++size)
        EXPECT_NE(fault(good.substr(0, size)), L"") << size;
}

// The three forms, each with the texts "管\r\n材" at its first block and "" or none at all elsewhere.
struct memo_case {
    dbase_memo_form form;
    int version;
    std::string file;
    unsigned block;
    unsigned block_size;
};

std::vector<memo_case> memo_cases() {
    const std::string text = "\xE7\xAE\xA1\r\n\xE6\x9D\x90"; // 8 bytes
    const std::string big_header = std::string("\0\0\0\x09\0\0\0\x40", 8);
    return {
        {dbase_memo_form::dbase3, 0x83, padded(little(2, 4), 512) + padded(text + "\x1A\x1A", 512), 1, 512},
        {dbase_memo_form::dbase4, 0x8B,
         padded(padded(little(2, 4), 20) + little(1024, 2), 1024) +
             padded(std::string("\xFF\xFF\x08\0\x10\0\0\0", 8) + text, 1024),
         1, 1024},
        {dbase_memo_form::foxpro, 0xF5,
         padded(big_header, 512) + padded(std::string("\0\0\0\x01\0\0\0\x08", 8) + text, 64), 8, 64},
        // Visual FoxPro: the last block is not filled up.
        {dbase_memo_form::foxpro, 0x30,
         padded(big_header, 512) + std::string("\0\0\0\x01\0\0\0\x08", 8) + text, 8, 64},
    };
}

std::string memo_table(const memo_case& one) {
    std::string numbers = one.version == 0x30
                              ? little(one.block, 4)
                              : std::string(one.block < 10 ? 9 : 8, ' ') + std::to_string(one.block);
    std::string nothing(numbers.size(), one.version == 0x30 ? '\0' : ' ');
    std::string bytes =
        table_bytes(one.version, {{"NOTE", 'M', static_cast<unsigned>(numbers.size())}, {"B", 'C', 1}},
                    {" " + numbers + "x", " " + nothing + "y"});
    return bytes;
}

TEST(BaseDbase, Memos) {
    for (const memo_case& one : memo_cases()) {
        SCOPED_TRACE(one.version);
        const std::string bytes = memo_table(one);
        EXPECT_EQ(base::memo_form_of_dbase(bytes), one.form);
        auto table = *dbase_table::parse(bytes, one.file, utf8());
        EXPECT_EQ(*table.memo(0, 0), L"管\r\n材");
        EXPECT_EQ(*table.memo(1, 0), L"");
        EXPECT_TRUE(table.set_memo(0, 0, L"管\r\n材") && table.set_memo(1, 0, L""));
        EXPECT_EQ(table.bytes(), bytes);
        EXPECT_EQ(*table.memo_bytes(), one.file);

        const std::wstring longer(3000, L'长');
        ASSERT_TRUE(table.set_memo(1, 0, longer) && table.set_memo(0, 0, L"短"));
        EXPECT_EQ(table.text(0, 1) + table.text(1, 1), L"xy");
        const auto again = *dbase_table::parse(table.bytes(), *table.memo_bytes(), utf8());
        EXPECT_EQ(*again.memo(0, 0), L"短");
        EXPECT_EQ(*again.memo(1, 0), longer);
        // The table of before the change still finds its text in the new memo file.
        EXPECT_EQ(*dbase_table::parse(bytes, *table.memo_bytes(), utf8())->memo(0, 0), L"管\r\n材");
        // The header tells where the next text may begin.
        const std::string& file = *table.memo_bytes();
        const auto next = one.form == dbase_memo_form::foxpro ? base::big_endian(file, 0, 4)
                                                              : base::little_endian(file, 0, 4);
        EXPECT_EQ(next * one.block_size, file.size());
        ASSERT_TRUE(table.set_memo(0, 0, L""));
        EXPECT_EQ(*table.memo(0, 0), L"");
        EXPECT_EQ(*table.memo(*table.append_row(), 0), L"");
    }
}

TEST(BaseDbase, BrokenMemos) {
    for (const memo_case& one : memo_cases()) {
        SCOPED_TRACE(one.version);
        const std::string bytes = memo_table(one);
        const std::wstring here = L"row 1, field 'NOTE': ";
        const auto said = [&](std::optional<std::string> memo, const memo_case& asked) {
            auto table = *dbase_table::parse(memo_table(asked), std::move(memo), utf8());
            const auto text = table.memo(0, 0);
            return text ? L"" : text.error();
        };
        EXPECT_EQ(said({}, one), here + L"the table's memo file is missing");
        EXPECT_EQ(fault(bytes, one.file.substr(0, 511)),
                  L"the memo file ends at byte 511, inside its header of 512");
        memo_case away = one;
        away.block = one.version == 0x30 ? 0xFFFFFFFF : 99;
        EXPECT_NE(said(one.file, away).find(L" is not in the memo file, which has "), std::wstring::npos);
        away.block = 7; // in the header where blocks are small
        EXPECT_NE(said(one.file, away).find(L" is not in the memo file, which has "), std::wstring::npos);
        // Every cut is told, except of the blanks behind the text.
        const std::size_t begin = one.file.find("\xE7\xAE\xA1");
        for (std::size_t size = 512; size < begin + 8; ++size)
            EXPECT_TRUE(said(one.file.substr(0, size), one).starts_with(here)) << size;
        auto cut = *dbase_table::parse(bytes, one.file.substr(0, 512), utf8());
        const auto added = cut.set_memo(1, 0, L"x");
        EXPECT_TRUE(!added && added.error().starts_with(L"row 2, field 'NOTE': the memo file is cut"))
            << one.version;
    }
    const auto cases = memo_cases();
    EXPECT_EQ(fault(memo_table(cases[2]), std::string(512, '\0')),
              L"the memo file's header (byte 6) tells blocks of 0 bytes");
    auto table = *dbase_table::parse(memo_table(cases[0]), cases[0].file, utf8());
    EXPECT_EQ(table.set_memo(0, 0, L"\x1A").error(),
              L"row 1, field 'NOTE': a dBASE III memo cannot hold the character 0x1A");
    auto bytes = memo_table(cases[0]);
    bytes.replace(bytes.find("         1x"), 2, "no");
    EXPECT_EQ(dbase_table::parse(bytes, cases[0].file, utf8())->memo(0, 0).error(),
              L"row 1, field 'NOTE': 'no       1' is no number of a memo block");
}

TEST(BaseDbase, NewTables) {
    for (const auto form : {dbase_memo_form::dbase3, dbase_memo_form::dbase4, dbase_memo_form::foxpro}) {
        auto made = *dbase_table::create({{L"名称", 'C', 10}, {L"DN", 'N', 6, 1}, {L"NOTE", 'M', 10}}, form,
                                         0x4D, today, utf8());
        EXPECT_EQ(made.bytes().substr(1, 3), "\x79\x03\x04");
        EXPECT_EQ(base::code_page_of_dbase(made.bytes()), 936);
        EXPECT_EQ(made.memo_form(), form);
        for (const wchar_t* const note : {L"第一", L"第二"}) {
            const std::size_t row = *made.append_row();
            EXPECT_TRUE(made.text(row, 0).empty() && !made.number(row, 1) && made.memo(row, 2)->empty());
            ASSERT_TRUE(made.set_number(row, 1, 32) && made.set_memo(row, 2, note));
        }
        const auto read = dbase_table::parse(made.bytes(), *made.memo_bytes(), utf8());
        ASSERT_TRUE(read) << base::narrow(read.error());
        EXPECT_EQ(read->find_field(L"名称"), 0u);
        EXPECT_EQ(read->number(1, 1), 32);
        EXPECT_EQ(*read->memo(0, 2) + *read->memo(1, 2), L"第一第二");
    }
    using fields = std::vector<base::dbase_field>;
    const std::pair<fields, std::wstring> refused[] = {
        {{}, L"a table has 1 to 255 fields and rows of at most 65535 bytes"},
        {fields(256, {L"A", 'C', 1}), L"a table has 1 to 255 fields and rows of at most 65535 bytes"},
        {{{L"", 'C', 1}}, L"the field name '' must have 1 to 10 bytes"},
        {{{L"名称名称", 'C', 1}}, L"the field name '名称名称' must have 1 to 10 bytes"},
        {{{L"☹", 'C', 1}}, L"field name '☹': '☹' is not in the table's code page"},
        {{{L"A", 'T', 8}}, L"field 'A' must be of type C, N, F, L, D or M"},
        {{{L"A", 'C', 255}}, L"field 'A' of type C cannot have a length of 255"},
        {{{L"A", 'D', 6}}, L"field 'A' of type D cannot have a length of 6"},
        {{{L"A", 'N', 4, 3}}, L"field 'A' cannot have 3 decimals"},
        {{{L"A", 'M', 10}}, L"a table with a memo field needs a memo file"},
    };
    for (const auto& [list, words] : refused)
        EXPECT_EQ(dbase_table::create(list, dbase_memo_form::none, 0, today, utf8()).error(), words);
}

} // namespace
