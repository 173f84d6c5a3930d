#include "host/view/nesting.h"

#include <set>

namespace gi {

void tell_too_deep(const AcDbImpDatabase& drawing) {
    static std::set<Adesk::IntDbId> told; // numbers of drawings are never given twice
    if (!told.insert(drawing.id(0).asOldId()).second || !AcDbImpDatabase::how_to_read().tell)
        return;
    AcDbImpDatabase::how_to_read().tell(drawing.file_name + L": blocks nest deeper than " +
                                        std::to_wstring(most_nested_blocks) +
                                        L" levels: what lies deeper is not seen");
}

} // namespace gi
