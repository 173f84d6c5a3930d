// The text styles of the standard, one for each use of text.
#pragma once

#include "module/frame/ModulePort.h"

#include "afx.h"

#include <vector>

// What texts are used for, in the order of the built-in styles.
enum TextStyleEnum {
    kPipeDnTextStyle = 0, // "管径标注"
    kSerialTextStyle,     // "立管标注"
    kPipeTextStyle,       // "管线文字"
    kCircleTextStyle,     // "圆中文字"
    kSanitaryTextStyle,   // "洁具标注"
    kElevationTextStyle,  // "标高文字"
    kWellTextStyle,       // "井标注"
    kSheetTextStyle,      // "表格文字"
    kOtherDimTextStyle,   // "其他标注"
};

struct TextStyleNode {
    CString m_key;         // the use
    CString m_name;        // of the drawing's text style
    CString m_chineseFont; // a big-font file, or a Windows font's name
    CString m_englishFont; // a shape-font file
    bool m_isWinFont = false;
    double m_height = 0.0; // millimetres on paper
    double m_scale = 0.0;  // width to height
    bool m_isBold = false;
    bool m_isItalic = false;
    CString m_encoding = L"CHINESE_GB2312";

    friend bool operator==(const TextStyleNode&, const TextStyleNode&) = default;
};

// The key of a use; empty for a number that is none.
ZEF_PIPESYSTEM_PORT CString GetTextStyleKey(TextStyleEnum use);

// The built-in styles, one for each use, in their order.
ZEF_PIPESYSTEM_PORT const std::vector<TextStyleNode>& GetDefaultTextStyles();
