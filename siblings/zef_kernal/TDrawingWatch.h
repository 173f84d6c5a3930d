// Tells who keeps something that was looked up in a drawing when it no longer holds.
//
//     static TDrawingWatch watch({&AcDbLayerTableRecord::desc});
//     static std::map<CString, AcDbObjectId> kept;
//     if (!watch.IsUnchanged(database))
//         kept.clear();
#pragma once

#include "dbmain.h"
#include "siblings/zef_kernal/KernalPort.h"

#include <initializer_list>
#include <vector>

class ZEF_KERNAL_PORT TDrawingWatch : public AcDbDatabaseReactor {
public:
    // `classes` are those on whose objects it rests; it asks for them when it is told of an object.
    using Class = AcRxClass* (*)();
    TDrawingWatch(std::initializer_list<Class> classes);
    ~TDrawingWatch() override;
    TDrawingWatch(const TDrawingWatch&) = delete;
    TDrawingWatch& operator=(const TDrawingWatch&) = delete;

    // Whether it was this drawing that was asked about last, and no object of the classes came, went or
    // changed there since, undo and redo included. From the call on it is this drawing that is watched.
    bool IsUnchanged(AcDbDatabase* database);

    void objectAppended(const AcDbDatabase* database, const AcDbObject* object) override;
    void objectUnAppended(const AcDbDatabase* database, const AcDbObject* object) override;
    void objectReAppended(const AcDbDatabase* database, const AcDbObject* object) override;
    void objectModified(const AcDbDatabase* database, const AcDbObject* object) override;
    void objectErased(const AcDbDatabase* database, const AcDbObject* object, Adesk::Boolean erased) override;
    void goodbye(const AcDbDatabase* database) override;

private:
    void Note(const AcDbObject* object);

    std::vector<Class> m_classes;
    AcDbDatabase* m_database = nullptr;
    bool m_isChanged = true;
};
