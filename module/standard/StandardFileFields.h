// The fields of a standard's records, each with its element, in the order of the file. Who reads, writes or
// checks files walks these lists: `act(element, value)` is called for each field.
#pragma once

#include "module/standard/PipeStandard.h"
#include "module/standard/StandardFileNames.h"

// A text of which "" is a value of its own: elsewhere an empty one leaves what is there.
template<class Text>
struct EmptyText {
    Text& value;
};
template<class Text>
EmptyText(Text&) -> EmptyText<Text>;

// A lineweight, in the file a text such as "0.50".
template<class Weight>
struct LineWeightValue {
    Weight& value;
};
template<class Weight>
LineWeightValue(Weight&) -> LineWeightValue<Weight>;

template<class System, class Act>
void ForEachSystemField(System& system, Act act) {
    using namespace StandardFileName;
    act(Element{L"PipeOriginalName", L"原始名称"}, system.m_initialName);
    act(pipeName, system.m_name);
    act(Element{L"LineWidth", L"线宽"}, system.m_lineWidth);
    act(Element{L"Dim", L"标注"}, system.m_dim);
    act(material, system.m_material);
    act(outdoorMaterial, system.m_outdoorMaterial);
    act(Element{L"VPipeType", L"立管样式"}, system.m_vPipeType);
    act(Element{L"VPipeRaidus", L"立管半径"}, system.m_vPipeRadius);
    act(Element{L"VPipeRaidus1", L"立管大圆半径"}, system.m_vPipeRadius1);
    act(Element{L"VPipeRaidus2", L"立管小圆半径"}, system.m_vPipeRadius2);
    act(Element{L"WaterFlowStatus", L"水流状态"}, system.m_waterFlowStatus);
    act(remark, system.m_remark);
    act(Element{L"CanName", L"是否可以更改管线关键字"}, system.m_canRename);
    act(Element{L"CanDel", L"是否可以删除管线"}, system.m_canDelete);
    act(Element{L"Status", L"状态标识"}, system.m_status);
}

// The type stands in an attribute, and the key only where the layer is of no system.
template<class Layer, class Act>
void ForEachLayerField(Layer& layer, bool withKey, Act act) {
    using namespace StandardFileName;
    act(Element{L"OldKey", L"旧版关键字"}, layer.m_oldKey);
    if (withKey)
        act(layerKey, layer.m_layerKey);
    act(layerName, layer.m_layerName);
    act(Element{L"LayerColor", L"图层颜色"}, layer.m_color);
    act(lineStyle, layer.m_linetype);
    act(Element{L"LineWeight", L"线宽"}, LineWeightValue{layer.m_lineWeight});
    act(remark, layer.m_remark);
    act(Element{L"CanDel", L"是否可以删除图层"}, layer.m_canDelete);
    act(Element{L"CanPlot", L"是否可打印图层"}, layer.m_canPlot);
}

template<class Style, class Act>
void ForEachTextStyleField(Style& style, Act act) {
    using namespace StandardFileName;
    act(key, style.m_key);
    act(Element{L"Name", L"文字样式名"}, style.m_name);
    act(Element{L"ChineseFont", L"中文字体"}, EmptyText{style.m_chineseFont});
    act(Element{L"EnglishFont", L"西文字体"}, EmptyText{style.m_englishFont});
    act(Element{L"WinFont", L"是否Windows字体"}, style.m_isWinFont);
    act(Element{L"FontHeigth", L"字高"}, style.m_height);
    act(Element{L"WHScale", L"宽高比"}, style.m_scale);
    act(Element{L"Bold", L"是否粗体"}, style.m_isBold);
    act(Element{L"Italic", L"是否斜体"}, style.m_isItalic);
    act(Element{L"Encoded", L"字符集"}, style.m_encoding);
}

template<class Rule, class Act>
void ForEachNameRuleField(Rule& rule, Act act) {
    using namespace StandardFileName;
    act(Element{L"LayerType", L"图层类型"}, rule.m_layerType);
    act(Element{L"LayerPrefix", L"图层前缀"}, rule.m_prefix);
    act(Element{L"LayerSuffix", L"图层后缀"}, rule.m_suffix);
}

template<class Color, class Act>
void ForEachObjectColorField(Color& one, Act act) {
    using namespace StandardFileName;
    act(Element{L"Name", L"对象名"}, one.m_name);
    act(Element{L"Color", L"颜色"}, one.m_color);
}
