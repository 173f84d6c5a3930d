// Symbol tables and their records: layers, linetypes, text styles, blocks, applications and the rest.
//
// Names keep their case and are compared without it. A table is in the order of creation.
#pragma once

#include "PAL/api/FontFamily.h"
#include "PAL/api/FontPitch.h"
#include "PAL/api/charset.h"
#include "dbmain.h"
#include "gevec2d.h"

class AcDbSymbolTableIterator;

class ACDB_PORT AcDbSymbolTableRecord : public AcDbObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbSymbolTableRecord);

    Acad::ErrorStatus getName(AcString& name) const;
    // A copy that the caller frees (acutDelString).
    Acad::ErrorStatus getName(ACHAR*& name) const;
    // Looked on; valid until the record is closed.
    Acad::ErrorStatus getName(const ACHAR*& name) const;
    // eInvalidInput for what is no name, and for the records that every drawing has and dependent ones. Of a
    // resident record: eDuplicateRecordName, a change of case is allowed; when it is closed, what names it
    // in the drawing follows.
    Acad::ErrorStatus setName(const ACHAR* name);

    // Whether it comes from an external reference ("reference|name").
    bool isDependent() const;
    // Whether the reference was found to have it.
    bool isResolved() const;

    // What depends on an external reference stays: eCannotBeErasedByCaller.
    Acad::ErrorStatus subErase(bool erasing) override;

protected:
    AcDbSymbolTableRecord();

private:
    mutable AcString m_nameSeen;
};

// A table of named records: names are compared without case.
class ACDB_PORT AcDbSymbolTable : public AcDbObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbSymbolTable);

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

// Goes through the records of a table in the order of the file. The caller deletes it.
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
    }

// A layer.
class ACDB_PORT AcDbLayerTableRecord : public AcDbSymbolTableRecord {
public:
    typedef AcDbLayerTable TableType;
    ACRX_DECLARE_MEMBERS(AcDbLayerTableRecord);
    AcDbLayerTableRecord();

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

    // Layer 0, the current layer and dependent ones stay: eCannotBeErasedByCaller.
    Acad::ErrorStatus subErase(bool erasing) override;
};

class AcDbBlockTableRecordIterator;

// A block: the model, a sheet, or what references show.
class ACDB_PORT AcDbBlockTableRecord : public AcDbSymbolTableRecord {
public:
    typedef AcDbBlockTable TableType;
    ACRX_DECLARE_MEMBERS(AcDbBlockTableRecord);
    AcDbBlockTableRecord();

    // Entities in the order of the file; those of a loaded reference are objects of that drawing. The caller
    // deletes the iterator.
    Acad::ErrorStatus newIterator(AcDbBlockTableRecordIterator*& iterator, bool atBeginning = true,
                                  bool skipDeleted = true) const;
    // Puts a new entity at its end, with the vertices or attributes that the entity holds. What the entity
    // was not given (layer, colour, linetype and its scale, lineweight) it takes from the drawing. It stays
    // open for write and belongs to the database.
    //
    // eNoDatabase for a new block record, eNotOpenForWrite, eAlreadyInDb, eIllegalEntityType for what files
    // of the drawing's version can not hold, eIsXRefObject. Then it still belongs to the caller.
    Acad::ErrorStatus appendAcDbEntity(AcDbObjectId& id, AcDbEntity* entity);
    Acad::ErrorStatus appendAcDbEntity(AcDbEntity* entity);
    // Whether it is a space: model space or a sheet.
    bool isLayout() const;
    // The point of it that a reference puts at its position. The change is at once the drawing's.
    AcGePoint3d origin() const;
    Acad::ErrorStatus setOrigin(const AcGePoint3d& origin);
    // A description, as a text that the caller frees. Set: eNotApplicable in files of R12, which hold none.
    Acad::ErrorStatus comments(ACHAR*& text) const;
    Acad::ErrorStatus setComments(const ACHAR* text);
    // Whether references to it may be exploded. Set: eNotApplicable in files before R2007, which do not tell.
    bool explodable() const;
    Acad::ErrorStatus setExplodable(bool explodable);
    bool hasAttributeDefinitions() const;
    // Appends the references to it, wherever they stand.
    Acad::ErrorStatus getBlockReferenceIds(AcDbObjectIdArray& ids, bool directOnly = true,
                                           bool forceValidity = false) const;
    // Spaces and what depends on an external reference stay: eCannotBeErasedByCaller. What stands in it goes
    // with it; references to it are the caller's business.
    Acad::ErrorStatus subErase(bool erasing) override;
    // The layout of a space; null for other blocks, and in drawings of R12 and before, which have none.
    AcDbObjectId getLayoutId() const;
    bool isAnonymous() const;

    bool isFromExternalReference() const;
    bool isFromOverlayReference() const;
    AcDb::XrefStatus xrefStatus() const;
    // Whether the user unloaded it, which drawing files do not tell: never so far.
    bool isUnloaded() const { return xrefStatus() == AcDb::kXrfUnloaded; }
    // The drawing that an external reference stands for, owned by this one; null when it is not loaded. Its
    // objects are opened for reading only (eIsXRefObject).
    AcDbDatabase* xrefDatabase(bool incUnres = false) const;
    // The path of an external reference as the drawing names it. eKeyNotFound when there is none.
    Acad::ErrorStatus pathName(AcString& path) const;

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
};

