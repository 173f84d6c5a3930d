#include "host/version/saving.h"

#include "base/case_fold.h"
#include "host/db/core/format_versions.h"
#include "host/db/core/left_entries.h"
#include "host/version/sections.h"
#include "sys/atomic_file.h"
#include "sys/folders.h"

namespace version {

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
    db::settle_dictionaries(database);
    if (version == database.drawing().version()) {
        database.drawing().write(put);
        return {};
    }
    conversion job(database, version, put);
    if (version < db::release_2000)
        write_r12(job);
    else
        write_modern(job);
    return job.lost.lines();
}

base::result<std::vector<std::wstring>> save_as_version(AcDbImpDatabase& database, int version,
                                                        const std::filesystem::path& file,
                                                        const std::filesystem::path& backup) {
    auto target = sys::atomic_file::create(file);
    if (!target)
        return target.why();
    base::result<void> written;
    auto lost = write_as_version(database, version, [&](std::string_view piece) {
        written = target->write(piece);
        return static_cast<bool>(written);
    });
    if (written)
        written = target->commit(backup);
    if (!written)
        return written.why();
    return lost;
}

base::result<void> save(AcDbImpDatabase& database, const std::wstring& path, int version,
                        const std::filesystem::path& backup) {
    if (auto saved = save_copy(database, path, version, backup); !saved)
        return saved;
    database.file_name = path;
    if (version != 0)
        database.file_version = version != database.drawing().version() ? version : 0;
    database.records().mark_saved();
    return {};
}

base::result<void> save_copy(AcDbImpDatabase& database, const std::wstring& path, int version,
                             const std::filesystem::path& backup) {
    if (version == 0)
        version = database.file_version != 0 ? database.file_version : database.drawing().version();
    const auto saved = save_as_version(database, version, sys::to_path(path), backup);
    if (!saved)
        return saved.why();
    AcDbImpDatabase::tell_of_file(path, *saved);
    return {};
}

} // namespace version
