// Saving a document: whose file it may replace, and what is kept of the old one.
#include "host/ap/documents.h"

#include "base/case_fold.h"
#include "host/ap/surroundings.h"
#include "host/db/core/imp_database.h"
#include "host/dwg/drawing_reader.h"
#include "host/rx/events.h"
#include "host/version/saving.h"
#include "sys/folders.h"

#include <fstream>

namespace ap {

namespace {

namespace fs = std::filesystem;

// Also of a file that was removed meanwhile.
bool is_same_file(const std::wstring& a, const std::wstring& b) {
    if (a.empty() || b.empty())
        return false;
    std::error_code error;
    if (fs::equivalent(sys::to_path(a), sys::to_path(b), error))
        return true;
    const auto plain = [](const std::wstring& name) {
        std::error_code ignored;
        return fs::weakly_canonical(fs::absolute(sys::to_path(name), ignored), ignored);
    };
    return plain(a) == plain(b);
}

std::wstring quoted(const std::wstring& name) {
    return L"'" + name + L"'";
}

// DWG is read and not written: nothing may take the name of such a file, nor its place.
bool is_dwg_file(const std::wstring& name) {
    const fs::path path = sys::to_path(name);
    if (base::equal_no_case(sys::from_path(path.extension()), L".dwg"))
        return true;
    char head[8] = {};
    std::ifstream file(path, std::ios::binary);
    file.read(head, sizeof head);
    return dwg::is_dwg({head, static_cast<std::size_t>(file.gcount())});
}

base::failure no_dwg(const std::wstring& name) {
    return {quoted(name) + L" is a DWG file; drawings are saved as DXF: give a name that ends in .dxf"};
}

// plan.bak of plan.dxf, beside the file that links lead to; empty when none is to be kept.
fs::path backup_of(const std::wstring& target) {
    if (!keeps_backup())
        return {};
    std::error_code error;
    fs::path file = fs::canonical(sys::to_path(target), error);
    if (error || !fs::is_regular_file(file, error))
        return {};
    const fs::path backup = fs::path(file).replace_extension(".bak");
    return backup != file ? backup : fs::path();
}

// A drawing that was saved as a newer version goes on as its file has it.
void read_anew(void* saved) {
    documents& all = documents::instance();
    document* const one = all.find(static_cast<document*>(saved));
    if (one == nullptr || one->database()->imp().records().unsaved() != 0)
        return;
    const std::wstring path = one->fileName();
    if (!all.close(*one))
        return;
    if (auto opened = all.open(path, false); !opened)
        show_error(opened.error());
}

} // namespace

bool documents::was_changed_on_disk(const std::wstring& path) const {
    if (current_ == nullptr ||
        !is_same_file(path.empty() ? current_->fileName() : path, current_->fileName()))
        return false;
    const auto now = sys::stamp_of(sys::to_path(current_->fileName()));
    return now && now != current_->file().stamp;
}

// The lock of a file that is not the current document's own, or why it may not be written.
base::result<sys::file_lock> documents::lock_target(const std::wstring& target) const {
    for (const auto& other : all_)
        if (other.get() != current_ && is_same_file(target, other->fileName()))
            return base::failure{quoted(target) + L" is open in another document"};
    sys::file_lock lock;
    sys::lock_holder holder;
    if (!sys::file_lock::take(sys::to_path(target), lock, holder))
        return base::failure{quoted(target) + L" is in use by " + holder.words()};
    return lock;
}

base::result<void> documents::save(const std::wstring& path, int version, if_changed changed) {
    if (current_ == nullptr)
        return base::failure{L"no drawing is open"};
    const std::wstring target = path.empty() ? current_->fileName() : path;
    if (target.empty())
        return base::failure{L"the drawing has no name yet; use SAVEAS"};
    if (is_dwg_file(target))
        return no_dwg(target);
    const bool own = is_same_file(target, current_->fileName());
    const document::file_tie& before = current_->file();
    if (own && current_->isReadOnly())
        return base::failure{
            quoted(target) + L" was opened read-only" +
            (before.in_use_by.empty() ? L"" : L", since it is in use by " + before.in_use_by)};
    if (changed == if_changed::refuse && was_changed_on_disk(target))
        return base::failure{quoted(target) +
                             L" was changed on the disk by another program since it was opened; save it "
                             L"under another name"};
    document::file_tie tie;
    if (!own || !before.lock.holds()) {
        auto lock = lock_target(target);
        if (!lock)
            return lock.why();
        tie.lock = std::move(*lock);
    }

    AcDbDatabase* const database = current_->database();
    rx::event_reactors().tell(
        [&](AcRxEventReactor& reactor) { reactor.beginSave(database, target.c_str()); });
    if (auto saved = version::save(database->imp(), target, version, backup_of(target)); !saved) {
        rx::event_reactors().tell([&](AcRxEventReactor& reactor) { reactor.abortSave(database); });
        return saved;
    }
    rx::event_reactors().tell(
        [&](AcRxEventReactor& reactor) { reactor.saveComplete(database, target.c_str()); });
    current_->automatic.drawing_saved(database->imp());
    tie.stamp = sys::stamp_of(sys::to_path(target));
    // The lock is on the file's name: it holds for the new file, too. A name that was new gets its lock now.
    sys::lock_holder holder;
    if (own && before.lock.holds())
        tie.lock = current_->take_lock();
    if (!has_person())
        tie.lock = {};
    else if (!tie.lock.holds())
        static_cast<void>(sys::file_lock::take(sys::to_path(target), tie.lock, holder));
    current_->tie_to(std::move(tie), false);
    current_->set_title(document::title_of(target));
    if (version > database->imp().drawing().version())
        calls.push_back({document::owner::application, read_anew, current_});
    return {};
}

void documents::save_automatically() {
    const auto now = automatic_save::clock::now();
    for (const auto& one : all_)
        if (const std::wstring told = one->automatic.at_prompt(one->database()->imp(), one->docTitle(), now);
            !told.empty())
            show(told);
}

base::result<void> documents::save_copy(const std::wstring& path, int version) {
    if (current_ == nullptr)
        return base::failure{L"no drawing is open"};
    if (is_dwg_file(path))
        return no_dwg(path);
    if (is_same_file(path, current_->fileName()))
        return base::failure{quoted(path) + L" is the drawing's own file; use QSAVE"};
    if (const auto lock = lock_target(path); !lock)
        return lock.why();
    return version::save_copy(current_->database()->imp(), path, version, backup_of(path));
}

} // namespace ap
