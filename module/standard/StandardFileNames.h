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
inline constexpr Element pipeName{L"PipeName", L"名称"};
inline constexpr Element material{L"Material", L"管材"};
inline constexpr Element outdoorMaterial{L"OutdoorMaterial", L"室外管材"};
inline constexpr Element remark{L"Remark", L"备注"};

inline constexpr Element sysMap{L"SysMap", L"管道系统图层映射规则"};
inline constexpr Element otherMap{L"OtherMap", L"图层映射规则"};
inline constexpr Element mapItem{L"MapItem", L"映射项"};
inline constexpr Element srcItem{L"SrcItem", L"映射源"};
inline constexpr Element desItem{L"DesItem", L"映射目标"};

inline constexpr Element layer{L"Layer", nullptr};
inline constexpr Element layerKey{L"LayerKey", L"图层关键字"};
inline constexpr Element layerName{L"LayerName", L"图层名"};
inline constexpr Element lineStyle{L"LineStyle", L"线型"};
inline constexpr Element layerAttachSet{L"LayerAttachSet", L"图层归属集合"};
inline constexpr Element layerAttach{L"LayerAttach", L"图层归属"};

inline constexpr Element otherLayer{L"OtherLayer", L"管线无关图层"};
inline constexpr Element layerGroup{L"LayerGroup", nullptr};

inline constexpr Element layerNameRule{L"LayerNameRule", L"图层名命名规则"};
inline constexpr Element nameRule{L"NameRule", L"命名规则"};

inline constexpr Element createRules{L"CreatePipeSystemRule", L"创建管道系统规则"};
inline constexpr Element linkLayerType{L"LinkLayerType", L"关联图层分类"};
inline constexpr Element createRule{L"CreateRule", L"管道系统组"};
inline constexpr Element linkedLayerType{L"LayerType", L"图层分类"};

inline constexpr Element textStyleSetting{L"TextStyleSetting", L"文字样式设置"};
inline constexpr Element textStyleSet{L"TextStyleSet", L"文字样式集合"};
inline constexpr Element textStyle{L"TextStyle", L"文字样式"};
inline constexpr Element key{L"Key", L"用途"};

inline constexpr Element objectColorSetting{L"ObjectColorSetting", L"对象颜色设置"};
inline constexpr Element objectColor{L"ObjectColor", L"对象颜色"};

// Attributes.
inline constexpr const wchar_t* commentAttrib = L"Comment";
inline constexpr const wchar_t* nameAttrib = L"Name";
inline constexpr const wchar_t* canNameAttrib = L"CanName";
inline constexpr const wchar_t* layerTypeAttrib = L"LayerType";

} // namespace StandardFileName
