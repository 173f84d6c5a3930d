// Symbol tables and their records: layers, linetypes, text styles, blocks, applications and the rest.
//
// Names keep their case and are compared without it. A table is in the order of creation.
#pragma once

#include "dbmain.h"

class AcDbSymbolTableIterator;

class ACDB_PORT AcDbSymbolTableRecord : public AcDbObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbSymbolTableRecord);
    ~AcDbSymbolTableRecord() override;

    Acad::ErrorStatus getName(AcString& name) const;
    // A copy that the caller frees (acutDelString).
    Acad::ErrorStatus getName(ACHAR*& name) const;
    // Looked on; valid until the record is closed.
    Acad::ErrorStatus getName(const ACHAR*& name) const;
    // eInvalidInput for what is no name, and for layer 0 and dependent layers. Of a resident record:
    // eDuplicateRecordName, a change of case is allowed; what names a layer follows it, other resident
    // records are not renamed yet (eNotImplementedYet).
    Acad::ErrorStatus setName(const ACHAR* name);

    // Whether it comes from an external reference ("reference|name").
    bool isDependent() const;
    bool isResolved() const;

protected:
    AcDbSymbolTableRecord();

private:
    mutable AcString m_nameSeen;
};

class ACDB_PORT AcDbSymbolTable : public AcDbObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbSymbolTable);
    ~AcDbSymbolTable() override;

    // eKeyNotFound; an erased record only when getErased is true.
    Acad::ErrorStatus getAt(const ACHAR* name, AcDbObjectId& id, bool getErasedRecord = false) const;
    bool has(const ACHAR* name) const;
    bool has(AcDbObjectId id) const;
    // Adds a new record, which stays open for write. eDuplicateRecordName, eInvalidInput for a bad name,
    // eNotOpenForWrite, eAlreadyInDb, eNotThatKindOfClass.
    Acad::ErrorStatus add(AcDbSymbolTableRecord* record);
    Acad::ErrorStatus add(AcDbObjectId& id, AcDbSymbolTableRecord* record);
    // The caller deletes the iterator; the table may be closed meanwhile.
    Acad::ErrorStatus newIterator(AcDbSymbolTableIterator*& iterator, bool atBeginning = true,
                                  bool skipDeleted = true) const;

protected:
    AcDbSymbolTable();
    Acad::ErrorStatus getAtAny(const ACHAR* name, AcDbObject*& record, AcDb::OpenMode mode,
                               bool openErased) const;
};

class ACDB_PORT AcDbSymbolTableIterator {
public:
    AcDbSymbolTableIterator(const AcDbSymbolTableIterator&) = delete;
    AcDbSymbolTableIterator& operator=(const AcDbSymbolTableIterator&) = delete;
    virtual ~AcDbSymbolTableIterator();

    void start(bool atBeginning = true, bool skipDeleted = true);
    bool done() const;
    void step(bool forward = true, bool skipDeleted = true);
    Acad::ErrorStatus getRecordId(AcDbObjectId& id) const;
    Acad::ErrorStatus getRecord(AcDbSymbolTableRecord*& record, AcDb::OpenMode mode = AcDb::kForRead,
                                bool openErasedRecord = false) const;

private:
    friend class AcDbSymbolTable;
    explicit AcDbSymbolTableIterator(AcDbObjectIdArray records);

    AcDbObjectIdArray m_records;
    int m_at = 0;
};

// A table and its record, by the pattern that all share.
#define ACDB_SYMBOL_TABLE(TABLE, RECORD)                                                                     \
    class ACDB_PORT TABLE : public AcDbSymbolTable {                                                         \
    public:                                                                                                  \
        ACRX_DECLARE_MEMBERS(TABLE);                                                                         \
        TABLE();                                                                                             \
        ~TABLE() override;                                                                                   \
        using AcDbSymbolTable::getAt;                                                                        \
        Acad::ErrorStatus getAt(const ACHAR* name, RECORD*& record, AcDb::OpenMode mode,                     \
                                bool openErasedRecord = false) const {                                       \
            AcDbObject* opened = nullptr;                                                                    \
            const Acad::ErrorStatus status = getAtAny(name, opened, mode, openErasedRecord);                 \
            record = RECORD::cast(opened);                                                                   \
            return status;                                                                                   \
        }                                                                                                    \
    }

#define ACDB_SYMBOL_TABLE_RECORD(RECORD, TABLE)                                                              \
    class ACDB_PORT RECORD : public AcDbSymbolTableRecord {                                                  \
    public:                                                                                                  \
        typedef TABLE TableType;                                                                             \
        ACRX_DECLARE_MEMBERS(RECORD);                                                                        \
        RECORD();                                                                                            \
        ~RECORD() override;                                                                                  \
    }

class ACDB_PORT AcDbLayerTableRecord : public AcDbSymbolTableRecord {
public:
    typedef AcDbLayerTable TableType;
    ACRX_DECLARE_MEMBERS(AcDbLayerTableRecord);
    AcDbLayerTableRecord();
    ~AcDbLayerTableRecord() override;

    bool isFrozen() const;
    // eInvalidLayer for the current layer, and nothing changed.
    Acad::ErrorStatus setIsFrozen(bool frozen);
    bool isOff() const;
    void setIsOff(bool off);
    // Whether new viewports begin with it frozen.
    bool VPDFLT() const;
    void setVPDFLT(bool frozen);
    bool isLocked() const;
    void setIsLocked(bool locked);