// Goes through the entities of a block in their order. The caller deletes it.
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

// A linetype: its dashes, with shapes and texts in them.
class ACDB_PORT AcDbLinetypeTableRecord : public AcDbSymbolTableRecord {
public:
    typedef AcDbLinetypeTable TableType;
    ACRX_DECLARE_MEMBERS(AcDbLinetypeTableRecord);
    AcDbLinetypeTableRecord();

    // The description, as a text that the caller frees.
    ACHAR* comments() const;
    Acad::ErrorStatus setComments(const ACHAR* text);
    // How long the pattern is before it repeats: the sum of its dashes and gaps.
    double patternLength() const;
    void setPatternLength(double length);
    // New dashes are dots without text or shape.
    int numDashes() const;
    void setNumDashes(int count);

    // Of each dash, from 0 on; one that is not there has the values of a new one and is not changed. Above
    // nought it is drawn, below nought it is a gap, nought is a dot.
    double dashLengthAt(int dash) const;
    void setDashLengthAt(int dash, double length);
    // What stands in the line there: a text in a text style, or a shape of a shape file by its number.
    // eInvalidIndex for a dash that is not there, eKeyNotFound without a text; the text is the caller's.
    Acad::ErrorStatus textAt(int dash, ACHAR*& text) const;
    Acad::ErrorStatus setTextAt(int dash, const ACHAR* text);
    AcDbObjectId shapeStyleAt(int dash) const;
    Acad::ErrorStatus setShapeStyleAt(int dash, AcDbObjectId style);
    int shapeNumberAt(int dash) const;
    Acad::ErrorStatus setShapeNumberAt(int dash, int number);
    // Its place from the end of the dash, its size, and its rotation against the line, or against the
    // drawing.
    AcGeVector2d shapeOffsetAt(int dash) const;
    void setShapeOffsetAt(int dash, const AcGeVector2d& offset);
    double shapeScaleAt(int dash) const;
    Acad::ErrorStatus setShapeScaleAt(int dash, double scale);
    double shapeRotationAt(int dash) const;
    void setShapeRotationAt(int dash, double radians);
    Adesk::Boolean shapeIsUcsOrientedAt(int dash) const;
    void setShapeIsUcsOrientedAt(int dash, bool oriented);
};

// How texts are written: with which fonts, how high, wide and slanted.
class ACDB_PORT AcDbTextStyleTableRecord : public AcDbSymbolTableRecord {
public:
    typedef AcDbTextStyleTable TableType;
    ACRX_DECLARE_MEMBERS(AcDbTextStyleTableRecord);
    AcDbTextStyleTableRecord();

    // Whether it loads a file of shapes rather than being a style.
    Adesk::Boolean isShapeFile() const;
    void setIsShapeFile(Adesk::Boolean shape);
    Adesk::Boolean isVertical() const;
    void setIsVertical(Adesk::Boolean vertical);

    // The height that all its texts have; nought when each has its own. eInvalidInput below nought.
    double textSize() const;
    Acad::ErrorStatus setTextSize(double size);
    // The height that the last text was given.
    double priorSize() const;
    Acad::ErrorStatus setPriorSize(double size);
    // The width factor. eInvalidInput unless above nought.
    double xScale() const;
    Acad::ErrorStatus setXScale(double scale);
    // The slant. eInvalidInput from 85 degrees on.
    double obliquingAngle() const;
    Acad::ErrorStatus setObliquingAngle(double angle);
    // 2: texts run backwards; 4: they stand on their heads.
    Adesk::UInt8 flagBits() const;
    void setFlagBits(Adesk::UInt8 flags);

    // The file of the font, and of the one for East Asian signs: texts that the caller frees, or looks on
    // while the record is open.
    Acad::ErrorStatus fileName(ACHAR*& name) const;
    Acad::ErrorStatus fileName(const ACHAR*& name) const;
    Acad::ErrorStatus fileName(AcString& name) const;
    Acad::ErrorStatus setFileName(const ACHAR* name);
    Acad::ErrorStatus bigFontFileName(ACHAR*& name) const;
    Acad::ErrorStatus bigFontFileName(const ACHAR*& name) const;
    Acad::ErrorStatus bigFontFileName(AcString& name) const;
    Acad::ErrorStatus setBigFontFileName(const ACHAR* name);

    // The typeface of a style that writes with a font of the system: an empty name when it does not. The
    // first form gives a text that the caller frees.
    Acad::ErrorStatus font(ACHAR*& typeface, bool& bold, bool& italic, Charset& charset,
                           Autodesk::AutoCAD::PAL::FontUtils::FontPitch& pitch,
                           Autodesk::AutoCAD::PAL::FontUtils::FontFamily& family) const;
    Acad::ErrorStatus font(AcString& typeface, bool& bold, bool& italic, Charset& charset,
                           Autodesk::AutoCAD::PAL::FontUtils::FontPitch& pitch,
                           Autodesk::AutoCAD::PAL::FontUtils::FontFamily& family) const;
    // A typeface without a name takes the system's font away. The file's name stays as it is.
    Acad::ErrorStatus setFont(const ACHAR* typeface, bool bold, bool italic, Charset charset,
                              Autodesk::AutoCAD::PAL::FontUtils::FontPitch pitch,
                              Autodesk::AutoCAD::PAL::FontUtils::FontFamily family);

private:
    mutable AcString m_fileSeen;
    mutable AcString m_bigFontSeen;
};

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
