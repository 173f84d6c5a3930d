// The objects of a drawing and the drawing itself: AcDbObject, AcDbEntity, AcDbDatabase.
//
// An object is opened by its id, for reading by many or for writing by one, used, and closed. What it is lies
// in the drawing; opening makes an object of it, closing puts what was changed back. Reading never changes
// anything.
//
// Words for an object's life: new (made, in no database), resident (in a database), erased (marked; not
// saved, not found, can come back), gone (its database was closed).
#pragma once

#include "acarray.h"
#include "acdb.h"
#include "acestext.h"
#include "acstring.h"
#include "adsdef.h"
#include "dbcolor.h"
#include "dbid.h"
#include "dbidar.h"
#include "dbmain_reactors.h"
#include "dbptrar.h"
#include "drawable.h"
#include "gemat3d.h"
#include "rxboiler.h"
#include "rxobject.h"

#include <memory>

class AcDbBlockTable;
class AcDbDictionary;
class AcDbDwgFiler;
class AcDbDxfFiler;
class AcDbIdMapping;
class AcDbDimStyleTable;
class AcDbImpDatabase;
class AcDbImpObject;
class AcDbLayerTable;
class AcDbLinetypeTable;
class AcDbRegAppTable;
class AcDbSymbolTable;
class AcDbTextStyleTable;
class AcDbTransactionManager;
class AcDbUCSTable;
class AcDbViewTable;
class AcDbViewportTable;

// A box that is parallel to the axes; a new one holds nothing.
class ACDB_PORT AcDbExtents {
public:
    AcDbExtents() = default;
    AcDbExtents(const AcGePoint3d& minimum, const AcGePoint3d& maximum) : m_min(minimum), m_max(maximum) {}

    // Of a box that holds nothing the least is above the most.
    AcGePoint3d minPoint() const { return m_min; }
    AcGePoint3d maxPoint() const { return m_max; }
    Acad::ErrorStatus set(const AcGePoint3d& minimum, const AcGePoint3d& maximum);
    // Makes it hold a point (of real numbers), and another box, too.
    void addPoint(const AcGePoint3d& point);
    void addExt(const AcDbExtents& other);
    void expandBy(const AcGeVector3d& vector);
    // The box around the transformed one.
    void transformBy(const AcGeMatrix3d& matrix);

private:
    AcGePoint3d m_min{1e20, 1e20, 1e20};
    AcGePoint3d m_max{-1e20, -1e20, -1e20};
};

// The root of everything that a drawing owns.
//
// The assert functions end the command when their condition does not hold (they throw inside the host): they
// guard members of classes, not callers.
class ACDB_PORT AcDbObject : public AcGiDrawable {
public:
    ACRX_DECLARE_MEMBERS(AcDbObject);

    ~AcDbObject() override;

    // Null for a new object.
    AcDbObjectId objectId() const;
    AcDbObjectId id() const override { return objectId(); }
    Adesk::Boolean isPersistent() const override { return !isNewObject(); }
    void getAcDbHandle(AcDbHandle& handle) const;
    // The container: a table, a block record, a dictionary. Null when there is none.
    AcDbObjectId ownerId() const;
    // Null for a new object.
    AcDbDatabase* database() const;

    // Ends one opening. What was changed is put into the drawing with the last one, and who wants to hear of
    // it hears then. An object that a transaction opened stays open for it. eNoDatabase for a new object,
    // eCloseWasNotifying while it is told of.
    Acad::ErrorStatus close();
    // Ends an opening for writing and takes back what was changed since. eNotOpenForWrite otherwise.
    Acad::ErrorStatus cancel();
    // From read to write: eHadMultipleReaders when others read, eWasOpenForWrite, eOnLockedLayer,
    // eLockViolation, eWasNotifying while it is told of (but for objectAppended).
    Acad::ErrorStatus upgradeOpen();
    // From write to read; what was changed is put into the drawing, and who wants to hear of it hears.
    Acad::ErrorStatus downgradeOpen();
    // Of an object that was opened to be told of another one: from that to write, and back. wasWritable says
    // whether it was open for write besides.
    Acad::ErrorStatus upgradeFromNotify(Adesk::Boolean& wasWritable);
    Acad::ErrorStatus downgradeToNotify(Adesk::Boolean wasWritable);

