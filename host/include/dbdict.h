// Dictionaries: objects by key. Keys keep their case and are compared without it.
#pragma once

#include "dbmain.h"

class AcDbDictionaryIterator;

class ACDB_PORT AcDbDictionary : public AcDbObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbDictionary);
    AcDbDictionary();
    ~AcDbDictionary() override;

    // eKeyNotFound.
    Acad::ErrorStatus getAt(const ACHAR* key, AcDbObjectId& id) const;
    Acad::ErrorStatus getAt(const ACHAR* key, AcDbObject*& object, AcDb::OpenMode mode) const;
    template<class T>
    Acad::ErrorStatus getAt(const ACHAR* key, T*& object, AcDb::OpenMode mode) const {
        object = nullptr;
        AcDbObjectId id;
        const Acad::ErrorStatus status = getAt(key, id);
        return status == Acad::eOk ? acdbOpenObject(object, id, mode) : status;
    }
    bool has(const ACHAR* key) const;
    bool has(AcDbObjectId id) const;
    Adesk::UInt32 numEntries() const;

    // Puts a new object under a key; an object that was there is erased. The new one stays open for write and
    // belongs to the database. eInvalidKey, eNotOpenForWrite, eAlreadyInDb; then it still belongs to the
    // caller.
    Acad::ErrorStatus setAt(const ACHAR* key, AcDbObject* object, AcDbObjectId& id);
    // Takes an entry out; its object stays in the database, without an owner. eInvalidKey, eKeyNotFound.
    Acad::ErrorStatus remove(const ACHAR* key);
    Acad::ErrorStatus remove(const ACHAR* key, AcDbObjectId& id);
    Acad::ErrorStatus remove(AcDbObjectId id);
    // eKeyNotFound, eDuplicateKey, eInvalidKey.
    bool setName(const ACHAR* oldKey, const ACHAR* newKey);

    // Whether erasing or copying it does the same to what it holds.
    bool isTreatElementsAsHard() const;
    void setTreatElementsAsHard(bool hard);

    // Sorted by key. The caller deletes it.
    AcDbDictionaryIterator* newIterator() const;

private:
    struct Index;
    Index& index() const;

    mutable std::unique_ptr<Index> m_index;
};

// Goes through the entries of a dictionary. The caller deletes it.
class ACDB_PORT AcDbDictionaryIterator {
public:
    AcDbDictionaryIterator(const AcDbDictionaryIterator&) = delete;
    AcDbDictionaryIterator& operator=(const AcDbDictionaryIterator&) = delete;
    virtual ~AcDbDictionaryIterator();

    const ACHAR* name() const;
    Acad::ErrorStatus getObject(AcDbObject*& object, AcDb::OpenMode mode = AcDb::kForRead);
    AcDbObjectId objectId() const;
    bool done() const;
    bool next();

private:
    friend class AcDbDictionary;
    struct Entries;
    explicit AcDbDictionaryIterator(std::unique_ptr<Entries> entries);

    std::unique_ptr<Entries> m_entries;
};
