#include "module/standard/LinetypeLibrary.h"

#include "module/standard/Names.h"
#include "siblings/zef_kernal/ZefExport.h"
#include "sys/dbase_file.h"
#include "sys/folders.h"

#include "dbapserv.h"
#include "dbobjptr.h"
#include "dbsymtb.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

namespace {

fs::path TableFile() {
    return sys::find_without_case(sys::system_folder(), "linetype.dbf");
}

std::vector<CString> Read() {
    constexpr int gbk = 936;
    std::vector<CString> names;
    const auto table = sys::read_dbase(TableFile(), gbk);
    if (!table)
        return names;
    const auto name = table->find_field(L"NAME");
    for (std::size_t row = 0; name && row < table->row_count(); ++row)
        if (!table->is_deleted(row))
            names.emplace_back(table->text(row, *name).c_str());
    return names;
}

std::vector<CString>& Names() {
    static std::vector<CString> names;
    if (names.empty()) // a table that was not there may be there now
        names = Read();
    return names;
}

AcDbObjectId Find(LPCTSTR name, const AcDbDatabase& database) {
    AcDbObjectId id;
    const AcDbLinetypeTablePointer table(database.linetypeTableId(), AcDb::kForRead);
    if (table.openStatus() == Acad::eOk)
        table->getAt(name, id);
    return id;
}

// Makes a linetype as a file defines it; null when it does not.
AcDbObjectId Load(LPCTSTR name, const fs::path& file, AcDbDatabase& database) {
    return database.loadLineTypeFile(name, sys::from_path(file).c_str()) == Acad::eOk
               ? Find(name, database)
               : AcDbObjectId(AcDbObjectId::kNull);
}

// As the first linetype file (".lin") of the support path defines it that does.
AcDbObjectId LoadFromTextFiles(LPCTSTR name, AcDbDatabase& database) {
    std::vector<CString> folders;
    ZefExport::GetSupportPaths(folders);
    for (const CString& folder : folders) {
        std::vector<fs::path> files;
        std::error_code error;
        for (fs::directory_iterator at(sys::to_path(ViewOf(folder)), error), end; !error && at != end;
             at.increment(error))
            if (IsSameName(std::wstring_view(sys::from_path(at->path().extension())), L".lin"))
                files.push_back(at->path());
        std::ranges::sort(files);
        for (const fs::path& file : files)
            if (const AcDbObjectId id = Load(name, file, database); !id.isNull())
                return id;
    }
    return AcDbObjectId::kNull;
}

} // namespace

void ReloadLinetypes() {
    Names() = Read();
}

void GetLinetypeNames(std::vector<CString>& names) {
    names.insert(names.end(), Names().begin(), Names().end());
}

AcDbObjectId KolTool::LoadVrLineType(LPCTSTR name) {
    AcDbDatabase* const database = acdbHostApplicationServices()->workingDatabase();
    if (database == nullptr)
        return AcDbObjectId::kNull;
    AcDbObjectId id = Find(name, *database);
    if (!id.isNull())
        return id;
    const auto row =
        std::ranges::find_if(Names(), [name](const CString& known) { return IsSameName(known, name); });
    if (row != Names().end())
        id = Load(*row, TableFile(), *database);
    return !id.isNull() ? id : LoadFromTextFiles(name, *database);
}