    AcCmColor color() const;
    // A layer's colour is an index from 1 to 255 or a true colour; anything else is not taken.
    void setColor(const AcCmColor& color);

    AcDbObjectId linetypeObjectId() const;
    // eWrongObjectType when the id names no linetype.
    Acad::ErrorStatus setLinetypeObjectId(AcDbObjectId id);

    bool isPlottable() const;
    Acad::ErrorStatus setIsPlottable(bool plottable);
    AcDb::LineWeight lineWeight() const;
    // eBadLineWeightValue for ByLayer, ByBlock and weights that are none.
    Acad::ErrorStatus setLineWeight(AcDb::LineWeight weight);

    // A text that the caller frees (acutDelString).
    ACHAR* description() const;
    Acad::ErrorStatus setDescription(const ACHAR* description);

    // Layer 0 and the current layer stay: eCannotBeErasedByCaller.
    Acad::ErrorStatus subErase(bool erasing) override;
};

class AcDbBlockTableRecordIterator;

class ACDB_PORT AcDbBlockTableRecord : public AcDbSymbolTableRecord {
public:
    typedef AcDbBlockTable TableType;
    ACRX_DECLARE_MEMBERS(AcDbBlockTableRecord);
    AcDbBlockTableRecord();
    ~AcDbBlockTableRecord() override;

    // Entities in the order of the file. The caller deletes the iterator.
    Acad::ErrorStatus newIterator(AcDbBlockTableRecordIterator*& iterator, bool atBeginning = true,
                                  bool skipDeleted = true) const;
    // Whether it is a space: model space or a sheet.
    bool isLayout() const;
    bool isAnonymous() const;
    bool isFromExternalReference() const;
    bool isFromOverlayReference() const;
    // The path of an external reference.
    Acad::ErrorStatus pathName(AcString& path) const;

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
};

class ACDB_PORT AcDbBlockTableRecordIterator {
public:
    AcDbBlockTableRecordIterator(const AcDbBlockTableRecordIterator&) = delete;
    AcDbBlockTableRecordIterator& operator=(const AcDbBlockTableRecordIterator&) = delete;
    virtual ~AcDbBlockTableRecordIterator();

    void start(bool atBeginning = true, bool skipDeleted = true);
    bool done() const;
    void step(bool forward = true, bool skipDeleted = true);
    Acad::ErrorStatus getEntityId(AcDbObjectId& id) const;
    Acad::ErrorStatus getEntity(AcDbEntity*& entity, AcDb::OpenMode mode = AcDb::kForRead,
                                bool openErasedEntity = false) const;

private:
    friend class AcDbBlockTableRecord;
    explicit AcDbBlockTableRecordIterator(AcDbObjectIdArray entities);

    AcDbObjectIdArray m_entities;
    int m_at = 0;
};

class ACDB_PORT AcDbLinetypeTableRecord : public AcDbSymbolTableRecord {
public:
    typedef AcDbLinetypeTable TableType;
    ACRX_DECLARE_MEMBERS(AcDbLinetypeTableRecord);
    AcDbLinetypeTableRecord();
    ~AcDbLinetypeTableRecord() override;

    // The description, as a text that the caller frees.
    ACHAR* comments() const;
    double patternLength() const;
    int numDashes() const;
};

ACDB_SYMBOL_TABLE_RECORD(AcDbTextStyleTableRecord, AcDbTextStyleTable);
ACDB_SYMBOL_TABLE_RECORD(AcDbRegAppTableRecord, AcDbRegAppTable);
ACDB_SYMBOL_TABLE_RECORD(AcDbDimStyleTableRecord, AcDbDimStyleTable);
ACDB_SYMBOL_TABLE_RECORD(AcDbViewTableRecord, AcDbViewTable);
ACDB_SYMBOL_TABLE_RECORD(AcDbViewportTableRecord, AcDbViewportTable);
ACDB_SYMBOL_TABLE_RECORD(AcDbUCSTableRecord, AcDbUCSTable);

ACDB_SYMBOL_TABLE(AcDbLayerTable, AcDbLayerTableRecord);
ACDB_SYMBOL_TABLE(AcDbLinetypeTable, AcDbLinetypeTableRecord);
ACDB_SYMBOL_TABLE(AcDbTextStyleTable, AcDbTextStyleTableRecord);
ACDB_SYMBOL_TABLE(AcDbBlockTable, AcDbBlockTableRecord);
ACDB_SYMBOL_TABLE(AcDbRegAppTable, AcDbRegAppTableRecord);
ACDB_SYMBOL_TABLE(AcDbDimStyleTable, AcDbDimStyleTableRecord);
ACDB_SYMBOL_TABLE(AcDbViewTable, AcDbViewTableRecord);
ACDB_SYMBOL_TABLE(AcDbViewportTable, AcDbViewportTableRecord);
ACDB_SYMBOL_TABLE(AcDbUCSTable, AcDbUCSTableRecord);

// Whether a text may be a symbol name: RTNORM, else RTERROR. One "|" is allowed when pipeTest is not 0.
ACDB_PORT int acdbSNValid(const ACHAR* name, int pipeTest);
