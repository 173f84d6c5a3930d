#include "module/frame/SettingsFolder.h"

#include "acdocman.h"
#include "siblings/zef_kernal/KernalOptions.h"
#include "sys/atomic_file.h"
#include "sys/file.h"
#include "sys/folders.h"
#include "sys/trash.h"

#include <algorithm>
#include <memory>
#include <system_error>
#include <vector>

namespace fs = std::filesystem;

namespace {

struct Guarded {
    fs::path path;
    const wchar_t* name;
};

// What no folder that is emptied may be or hold.
std::vector<Guarded> GuardedPlaces() {
    std::error_code fault;
    std::vector<Guarded> places = {{sys::home_folder(), L"用户主文件夹"},
                                   {sys::to_path(g_csSysPath.GetString()), L"系统文件夹"},
                                   {sys::system_folder(), L"系统文件夹"},
                                   {sys::executable_folder(), L"程序文件夹"},
                                   {fs::temp_directory_path(fault), L"临时文件夹"},
                                   {sys::temp_folder(), L"临时文件夹"}};
    const std::unique_ptr<AcApDocumentIterator> each(acDocManager->newAcApDocumentIterator());
    for (; !each->done(); each->step())
        places.push_back({sys::to_path(each->document()->fileName()), L"打开的图形"});
    std::erase_if(places, [](const Guarded& place) { return place.path.empty(); });
    return places;
}

// As it is without links, and without an empty name at the end.
fs::path Real(const fs::path& path) {
    std::error_code fault;
    const fs::path real = fs::weakly_canonical(fs::absolute(path, fault), fault);
    const fs::path& known = fault ? path : real;
    return known.has_filename() ? known : known.parent_path();
}

bool Holds(const fs::path& folder, const fs::path& place) {
    return std::mismatch(folder.begin(), folder.end(), place.begin(), place.end()).first == folder.end();
}

} // namespace

fs::path SettingsFolder::Default() {
    constexpr std::size_t longest = 255;
    const fs::path temporary = sys::temp_folder() / ""; // with its slash
    return sys::from_path(temporary).size() <= longest ? temporary / "KolSetting" : fs::path();
}

CString SettingsFolder::WhyNotEmptied(const fs::path& folder) {
    std::error_code fault;
    const fs::path named = folder.has_filename() ? folder : folder.parent_path();
    const fs::file_status status = fs::symlink_status(named, fault);
    if (!fs::exists(status))
        return {};
    if (fs::is_symlink(status))
        return L"它是链接";
    if (!fs::is_directory(status))
        return L"它不是文件夹";
    const fs::path real = Real(named);
    if (sys::is_root(real))
        return L"它是根目录";
    for (const Guarded& guarded : GuardedPlaces())
        if (const fs::path place = Real(guarded.path); Holds(real, place))
            return CString(place == real ? L"它是" : L"其中有") + guarded.name;
    return {};
}

bool SettingsFolder::Prepare(const fs::path& folder) {
    std::error_code fault;
    std::vector<fs::path> entries;
    for (fs::directory_iterator at(folder, fault), end; !fault && at != end; at.increment(fault))
        entries.push_back(at->path());
    for (const fs::path& entry : entries)
        static_cast<void>(sys::discard(entry)); // what can not go stays
    fs::create_directories(folder, fault);
    return fs::is_directory(folder, fault);
}

fs::path SettingsFolder::FindFile(const fs::path& folder, const fs::path& name) {
    std::error_code fault;
    const fs::path found = sys::find_without_case(folder, name);
    return fs::is_regular_file(fs::symlink_status(found, fault)) ? found : fs::path();
}

bool SettingsFolder::Copy(const fs::path& from, const fs::path& to) {
    const auto bytes = sys::read_file(from);
    if (!bytes)
        return false;
    auto file = sys::atomic_file::create(to);
    return file && file->write(bytes->view()) && file->commit();
}
