// A document's elements in one line, for tests to compare.
#pragma once

#include "module/engines/MarkupDoc.h"

#include <string>
#include <string_view>

namespace test {

// The elements of the cursor's level behind it: a{x=1,y=2}'data'[children]...
inline std::wstring told(MarkupDoc& doc) {
    std::wstring out;
    bool goes_down = false;
    for (int depth = 0; depth >= 0;) {
        if (goes_down ? doc.IntoElement() && doc.FindElement() : doc.FindElement()) {
            out += goes_down ? L"[" : (out.empty() || out.back() == L'[') ? L"" : L",";
            depth += goes_down;
            out += doc.GetTagName();
            for (int i = 0; !doc.GetAttributeName(i).empty(); ++i) {
                out.append(i == 0 ? L"{" : L",").append(doc.GetAttributeName(i));
                out.append(L"=").append(doc.GetAttributeValue(i));
            }
            if (!doc.GetAttributeName(0).empty())
                out += L'}';
            if (const auto data = doc.GetElementData(); !data.empty())
                out.append(L"'").append(data).append(L"'");
            goes_down = true;
        } else if (goes_down) {
            doc.OutOfElement();
            goes_down = false;
        } else {
            if (depth-- > 0)
                out += L']';
            doc.OutOfElement();
        }
    }
    return out;
}

// The same of a text.
inline std::wstring told(const std::wstring& text) {
    MarkupDoc doc;
    doc.SetDocumentText(text.c_str());
    return told(doc);
}

} // namespace test
