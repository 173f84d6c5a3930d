#include "clients/SaveExploded.h"

#include "module/layertools/TakenApart.h"
#include "sys/folders.h"

#include "acedads.h"
#include "acutads.h"
#include "afx.h"
#include "dbapserv.h"
#include "dbmain.h"

#include <filesystem>
#include <system_error>

namespace {

namespace fs = std::filesystem;

// A file that is gone with its owner.
class PassingFile {
public:
    explicit PassingFile(fs::path path) : m_path(std::move(path)) {}
    ~PassingFile() {
        std::error_code ignored;
        fs::remove(m_path, ignored);
    }
    PassingFile(const PassingFile&) = delete;
    PassingFile& operator=(const PassingFile&) = delete;
    CString Name() const { return sys::from_path(m_path).c_str(); }

private:
    fs::path m_path;
};

bool IsDrawingItself(const AcDbDatabase& drawing, const fs::path& path) {
    const ACHAR* own = nullptr;
    std::error_code ignored;
    return drawing.getFilename(own) == Acad::eOk && own != nullptr &&
           fs::equivalent(sys::to_path(own), path, ignored);
}

} // namespace

void SaveExploded() {
    AcString answer;
    constexpr int withBlanks = 1;
    if (acedGetString(withBlanks, L"\n请输入副本的文件名<退出>:", answer) != RTNORM || answer.isEmpty())
        return;
    fs::path path = sys::to_path(answer.kwszPtr());
    if (CString(sys::from_path(path.extension()).c_str()).CompareNoCase(L".dxf") != 0)
        path += ".dxf"; // it is DXF whatever the name looks like
    AcDbDatabase& drawing = *acdbHostApplicationServices()->workingDatabase();
    if (IsDrawingItself(drawing, path)) {
        acdbFail(L"\n副本不能覆盖当前图形！");
        return;
    }
    const CString name = sys::from_path(path).c_str();
    const PassingFile passing(sys::temp_folder() / (path.filename() += ".copy"));
    AcDbDatabase copy(false, true);
    TakenApart count;
    bool isSaved = drawing.dxfOut(passing.Name()) == Acad::eOk && copy.dxfIn(passing.Name()) == Acad::eOk;
    if (isSaved) {
        count = TakeAllApart(copy);
        isSaved = copy.dxfOut(name) == Acad::eOk;
    }
    if (!isSaved) {
        acdbFail(L"\n副本\"" + name + L"\"保存失败！");
        return;
    }
    acutPrintf(L"\n已保存\"%s\"：%d 个自定义实体分解为 %d 个普通实体。", name.GetString(), count.m_taken,
               count.m_pieces);
    if (count.m_kept > 0)
        acutPrintf(L"\n%d 个自定义实体不能分解，保持原样。", count.m_kept);
}
