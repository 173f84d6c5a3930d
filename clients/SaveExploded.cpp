#include "clients/SaveExploded.h"

#include "sys/folders.h"

#include "acedads.h"
#include "acutads.h"
#include "afx.h"
#include "dbapserv.h"
#include "dbobjptr.h"
#include "dbptrar.h"
#include "dbsymtb.h"
#include "rxclass.h"

#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>
#include <vector>

namespace {

namespace fs = std::filesystem;

// What became of the entities.
struct Count {
    int m_taken = 0; // apart
    int m_pieces = 0;
    int m_kept = 0; // that could not be taken apart
};

// The records of a symbol table.
template<class Table>
std::vector<AcDbObjectId> RecordsOf(AcDbObjectId tableId) {
    std::vector<AcDbObjectId> records;
    const AcDbObjectPointer<Table> table(tableId, AcDb::kForRead);
    AcDbSymbolTableIterator* made = nullptr;
    if (table.openStatus() != Acad::eOk || table->newIterator(made) != Acad::eOk)
        return records;
    const std::unique_ptr<AcDbSymbolTableIterator> at(made);
    for (; !at->done(); at->step())
        if (AcDbObjectId id; at->getRecordId(id) == Acad::eOk)
            records.push_back(id);
    return records;
}

// Entities on locked layers can not be changed: the layers are unlocked meanwhile.
class Unlocked {
public:
    explicit Unlocked(AcDbDatabase& drawing) {
        for (const AcDbObjectId id : RecordsOf<AcDbLayerTable>(drawing.layerTableId()))
            if (AcDbLayerTableRecordPointer layer(id, AcDb::kForWrite);
                layer.openStatus() == Acad::eOk && layer->isLocked()) {
                layer->setIsLocked(false);
                m_layers.push_back(id);
            }
    }
    ~Unlocked() {
        for (const AcDbObjectId id : m_layers)
            if (AcDbLayerTableRecordPointer layer(id, AcDb::kForWrite); layer.openStatus() == Acad::eOk)
                layer->setIsLocked(true);
    }
    Unlocked(const Unlocked&) = delete;
    Unlocked& operator=(const Unlocked&) = delete;

private:
    std::vector<AcDbObjectId> m_layers;
};

// The classes of the add-on; other applications' entities are theirs to take apart.
bool IsOfAddOn(const AcRxClass& type) {
    return type.appName() != nullptr && std::wstring_view(type.appName()).starts_with(L"ZEF_");
}

std::vector<AcDbObjectId> CustomEntitiesOf(const AcDbBlockTableRecord& block) {
    std::vector<AcDbObjectId> found;
    AcDbBlockTableRecordIterator* made = nullptr;
    if (block.isFromExternalReference() || block.newIterator(made) != Acad::eOk)
        return found;
    const std::unique_ptr<AcDbBlockTableRecordIterator> at(made);
    for (; !at->done(); at->step()) {
        AcDbObjectId id;
        if (at->getEntityId(id) != Acad::eOk)
            continue;
        const AcDbEntityPointer entity(id, AcDb::kForRead);
        if (entity.openStatus() == Acad::eOk && IsOfAddOn(*entity->isA()))
            found.push_back(id);
    }
    return found;
}

void TakeApart(AcDbObjectId id, AcDbBlockTableRecord& block, Count& count) {
    const AcDbEntityPointer entity(id, AcDb::kForWrite);
    if (entity.openStatus() == Acad::eWasErased)
        return; // went with another one
    AcDbVoidPtrArray parts;
    if (entity.openStatus() != Acad::eOk || entity->explode(parts) != Acad::eOk) {
        ++count.m_kept;
        return;
    }
    for (void* const part : parts) {
        std::unique_ptr<AcDbEntity> piece(static_cast<AcDbEntity*>(part));
        AcDbObjectId added;
        if (block.appendAcDbEntity(added, piece.get()) == Acad::eOk) {
            piece.release()->close();
            ++count.m_pieces;
        }
    }
    entity->erase();
    ++count.m_taken;
}

Count TakeAllApart(AcDbDatabase& drawing) {
    const Unlocked unlocked(drawing);
    Count count;
    for (const AcDbObjectId id : RecordsOf<AcDbBlockTable>(drawing.blockTableId())) {
        const AcDbObjectPointer<AcDbBlockTableRecord> block(id, AcDb::kForWrite);
        if (block.openStatus() != Acad::eOk)
            continue;
        for (const AcDbObjectId entity : CustomEntitiesOf(*block.object()))
            TakeApart(entity, *block.object(), count);
    }
    return count;
}

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
    if (!path.has_extension())
        path += ".dxf";
    AcDbDatabase& drawing = *acdbHostApplicationServices()->workingDatabase();
    if (IsDrawingItself(drawing, path)) {
        acdbFail(L"\n副本不能覆盖当前图形！");
        return;
    }
    const CString name = sys::from_path(path).c_str();
    const PassingFile passing(sys::temp_folder() / (path.filename() += ".copy"));
    AcDbDatabase copy(false, true);
    Count count;
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
