#include "module/layertools/TakenApart.h"
#include "module/layertools/DrawingWalk.h"

#include "dbobjptr.h"
#include "dbptrar.h"
#include "dbsymtb.h"
#include "rxclass.h"

#include <memory>
#include <string_view>
#include <vector>

namespace {

// Entities on locked layers can not be changed: the layers are unlocked meanwhile.
class Unlocked {
public:
    explicit Unlocked(AcDbDatabase& drawing) {
        for (const AcDbObjectId id : RecordsOf(drawing.layerTableId()))
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
    if (block.isFromExternalReference())
        return found;
    for (const AcDbObjectId id : EntitiesOf(block)) {
        const AcDbEntityPointer entity(id, AcDb::kForRead);
        if (entity.openStatus() == Acad::eOk && IsOfAddOn(*entity->isA()))
            found.push_back(id);
    }
    return found;
}

void TakeApart(AcDbObjectId id, AcDbBlockTableRecord& block, TakenApart& count) {
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

} // namespace

TakenApart TakeAllApart(AcDbDatabase& drawing) {
    const Unlocked unlocked(drawing);
    TakenApart count;
    for (const AcDbObjectId id : RecordsOf(drawing.blockTableId())) {
        const AcDbObjectPointer<AcDbBlockTableRecord> block(id, AcDb::kForWrite);
        if (block.openStatus() != Acad::eOk)
            continue;
        for (const AcDbObjectId entity : CustomEntitiesOf(*block.object()))
            TakeApart(entity, *block.object(), count);
    }
    return count;
}
