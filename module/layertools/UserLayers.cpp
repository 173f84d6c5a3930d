#include "module/layertools/UserLayers.h"

#include "base/case_fold.h"
#include "base/wildcard.h"
#include "module/standard/Names.h"
#include "siblings/zef_kernal/KernalOptions.h"
#include "siblings/zef_kernal/ZefExport.h"
#include "sys/dbase_file.h"
#include "sys/folders.h"

#include <algorithm>
#include <chrono>
#include <optional>

namespace {

constexpr wchar_t fileName[] = L"userlayer.dbf";
constexpr int gbk = 936;
constexpr unsigned char gbkDriver = 0x4D; // of that code page in headers
constexpr std::size_t nameLength = 254, systemLength = 64, productLength = 4;

struct Fields {
    std::size_t product, name;
    std::optional<std::size_t> system;
};

std::optional<Fields> FieldsOf(const base::dbase_table& table) {
    const auto product = table.find_field(L"product");
    const auto name = table.find_field(L"name");
    if (!product || !name || table.fields()[*name].type != 'C')
        return std::nullopt;
    return Fields{*product, *name, table.find_field(L"system")};
}

bool IsPattern(const CString& name) {
    return name.FindOneOf(L"*?") >= 0;
}

// * and ? alone have a meaning; the other signs of patterns may stand in layers' names.
bool Fits(std::wstring_view layerName, const CString& pattern) {
    std::wstring literal;
    for (const wchar_t c : ViewOf(pattern)) {
        if (std::wstring_view(L"#@.~[],-`").find(c) != std::wstring_view::npos)
            literal += L'`';
        literal += c;
    }
    return base::wildcard_match(layerName, literal, true);
}

// What the layer of an external reference ("plan|WALL"), or of one that was bound ("plan$0$WALL"), is called
// there; empty for the drawing's own.
std::wstring_view NameInReference(std::wstring_view layerName) {
    if (const std::size_t bar = layerName.rfind(L'|'); bar != std::wstring_view::npos)
        return layerName.substr(bar + 1);
    const std::size_t last = layerName.rfind(L'$');
    const std::size_t first = last != std::wstring_view::npos && last > 0 ? layerName.rfind(L'$', last - 1)
                                                                          : std::wstring_view::npos;
    if (first == std::wstring_view::npos || last == first + 1)
        return {};
    const std::wstring_view number = layerName.substr(first + 1, last - first - 1);
    return number.find_first_not_of(L"0123456789") == std::wstring_view::npos ? layerName.substr(last + 1)
                                                                              : std::wstring_view();
}

// The row that the table has, none for what is deleted or of other products.
std::optional<UserLayerRow> RowAt(const base::dbase_table& table, const Fields& fields, std::size_t row) {
    if (table.is_deleted(row))
        return std::nullopt;
    const auto product = table.number(row, fields.product);
    UserLayerRow found;
    if (product == static_cast<double>(kArchitectureLayer))
        found.m_product = kArchitectureLayer;
    else if (product == static_cast<double>(kDrainageLayer))
        found.m_product = kDrainageLayer;
    found.m_name = table.text(row, fields.name).c_str();
    if (fields.system)
        found.m_system = table.text(row, *fields.system).c_str();
    if (found.m_product == kNoUserLayer || found.m_name.IsEmpty())
        return std::nullopt;
    return found;
}

base::result<base::dbase_table> MakeTable(std::vector<base::dbase_field> fields,
                                          base::dbase_memo_form form = base::dbase_memo_form::none) {
    auto encoding = sys::dbase_encoding_of(gbk);
    if (!encoding)
        return encoding.why();
    const auto today = std::chrono::floor<std::chrono::days>(std::chrono::system_clock::now());
    return base::dbase_table::create(std::move(fields), form, gbkDriver, today, *std::move(encoding));
}

base::dbase_field SystemField() {
    return {L"SYSTEM", 'C', systemLength, 0};
}

base::result<base::dbase_table> MakeEmptyTable() {
    return MakeTable({{L"PRODUCT", 'N', productLength, 0}, {L"NAME", 'C', nameLength, 0}, SystemField()});
}

base::result<void> CopyCell(const base::dbase_table& from, base::dbase_table& to, std::size_t row,
                            std::size_t field) {
    switch (from.fields()[field].type) {
    case 'C':
        return to.set_text(row, field, from.text(row, field));
    case 'N':
    case 'F':
        return to.set_number(row, field, from.number(row, field));
    case 'L':
        return to.set_logical(row, field, from.logical(row, field));
    case 'D':
        return to.set_date(row, field, from.date(row, field));
    case 'M':
        if (const auto memo = from.memo(row, field); memo)
            return to.set_memo(row, field, *memo);
        else
            return memo.why();
    default:
        return base::failure{L"列 " + from.fields()[field].name + L" 的类型不能改写"};
    }
}

base::result<void> CopyRow(const base::dbase_table& from, base::dbase_table& to, std::size_t row) {
    if (auto made = to.append_row(); !made)
        return made.why();
    for (std::size_t field = 0; field < from.fields().size(); ++field)
        if (auto copied = CopyCell(from, to, row, field); !copied)
            return copied;
    return from.is_deleted(row) ? to.set_deleted(row, true) : base::result<void>();
}

// The same table with the column SYSTEM at its end.
base::result<base::dbase_table> WithSystems(const base::dbase_table& old) {
    std::vector<base::dbase_field> fields = old.fields();
    fields.push_back(SystemField());
    auto made = MakeTable(std::move(fields), old.memo_form());
    for (std::size_t row = 0; made && row < old.row_count(); ++row)
        if (const auto copied = CopyRow(old, *made, row); !copied)
            return copied.why();
    return made;
}

base::result<void> PutRow(base::dbase_table& table, const Fields& fields, const UserLayerRow& row) {
    const auto place = table.append_row();
    if (!place)
        return place.why();
    if (auto put = table.set_number(*place, fields.product, row.m_product); !put)
        return put;
    if (auto put = table.set_text(*place, fields.name, ViewOf(row.m_name)); !put)
        return put;
    return fields.system ? table.set_text(*place, *fields.system, ViewOf(row.m_system))
                         : base::result<void>();
}

} // namespace

