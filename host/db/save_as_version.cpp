#include "host/db/save_as_version.h"

#include "base/case_fold.h"
#include "host/db/format_versions.h"
#include "host/version/sections.h"
#include "sys/atomic_file.h"

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

std::vector<std::wstring> write_as_version(AcDbImpDatabase& database, int version,
                                           const std::function<bool(std::string_view)>& put) {
    database.settle_dictionaries();
    if (version == database.drawing().version()) {
        database.drawing().write(put);
        return {};
    }
    ::version::conversion job(database, version, put);
    if (version < release_2000)
        ::version::write_r12(job);
    else
        ::version::write_modern(job);
    return job.lost.lines();
}

base::result<std::vector<std::wstring>> save_as_version(AcDbImpDatabase& database, int version,
                                                        const std::filesystem::path& file,
                                                        const std::filesystem::path& backup) {
    auto target = sys::atomic_file::create(file);
    if (!target)
        return base::failure{target.error()};
    base::result<void> written;
    auto lost = write_as_version(database, version, [&](std::string_view piece) {
        written = target->write(piece);
        return static_cast<bool>(written);
    });
    if (written)
        written = target->commit(backup);
    if (!written)
        return base::failure{written.error()};
    return lost;
}

} // namespace db