    // Marks as erased, or revives. eNotOpenForWrite, eWasErased, eWasNotErased, and what subErase answers.
    Acad::ErrorStatus erase(bool erasing = true);

    bool isReadEnabled() const;
    bool isWriteEnabled() const;
    bool isErased() const;
    // Whether it was changed since it was opened.
    bool isModified() const;
    bool isNewObject() const;
    bool isNotifyEnabled() const { return isReadEnabled(); }
    // Whether others are told of it at this moment; and whether that is since something is taken back or
    // given again.
    bool isNotifying() const;
    bool isUndoing() const;
    bool isTransactionResident() const;
    void assertReadEnabled() const;
    void assertNotifyEnabled() const { assertReadEnabled(); }
    void assertWriteEnabled(bool autoUndo = true, bool recordModified = true);

    // The extended data of an application, or of all (null), as a chain that the caller frees; null for none.
    virtual resbuf* xData(const ACHAR* regappName = nullptr) const;
    // Replaces the extended data of the applications in the chain (1001 and what follows); an application
    // named without data loses its. eInvalidResBuf, eRegappIdNotFound, eXdataSizeExceeded (16 KB per object).
    virtual Acad::ErrorStatus setXData(const resbuf* xdata);

    // The object's own dictionary: null id when it has none.
    AcDbObjectId extensionDictionary() const;
    // Gives it one. eAlreadyInDb when it has one, eNotOpenForWrite, eNoDatabase for a new object,
    // eNotApplicable in files of R12, which hold none.
    Acad::ErrorStatus createExtensionDictionary();
    // Takes it away. eContainerNotEmpty unless it is empty, eKeyNotFound when there is none.
    Acad::ErrorStatus releaseExtensionDictionary();

    // Those who want to hear of it, as long as the drawing is open. The caller keeps them, and takes them
    // away before they go. eNullObjectPointer, eDuplicateKey, eKeyNotFound.
    Acad::ErrorStatus addReactor(AcDbObjectReactor* reactor) const;
    Acad::ErrorStatus removeReactor(AcDbObjectReactor* reactor) const;
    // Objects that want to hear of it, which the drawing keeps. They are opened for that and told by the
    // members below; only classes of applications are asked. Adding one twice adds nothing; eKeyNotFound
    // for one that is to go and is not there.
    Acad::ErrorStatus addPersistentReactor(AcDbObjectId id);
    Acad::ErrorStatus removePersistentReactor(AcDbObjectId id);
    bool hasPersistentReactor(AcDbObjectId id) const;

    // What an object is told of another one that it is a persistent reactor of; see AcDbObjectReactor.
    virtual void cancelled(const AcDbObject* object);
    virtual void copied(const AcDbObject* object, const AcDbObject* newObject);
    virtual void erased(const AcDbObject* object, Adesk::Boolean erasing = true);
    virtual void goodbye(const AcDbObject* object);
    virtual void openedForModify(const AcDbObject* object);
    virtual void modified(const AcDbObject* object);
    virtual void modifyUndone(const AcDbObject* object);
    virtual void modifiedXData(const AcDbObject* object);
    virtual void unappended(const AcDbObject* object);
    virtual void reappended(const AcDbObject* object);
    virtual void objectClosed(const AcDbObjectId objectId);
    virtual void modifiedGraphics(const AcDbEntity* entity);

    // The container of an object that addAcDbObject has put into the drawing. eNotOpenForWrite, eNoDatabase,
    // eWrongDatabase.
    virtual Acad::ErrorStatus setOwnerId(AcDbObjectId owner);
    // Puts a new object into this one's place in the drawing, under its id and handle and with its owner; the
    // new one stays open for write, this one is the caller's from then on. eNotOpenForWrite, eNoDatabase,
    // eAlreadyInDb, eIllegalEntityType when one is an entity and the other is not.
    Acad::ErrorStatus handOverTo(AcDbObject* newObject, Adesk::Boolean keepXData = true,
                                 Adesk::Boolean keepExtDict = true);
    // eNotImplementedYet.
    Acad::ErrorStatus swapIdWith(AcDbObjectId otherId, Adesk::Boolean swapXdata = false,
                                 Adesk::Boolean swapExtDict = false);

