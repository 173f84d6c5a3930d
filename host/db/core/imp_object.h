// The host's side of an object: which record it stands for, who has it open, and its groups.
#pragma once

#include "dbmain.h"
#include "host/db/core/object_life.h"
#include "host/dxf/group_list.h"
#include "host/dxf/record_table.h"
#include "host/rx/reactor_list.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

class AcDbImpDatabase;

namespace db {

class lines_alike;

} // namespace db

class ACDB_PORT AcDbImpObject {
public:
    // A new object, whose groups are those of `text` until it has a record.
    void begin_new(std::string text);
    // The same for a text that lives for ever, which is read when it is first asked for: objects that are
    // opened are made by the same constructors, and never ask.
    void begin_as(const char* text) { fresh_ = text; }
    // One of many lines that are alike, by its number among them.
    void begin_like(std::shared_ptr<db::lines_alike> lines, std::size_t number);
    const std::shared_ptr<db::lines_alike>& alike() const { return alike_; }
    std::size_t number_alike() const { return number_alike_; }

    AcDbImpDatabase* database = nullptr; // null: new
    dxf::record_id record = dxf::no_record;
    db::object_life life;
    // Makes it look on a record of a drawing, for reading, whoever has that open. Groups that were read stay.
    void look_on(AcDbImpDatabase& drawing, dxf::record_id id);

    // What happened since it was opened, for who wants to hear of it (host/db/core/notifier.h).
    struct happened {
        bool opened_for_modify = false; // which was told
        bool made = false;
        bool was_gone = false;
        bool modified = false;
        bool data = false;     // its extended data
        bool graphics = false; // something else
    };
    happened news;
    bool touched = false; // since it was committed last, by a member that wanted it open for write
    // It is going to change: told the first time, if it is open for write.
    void about_to_modify() {
        if (life.is_written() && !news.opened_for_modify)
            tell_about_to_modify();
    }
    std::unique_ptr<rx::reactor_list<AcDbObjectReactor>> reactors; // of a new object

    // Of a new entity: the properties that it was given; the others are the drawing's defaults once it
    // joins one.
    enum : unsigned {
        given_layer = 1,
        given_color = 2,
        given_linetype = 4,
        given_scale = 8,
        given_weight = 16
    };
    unsigned given = 0;
    // And what follows it when it does: vertices, attributes, and the end of their sequence.
    std::vector<std::unique_ptr<AcDbObject>> parts;

    // What the object is, as it stands in the drawing.
    const dxf::group_list& groups() const;
    // The same, to be changed, which is told the first time.
    dxf::group_list& edit();
    // A common group of an entity as an integer; sets one, or takes it away, as edit() would: where nobody
    // has read the groups, by the bytes of that one alone (host/dxf/common_patch.h).
    std::optional<std::int64_t> common_integer(const dxf::group_place& place, int code) const;
    void set_common(const dxf::group_place& place, int code, std::string_view value);
    void remove_common(const dxf::group_place& place, int code);
    // Takes back what was changed since the last commit.
    void forget();
    bool changed() const { return patched_ || (loaded_ && groups_.changed()); }
    // Hands what was changed to the records. False when it is nothing.
    bool write();
    // Whether its groups are in memory, or what was changed. Until then it is what the drawing's index and
    // its record say.
    bool is_read() const { return loaded_ || patched_; }
    // Another number after everything that may have changed the groups, for who keeps something made of them.
    std::size_t revision() const { return revision_; }

    std::wstring decode(std::string_view bytes) const;
    std::string encode(std::wstring_view text) const;

private:
    void load() const;
    dxf::padded_text own_text() const { return own_.view(); }
    void begin_change();
    bool can_patch() const { return database != nullptr && !loaded_; }
    dxf::padded_text text_to_patch() const;
    void patch(std::string text);
    void tell_about_to_modify(); // host/db/core/open_objects.cpp

    mutable dxf::group_list groups_;
    mutable bool loaded_ = false;
    std::size_t revision_ = 0;
    const char* fresh_ = nullptr;
    dxf::padded_string own_;                 // the text of a new object, or of one with a group changed
    bool patched_ = false;                   // own_ is what the record becomes
    std::optional<std::string> layer_;       // which stands in it, if it was changed
    std::shared_ptr<db::lines_alike> alike_; // of a new line that has no text yet
    std::size_t number_alike_ = 0;
};
