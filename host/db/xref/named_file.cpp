#include "host/db/xref/named_file.h"

#include "sys/folders.h"

#include <algorithm>

namespace db {

namespace fs = std::filesystem;

fs::path find_beside(const fs::path& folder, std::wstring path, const names_of_file& names_of) {
    std::replace(path.begin(), path.end(), L'\\', L'/');
    std::vector<fs::path> names;
    if (const fs::path whole = sys::to_path(path); whole.is_absolute())
        names = names_of(whole);
    if (path.size() > 1 && path[1] == L':')
        path.erase(0, 2);
    const fs::path parts = sys::to_path(path);
    for (const fs::path& name : {parts.relative_path(), parts.filename()})
        for (const fs::path& likely : names_of(name))
            names.push_back(likely);
    for (const fs::path& name : names) {
        std::error_code ignored;
        const fs::path found = sys::find_without_case(folder, name);
        if (!found.empty() && fs::is_regular_file(found, ignored))
            return found;
    }
    return {};
}

} // namespace db
