#include "module/settings/PipeTable.h"

#include "module/standard/Names.h"
#include "module/standard/PipeSystemUpdates.h"
#include "siblings/zef_public/PipeMaterials.h"
#include "sys/dbase_file.h"
#include "sys/folders.h"

#include <cmath>
#include <filesystem>
#include <functional>
#include <optional>

namespace {

constexpr int gbk = 936;
constexpr double slack = 0.001;

std::filesystem::path TablePath() {
    const std::filesystem::path found = sys::find_without_case(sys::system_folder(), "pipe.dbf");
    return found.empty() ? sys::system_folder() / "pipe.dbf" : found;
}

// The table while it is changed. The first failure is kept.
class Table {
public:
    Table() : m_table(sys::read_dbase(TablePath(), gbk)) {
        if (!m_table)
            m_why = m_table.error().c_str();
    }

    const CString& Why() const { return m_why; }

    // The rows that count of a material.
    std::vector<std::size_t> RowsOf(const CString& material) {
        std::vector<std::size_t> rows;
        if (m_table)
            for (std::size_t row = 0; row < m_table->row_count(); ++row)
                if (!m_table->is_deleted(row) && m_table->text(row, Field(L"MATERIAL")) == ViewOf(material))
                    rows.push_back(row);
        return rows;
    }
    std::optional<std::size_t> RowOf(const CString& material, double dn) {
        for (const std::size_t row : RowsOf(material)) {
            const auto number = m_table->number(row, Field(L"DN"));
            if (number && std::fabs(*number - dn) < slack)
                return row;
        }
        return std::nullopt;
    }
    std::optional<std::size_t> Append() {
        if (!m_why.IsEmpty())
            return std::nullopt;
        const auto row = m_table->append_row();
        if (!row) {
            m_why = row.error().c_str();
            return std::nullopt;
        }
        return *row;
    }
    CString TextOf(std::size_t row, const wchar_t* field) { return m_table->text(row, Field(field)).c_str(); }
    void Set(std::size_t row, const wchar_t* field, const CString& text) {
        if (const std::size_t at = Field(field); m_why.IsEmpty())
            Keep(m_table->set_text(row, at, ViewOf(text)));
    }
    void Set(std::size_t row, const wchar_t* field, double number) {
        if (const std::size_t at = Field(field); m_why.IsEmpty())
            Keep(m_table->set_number(row, at, number));
    }
    void Delete(std::size_t row) { Keep(m_table->set_deleted(row, true)); }

    CString Write() {
        if (m_why.IsEmpty())
            Keep(sys::write_dbase(*m_table, TablePath()));
        if (m_why.IsEmpty())
            PipeSystemTool::UpdatePipeMaterial();
        return m_why;
    }

private:
    std::size_t Field(const wchar_t* name) {
        const auto found = m_table ? m_table->find_field(name) : std::nullopt;
        if (!found && m_why.IsEmpty())
            m_why.Format(L"管材表中没有字段 %s", name);
        return found.value_or(0);
    }
    void Keep(const base::result<void>& done) {
        if (!done && m_why.IsEmpty())
            m_why = done.error().c_str();
    }

    base::result<base::dbase_table> m_table;
    CString m_why;
};

CString NoSuchMaterial(const CString& material) {
    return L"管材表中没有管材\"" + material + L"\"！";
}

} // namespace

namespace PipeTable {

CString FileName() {
    return sys::from_path(TablePath()).c_str();
}

CString SetDiameter(const Diameter& diameter) {
    if (diameter.material.IsEmpty() || diameter.dn <= 0.0 || diameter.outer <= 0.0)
        return L"管材名称、公称直径和外径不能为空！";
    if (diameter.wall * 2 >= diameter.outer)
        return L"壁厚太大！";
    Table table;
    const std::vector<std::size_t> others = table.RowsOf(diameter.material);
    std::optional<std::size_t> row = table.RowOf(diameter.material, diameter.dn);
    if (!row) {
        row = table.Append();
        if (!row)
            return table.Why();
        table.Set(*row, L"MATERIAL", diameter.material);
        table.Set(*row, L"DN", diameter.dn);
        for (const wchar_t* const field : {L"GRADE", L"PREFIX", L"USE", L"SOURCE"})
            if (!others.empty())
                table.Set(*row, field, table.TextOf(others.front(), field));
        if (others.empty()) {
            table.Set(*row, L"PREFIX", CString(L"DN"));
            table.Set(*row, L"USE", CString(L"B"));
        }
    }
    table.Set(*row, L"OUTER", diameter.outer);
    table.Set(*row, L"WALL", diameter.wall);
    table.Set(*row, L"INNER", diameter.outer - 2 * diameter.wall);
    return table.Write();
}

CString DeleteDiameter(const CString& material, double dn) {
    Table table;
    const std::vector<std::size_t> rows = table.RowsOf(material);
    const std::optional<std::size_t> row = table.RowOf(material, dn);
    if (!row)
        return table.Why().IsEmpty() ? L"管材\"" + material + L"\"没有该公称直径！" : table.Why();
    if (rows.size() == 1)
        return L"这是管材\"" + material + L"\"唯一的管径，不能删除！";
    table.Delete(*row);
    return table.Write();
}

CString SetMaterial(const Material& material) {
    Table table;
    const std::vector<std::size_t> rows = table.RowsOf(material.name);
    if (rows.empty())
        return table.Why().IsEmpty() ? NoSuchMaterial(material.name) : table.Why();
    for (const std::size_t row : rows) {
        table.Set(row, L"PREFIX", material.prefix);
        table.Set(row, L"USE", material.use);
        table.Set(row, L"SOURCE", material.source);
    }
    return table.Write();
}

CString DeleteMaterial(const CString& material) {
    Table table;
    const std::vector<std::size_t> rows = table.RowsOf(material);
    if (rows.empty())
        return table.Why().IsEmpty() ? NoSuchMaterial(material) : table.Why();
    if (GetPipeMaterials().back().m_name != material)
        return L"图形中的管线按序号记住管材，只能删除最后一种管材！";
    for (const std::size_t row : rows)
        table.Delete(row);
    return table.Write();
}

} // namespace PipeTable
