#include "module/settings/StandardFields.h"

#include "base/number_text.h"
#include "base/utf.h"
#include "module/standard/LineWeightText.h"

#include "adscodes.h"
#include "dbsymtb.h"

#include <algorithm>
#include <climits>

CString ListText(const std::vector<CString>& names) {
    return JoinNames(names, L",");
}

std::vector<CString> NamesIn(const CString& text) {
    std::vector<CString> names;
    for (int at = 0; at >= 0;) {
        CString name = text.Tokenize(L",，", at);
        name.Trim();
        if (!name.IsEmpty() && std::ranges::find(names, name) == names.end())
            names.push_back(name);
    }
    return names;
}

CString SizeText(double size) {
    CString text;
    text.Format(L"%.10g", size);
    return text;
}

bool ReadSize(const CString& text, double& size) {
    const auto number = base::parse_real(base::narrow(ViewOf(text)));
    if (!number || *number < 0.0)
        return false;
    size = *number;
    return true;
}

CString WhyNoLayerName(const CString& name) {
    return acdbSNValid(name, 0) == RTNORM ? CString() : L"\"" + name + L"\"不能作为图层名";
}

namespace {

// ---- the kinds of values

template<class Record, CString Record::*Member>
constexpr StandardField<Record> Text(const wchar_t* name) {
    return {name, [](const Record& record) { return record.*Member; },
            [](Record& record, const CString& text) {
                record.*Member = text;
                return CString();
            }};
}

template<class Record, CString Record::*Member>
constexpr StandardField<Record> Name(const wchar_t* name) {
    return {name, [](const Record& record) { return record.*Member; },
            [](Record& record, const CString& text) {
                CString why = WhyNoLayerName(text);
                if (why.IsEmpty())
                    record.*Member = text;
                return why;
            }};
}

template<class Record, double Record::*Member, bool IsPositive = false>
constexpr StandardField<Record> Size(const wchar_t* name) {
    return {name, [](const Record& record) { return SizeText(record.*Member); },
            [](Record& record, const CString& text) {
                double size = 0.0;
                if (!ReadSize(text, size) || (IsPositive && size <= 0.0))
                    return L"\"" + text + L"\"不是" + (IsPositive ? L"大于零的数值" : L"不小于零的数值");
                record.*Member = size;
                return CString();
            }};
}

template<class Record, int Record::*Member>
constexpr StandardField<Record> Integer(const wchar_t* name) {
    return {name,
            [](const Record& record) {
                CString text;
                text.Format(L"%d", record.*Member);
                return text;
            },
            [](Record& record, const CString& text) {
                const auto number = base::parse_integer(base::narrow(ViewOf(text)));
                if (!number || *number < INT_MIN || *number > INT_MAX)
                    return L"\"" + text + L"\"不是整数";
                record.*Member = static_cast<int>(*number);
                return CString();
            }};
}

template<class Record, bool Record::*Member>
constexpr StandardField<Record> Flag(const wchar_t* name) {
    return {name, [](const Record& record) { return CString(record.*Member ? L"是" : L"否"); },
            [](Record& record, const CString& text) {
                for (const wchar_t* const yes : {L"是", L"1", L"Y"})
                    if (IsSameName(text, CString(yes))) {
                        record.*Member = true;
                        return CString();
                    }
                for (const wchar_t* const no : {L"否", L"0", L"N"})
                    if (IsSameName(text, CString(no))) {
                        record.*Member = false;
                        return CString();
                    }
                return L"\"" + text + L"\"应为 是 或 否";
            }};
}

// As colour texts are read, whatever is wrong in them counts as something else: only what comes back as it
// was given is a colour.
template<class Record, AcCmColor Record::*Member>
constexpr StandardField<Record> Color(const wchar_t* name) {
    return {name, [](const Record& record) { return GetColorText(record.*Member); },
            [](Record& record, const CString& text) {
                const AcCmColor color = ParseColor(text);
                if (!IsSameName(GetColorText(color), text) && text != L"256" && text != L"0")
                    return L"\"" + text + L"\"不是颜色(1-255、ByLayer、ByBlock 或 红,绿,蓝)";
                record.*Member = color;
                return CString();
            }};
}

template<class Record, int Record::*Member>
constexpr StandardField<Record> LineWeight(const wchar_t* name) {
    return {name, [](const Record& record) { return GetLineWeightText(record.*Member); },
            [](Record& record, const CString& text) {
                const int weight = ParseLineWeight(text);
                if (GetLineWeightText(weight) != text)
                    return L"\"" + text + L"\"不是线宽(默认、随层、随块 或 0.00-2.11 中的标准值)";
                record.*Member = weight;
                return CString();
            }};
}

template<class Record, std::vector<CString> Record::*Member>
constexpr StandardField<Record> List(const wchar_t* name) {
    return {name, [](const Record& record) { return ListText(record.*Member); },
            [](Record& record, const CString& text) {
                record.*Member = NamesIn(text);
                return CString();
            }};
}

// ---- the records

constexpr StandardField<PipeBasicNode> systemFields[] = {
    Text<PipeBasicNode, &PipeBasicNode::m_dim>(L"标注"),
    Size<PipeBasicNode, &PipeBasicNode::m_lineWidth>(L"线宽"),
    Text<PipeBasicNode, &PipeBasicNode::m_material>(L"管材"),
    Text<PipeBasicNode, &PipeBasicNode::m_outdoorMaterial>(L"室外管材"),
    Integer<PipeBasicNode, &PipeBasicNode::m_vPipeType>(L"立管样式"),
    Size<PipeBasicNode, &PipeBasicNode::m_vPipeRadius>(L"立管半径"),
    Size<PipeBasicNode, &PipeBasicNode::m_vPipeRadius1>(L"立管大圆半径"),
    Size<PipeBasicNode, &PipeBasicNode::m_vPipeRadius2>(L"立管小圆半径"),
    Text<PipeBasicNode, &PipeBasicNode::m_waterFlowStatus>(L"水流状态"),
    Text<PipeBasicNode, &PipeBasicNode::m_remark>(L"备注"),
    Flag<PipeBasicNode, &PipeBasicNode::m_canRename>(L"可改名"),
    Flag<PipeBasicNode, &PipeBasicNode::m_canDelete>(L"可删除"),
    Integer<PipeBasicNode, &PipeBasicNode::m_status>(L"状态"),
};

constexpr StandardField<LayerNode> layerFields[] = {
    Name<LayerNode, &LayerNode::m_layerName>(L"图层名"),
    Color<LayerNode, &LayerNode::m_color>(L"颜色"),
    Text<LayerNode, &LayerNode::m_linetype>(L"线型"),
    LineWeight<LayerNode, &LayerNode::m_lineWeight>(L"线宽"),
    Flag<LayerNode, &LayerNode::m_canPlot>(L"可打印"),
    Flag<LayerNode, &LayerNode::m_canDelete>(L"可删除"),
    List<LayerNode, &LayerNode::m_attachments>(L"归属"),
    Text<LayerNode, &LayerNode::m_oldKey>(L"旧版关键字"),
    Text<LayerNode, &LayerNode::m_remark>(L"备注"),
};

constexpr StandardField<TextStyleNode> textStyleFields[] = {
    Name<TextStyleNode, &TextStyleNode::m_name>(L"样式名"),
    Text<TextStyleNode, &TextStyleNode::m_chineseFont>(L"中文字体"),
    Text<TextStyleNode, &TextStyleNode::m_englishFont>(L"西文字体"),
    Flag<TextStyleNode, &TextStyleNode::m_isWinFont>(L"Windows字体"),
    Size<TextStyleNode, &TextStyleNode::m_height>(L"字高"),
    Size<TextStyleNode, &TextStyleNode::m_scale, true>(L"宽高比"),
    Flag<TextStyleNode, &TextStyleNode::m_isBold>(L"粗体"),
    Flag<TextStyleNode, &TextStyleNode::m_isItalic>(L"斜体"),
    Text<TextStyleNode, &TextStyleNode::m_encoding>(L"字符集"),
};

constexpr StandardField<LayerNameRule> nameRuleFields[] = {
    Text<LayerNameRule, &LayerNameRule::m_prefix>(L"前缀"),
    Text<LayerNameRule, &LayerNameRule::m_suffix>(L"后缀"),
};

constexpr StandardField<CreateSystemRule> createRuleFields[] = {
    List<CreateSystemRule, &CreateSystemRule::m_layerTypes>(L"图层类型"),
};

constexpr StandardField<ObjectColor> objectColorFields[] = {
    Color<ObjectColor, &ObjectColor::m_color>(L"颜色"),
};

} // namespace

template<>
std::span<const StandardField<PipeBasicNode>> FieldsOf() {
    return systemFields;
}
template<>
std::span<const StandardField<LayerNode>> FieldsOf() {
    return layerFields;
}
template<>
std::span<const StandardField<TextStyleNode>> FieldsOf() {
    return textStyleFields;
}
template<>
std::span<const StandardField<LayerNameRule>> FieldsOf() {
    return nameRuleFields;
}
template<>
std::span<const StandardField<CreateSystemRule>> FieldsOf() {
    return createRuleFields;
}
template<>
std::span<const StandardField<ObjectColor>> FieldsOf() {
    return objectColorFields;
}
