#include "host/db/save_as_version.h"

#include "base/case_fold.h"

namespace db {

int version_by_name(std::wstring_view name) {
    for (const saved_version& version : saved_versions)
        if (base::equal_no_case(name, version.name))
            return version.number;
    return name == L"12" ? 1009 : 0;
}

std::wstring version_name(int number) {
    for (const saved_version& version : saved_versions)
        if (number >= version.number)
            return version.name;
    return L"R12";
}

base::result<std::vector<std::wstring>> save_as_version(AcDbImpDatabase& database, int version,
                                                        const std::filesystem::path& file,
                                                        const std::filesystem::path& backup) {
    database.settle_dictionaries();
    const int own = database.drawing().version();
    if (version != own)
        return base::failure{L"a drawing of version " + version_name(own) + L" can not be saved as " +
                             version_name(version) + L" yet"};
    if (auto written = database.drawing().write_file(file, backup); !written)
        return base::failure{written.error()};
    return std::vector<std::wstring>();
}

} // namespace db
