#include "host/db/core/support_path.h"

#include "base/case_fold.h"
#include "host/db/core/imp_database.h"
#include "sys/folders.h"

#include <algorithm>

namespace db {

namespace fs = std::filesystem;

std::vector<fs::path> support_folders(const AcDbImpDatabase* drawing) {
    std::vector<fs::path> folders;
    const auto add = [&](const fs::path& folder) {
        std::error_code ignored;
        fs::path whole = fs::absolute(folder, ignored).lexically_normal();
        if (std::find(folders.begin(), folders.end(), whole) == folders.end())
            folders.push_back(std::move(whole));
    };
    if (drawing != nullptr && !drawing->file_name.empty())
        add(sys::to_path(drawing->file_name).parent_path() / "");
    add("./");
    add(sys::system_folder() / "");
    return folders;
}

fs::path find_support_file(std::wstring_view name, const AcDbImpDatabase* drawing) {
    std::wstring spelled(name);
    std::replace(spelled.begin(), spelled.end(), L'\\', L'/');
    const fs::path wanted = sys::to_path(spelled);
    std::error_code ignored;
    if (wanted.empty() || fs::is_regular_file(wanted, ignored) || wanted.is_absolute())
        return !wanted.empty() && fs::is_regular_file(wanted, ignored) ? wanted : fs::path();
    for (const fs::path& folder : support_folders(drawing))
        if (const fs::path found = sys::find_without_case(folder, wanted);
            !found.empty() && fs::is_regular_file(found, ignored))
            return found;
    return {};
}

std::vector<fs::path> support_files(std::wstring_view ending, const AcDbImpDatabase* drawing) {
    std::vector<fs::path> files;
    for (const fs::path& folder : support_folders(drawing)) {
        const auto first = static_cast<std::ptrdiff_t>(files.size());
        std::error_code error;
        for (auto entry = fs::directory_iterator(folder, error); !error && entry != fs::directory_iterator();
             entry.increment(error)) {
            std::error_code ignored;
            if (base::equal_no_case(sys::from_path(entry->path().extension()), ending) &&
                entry->is_regular_file(ignored))
                files.push_back(entry->path());
        }
        std::sort(files.begin() + first, files.end());
    }
    return files;
}

} // namespace db
