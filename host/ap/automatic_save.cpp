#include "host/ap/automatic_save.h"

#include "host/ap/surroundings.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/left_entries.h"
#include "sys/folders.h"

#include <array>
#include <cstdio>
#include <random>

namespace ap {

namespace {

namespace fs = std::filesystem;

// No two drawings of this name, in whatever program, get the same one.
fs::path new_name(const std::wstring& title, int count) {
    std::array<char, 32> end{};
    constexpr unsigned digits = 0x10000;
    std::snprintf(end.data(), end.size(), "_1_%d_%04x.sv$", count, std::random_device()() % digits);
    fs::path name = sys::to_path(title).stem();
    name += end.data();
    const std::wstring folder = automatic_folder();
    return (folder.empty() ? sys::temp_folder() : sys::to_path(folder)) / name;
}

} // namespace

automatic_save::~automatic_save() {
    remove();
}

void automatic_save::remove() {
    std::error_code ignored;
    if (!file_.empty())
        fs::remove(file_, ignored);
    file_.clear();
}

std::wstring automatic_save::at_prompt(AcDbImpDatabase& drawing, const std::wstring& title,
                                       clock::time_point now) {
    const std::chrono::minutes pause = automatic_pause();
    if (pause.count() == 0 || drawing.records().journal().size() == seen_)
        return {};
    if (!changed_)
        changed_ = now;
    if (now - *changed_ < pause)
        return {};
    changed_.reset();
    seen_ = drawing.records().journal().size();
    if (drawing.records().unsaved() == 0)
        return {};
    db::settle_dictionaries(drawing);
    const fs::path fresh = new_name(title, ++count_);
    if (auto written = drawing.drawing().write_file(fresh); !written)
        return L"Automatic save failed: " + written.error();
    remove();
    file_ = fresh;
    return L"Automatic save to " + sys::from_path(file_) + L" ...";
}

void automatic_save::drawing_saved(AcDbImpDatabase& drawing) {
    remove();
    changed_.reset();
    seen_ = drawing.records().journal().size();
}

} // namespace ap
