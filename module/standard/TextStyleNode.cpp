#include "module/standard/TextStyleNode.h"

const std::vector<TextStyleNode>& GetDefaultTextStyles() {
    static const std::vector<TextStyleNode> styles{
        {L"管径标注", L"_KOL_PIPEDN", L"HZTXT", L"SIMPLEX", false, 3.5, 0.8},
        {L"立管标注", L"_KOL_SERIAL", L"HZTXT", L"SIMPLEX", false, 3.5, 0.8},
        {L"管线文字", L"_KOL_PIPETEXT", L"HZTXT", L"SIMPLEX", false, 3.5, 0.8},
        {L"圆中文字", L"_KOL_CIRCLE", L"HZTXT", L"SIMPLEX", false, 3.5, 1.1},
        {L"洁具标注", L"_KOL_SANITARY", L"宋体", L"", true, 3.5, 0.8},
        {L"标高文字", L"_KOL_DIM_ELE", L"HZTXT", L"SIMPLEX", false, 3.5, 0.8},
        {L"井标注", L"_KOL_WELL", L"HZTXT", L"SIMPLEX", false, 3.5, 0.8},
        {L"表格文字", L"_KOL_SHEET", L"HZTXT", L"SIMPLEX", false, 3.5, 0.8},
        {L"其他标注", L"_KOL_DIM", L"HZTXT", L"SIMPLEX", false, 3.5, 0.8},
    };
    return styles;
}

CString GetTextStyleKey(TextStyleEnum use) {
    const std::vector<TextStyleNode>& styles = GetDefaultTextStyles();
    const auto index = static_cast<std::size_t>(use);
    return index < styles.size() ? styles[index].m_key : CString();
}