    // Filing (dbfiler.h). A class of a program's own overrides the members whose names end in Fields; the
    // others call them. dxfOut writes type, handle and owner before them and extended data behind.
    Acad::ErrorStatus dwgIn(AcDbDwgFiler* filer);
    Acad::ErrorStatus dwgOut(AcDbDwgFiler* filer) const;
    Acad::ErrorStatus dxfIn(AcDbDxfFiler* filer);
    Acad::ErrorStatus dxfOut(AcDbDxfFiler* filer, Adesk::Boolean allXdFlag = true,
                             Adesk::uchar* regAppTable = nullptr) const;
    virtual Acad::ErrorStatus dwgInFields(AcDbDwgFiler* filer);
    virtual Acad::ErrorStatus dwgOutFields(AcDbDwgFiler* filer) const;
    // eNotImplementedYet from a filer that is not the host's own.
    virtual Acad::ErrorStatus dxfInFields(AcDbDxfFiler* filer);
    virtual Acad::ErrorStatus dxfOutFields(AcDbDxfFiler* filer) const;

    // A new object with the same data, in no database: without handle, owner, reactors and extension
    // dictionary. The caller owns it. Null from a class that can not be made.
    AcRxObject* clone() const override;

    // Whether the object may be erased or revived; a class may refuse.
    virtual Acad::ErrorStatus subErase(bool erasing);

    // The host's side of the object; no concern of programs.
    AcDbImpObject& imp() const { return *m_imp; }

protected:
    AcDbObject();
    // An object draws nothing unless its class says what.
    Adesk::UInt32 subSetAttributes(AcGiDrawableTraits* traits) override;
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    void subViewportDraw(AcGiViewportDraw* draw) override;

private:
    friend class AcDbImpDatabase;
    std::unique_ptr<AcDbImpObject> m_imp;
};

// What can be drawn: properties that all entities have, and what can be done to all. Entities whose kind
// nobody knows are opened as such.
//
// Its geometry is drawn by subWorldDraw. A class that changes, explodes or measures its objects in another
// way says so by the members that begin with "sub"; programs call those without.
class ACDB_PORT AcDbEntity : public AcDbObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbEntity);
    ~AcDbEntity() override;

    // The name of its layer. The first form gives a text that the caller frees (acutDelString).
    ACHAR* layer() const;
    Acad::ErrorStatus layer(AcString& name) const;
    // Null when the drawing has no record of that layer.
    AcDbObjectId layerId() const;
    // eKeyNotFound, eDeletedEntry, eWrongObjectType. Parts (vertices, attributes) follow when doSubents is
    // true.
    virtual Acad::ErrorStatus setLayer(const ACHAR* name, bool doSubents = true,
                                       bool allowHiddenLayer = false);
    virtual Acad::ErrorStatus setLayer(AcDbObjectId id, bool doSubents = true, bool allowHiddenLayer = false);

    AcCmColor color() const;
    Adesk::UInt16 colorIndex() const;
    virtual Acad::ErrorStatus setColor(const AcCmColor& color, bool doSubents = true);
    virtual Acad::ErrorStatus setColorIndex(Adesk::UInt16 index, bool doSubents = true);

    ACHAR* linetype() const;
    AcDbObjectId linetypeId() const;
    virtual Acad::ErrorStatus setLinetype(const ACHAR* name, bool doSubents = true);
    virtual Acad::ErrorStatus setLinetype(AcDbObjectId id, bool doSubents = true);

    double linetypeScale() const;
    Acad::ErrorStatus setLinetypeScale(double scale, bool doSubents = true);

    AcDb::LineWeight lineWeight() const;
    // eBadLineWeightValue for a weight that is none.
    virtual Acad::ErrorStatus setLineWeight(AcDb::LineWeight weight, bool doSubents = true);

    AcDb::Visibility visibility() const;
    virtual Acad::ErrorStatus setVisibility(AcDb::Visibility visibility, bool doSubents = true);

    // The block record that it belongs to.
    AcDbObjectId blockId() const;

    // The box around what it draws. eInvalidExtents when it draws nothing that has one.
    Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const { return subGetGeomExtents(extents); }
    // eNotOpenForWrite; eCannotScaleNonUniformly where its kind stands only what keeps circles round;
    // eNotImplementedYet for kinds that the host does not know. Then nothing is changed.
    Acad::ErrorStatus transformBy(const AcGeMatrix3d& matrix);
    // A transformed copy, which the caller owns, for instance where the entity itself can not be transformed.
    // The same answers, and eNotImplementedYet for classes that can not be copied.
    Acad::ErrorStatus getTransformedCopy(const AcGeMatrix3d& matrix, AcDbEntity*& copy) const {
        return subGetTransformedCopy(matrix, copy);
    }
    // Appends the parts that it is made of, new entities that the caller owns. eNotApplicable for what has
    // no parts.
    Acad::ErrorStatus explode(AcDbVoidPtrArray& parts) const { return subExplode(parts); }

    // The drawing's current layer, colour, linetype, its scale and lineweight, for an entity that joins it;
    // without a drawing those of the one that the user works with.
    void setDatabaseDefaults();
    void setDatabaseDefaults(AcDbDatabase* database);
    // Layer, colour, linetype, its scale, lineweight and visibility of another entity.
    Acad::ErrorStatus setPropertiesFrom(const AcDbEntity* entity, bool doSubents = true);

    // From the coordinates that its groups are in to the world: of most flat entities those of their plane.
    virtual void getEcs(AcGeMatrix3d& matrix) const;

