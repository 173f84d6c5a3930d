#include "module/annotation/PipeTexts.h"

#include "module/annotation/PipeLabels.h"
#include "module/standard/PipeSystemTool.h"
#include "siblings/zef_pipewire/TDbPipe.h"
#include "siblings/zef_pipewire/TDbText.h"
#include "siblings/zef_public/PipeLabels.h"
#include "siblings/zef_public/PipeMaterials.h"

#include "dbobjptr.h"

#include <algorithm>
#include <cmath>
#include <cwchar>
#include <cwctype>
#include <string_view>
#include <utility>

namespace {

constexpr double metre = 1000.0;

TPipeLayerFunction g_layersBefore = nullptr;
TPipeTextFunction g_textsBefore = nullptr;

// Systems in the order in which they were asked for; the index of a layer is that of its system.
std::vector<CString> g_systems;

int FindPipeLayer(LPCTSTR layerName) {
    const CString system = PipeSystemTool::GetPipeSystemNameByPipeLayer(layerName);
    if (system.IsEmpty())
        return -1;
    const auto found = std::ranges::find(g_systems, system);
    const auto index = static_cast<std::size_t>(found - g_systems.begin());
    if (found == g_systems.end())
        g_systems.push_back(system);
    if (g_csPipeDim.size() <= index)
        g_csPipeDim.resize(index + 1);
    g_csPipeDim[index] = PipeSystemTool::GetPipeDim(system, false, L"");
    return static_cast<int>(index);
}

// The length of the sign of a diameter that a text ends with; 0 for none. A single letter is one unless it
// ends a word.
std::size_t SignLength(std::wstring_view text, const std::vector<CString>& signs) {
    std::size_t longest = 0;
    const auto take = [&](std::wstring_view sign) {
        if (text.ends_with(sign))
            longest = std::max(longest, sign.size());
    };
    for (const wchar_t* const sign : {L"DN", L"De", L"dn", L"Dw", L"%%c", L"%%C", L"φ"})
        take(sign);
    for (const CString& sign : signs)
        take(sign.GetString());
    if (longest == 0 && (text.ends_with(L'D') || text.ends_with(L'd')))
        longest = text.size() < 2 || !std::iswalpha(static_cast<std::wint_t>(text[text.size() - 2])) ? 1 : 0;
    return longest;
}

// Where the number ends that a text has at a place; the place itself for none.
std::size_t NumberEnd(std::wstring_view text, std::size_t at) {
    constexpr std::wstring_view digits = L"0123456789";
    const auto digitsEnd = [&](std::size_t from) {
        return std::min(text.find_first_not_of(digits, from), text.size());
    };
    std::size_t end = digitsEnd(at);
    if (end > at && end < text.size() && text[end] == L'.' && digitsEnd(end + 1) > end + 1)
        end = digitsEnd(end + 1);
    return end;
}

void FollowLabel(AcDbObjectId id, const TDbPipe& pipe, const std::vector<CString>& signs, int dn,
                 double outer) {
    const AcDbObjectPointer<TDbText> text(id, AcDb::kForRead);
    if (text.openStatus() != Acad::eOk || text->GetSubject() != pipe.objectId())
        return;
    CString now = text->textStringConst();
    if (PipeTexts::ReplaceDiameter(now, signs, dn, outer, pipe.GetLabelText()) &&
        now != text->textStringConst() && text->upgradeOpen() == Acad::eOk)
        text->setTextString(now);
}

void FollowLabels(const TEntitySet& pipes, LPCTSTR prefix, int dn) {
    if (pipes.GetCount() == 0)
        return;
    const AcDbObjectPointer<TDbPipe> pipe(pipes.GetAt(0), AcDb::kForRead);
    if (pipe.openStatus() != Acad::eOk || pipe->GetAttachments().isEmpty())
        return;
    const double outer = GetPipeOutDByDn(GetPipeMaterialByIdx(pipe->GetValues().m_material), dn) * metre;
    const std::vector<CString> signs = {prefix, KolTool::GetPipeLabelFormat(*pipe.object(), L"外径壁厚2")};
    const AcDbObjectIdArray& texts = pipe->GetAttachments();
    for (int i = 0; i < texts.length(); ++i)
        FollowLabel(texts[i], *pipe.object(), signs, dn, outer);
}

} // namespace

void PipeTexts::Load() {
    if (g_layersBefore != nullptr)
        return;
    g_layersBefore = std::exchange(g_pfnGetPipeLayerIdxByName, FindPipeLayer);
    g_textsBefore = std::exchange(g_pfnUpdatePipeTextDim, FollowLabels);
}

void PipeTexts::Release() {
    if (g_layersBefore == nullptr)
        return;
    g_pfnGetPipeLayerIdxByName = std::exchange(g_layersBefore, nullptr);
    g_pfnUpdatePipeTextDim = std::exchange(g_textsBefore, nullptr);
    g_systems.clear();
    g_csPipeDim.clear();
}

bool PipeTexts::ReplaceDiameter(CString& text, const std::vector<CString>& signs, int dn, double outer,
                                LPCTSTR label) {
    constexpr double slack = 0.06; // labels tell tenths
    const std::wstring_view all(text.GetString());
    for (std::size_t at = 0, end = 0; at < all.size(); at = std::max(end, at + 1)) {
        end = NumberEnd(all, at);
        const std::size_t sign = end > at ? SignLength(all.substr(0, at), signs) : 0;
        if (sign == 0)
            continue;
        const double number = std::wcstod(text.GetString() + at, nullptr);
        if (std::lround(number) != dn && std::fabs(number - outer) > slack)
            continue;
        if (end < all.size() && (all[end] == L'x' || all[end] == L'×'))
            if (const std::size_t wall = NumberEnd(all, end + 1); wall > end + 1)
                end = wall;
        const std::wstring_view before = all.substr(0, at - sign);
        text =
            CString(before.data(), static_cast<int>(before.size())) + label + CString(all.substr(end).data());
        return true;
    }
    return false;
}
