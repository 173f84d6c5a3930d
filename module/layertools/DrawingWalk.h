// What a drawing's tables and blocks hold, for range-based loops.
#pragma once

#include "dbobjptr.h"
#include "dbsymtb.h"

#include <memory>

// The ids that an iterator of the drawing goes through; none when there is no iterator.
template<class Iterator, Acad::ErrorStatus (Iterator::*Get)(AcDbObjectId&) const>
class IdRange {
public:
    explicit IdRange(Iterator* made) : m_made(made) {}

    struct End {};
    class Place {
    public:
        explicit Place(Iterator* at) : m_at(at) {}
        AcDbObjectId operator*() const {
            AcDbObjectId id;
            (m_at->*Get)(id);
            return id;
        }
        Place& operator++() {
            m_at->step();
            return *this;
        }
        bool operator!=(End) const { return m_at != nullptr && !m_at->done(); }

    private:
        Iterator* m_at;
    };

    Place begin() const { return Place(m_made.get()); }
    End end() const { return {}; }

private:
    std::unique_ptr<Iterator> m_made;
};

// The records of a symbol table, in its order; none when it can not be opened.
inline auto RecordsOf(AcDbObjectId tableId) {
    const AcDbObjectPointer<AcDbSymbolTable> table(tableId, AcDb::kForRead);
    AcDbSymbolTableIterator* made = nullptr;
    if (table.openStatus() == Acad::eOk)
        table->newIterator(made);
    return IdRange<AcDbSymbolTableIterator, &AcDbSymbolTableIterator::getRecordId>(made);
}

// The entities of a block, which is to be open as long as they are gone through.
inline auto EntitiesOf(const AcDbBlockTableRecord& block) {
    AcDbBlockTableRecordIterator* made = nullptr;
    block.newIterator(made);
    return IdRange<AcDbBlockTableRecordIterator, &AcDbBlockTableRecordIterator::getEntityId>(made);
}
