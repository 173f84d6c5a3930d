#include "siblings/zef_kernal/ZefExport.h"

#include "acedads.h"
#include "acutads.h"
#include "acutmem.h"
#include "dbapserv.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "siblings/zef_kernal/KernalOptions.h"
#include "siblings/zef_kernal/TDrawingWatch.h"
#include "sys/folders.h"

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <system_error>

namespace {

// The entry of that name in a symbol table of the working database.
template<class TablePointer>
AcDbObjectId EntryOf(AcDbObjectId (AcDbDatabase::*tableId)() const, LPCTSTR name) {
    AcDbObjectId entry;
    AcDbDatabase* const database = acdbHostApplicationServices()->workingDatabase();
    if (database == nullptr)
        return entry;
    const TablePointer table((database->*tableId)());
    if (table.openStatus() == Acad::eOk)
        table->getAt(name, entry);
    return entry;
}

} // namespace

// Whoever draws or updates many entities asks for the same few layers again and again.
AcDbObjectId ZefExport::GetLayerIdFromString(LPCTSTR layerName) {
    static TDrawingWatch watch({&AcDbLayerTableRecord::desc});
    static std::map<std::wstring, AcDbObjectId, std::less<>> found;
    if (!watch.IsUnchanged(acdbHostApplicationServices()->workingDatabase()))
        found.clear();
    const std::wstring_view name = layerName != nullptr ? layerName : L"";
    if (const auto known = found.find(name); known != found.end() && !known->second.isErased())
        return known->second;
    const AcDbObjectId layer = EntryOf<AcDbLayerTablePointer>(&AcDbDatabase::layerTableId, layerName);
    if (!layer.isNull())
        found.insert_or_assign(std::wstring(name), layer);
    return layer;
}

bool ZefExport::SetLayerOnOff(LPCTSTR layerName, bool on) {
    AcDbLayerTableRecordPointer layer(GetLayerIdFromString(layerName), AcDb::kForRead);
    if (layer.openStatus() != Acad::eOk)
        return false;
    if (layer->isOff() == !on) // it needs no change
        return true;
    if (layer->upgradeOpen() != Acad::eOk)
        return false;
    layer->setIsOff(!on);
    return true;
}

bool ZefExport::IsLayerOn(LPCTSTR layerName) {
    const AcDbLayerTableRecordPointer layer(GetLayerIdFromString(layerName), AcDb::kForRead);
    return layer.openStatus() != Acad::eOk || !layer->isOff();
}

CString ZefExport::GetLiteralPattern(LPCTSTR name) {
    CString pattern;
    for (const wchar_t c : std::wstring_view(name)) {
        if (std::wstring_view(L"#@.*?~[],-`").find(c) != std::wstring_view::npos)
            pattern += L'`';
        pattern += c;
    }
    return pattern;
}

AcDbObjectId ZefExport::GetTextStyleId(LPCTSTR styleName) {
    return EntryOf<AcDbTextStyleTablePointer>(&AcDbDatabase::textStyleTableId, styleName);
}

AcDbObjectId ZefExport::AddTextStyle(AcDbTextStyleTableRecord* style, bool close, AcDbDatabase* database) {
    AcDbObjectId added;
    if (style == nullptr)
        return added;
    AcDbTextStyleTablePointer table(database != nullptr ? database->textStyleTableId() : AcDbObjectId(),
                                    AcDb::kForWrite);
    if (table.openStatus() != Acad::eOk || table->add(added, style) != Acad::eOk) {
        delete style;
        return AcDbObjectId::kNull;
    }
    if (close)
        style->close();
    return added;
}

void ZefExport::GetSupportPaths(std::vector<CString>& folders) {
    resbuf value{};
    if (acedGetVar(L"ACADPREFIX", &value) != RTNORM || value.restype != RTSTR) {
        folders.push_back(sys::from_path(sys::system_folder()).c_str());
        return;
    }
    const CString all(value.resval.rstring);
    acutDelString(value.resval.rstring);
    for (int begin = 0; begin < all.GetLength();) {
        const int end = all.Find(L';', begin);
        const CString folder = all.Mid(begin, (end < 0 ? all.GetLength() : end) - begin);
        if (!folder.IsEmpty())
            folders.push_back(folder);
        begin = end < 0 ? all.GetLength() : end + 1;
    }
}

bool ZefExport::RefusesOldDrawing(LPCTSTR lacks) {
    const AcDbDatabase* const database = acdbHostApplicationServices()->workingDatabase();
    if (database == nullptr || !database->namedObjectsDictionaryId().isNull())
        return false;
    CString message;
    message.Format(
        L"\n当前图形是R12或更早的版本，不能保存%s！请先用SAVEAS 2018把图形另存为新版本，再执行本命令。",
        lacks);
    acdbFail(message);
    return true;
}

bool ZefExport::FindFile(LPCTSTR name, CString& path) {
    const std::filesystem::path wanted = sys::to_path(name != nullptr ? name : L"");
    if (g_csSysPath.IsEmpty() || wanted.empty() || wanted != wanted.filename() || wanted == "..")
        return false;
    const auto found = sys::find_without_case(sys::to_path(g_csSysPath.GetString()), wanted);
    std::error_code fault;
    if (found.empty() || !std::filesystem::is_regular_file(found, fault))
        return false;
    path = sys::from_path(found).c_str();
    return true;
}