protected:
    AcDbEntity();
    friend class AcDbImpDatabase;

    Adesk::UInt32 subSetAttributes(AcGiDrawableTraits* traits) override;
    virtual Acad::ErrorStatus subGetGeomExtents(AcDbExtents& extents) const;
    virtual Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix);
    virtual Acad::ErrorStatus subGetTransformedCopy(const AcGeMatrix3d& matrix, AcDbEntity*& copy) const;
    virtual Acad::ErrorStatus subExplode(AcDbVoidPtrArray& parts) const;
};

// Goes over what an entity owns: attributes, vertices. Whoever got it deletes it.
class ACDB_PORT AcDbObjectIterator : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbObjectIterator);
    // Where it stands: of a resident entity the id, of a new one the part itself, which is not open then.
    virtual AcDbEntity* entity() const = 0;
    virtual AcDbObjectId objectId() const = 0;
    virtual bool done() const = 0;
    virtual void step(bool backwards = false, bool skipErased = true) = 0;
    // eKeyNotFound, and it stays where it is.
    virtual Acad::ErrorStatus setPosition(AcDbObjectId id) = 0;

protected:
    AcDbObjectIterator() = default;
};

// A drawing.
class ACDB_PORT AcDbDatabase : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbDatabase);

    // A new drawing: with layer 0, the standard styles and the spaces when buildDefaultDrawing is true;
    // otherwise nothing, to be filled by dxfIn.
    explicit AcDbDatabase(bool buildDefaultDrawing = true, bool noDocument = false);
    ~AcDbDatabase() override;

    // Reads a DXF file into an empty database. eFileNotFound, eFileAccessErr, eDxfReadAborted, eInvalidInput.
    Acad::ErrorStatus dxfIn(const ACHAR* fileName, const ACHAR* logFileName = nullptr);
    // Writes a copy of the drawing, whole or not at all; the drawing's own file stays the one it was.
    // eFileAccessErr, and an old file is as it was.
    Acad::ErrorStatus dxfOut(const ACHAR* fileName);

    // The file that it was read from or last saved to; empty for a new one.
    Acad::ErrorStatus getFilename(const ACHAR*& fileName) const;

    AcDbObjectId layerTableId() const;
    AcDbObjectId linetypeTableId() const;
    AcDbObjectId textStyleTableId() const;
    AcDbObjectId blockTableId() const;
    AcDbObjectId regAppTableId() const;
    AcDbObjectId dimStyleTableId() const;
    AcDbObjectId viewTableId() const;
    AcDbObjectId viewportTableId() const;
    AcDbObjectId UCSTableId() const;
    AcDbObjectId namedObjectsDictionaryId() const;

    // Open a table; the caller closes it.
    Acad::ErrorStatus getLayerTable(AcDbLayerTable*& table, AcDb::OpenMode mode = AcDb::kForRead);
    Acad::ErrorStatus getLinetypeTable(AcDbLinetypeTable*& table, AcDb::OpenMode mode = AcDb::kForRead);
    Acad::ErrorStatus getTextStyleTable(AcDbTextStyleTable*& table, AcDb::OpenMode mode = AcDb::kForRead);
    Acad::ErrorStatus getBlockTable(AcDbBlockTable*& table, AcDb::OpenMode mode = AcDb::kForRead);
    Acad::ErrorStatus getRegAppTable(AcDbRegAppTable*& table, AcDb::OpenMode mode = AcDb::kForRead);
    Acad::ErrorStatus getDimStyleTable(AcDbDimStyleTable*& table, AcDb::OpenMode mode = AcDb::kForRead);
    Acad::ErrorStatus getViewTable(AcDbViewTable*& table, AcDb::OpenMode mode = AcDb::kForRead);
    Acad::ErrorStatus getViewportTable(AcDbViewportTable*& table, AcDb::OpenMode mode = AcDb::kForRead);
    Acad::ErrorStatus getUCSTable(AcDbUCSTable*& table, AcDb::OpenMode mode = AcDb::kForRead);
    Acad::ErrorStatus getSymbolTable(AcDbLayerTable*& table, AcDb::OpenMode mode) {
        return getLayerTable(table, mode);
    }
    Acad::ErrorStatus getSymbolTable(AcDbLinetypeTable*& table, AcDb::OpenMode mode) {
        return getLinetypeTable(table, mode);
    }
    Acad::ErrorStatus getSymbolTable(AcDbTextStyleTable*& table, AcDb::OpenMode mode) {
        return getTextStyleTable(table, mode);
    }
    Acad::ErrorStatus getSymbolTable(AcDbBlockTable*& table, AcDb::OpenMode mode) {
        return getBlockTable(table, mode);
    }
    Acad::ErrorStatus getSymbolTable(AcDbRegAppTable*& table, AcDb::OpenMode mode) {
        return getRegAppTable(table, mode);
    }
    Acad::ErrorStatus getSymbolTable(AcDbDimStyleTable*& table, AcDb::OpenMode mode) {
        return getDimStyleTable(table, mode);
    }
    Acad::ErrorStatus getSymbolTable(AcDbViewTable*& table, AcDb::OpenMode mode) {
        return getViewTable(table, mode);
    }
    Acad::ErrorStatus getSymbolTable(AcDbViewportTable*& table, AcDb::OpenMode mode) {
        return getViewportTable(table, mode);
    }
    Acad::ErrorStatus getSymbolTable(AcDbUCSTable*& table, AcDb::OpenMode mode) {
        return getUCSTable(table, mode);
    }
    // eKeyNotFound when the drawing's version has no dictionaries (R12 and before).
    Acad::ErrorStatus getNamedObjectsDictionary(AcDbDictionary*& dictionary,
                                                AcDb::OpenMode mode = AcDb::kForRead);

    // The object with a handle. eUnknownHandle when there is none; erased ones are found. eNotImplementedYet
    // when it is to be made.
    Acad::ErrorStatus getAcDbObjectId(AcDbObjectId& id, bool createIfNotFound, const AcDbHandle& handle,
                                      Adesk::UInt32 xRefId = 0);

    // Puts a new object into the drawing, open for write. Its owner is for the caller to say (setOwnerId);
    // until then it is not saved. eAlreadyInDb; eIllegalEntityType for entities, which stand in blocks;
    // eNotApplicable in files of R12, which hold none.
    Acad::ErrorStatus addAcDbObject(AcDbObject* object);
    Acad::ErrorStatus addAcDbObject(AcDbObjectId& id, AcDbObject* object);
    // Takes out of the list what must not be erased: all that is in use, and what every drawing has. Knows
    // the records of symbol tables; everything else counts as used.
    Acad::ErrorStatus purge(AcDbObjectIdArray& ids);
    // A new drawing of the same version, which the caller owns, with these entities of model space and sheets
    // and with all that they need: layers, styles, blocks, dictionaries, applications. The header is this
    // drawing's, and handles stay. eInvalidInput for what is no such entity of this drawing, eNoDatabase;
    // eNotImplementedYet for a base point that is not the origin.
    Acad::ErrorStatus wblock(AcDbDatabase*& outputDb, const AcDbObjectIdArray& entities,
                             const AcGePoint3d& basePoint);
    // Copies entities, all of one drawing, into a block of another, with the layers, styles and blocks that
    // they need. What the other drawing has under the same name stays (kDrcIgnore); with kDrcMangleName
    // layers and blocks of a drawing called "plan" come as "plan$0$name". The map gets a pair for each entity
    // that was copied; one that holds on to other objects of its drawing is not. eInvalidInput for what is no
    // entity, or in the same drawing; eNotThatKindOfClass for an owner that is no block; eNotImplementedYet
    // for other ways.
    Acad::ErrorStatus wblockCloneObjects(AcDbObjectIdArray& objectIds, const AcDbObjectId& owner,
                                         AcDbIdMapping& idMap, AcDb::DuplicateRecordCloning drc,
                                         bool deferXlation = false);
    // eNotImplementedYet, both.
    Acad::ErrorStatus deepCloneObjects(AcDbObjectIdArray& objectIds, const AcDbObjectId& owner,
                                       AcDbIdMapping& idMap, bool deferXlation = false);
    Acad::ErrorStatus insert(AcDbObjectId& blockId, const ACHAR* blockName, AcDbDatabase* database,
                             bool preserveSourceDatabase = true);

    // Makes a linetype, or all that fit a wildcard pattern, as a file defines it: a text (".lin") or a table
    // ("linetype.dbf"), looked for beside the drawing, in the current folder and in the user's system folder.
    // Those that a pattern fits and the drawing has stay as they are. eInvalidInput (also for a definition
    // that is none), eFileNotFound, eFilerError, eUndefinedLineType when the file does not define it,
    // eDuplicateRecordName when the drawing has it, eUndefineShapeName when it needs a shape that can not be
    // had.
    Acad::ErrorStatus loadLineTypeFile(const ACHAR* name, const ACHAR* file);

    // The current layer.
    AcDbObjectId clayer() const;
    // eInvalidLayer for a frozen or dependent layer, eDeletedEntry, eWrongObjectType.
    Acad::ErrorStatus setClayer(AcDbObjectId id);
    // Whether the Model tab is current.
    bool tilemode() const;
    // The block that the user edits: model space, also through a viewport of a sheet, or the sheet.
    AcDbObjectId currentSpaceId() const;

    // Those who want to hear of its objects. The caller keeps them, and takes them away before they go.
    // eNullObjectPointer, eDuplicateKey, eKeyNotFound.
    Acad::ErrorStatus addReactor(AcDbDatabaseReactor* reactor) const;
    Acad::ErrorStatus removeReactor(AcDbDatabaseReactor* reactor) const;

    // The one that all drawings share.
    AcDbTransactionManager* transactionManager() const;

    // The host's side of the database; no concern of programs.
    AcDbImpDatabase& imp() const { return *m_imp; }

