// The external references of a drawing: blocks that stand for the model space of another drawing.
//
// A file is read once for a drawing, however many blocks name it, in the drawing or in its references. The
// drawing owns what was read. Objects of a reference are opened for reading only.
#pragma once

#include "gepnt3d.h"
#include "host/db/core/imp_database.h"

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace db {

enum class reference_state {
    none, // no reference, or none that was looked for
    loaded,
    not_found,
    unreadable, // the file is no drawing that can be read
    circular,   // it leads back to a drawing that it would be loaded for
    left_out,   // an overlay inside a reference
};

// Where the entities of a block stand.
struct block_place {
    AcDbImpDatabase* database;
    dxf::record_id block;
};

// Entries of a drawing's symbol tables that depend on its references.
struct dependents {
    std::unordered_set<dxf::record_id> resolved; // the references have them
    std::unordered_map<dxf::record_id, block_place> blocks;
};

class ACDB_PORT references {
public:
    explicit references(AcDbImpDatabase& drawing);
    ~references();
    references(const references&) = delete;
    references& operator=(const references&) = delete;

    reference_state state(dxf::record_id block) const;
    // The drawing that a block stands for; null when it is not loaded.
    AcDbImpDatabase* database(dxf::record_id block) const;
    // For a loaded reference the model space of its drawing, for a block that depends on one that block
    // there, else the block itself.
    block_place place(dxf::record_id block) const;
    // The point of a loaded reference that is put where it is inserted: the base point of its drawing.
    // Nothing for other blocks.
    std::optional<AcGePoint3d> base_point(dxf::record_id block) const;
    // Whether a reference was found to have the entry that a record ("reference|name") depends on; nothing
    // when references were not looked for.
    std::optional<bool> resolved(dxf::record_id entry) const;

    // The drawing that read this one as a reference; null when it is none. Then nothing is opened for write.
    AcDbImpDatabase* host() const { return host_; }
    // The name of the block by which the host, or a reference of it, came to read it first.
    const std::wstring& name() const { return name_; }
    void set_host(AcDbImpDatabase& host, std::wstring name) {
        host_ = &host;
        name_ = std::move(name);
    }
    // Whether a record is a reference's, or stands for one of its blocks: it is opened for reading only.
    bool is_referenced(dxf::record_id record) const;

private:
    struct reference {
        reference_state state = reference_state::none;
        AcDbImpDatabase* database = nullptr;
    };
    struct file {
        std::unique_ptr<AcDbDatabase> database; // null when it could not be read
        std::wstring why;
    };
    friend class reference_loading; // host/db/xref/loading.h

    AcDbImpDatabase& drawing_;
    std::unordered_map<dxf::record_id, reference> by_block_;
    dependents dependents_;
    bool looked_for_ = false;
    AcDbImpDatabase* host_ = nullptr;
    std::wstring name_;
    std::map<std::filesystem::path, file> files_; // of a drawing that is no reference itself
};

// The point of a drawing that is put where it is inserted.
AcGePoint3d insertion_base(const AcDbImpDatabase& drawing);

} // namespace db
