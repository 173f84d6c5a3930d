// Which objects of a drawing are open, and the ways from one state to the next: opened, changed, committed,
// told of, closed.
#pragma once

#include "host/db/core/imp_database.h"
#include "host/db/core/object_life.h"

#include <cstddef>
#include <memory>
#include <unordered_map>

class AcDbImpObject;
class AcRxClass;

namespace db {

class ACDB_PORT open_objects {
public:
    explicit open_objects(AcDbImpDatabase& database) : database_(database) {}

    // Whether objects may be opened for write. A document's may not, unless it is locked.
    bool write_locked = true;

    Acad::ErrorStatus open(AcDbObject*& object, dxf::record_id record, AcDb::OpenMode mode, bool erased);
    // Ends one opening; the object may be gone afterwards.
    Acad::ErrorStatus close(AcDbObject& object, bool keep_changes);
    // Puts an open object's changes into the drawing. They are told when it is closed, or by settle().
    void commit(AcDbObject& object);
    // Commits and tells, and makes it open for reading again.
    void settle(AcDbObject& object);
    // Binds a new object to its record. It stays open for write, and the database owns it from now on.
    void adopt(AcDbObject& object, dxf::record_id record);
    // Puts a new object into the place of one that is open, under its id; that one is new again, and the
    // caller's.
    void exchange(AcDbObject& old, AcDbObject& fresh);
    // Closes, in all databases, what is open of a class that ends.
    static void close_objects_of(const AcRxClass* type);
    // Closes what is still open at the end of a command, in references of the drawing too. Returns how many
    // there were.
    std::size_t close_all();

    bool is_open(dxf::record_id record) const { return open_.contains(record); }
    // The object that is open for a record, and the host's side of it; null when none is.
    AcDbObject* open_object(dxf::record_id record) const;
    AcDbImpObject* opened(dxf::record_id record) const;
    // An object of its own that looks on a record as it stands there closed, whoever has it open; for
    // reading. Null for records that are no objects.
    std::unique_ptr<AcDbObject> view(dxf::record_id record);

    // Marks a record as erased, or revives it, with the parts behind an entity and what stands in a block.
    void set_erased(dxf::record_id record, bool erased);

    // An object that is open for write is about to change.
    void about_to_modify(AcDbImpObject& object);
    // A container that is open for write got something, or lost it, without a change of its own record.
    void content_changed(dxf::record_id container);
    // A new object stands where it belongs.
    void appended(AcDbObject& object);

private:
    std::unique_ptr<AcDbObject> make(AcRxClass* type, dxf::record_id record);
    void destroy(dxf::record_id record);
    void tell_closing(AcDbObject& object, object_change ending);

    AcDbImpDatabase& database_;
    using open_map = std::unordered_map<dxf::record_id, std::unique_ptr<AcDbObject>>;
    open_map open_;
    open_map::node_type spare_; // of the object that was closed last, for the next one
};

} // namespace db