private:
    std::unique_ptr<AcDbImpDatabase> m_imp;
};

// Opens an object of any class. On failure the pointer becomes null. eNullObjectId, eWasErased (unless
// openErased), eWasOpenForRead, eWasOpenForWrite, eAtMaxReaders; for write eOnLockedLayer (an entity),
// eLockViolation (its document is not locked), eWasNotifying (it is told of).
ACDB_PORT Acad::ErrorStatus acdbOpenObject(AcDbObject*& object, AcDbObjectId id,
                                           AcDb::OpenMode mode = AcDb::kForRead,
                                           bool openErasedObject = false);
inline Acad::ErrorStatus acdbOpenAcDbObject(AcDbObject*& object, AcDbObjectId id, AcDb::OpenMode mode,
                                            bool openErasedObject = false) {
    return acdbOpenObject(object, id, mode, openErasedObject);
}
// As above, and eNotAnEntity for what is none.
ACDB_PORT Acad::ErrorStatus acdbOpenAcDbEntity(AcDbEntity*& entity, AcDbObjectId id, AcDb::OpenMode mode,
                                               bool openErasedEntity = false);

// Opens an object of one class: eNotThatKindOfClass for another.
template<class T>
Acad::ErrorStatus acdbOpenObject(T*& object, AcDbObjectId id, AcDb::OpenMode mode = AcDb::kForRead,
                                 bool openErasedObject = false) {
    object = nullptr;
    AcDbObject* opened = nullptr;
    if (const Acad::ErrorStatus status = acdbOpenObject(opened, id, mode, openErasedObject);
        status != Acad::eOk)
        return status;
    object = T::cast(opened);
    if (object != nullptr)
        return Acad::eOk;
    opened->close();
    return Acad::eNotThatKindOfClass;
}
