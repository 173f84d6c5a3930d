// The page of pipe materials and their diameters.
#include "module/settings/PipeTable.h"
#include "module/settings/SettingsPages.h"
#include "module/settings/SettingsQuestions.h"
#include "siblings/zef_public/PipeMaterials.h"

#include <algorithm>

namespace {

using namespace Settings;

const PipeMaterial* Find(const CString& name) {
    const auto found = std::ranges::find(GetPipeMaterials(), name, &PipeMaterial::m_name);
    return found != GetPipeMaterials().end() ? &*found : nullptr;
}

CString UseOf(const PipeMaterial& material) {
    return material.m_isIndoor && material.m_isOutdoor ? L"B" : material.m_isIndoor ? L"I" : L"O";
}

std::optional<CString> AskMaterial() {
    std::vector<Choice> list;
    for (const PipeMaterial& material : GetPipeMaterials())
        list.push_back({material.m_name,
                        {SizeText(static_cast<double>(material.m_diameters.size())), UseOf(material),
                         material.m_source}});
    return AskOneOf(L"管材", L"管材", {L"管材", L"管径数", L"用途", L"标准号"}, list);
}

// A nominal diameter; nothing when none is given, or what is given is no number.
std::optional<double> AskDn(const PipeMaterial* material) {
    std::vector<Choice> list;
    if (material != nullptr)
        for (const PipeDiameter& row : material->m_diameters)
            list.push_back({SizeText(row.m_dn), {SizeText(row.m_outer), SizeText(row.m_inner)}});
    const auto typed = AskOneOf(L"公称直径", L"管径", {L"公称直径", L"外径", L"内径"}, list);
    double dn = 0.0;
    if (!typed)
        return std::nullopt;
    if (!ReadSize(*typed, dn) || dn <= 0.0) {
        Tell(L"\"" + *typed + L"\"不是公称直径！", L"");
        return std::nullopt;
    }
    return dn;
}

bool MayWrite() {
    return AskYes(L"将改写管材表 " + PipeTable::FileName() + L"，是否继续");
}

void SetDiameter(const CString& name) {
    const PipeMaterial* const material = Find(name);
    const auto dn = AskDn(material);
    if (!dn)
        return;
    const PipeDiameter* const row = FindPipeDiameter(name, *dn);
    PipeTable::Diameter diameter{name, *dn, row != nullptr ? row->m_outer : *dn,
                                 row != nullptr ? (row->m_outer - row->m_inner) / 2 : 0.0};
    const auto filled =
        EditTexts(L"管径 " + name + L" DN" + SizeText(*dn),
                  {{L"外径", SizeText(diameter.outer)}, {L"壁厚", SizeText(diameter.wall)}},
                  [](std::size_t, const CString& text) {
                      double size = 0.0;
                      return ReadSize(text, size) ? CString() : L"\"" + text + L"\"不是不小于零的数值";
                  });
    if (!filled)
        return;
    ReadSize((*filled)[0], diameter.outer);
    ReadSize((*filled)[1], diameter.wall);
    if (MayWrite())
        Tell(PipeTable::SetDiameter(diameter), name + L" DN" + SizeText(*dn) + L"：外径 " +
                                                   SizeText(diameter.outer) + L"，壁厚 " +
                                                   SizeText(diameter.wall) + L"。已画的管线在更新后才采用。");
}

void SetMaterial(const PipeMaterial& material) {
    PipeTable::Material values{material.m_name, material.m_prefix, UseOf(material), material.m_source};
    const auto filled =
        EditTexts(L"管材 " + material.m_name,
                  {{L"标注前缀", values.prefix}, {L"用途", values.use}, {L"标准号", values.source}},
                  [](std::size_t field, const CString& text) {
                      const bool isUse = text == L"I" || text == L"O" || text == L"B";
                      return field != 1 || isUse ? CString() : CString(L"用途应为 I(室内)、O(室外) 或 B");
                  });
    if (!filled)
        return;
    values.prefix = (*filled)[0];
    values.use = (*filled)[1];
    values.source = (*filled)[2];
    if (MayWrite())
        Tell(PipeTable::SetMaterial(values), L"已修改管材\"" + values.name + L"\"。");
}

} // namespace

void Settings::MaterialsPage() {
    const wchar_t choice = AskChoice(L"D N E R X", L"管径(D)/新建管材(N)/属性(E)/删除管径(R)/删除管材(X)");
    if (choice == L'\0')
        return;
    const auto name = choice == L'N' ? AskName(L"新管材名 <返回>:") : AskMaterial();
    if (!name)
        return;
    const PipeMaterial* const material = Find(*name);
    if (choice == L'N') {
        if (material != nullptr)
            return Tell(L"管材\"" + *name + L"\"已经存在！", L"");
        return SetDiameter(*name);
    }
    if (material == nullptr)
        return Tell(L"管材表中没有管材\"" + *name + L"\"！", L"");
    if (choice == L'D')
        return SetDiameter(*name);
    if (choice == L'E')
        return SetMaterial(*material);
    if (choice == L'R') {
        const auto dn = AskDn(material);
        if (dn && MayWrite())
            Tell(PipeTable::DeleteDiameter(*name, *dn), L"已删除 " + *name + L" DN" + SizeText(*dn) + L"。");
    } else if (MayWrite()) {
        Tell(PipeTable::DeleteMaterial(*name), L"已删除管材\"" + *name + L"\"。");
    }
}
