// Any bytes as a table and its memo file: reading changes nothing, a changed value is read again, and nothing
// that is broken does harm. The first two bytes tell where the memo file begins.
#include "base/byte_order.h"
#include "base/dbase_table.h"
#include "base/utf.h"

#include <cstdlib>

namespace {

void insist(bool condition) {
    if (!condition)
        std::abort();
}

base::dbase_encoding utf8() {
    return {base::widen, [](char32_t c, std::string& out) {
                base::append_utf8(out, c);
                return true;
            }};
}

// Asks for every value. The texts of all rows in turn; nothing for a memo that is broken.
std::vector<std::optional<std::wstring>> read_all(const base::dbase_table& table) {
    std::vector<std::optional<std::wstring>> all;
    for (std::size_t row = 0; row < table.row_count(); ++row) {
        for (std::size_t field = 0; field < table.fields().size(); ++field) {
            all.emplace_back(table.text(row, field));
            static_cast<void>(table.number(row, field));
            static_cast<void>(table.logical(row, field));
            static_cast<void>(table.date(row, field));
            auto memo = table.memo(row, field);
            all.push_back(memo ? std::optional(*std::move(memo)) : std::nullopt);
        }
    }
    return all;
}

void change(base::dbase_table& table) {
    const auto row = table.append_row();
    insist(bool(row));
    for (std::size_t field = 0; field < table.fields().size(); ++field) {
        const std::size_t size = table.bytes().size();
        if (table.set_text(*row, field, L"x"))
            insist(table.text(*row, field) == L"x");
        if (table.set_number(*row, field, 4))
            insist(table.number(*row, field) == 4);
        if (table.set_memo(*row, field, L"note"))
            insist(*table.memo(*row, field) == L"note");
        insist(table.bytes().size() == size);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (bytes.size() < 2)
        return 0;
    const std::size_t split = base::little_endian(bytes, 0, 2);
    bytes.remove_prefix(2);
    const std::string table(bytes.substr(0, split));
    const std::string memo(bytes.substr(table.size()));
    auto read = base::dbase_table::parse(table, memo, utf8());
    if (!read) {
        insist(!read.error().empty());
        return 0;
    }
    const auto before = read_all(*read);
    insist(read->bytes() == table && (read->memo_bytes() == nullptr || *read->memo_bytes() == memo));
    change(*read);
    std::optional<std::string> changed_memo;
    if (read->memo_bytes() != nullptr)
        changed_memo = *read->memo_bytes();
    const auto again = base::dbase_table::parse(read->bytes(), changed_memo, utf8());
    insist(bool(again));
    const auto after = read_all(*again);
    for (std::size_t i = 0; i < before.size(); ++i)
        insist(!before[i] || after[i] == before[i]);
    return 0;
}
