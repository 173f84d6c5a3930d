#include "module/check/SameProperties.h"

#include "acutmem.h"
#include "dbmain.h"
#include "module/layertools/DrawingRecords.h"

#include <cstddef>
#include <string_view>

namespace {

constexpr int bytesCode = 1004;
constexpr int lastText = 1009;
constexpr int firstPoint = 1010;
constexpr int firstReal = 1040;
constexpr int firstWhole = 1060;
constexpr int longCode = 1071;

void AddText(std::string& key, const ACHAR* text) {
    const std::wstring_view whole(text != nullptr ? text : L"");
    AddBytes(key, whole.size());
    key.append(reinterpret_cast<const char*>(whole.data()), whole.size() * sizeof(wchar_t));
}

void AddNode(std::string& key, const resbuf& node) {
    const int code = node.restype;
    AddBytes(key, code);
    if (code == bytesCode) {
        AddBytes(key, node.resval.rbinary.clen);
        key.append(node.resval.rbinary.buf, static_cast<std::size_t>(node.resval.rbinary.clen));
    } else if (code <= lastText) {
        AddText(key, node.resval.rstring);
    } else if (code >= firstPoint && code < firstReal) {
        for (const double value : node.resval.rpoint)
            AddBytes(key, value);
    } else if (code >= firstReal && code < firstWhole) {
        AddBytes(key, node.resval.rreal);
    } else {
        AddBytes(key, code == longCode ? static_cast<int>(node.resval.rlong) : node.resval.rint);
    }
}

} // namespace

std::string PropertyKey(const AcDbEntity& entity) {
    std::string key;
    AddBytes(key, entity.layerId().asOldId());
    AddBytes(key, entity.linetypeId().asOldId());
    AddBytes(key, entity.linetypeScale());
    AddBytes(key, entity.lineWeight());
    AddBytes(key, entity.visibility());
    const AcCmColor color = entity.color();
    AddBytes(key, color.colorMethod());
    AddBytes(key, color.colorIndex());
    AddBytes(key, color.red() << 16 | color.green() << 8 | color.blue());
    AddText(key, color.bookName());
    AddText(key, color.colorName());
    const bool hasOwn = !entity.extensionDictionary().isNull();
    AddBytes(key, hasOwn ? entity.objectId().asOldId() : AcDbObjectId().asOldId());
    const Chain data(entity.xData());
    for (const resbuf* node = data.get(); node != nullptr; node = node->rbnext)
        AddNode(key, *node);
    return key;
}
