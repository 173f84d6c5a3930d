#include "host/db/xref/loading.h"

#include "base/case_fold.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/references.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/implied_entries.h"
#include "host/db/xref/named_file.h"
#include "host/db/xref/xref_names.h"
#include "host/dxf/record_header.h"
#include "sys/folders.h"

#include <algorithm>
#include <system_error>

namespace db {

namespace fs = std::filesystem;

namespace {

// Bits of a BLOCK's group 70.
constexpr std::int64_t external_flag = 4;
constexpr std::int64_t overlay_flag = 8;

bool is_control(wchar_t c) {
    return c < 32 || c == 127;
}

// A text of a file as it may be shown.
std::wstring shown(std::wstring text) {
    std::replace_if(text.begin(), text.end(), is_control, L'?');
    return text;
}

// The names that a path from some system may have here, the likeliest first: drawings that are named as DWG
// files may be there as DXF files, and the other way round.
std::vector<fs::path> with_extensions(const fs::path& name) {
    const std::wstring extension = base::folded(sys::from_path(name.extension()));
    fs::path other = name;
    if (extension == L".dxf")
        return {name, other.replace_extension(".dwg")};
    if (extension == L".dwg")
        return {name, other.replace_extension(".dxf")};
    fs::path drawing = name;
    return {drawing += ".dxf", other += ".dwg", name};
}

fs::path folder_of(const AcDbImpDatabase& drawing) {
    return sys::to_path(drawing.file_name).parent_path();
}

// One path for all ways to a file.
fs::path identity(const fs::path& file) {
    std::error_code error;
    const fs::path canonical = fs::canonical(file, error);
    return error ? fs::absolute(file, error).lexically_normal() : canonical;
}

} // namespace

// One walk from a drawing through all that it refers to.
class reference_loading {
public:
    explicit reference_loading(AcDbImpDatabase& host) : host_(host) {
        if (!host.file_name.empty())
            chain_.push_back({identity(sys::to_path(host.file_name)), title(host)});
    }

    void load(AcDbImpDatabase& drawing) {
        references& own = drawing.references();
        own.looked_for_ = true;
        // Reading a reference makes no BLOCK here, so the list stays as it is.
        for (const dxf::record_id begin : drawing.drawing().parts().block_begins) {
            if (drawing.records().gone(begin))
                continue;
            const dxf::group_list groups(drawing.records().text(begin));
            const std::int64_t flags = groups.integer({"AcDbBlockBegin"}, 70).value_or(0);
            if ((flags & (external_flag | overlay_flag)) == 0)
                continue;
            const dxf::record_id block = drawing.records().find(drawing.records().owner_handle(begin));
            if (block == dxf::no_record || own.by_block_.contains(block))
                continue;
            const std::wstring name = drawing.names().name_of(block);
            references::reference& made = own.by_block_[block];
            if ((flags & overlay_flag) != 0 && &drawing != &host_) {
                made.state = reference_state::left_out;
                continue;
            }
            const std::wstring path = drawing.drawing().codec().decode(
                dxf::trimmed(groups.text({"AcDbBlockBegin"}, 1).value_or("")));
            made = find_and_read(drawing, name, path);
            if (made.database != nullptr)
                add_dependent_names(drawing, name, *made.database, own.dependents_);
        }
    }

    std::vector<std::wstring> told;

private:
    struct link {
        fs::path file;
        std::wstring title;
    };

    static std::wstring title(const AcDbImpDatabase& drawing) {
        return sys::from_path(sys::to_path(drawing.file_name).filename());
    }

    void tell(std::wstring line) { told.push_back(shown(std::move(line))); }

    references::reference find_and_read(AcDbImpDatabase& drawing, const std::wstring& name,
                                        const std::wstring& path) {
        tell(L"Resolve Xref \"" + name + L"\": " + path);
        fs::path found;
        // A path that holds a control character names no file of anybody's.
        if (!path.empty() && std::none_of(path.begin(), path.end(), is_control)) {
            found = find_beside(folder_of(drawing), path, with_extensions);
            if (found.empty() && &drawing != &host_)
                found = find_beside(folder_of(host_), path, with_extensions);
        }
        if (found.empty()) {
            tell(L"\"" + path + L"\" cannot be found.");
            return {reference_state::not_found};
        }
        const fs::path key = identity(found);
        if (std::any_of(chain_.begin(), chain_.end(), [&](const link& one) { return one.file == key; })) {
            tell(L"Breaking circular reference from \"" + chain_.back().title + L"\" to \"" + name + L"\".");
            return {reference_state::circular};
        }
        const auto [at, fresh] = host_.references().files_.try_emplace(key);
        references::file& entry = at->second; // of a map: it stays where it is
        if (fresh)
            read(entry, name, key, found);
        if (entry.database == nullptr) {
            tell(entry.why);
            return {reference_state::unreadable};
        }
        return {reference_state::loaded, &entry.database->imp()};
    }

    void read(references::file& entry, const std::wstring& name, const fs::path& key, const fs::path& found) {
        auto database = std::make_unique<AcDbDatabase>(false, true);
        AcDbImpDatabase& drawing = database->imp();
        if (auto done = drawing.read(sys::from_path(found)); !done) {
            entry.why = done.error();
            return;
        }
        entry.database = std::move(database);
        drawing.references().set_host(host_, name);
        chain_.push_back({key, title(drawing)});
        load(drawing);
        chain_.pop_back();
    }

    AcDbImpDatabase& host_;
    std::vector<link> chain_; // from the host to the drawing that is being loaded
};

std::vector<std::wstring> load_references(AcDbImpDatabase& drawing) {
    reference_loading walk(drawing);
    if (drawing.has_drawing()) {
        walk.load(drawing);
        imply_layers(drawing, true);
    }
    return std::move(walk.told);
}

} // namespace db
