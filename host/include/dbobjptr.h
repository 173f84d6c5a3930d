// Smart pointers that open an object and close it when they go.
#pragma once

#include "dbdict.h"
#include "dbmain.h"
#include "dbsymtb.h"
#include "dbxrecrd.h"

// Opens in its constructor; openStatus() tells with what success. Closes what it holds, and deletes it when
// it is in no database.
template<class T>
class AcDbObjectPointer {
public:
    AcDbObjectPointer() = default;
    explicit AcDbObjectPointer(AcDbObjectId id, AcDb::OpenMode mode = AcDb::kForRead,
                               bool openErased = false) {
        open(id, mode, openErased);
    }
    AcDbObjectPointer(const AcDbObjectPointer&) = delete;
    AcDbObjectPointer& operator=(const AcDbObjectPointer&) = delete;
    ~AcDbObjectPointer() { close(); }

    Acad::ErrorStatus openStatus() const { return m_status; }
    T* object() const { return m_object; }
    T* operator->() const { return m_object; }
    operator T*() const { return m_object; } // NOLINT(google-explicit-constructor): as ObjectARX has it

    Acad::ErrorStatus open(AcDbObjectId id, AcDb::OpenMode mode = AcDb::kForRead, bool openErased = false) {
        close();
        return m_status = acdbOpenObject(m_object, id, mode, openErased);
    }
    // Takes over an object that is open already, or a new one.
    Acad::ErrorStatus acquire(T*& object) {
        close();
        m_object = object;
        object = nullptr;
        return m_status = m_object != nullptr ? Acad::eOk : Acad::eNullObjectPointer;
    }
    // Gives the object away, open as it is.
    Acad::ErrorStatus release(T*& object) {
        object = m_object;
        m_object = nullptr;
        m_status = Acad::eNullObjectPointer;
        return object != nullptr ? Acad::eOk : Acad::eNullObjectPointer;
    }
    Acad::ErrorStatus create() {
        close();
        m_object = new T;
        return m_status = Acad::eOk;
    }
    Acad::ErrorStatus close() {
        Acad::ErrorStatus status = Acad::eOk;
        if (m_object != nullptr) {
            if (m_object->isNewObject() && m_object->objectId().isNull())
                delete m_object;
            else
                status = m_object->close();
        }
        m_object = nullptr;
        m_status = Acad::eNullObjectPointer;
        return status;
    }

protected:
    T* m_object = nullptr;
    Acad::ErrorStatus m_status = Acad::eNullObjectPointer;
};

// Opens a symbol table record by its name too.
template<class T>
class AcDbSymbolTableRecordPointer : public AcDbObjectPointer<T> {
public:
    using AcDbObjectPointer<T>::AcDbObjectPointer;
    AcDbSymbolTableRecordPointer(const ACHAR* name, AcDbDatabase* db, AcDb::OpenMode mode = AcDb::kForRead,
                                 bool openErased = false) {
        open(name, db, mode, openErased);
    }
    using AcDbObjectPointer<T>::open;
    Acad::ErrorStatus open(const ACHAR* name, AcDbDatabase* db, AcDb::OpenMode mode = AcDb::kForRead,
                           bool openErased = false) {
        this->close();
        typename T::TableType* table = nullptr;
        this->m_status = db == nullptr ? Acad::eNoDatabase : db->getSymbolTable(table, AcDb::kForRead);
        if (this->m_status != Acad::eOk)
            return this->m_status;
        this->m_status = table->getAt(name, this->m_object, mode, openErased);
        table->close();
        return this->m_status;
    }
};

typedef AcDbObjectPointer<AcDbEntity> AcDbEntityPointer;
typedef AcDbObjectPointer<AcDbDictionary> AcDbDictionaryPointer;
typedef AcDbObjectPointer<AcDbXrecord> AcDbXrecordPointer;
typedef AcDbSymbolTableRecordPointer<AcDbLayerTableRecord> AcDbLayerTableRecordPointer;
typedef AcDbSymbolTableRecordPointer<AcDbLinetypeTableRecord> AcDbLinetypeTableRecordPointer;
typedef AcDbSymbolTableRecordPointer<AcDbTextStyleTableRecord> AcDbTextStyleTableRecordPointer;
typedef AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> AcDbBlockTableRecordPointer;
typedef AcDbObjectPointer<AcDbLayerTable> AcDbLayerTablePointer;
typedef AcDbObjectPointer<AcDbBlockTable> AcDbBlockTablePointer;
typedef AcDbObjectPointer<AcDbLinetypeTable> AcDbLinetypeTablePointer;
typedef AcDbObjectPointer<AcDbTextStyleTable> AcDbTextStyleTablePointer;
