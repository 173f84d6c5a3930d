#include "module/check/SameProperties.h"

#include "acutmem.h"
#include "afx.h"
#include "dbmain.h"
#include "module/layertools/DrawingRecords.h"

namespace {

constexpr int bytesCode = 1004;
constexpr int lastText = 1009;
constexpr int firstPoint = 1010;
constexpr int firstReal = 1040;
constexpr int firstWhole = 1060;
constexpr int longCode = 1071;

void AddNode(std::wstring& key, const resbuf& node) {
    const int code = node.restype;
    key += L"|" + std::to_wstring(code) + L":";
    CString value;
    if (code == bytesCode)
        for (int i = 0; i < node.resval.rbinary.clen; ++i)
            value.AppendFormat(L"%02x", static_cast<unsigned char>(node.resval.rbinary.buf[i]));
    else if (code <= lastText)
        value = node.resval.rstring;
    else if (code >= firstPoint && code < firstReal)
        value.Format(L"%.17g,%.17g,%.17g", node.resval.rpoint[0], node.resval.rpoint[1],
                     node.resval.rpoint[2]);
    else if (code >= firstReal && code < firstWhole)
        value.Format(L"%.17g", node.resval.rreal);
    else
        value.Format(L"%d", code == longCode ? static_cast<int>(node.resval.rlong) : node.resval.rint);
    key += value.GetString();
}

} // namespace

std::wstring PropertyKey(const AcDbEntity& entity) {
    const AcCmColor color = entity.color();
    const auto text = [](const ACHAR* name) { return std::wstring(name != nullptr ? name : L""); };
    std::wstring key = std::to_wstring(entity.layerId().asOldId()) + L"|" +
                       std::to_wstring(color.colorMethod()) + L"|" + std::to_wstring(color.colorIndex()) +
                       L"|" + std::to_wstring(color.red() << 16 | color.green() << 8 | color.blue()) + L"|" +
                       text(color.bookName()) + L"$" + text(color.colorName()) + L"|" +
                       std::to_wstring(entity.linetypeId().asOldId()) + L"|" +
                       std::to_wstring(entity.lineWeight()) + L"|" + std::to_wstring(entity.visibility());
    CString scale;
    scale.Format(L"|%.17g", entity.linetypeScale());
    key += scale.GetString();
    if (!entity.extensionDictionary().isNull())
        key += L"|own " + std::to_wstring(entity.objectId().asOldId());
    const Chain data(entity.xData());
    for (const resbuf* node = data.get(); node != nullptr; node = node->rbnext)
        AddNode(key, *node);
    return key;
}
