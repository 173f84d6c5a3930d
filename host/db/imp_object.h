// The host's side of an object: which record it stands for, who has it open, and its groups.
#pragma once

#include "dbmain.h"
#include "host/dxf/group_list.h"
#include "host/dxf/record_table.h"

#include <stdexcept>
#include <string>

class AcDbImpDatabase;

namespace db {

// A member of an object was called that wants the object open in another way. Ends the command.
class open_violation : public std::logic_error {
public:
    using std::logic_error::logic_error;
};

} // namespace db

class ACDB_PORT AcDbImpObject {
public:
    // A new object, whose groups are those of `text` until it has a record.
    void begin_new(std::string text);
    // The same for a text that lives for ever, which is read when it is first asked for: objects that are
    // opened are made by the same constructors, and never ask.
    void begin_as(const char* text) { fresh_ = text; }

    AcDbImpDatabase* database = nullptr; // null: new
    dxf::record_id record = dxf::no_record;
    int readers = 0;
    bool writing = false;

    // What the object is, as it stands in the drawing.
    const dxf::group_list& groups() const;
    // The same, to be changed.
    dxf::group_list& edit();
    // Takes back what was changed since the last commit.
    void forget() {
        groups_ = {};
        loaded_ = false;
    }
    bool changed() const { return loaded_ && groups_.changed(); }

    std::wstring decode(std::string_view bytes) const;
    std::string encode(std::wstring_view text) const;

private:
    void load() const;

    mutable dxf::group_list groups_;
    mutable bool loaded_ = false;
    const char* fresh_ = nullptr;
    std::string own_; // text of a new object, with the padding that reading wants
};
