// SELECT, ERASE, EXPLODE.
#include "acedads.h"
#include "dbobjptr.h"
#include "dbptrar.h"
#include "host/ed/editor.h"
#include "host/ed/host_commands.h"
#include "host/ed/questions.h"

#include <algorithm>

namespace ed {

// What was selected is the previous selection from then on.
void select_command() {
    if (current_drawing() != nullptr)
        ask_objects(false);
}

void erase_command() {
    if (current_drawing() == nullptr)
        return;
    int refused = 0;
    for (const AcDbObjectId id : ask_objects(true)) {
        const AcDbEntityPointer entity(id, AcDb::kForWrite);
        if (entity.openStatus() == Acad::eOk && entity->erase() == Acad::eNotAllowedForThisProxy)
            ++refused;
    }
    if (refused != 0)
        acutPrintf(L"\n%d could not be erased: the application of these proxies does not allow it.\n",
                   refused);
}

namespace {

// Puts the parts of an entity into its place. False, and nothing changed, when it has none that can be put
// there.
bool explode(AcDbObjectId id) {
    const AcDbEntityPointer entity(id, AcDb::kForWrite);
    if (entity.openStatus() != Acad::eOk)
        return false;
    AcDbVoidPtrArray made;
    const Acad::ErrorStatus status = entity->explode(made);
    std::vector<std::unique_ptr<AcDbEntity>> parts;
    parts.reserve(static_cast<std::size_t>(made.length()));
    for (int i = 0; i < made.length(); ++i)
        parts.emplace_back(static_cast<AcDbEntity*>(made[i]));
    if (status != Acad::eOk || parts.empty())
        return false;
    const AcDbObjectPointer<AcDbBlockTableRecord> block(entity->blockId(), AcDb::kForWrite);
    if (block.openStatus() != Acad::eOk)
        return false;
    std::vector<AcDbObjectId> added;
    for (auto& part : parts) {
        AcDbObjectId added_id;
        if (block->appendAcDbEntity(added_id, part.get()) != Acad::eOk) {
            for (const AcDbObjectId one : added) {
                const AcDbEntityPointer opened(one, AcDb::kForWrite);
                if (opened.openStatus() == Acad::eOk)
                    opened->erase();
            }
            return false;
        }
        part.release()->close(); // the drawing's now
        added.push_back(added_id);
    }
    return entity->erase() == Acad::eOk;
}

} // namespace

void explode_command() {
    if (current_drawing() == nullptr)
        return;
    const std::vector<AcDbObjectId> chosen = ask_objects(true);
    const auto whole =
        std::count_if(chosen.begin(), chosen.end(), [](AcDbObjectId id) { return !explode(id); });
    if (whole != 0)
        acutPrintf(L"\n%d could not be exploded.\n", static_cast<int>(whole));
}

} // namespace ed
