// Who hears of changes to a drawing's objects: reactors of the database, reactors that programs hang on an
// object (they stay while it is closed), and objects of applications that an object's record names.
//
// What is told at once: that an object is opened for its first change, copied, cancelled, appended. What is
// told when it is closed: modified, erased, and last that it is closed. Nothing is looked for as long as
// nobody can be there to hear.
#pragma once

#include "host/db/core/imp_database.h"
#include "host/rx/reactor_list.h"

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace db {

class notifier {
public:
    explicit notifier(AcDbImpDatabase& database) : database_(database) {}
    notifier(const notifier&) = delete;
    notifier& operator=(const notifier&) = delete;

    // Whether somebody may hear; and whether somebody hears of one object alone.
    bool heard() const;
    bool heard_of(dxf::record_id record) const;

    rx::reactor_list<AcDbDatabaseReactor>& of_database() { return of_database_; }
    // Those of one object.
    rx::reactor_list<AcDbObjectReactor>& of_object(dxf::record_id record) { return of_objects_[record]; }
    // False when it is none of them.
    bool remove(dxf::record_id record, AcDbObjectReactor* reactor);

    void opened_for_modify(AcDbObject& object);
    void copied(const AcDbObject& object, const AcDbObject& copy);
    void cancelled(const AcDbObject& object);
    // An object joined the drawing; whoever put it there has it open for write still.
    void appended(AcDbObject& object);
    // What happened to an object since it was opened; it is closed to all but readers meanwhile.
    void closing(AcDbObject& object);
    void closed(dxf::record_id record);
    // What undo, redo or an aborted transaction did.
    void replayed(std::span<const dxf::replay> changes);

    // Sets a variable of the drawing's header, with a $ in front of its name. False when the drawing has no
    // header.
    bool set_header_value(std::string_view variable, int code, std::string_view value);
    // To the value that it has.
    void header_value_set_again(std::string_view variable);

    // The database goes.
    void goodbye();

private:
    rx::reactor_list<AcDbObjectReactor>* find(dxf::record_id record);
    bool names_reactors(dxf::record_id record) const;
    template<class News>
    void tell_of_object(const AcDbObject& object, News news);
    template<class News>
    void tell_of_database(News news);
    void tell_persistent(const AcDbImpObject& object, const std::function<void(AcDbObject&)>& news);
    void tell_modified(const AcDbObject& object, bool data, bool graphics);
    void tell_erased(const AcDbObject& object, bool erased);

    AcDbImpDatabase& database_;
    rx::reactor_list<AcDbDatabaseReactor> of_database_;
    std::unordered_map<dxf::record_id, rx::reactor_list<AcDbObjectReactor>> of_objects_;
    mutable const char* asked_text_ = nullptr; // the record's text that was searched for reactors last
    mutable bool has_reactors_ = false;
};

} // namespace db
