#include "siblings/zef_kernal/TDrawingWatch.h"

#include <algorithm>

TDrawingWatch::TDrawingWatch(std::initializer_list<Class> classes) : m_classes(classes) {
}

TDrawingWatch::~TDrawingWatch() {
    if (m_database != nullptr)
        m_database->removeReactor(this);
}

bool TDrawingWatch::IsUnchanged(AcDbDatabase* database) {
    const bool isUnchanged = database != nullptr && database == m_database && !m_isChanged;
    if (database != m_database) {
        if (m_database != nullptr)
            m_database->removeReactor(this);
        m_database = database;
        if (m_database != nullptr)
            m_database->addReactor(this);
    }
    m_isChanged = false;
    return isUnchanged;
}

void TDrawingWatch::Note(const AcDbObject* object) {
    m_isChanged = m_isChanged ||
                  std::ranges::any_of(m_classes, [object](Class type) { return object->isKindOf(type()); });
}

void TDrawingWatch::objectAppended(const AcDbDatabase* /*database*/, const AcDbObject* object) {
    Note(object);
}

void TDrawingWatch::objectUnAppended(const AcDbDatabase* /*database*/, const AcDbObject* object) {
    Note(object);
}

void TDrawingWatch::objectReAppended(const AcDbDatabase* /*database*/, const AcDbObject* object) {
    Note(object);
}

void TDrawingWatch::objectModified(const AcDbDatabase* /*database*/, const AcDbObject* object) {
    Note(object);
}

void TDrawingWatch::objectErased(const AcDbDatabase* /*database*/, const AcDbObject* object,
                                 Adesk::Boolean /*erased*/) {
    Note(object);
}

void TDrawingWatch::goodbye(const AcDbDatabase* /*database*/) {
    m_database = nullptr;
}
