// The names of the elements of standard files, spelt as the files spell them, and what the files say of them.
#pragma once

namespace StandardFileName {

struct Element {
    const wchar_t* name;
    const wchar_t* comment; // null: it carries none
};

inline constexpr Element root{L"Vantrel", L"维朗管线系统配置文件"};

inline constexpr Element pipeSystem{L"PipeSystem", L"管线系统"};
inline constexpr Element pipeGroup{L"PipeGroup", L"系统组"};
inline constexpr Element pipe{L"Pipe", L"系统"};
inline constexpr Element baseInfo{L"BaseInfo", L"基本信息"};
inline constexpr Element pipeOriginalName{L"PipeOriginalName", L"原始名称"};
inline constexpr Element pipeName{L"PipeName", L"名称"};
inline constexpr Element lineWidth{L"LineWidth", L"线宽"};
inline constexpr Element dim{L"Dim", L"标注"};
inline constexpr Element material{L"Material", L"管材"};
inline constexpr Element outdoorMaterial{L"OutdoorMaterial", L"室外管材"};
inline constexpr Element vPipeType{L"VPipeType", L"立管样式"};
inline constexpr Element vPipeRadius{L"VPipeRaidus", L"立管半径"};
inline constexpr Element vPipeRadius1{L"VPipeRaidus1", L"立管大圆半径"};
inline constexpr Element vPipeRadius2{L"VPipeRaidus2", L"立管小圆半径"};
inline constexpr Element waterFlowStatus{L"WaterFlowStatus", L"水流状态"};
inline constexpr Element remark{L"Remark", L"备注"};
inline constexpr Element canRename{L"CanName", L"是否可以更改管线关键字"};
inline constexpr Element canDeletePipe{L"CanDel", L"是否可以删除管线"};
inline constexpr Element status{L"Status", L"状态标识"};

inline constexpr Element sysMap{L"SysMap", L"管道系统图层映射规则"};
inline constexpr Element otherMap{L"OtherMap", L"图层映射规则"};
inline constexpr Element mapItem{L"MapItem", L"映射项"};
inline constexpr Element srcItem{L"SrcItem", L"映射源"};
inline constexpr Element desItem{L"DesItem", L"映射目标"};

inline constexpr Element layer{L"Layer", nullptr};
inline constexpr Element oldKey{L"OldKey", L"旧版关键字"};
inline constexpr Element layerKey{L"LayerKey", L"图层关键字"};
inline constexpr Element layerName{L"LayerName", L"图层名"};
inline constexpr Element layerColor{L"LayerColor", L"图层颜色"};
inline constexpr Element lineStyle{L"LineStyle", L"线型"};
inline constexpr Element lineWeight{L"LineWeight", L"线宽"};
inline constexpr Element canDeleteLayer{L"CanDel", L"是否可以删除图层"};
inline constexpr Element canPlot{L"CanPlot", L"是否可打印图层"};
inline constexpr Element layerAttachSet{L"LayerAttachSet", L"图层归属集合"};
inline constexpr Element layerAttach{L"LayerAttach", L"图层归属"};

inline constexpr Element otherLayer{L"OtherLayer", L"管线无关图层"};
inline constexpr Element layerGroup{L"LayerGroup", nullptr};

inline constexpr Element layerNameRule{L"LayerNameRule", L"图层名命名规则"};
inline constexpr Element nameRule{L"NameRule", L"命名规则"};
inline constexpr Element ruleLayerType{L"LayerType", L"图层类型"};
inline constexpr Element layerPrefix{L"LayerPrefix", L"图层前缀"};
inline constexpr Element layerSuffix{L"LayerSuffix", L"图层后缀"};

inline constexpr Element createRules{L"CreatePipeSystemRule", L"创建管道系统规则"};
inline constexpr Element linkLayerType{L"LinkLayerType", L"关联图层分类"};
inline constexpr Element createRule{L"CreateRule", L"管道系统组"};
inline constexpr Element linkedLayerType{L"LayerType", L"图层分类"};

inline constexpr Element textStyleSetting{L"TextStyleSetting", L"文字样式设置"};
inline constexpr Element textStyleSet{L"TextStyleSet", L"文字样式集合"};
inline constexpr Element textStyle{L"TextStyle", L"文字样式"};
inline constexpr Element key{L"Key", L"用途"};
inline constexpr Element styleName{L"Name", L"文字样式名"};
inline constexpr Element chineseFont{L"ChineseFont", L"中文字体"};
inline constexpr Element englishFont{L"EnglishFont", L"西文字体"};
inline constexpr Element winFont{L"WinFont", L"是否Windows字体"};
inline constexpr Element fontHeight{L"FontHeigth", L"字高"};
inline constexpr Element widthScale{L"WHScale", L"宽高比"};
inline constexpr Element bold{L"Bold", L"是否粗体"};
inline constexpr Element italic{L"Italic", L"是否斜体"};
inline constexpr Element encoded{L"Encoded", L"字符集"};

inline constexpr Element objectColorSetting{L"ObjectColorSetting", L"对象颜色设置"};
inline constexpr Element objectColor{L"ObjectColor", L"对象颜色"};
inline constexpr Element objectName{L"Name", L"对象名"};
inline constexpr Element color{L"Color", L"颜色"};

// Attributes.
inline constexpr const wchar_t* commentAttrib = L"Comment";
inline constexpr const wchar_t* nameAttrib = L"Name";
inline constexpr const wchar_t* canNameAttrib = L"CanName";
inline constexpr const wchar_t* layerTypeAttrib = L"LayerType";

} // namespace StandardFileName
