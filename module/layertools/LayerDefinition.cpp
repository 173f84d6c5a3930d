#include "module/layertools/LayerDefinition.h"

#include "acutads.h"
#include "module/layertools/LayerFamilies.h"
#include "module/layertools/LayerStates.h"
#include "module/layertools/UserLayers.h"
#include "module/standard/Names.h"
#include "ui/presenter.h"

#include <algorithm>
#include <array>
#include <optional>
#include <set>
#include <string>

namespace {

// What a layer can be, and what the user calls it.
struct Product {
    int m_product;
    const wchar_t* m_name;
};
constexpr std::array<Product, 3> products{{
    {kArchitectureLayer, L"建筑"},
    {kDrainageLayer, L"给排水"},
    {kNoUserLayer, L"无"},
}};

std::optional<int> ProductNamed(const std::wstring& name) {
    for (const Product& one : products)
        if (name == one.m_name)
            return one.m_product;
    return std::nullopt;
}

CString NameOf(int product) {
    for (const Product& one : products)
        if (product == one.m_product)
            return one.m_name;
    return {};
}

// Parts of a text between commas and semicolons, those of Chinese too.
std::vector<CString> NamesIn(const std::wstring& text) {
    constexpr const wchar_t* separators = L",;，；、";
    std::vector<CString> names;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find_first_of(separators, at), text.size());
        CString name = text.substr(at, end - at).c_str();
        if (!name.Trim().IsEmpty())
            names.push_back(name);
        at = end + 1;
    }
    return names;
}

std::wstring WhyNoProduct(const std::wstring& value) {
    return value.empty() || ProductNamed(value) ? L"" : L"请输入 建筑、给排水 或 无。";
}

std::wstring WhyNoNames(const std::wstring& value) {
    for (const CString& name : NamesIn(value))
        if (!CUserLayers::CanHold(name))
            return L"图层名过长，或有不能保存的字符。";
    return {};
}

enum Field { kProductField, kNamesField };

// Rows of the table first, then layers of the drawing that have none. Layers that the standard has are its
// affair.
ui::dialog Describe(const CUserLayers& table) {
    ui::dialog dialog;
    dialog.title = L"定义图层";
    dialog.fields = {{L"所选图层定义为", L"", WhyNoProduct}, {L"另加图层名", L"", WhyNoNames}};
    ui::check_list list;
    list.columns = {{L"图层名", 180}, {L"所属", 60}, {L"说明", 180}};
    const auto add = [&list](const CString& name, const CString& product, const CString& note) {
        list.lines.push_back({{name.GetString(), product.GetString(), note.GetString()}, false});
    };
    std::set<CString, NoCaseOrder> known;
    for (const UserLayerRow& row : table.GetRows())
        if (known.insert(row.m_name).second)
            add(row.m_name, NameOf(row.m_product),
                row.m_system.IsEmpty() ? CString() : L"标识时加入：" + row.m_system);
    const CLayerFamilies families;
    for (const AcDbObjectId layer : GetAllLayerIds()) {
        const CString name = GetLayerName(layer);
        if (families.IsStandardLayer(layer) || known.contains(name))
            continue;
        const int product = table.GetProduct(name);
        add(name, product != kNoUserLayer ? NameOf(product) : CString(),
            families.IsSystemLayer(layer) ? L"本图标识：" + families.GetSystems(layer).front()
            : product != kNoUserLayer     ? CString(L"由通配符或参照内的层名决定")
                                          : CString());
    }
    dialog.lists.push_back(std::move(list));
    return dialog;
}

std::vector<CString> ChosenIn(const ui::dialog& dialog) {
    std::vector<CString> names = NamesIn(dialog.fields[kNamesField].value);
    for (const ui::line& line : dialog.lists.front().lines)
        if (line.checked)
            names.emplace_back(line.cells.front().c_str());
    return names;
}

// The rows, with those of the names made of a product, or gone. They are the user's then.
std::vector<UserLayerRow> Changed(std::vector<UserLayerRow> rows, const std::vector<CString>& names,
                                  int product) {
    std::set<CString, NoCaseOrder> left(names.begin(), names.end());
    const std::set<CString, NoCaseOrder> all = left;
    if (product == kNoUserLayer) {
        std::erase_if(rows, [&](const UserLayerRow& row) { return all.contains(row.m_name); });
        return rows;
    }
    for (UserLayerRow& row : rows)
        if (all.contains(row.m_name)) {
            left.erase(row.m_name);
            row = {product, row.m_name, L""};
        }
    for (const CString& name : names)
        if (left.erase(name) != 0)
            rows.push_back({product, name, L""});
    return rows;
}

} // namespace

bool DefineLayers() {
    CUserLayers table = CUserLayers::Load();
    if (!table.GetFault().IsEmpty()) {
        acutPrintf(L"\n图层表userlayer.dbf不能读取：%s", table.GetFault().GetString());
        return false;
    }
    ui::dialog dialog = Describe(table);
    if (!ui::run(dialog))
        return false;
    const std::vector<CString> names = ChosenIn(dialog);
    const auto product = ProductNamed(dialog.fields[kProductField].value);
    if (names.empty() || !product) {
        acutPrintf(L"\n没有选择图层，或没有指定所选图层定义为什么，图层定义不变。");
        return false;
    }
    std::vector<UserLayerRow> rows = Changed(table.GetRows(), names, *product);
    if (rows == table.GetRows())
        return false;
    table.SetRows(std::move(rows));
    if (!table.Save()) {
        acutPrintf(L"\n图层表userlayer.dbf不能保存：%s", table.GetFault().GetString());
        return false;
    }
    acutPrintf(L"\n已定义 %d 个图层为：%s。", static_cast<int>(names.size()), NameOf(*product).GetString());
    return true;
}
