#include "module/layertools/BarSystems.h"

#include "module/standard/PipeSystemTool.h"
#include "siblings/zef_pipewire/PipeSystems.h"

#include <algorithm>
#include <set>

namespace {

constexpr wchar_t pipes[] = L"管线";

constexpr const wchar_t* builtInRows[] = {
    L"给水管线",     L"给水管线2",    L"给水管线3",   L"热给水管线",  L"热给水管线2",
    L"热给水管线3",  L"热回水管线",   L"热回水管线2", L"热回水管线3", L"中水管线2",
    L"中水管线3",    L"消防管线",     L"消防管线2",   L"消防管线3",   L"喷淋管线",
    L"喷淋管线2",    L"喷淋管线3",    L"废水管线",    L"雨水管线",    L"压力废水管线",
    L"压力污水管线", L"压力雨水管线", L"凝结水管线",  L"直饮水管线",  L"其它管线",
};

constexpr std::size_t userRows = 8;

// "给水2" is called "给水管线2": what numbers a system stays at the end.
CString GetRowName(const CString& system) {
    if (system.Find(pipes) >= 0)
        return system;
    int end = system.GetLength();
    while (end > 1 && system[end - 1] >= L'0' && system[end - 1] <= L'9')
        --end;
    return system.Left(end) + pipes + system.Mid(end);
}

} // namespace

std::vector<BarSystem> GetBarSystems() {
    std::vector<BarSystem> rows;
    std::set<CString> listed;
    std::set<CString> rowNames;
    for (const wchar_t* const name : builtInRows) {
        CString system = name;
        system.Replace(pipes, L"");
        if (!PipeSystemTool::IsPipeSystemOfCurrentStandard(system))
            system = PipeSystemTool::OriginSystemNameToCurrentName(system);
        rows.push_back({name, system});
        listed.insert(system);
        rowNames.insert(name);
    }
    std::vector<PipeClassificationNode> groups;
    PipeSystemTool::GetPipeSystems(groups, false);
    std::vector<BarSystem> others;
    std::size_t users = 0;
    for (const PipeClassificationNode& group : groups)
        for (const PipeInfoNode& system : group.m_systems) {
            const PipeBasicNode& basic = system.m_basic;
            if (!listed.insert(basic.m_name).second)
                continue;
            const bool isUsers = GetSysType(basic.m_initialName) == kCustomSystemType;
            const bool isEarly = isUsers && ++users <= userRows;
            CString rowName = GetRowName(basic.m_name);
            while (!rowNames.insert(rowName).second)
                rowName += pipes;
            (isEarly ? rows : others).push_back({rowName, basic.m_name});
        }
    rows.insert(rows.end(), others.begin(), others.end());
    return rows;
}
