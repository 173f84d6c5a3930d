// The catalogue of Windows fonts: a record for each face and script.
#pragma once

#include "module/frame/ModulePort.h"
#include "sys/installed_fonts.h"

#include "afx.h"

#include <vector>

struct WindowsFont {
    CString m_face;
    int m_charSet = 0;
    int m_familyFlags = 0; // family and spacing
    CString m_fullName;
    CString m_style;
    CString m_script;
    int m_weight = 0;
    BYTE m_italic = 0;
    BYTE m_underline = 0;
    BYTE m_strikeOut = 0;
    BYTE m_charSetByte = 0;
};

class ZEF_PIPESYSTEM_PORT CWindowsFonts {
public:
    // Of the given fonts those that are TrueType and have a name, but for "marlett", which holds the signs on
    // windows' frames. Sorted by face, script and what tells them apart otherwise.
    explicit CWindowsFonts(const std::vector<sys::installed_font>& fonts);

    // The questions of FontTool.h; of `face` null means every face.
    void GetScripts(const CString* face, std::vector<CString>& scripts) const;
    void GetFaces(const CString& script, std::vector<CString>& faces) const;
    // Null when there is none.
    const WindowsFont* Find(const CString& face, const CString& script) const;

private:
    std::vector<WindowsFont> m_fonts;
};
