// The id by which programs name an object of an open drawing.
#pragma once

#include "acdb.h"
#include "adesk.h"
#include "dbhandle.h"

#include <compare>

class AcRxClass;

// Names an object as long as its database lives, erased or not, and never another one; ids of a database that
// is gone answer as invalid. Ordered by database, then by creation.
class ACDB_PORT AcDbObjectId {
public:
    AcDbObjectId() = default;

    bool isNull() const { return m_id == 0; }
    void setNull() { m_id = 0; }
    // Whether it names an object of a database that is still there.
    bool isValid() const;
    // True for an erased object, and for an id that names none.
    bool isErased() const;
    // Whether the object, its owner or one further up is erased.
    bool isEffectivelyErased() const;
    // Whether the object is in memory as an object right now.
    bool isResident() const;

    // The database, null when there is none.
    AcDbDatabase* database() const;
    // The object's handle, a null handle when there is no object.
    AcDbHandle handle() const;
    // The class that the object has when it is opened; null when there is no object.
    AcRxClass* objectClass() const;

    Adesk::LongPtr asOldId() const { return static_cast<Adesk::LongPtr>(m_id); }
    AcDbObjectId& setFromOldId(Adesk::LongPtr id) {
        m_id = static_cast<Adesk::UInt64>(id);
        return *this;
    }

    friend bool operator==(AcDbObjectId a, AcDbObjectId b) { return a.m_id == b.m_id; }
    friend auto operator<=>(AcDbObjectId a, AcDbObjectId b) { return a.m_id <=> b.m_id; }
    explicit operator bool() const { return m_id != 0; }

    static const AcDbObjectId kNull;

private:
    Adesk::UInt64 m_id = 0;
};

inline const AcDbObjectId AcDbObjectId::kNull;

// An id that says how its holder stands to the object. An owner takes its objects with it when it is copied
// or erased, and each has one; what is pointed to has an owner elsewhere. What is held hard can not be
// purged.
#define ACDB_OBJECT_ID(NAME)                                                                                 \
    class NAME : public AcDbObjectId {                                                                       \
    public:                                                                                                  \
        NAME() = default;                                                                                    \
        NAME(const AcDbObjectId& id) : AcDbObjectId(id) {} /* NOLINT: as ObjectARX has it */                 \
    }

ACDB_OBJECT_ID(AcDbHardOwnershipId);
ACDB_OBJECT_ID(AcDbSoftOwnershipId);
ACDB_OBJECT_ID(AcDbHardPointerId);
ACDB_OBJECT_ID(AcDbSoftPointerId);
