// The host's side of a database: the drawing behind it, and the way to all that is known of it.
#pragma once

#include "dbmain.h"
#include "host/dxf/drawing.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace db {

class blocks;
class history;
class layer_facts;
class notifier;
class open_objects;
class references;
class symbol_names;

} // namespace db

class ACDB_PORT AcDbImpDatabase {
public:
    explicit AcDbImpDatabase(AcDbDatabase& self);
    ~AcDbImpDatabase();
    AcDbImpDatabase(const AcDbImpDatabase&) = delete;
    AcDbImpDatabase& operator=(const AcDbImpDatabase&) = delete;

    // How drawing files are read, for the whole program.
    struct reading {
        int encoding = 0; // of their text, by number; 0: what their bytes tell
        // Is given, line by line, what a user should know of a file: what was repaired, in which encoding it
        // is when that is not the one that it names.
        std::function<void(const std::wstring&)> tell;
    };
    static reading& how_to_read();
    // Tells the user what there is to be known of a file.
    static void tell_of_file(const std::wstring& path, const std::vector<std::wstring>& messages);

    // Reads a drawing file (host/version/saving.h writes one). On failure says what is wrong and where.
    base::result<void> read(const std::wstring& path);
    // Takes over a drawing that was read.
    void set_drawing(std::unique_ptr<dxf::drawing> drawing);
    bool has_drawing() const { return drawing_ != nullptr; }
    dxf::drawing& drawing() const { return *drawing_; }
    dxf::record_table& records() const { return drawing_->records(); }

    std::wstring file_name; // read from or last written to
    int file_version = 0;   // of that file, where it is another one than the drawing's own

    // ---- ids

    AcDbObjectId id(dxf::record_id record) const;
    // The record that an id of this database names; no_record for others.
    dxf::record_id record(AcDbObjectId id) const;
    // The database and record of an id; null when the database is gone.
    static AcDbImpDatabase* find(AcDbObjectId id, dxf::record_id& record);
    AcDbDatabase& self() const { return self_; }
    // Every database that there is.
    static std::vector<AcDbImpDatabase*> all();

    // ---- what is known of the drawing; each says in its own header what it answers (host/db/core/)

    db::open_objects& objects() const;
    db::symbol_names& names() const;
    db::layer_facts& layers() const;
    db::blocks& blocks() const;
    db::references& references() const;
    db::notifier& notifier() const;
    db::history& history() const;

    // What one source keeps of the drawing: the database's one Part, made as Part(AcDbImpDatabase&) when it
    // is first asked for. Only the source that defines Part may ask, so that the program has one number for
    // it.
    template<class Part>
    Part& part() const {
        static const std::size_t number = next_part();
        if (number < parts_.size() && parts_[number] != nullptr) [[likely]]
            return *static_cast<Part*>(parts_[number].get());
        return make_part<Part>(number);
    }

private:
    static std::size_t next_part();

    // Apart, so that asking again, which every step of the way to an object does, is a few instructions.
    template<class Part>
    [[gnu::noinline]] Part& make_part(std::size_t number) const {
        auto made = std::make_shared<Part>(const_cast<AcDbImpDatabase&>(*this)); // may ask for others
        if (number >= parts_.size())
            parts_.resize(number + 1);
        parts_[number] = std::move(made);
        return *static_cast<Part*>(parts_[number].get());
    }

    AcDbDatabase& self_;
    std::uint32_t serial_ = 0;
    std::unique_ptr<dxf::drawing> drawing_;
    mutable std::vector<std::shared_ptr<void>> parts_;
};