CUserLayers CUserLayers::Load() {
    CUserLayers loaded;
    if (!ZefExport::FindFile(fileName, loaded.m_path))
        return loaded;
    const auto table = sys::read_dbase(sys::to_path(ViewOf(loaded.m_path)), gbk);
    const auto fields = table ? FieldsOf(*table) : std::nullopt;
    if (!table)
        loaded.m_fault = table.error().c_str();
    else if (!fields)
        loaded.m_fault = loaded.m_path + L": 没有列 PRODUCT 和 NAME";
    else
        for (std::size_t row = 0; row < table->row_count(); ++row)
            if (auto found = RowAt(*table, *fields, row))
                loaded.m_rows.push_back(*std::move(found));
    loaded.Index();
    return loaded;
}

int CUserLayers::GetProduct(const CString& layerName) const {
    const int product = GetProductOf(ViewOf(layerName));
    const std::wstring_view own = NameInReference(ViewOf(layerName));
    return product != kNoUserLayer || own.empty() ? product : GetProductOf(own);
}

int CUserLayers::GetProductOf(std::wstring_view layerName) const {
    if (const auto found = m_byName.find(base::folded(layerName)); found != m_byName.end())
        return found->second;
    for (const std::size_t row : m_patterns)
        if (Fits(layerName, m_rows[row].m_name))
            return m_rows[row].m_product;
    return kNoUserLayer;
}

bool CUserLayers::CanHold(const CString& name) {
    auto table = MakeEmptyTable();
    return table && table->append_row() && table->set_text(0, 1, ViewOf(name));
}

void CUserLayers::SetRows(std::vector<UserLayerRow> rows) {
    m_rows = std::move(rows);
    Index();
}

void CUserLayers::Index() {
    m_byName.clear();
    m_patterns.clear();
    for (std::size_t row = 0; row < m_rows.size(); ++row) {
        if (IsPattern(m_rows[row].m_name))
            m_patterns.push_back(row);
        else
            m_byName.try_emplace(base::folded(ViewOf(m_rows[row].m_name)), m_rows[row].m_product);
    }
}

bool CUserLayers::Save() {
    if (!m_fault.IsEmpty())
        return false;
    const auto fail = [this](const std::wstring& why) {
        m_fault = why.c_str();
        return false;
    };
    const std::filesystem::path path =
        sys::to_path(ViewOf(m_path.IsEmpty() ? g_csSysPath + fileName : m_path));
    auto table = m_path.IsEmpty() ? MakeEmptyTable() : sys::read_dbase(path, gbk);
    if (!table)
        return fail(table.error());
    auto fields = FieldsOf(*table);
    if (!fields)
        return fail(L"没有列 PRODUCT 和 NAME");
    const auto isOurs = [](const UserLayerRow& row) { return !row.m_system.IsEmpty(); };
    bool isChanged = false;
    if (!fields->system && std::ranges::any_of(m_rows, isOurs)) {
        table = WithSystems(*table);
        if (!table)
            return fail(table.error());
        fields = FieldsOf(*table);
    }
    // What the file has of them stays where it is; the rest of what it has goes, and the rest of them comes.
    std::vector<UserLayerRow> added = m_rows;
    for (std::size_t row = 0; row < table->row_count(); ++row) {
        const auto there = RowAt(*table, *fields, row);
        if (!there)
            continue;
        if (const auto kept = std::ranges::find(added, *there); kept != added.end()) {
            added.erase(kept);
            continue;
        }
        if (const auto deleted = table->set_deleted(row, true); !deleted)
            return fail(deleted.error());
        isChanged = true;
    }
    for (const UserLayerRow& row : added) {
        if (auto put = PutRow(*table, *fields, row); !put)
            return fail(put.error());
        isChanged = true;
    }
    if (!isChanged)
        return true;
    if (auto written = sys::write_dbase(*table, path); !written)
        return fail(written.error());
    m_path = sys::from_path(path).c_str();
    return true;
}
