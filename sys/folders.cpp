#include "sys/folders.h"

#include "base/case_fold.h"
#include "base/utf.h"

#include <random>
#include <system_error>

namespace sys {

namespace fs = std::filesystem;

namespace {

fs::path& profile() {
    static fs::path folder = default_profile_folder();
    return folder;
}

// A copy that belongs to the user, who may write to all of it even when the original is read-only.
void copy_folder(const fs::path& from, const fs::path& to) {
    for (const auto& entry :
         fs::recursive_directory_iterator(from, fs::directory_options::follow_directory_symlink)) {
        const fs::path copy = to / entry.path().lexically_relative(from);
        if (entry.is_directory()) {
            fs::create_directory(copy);
        } else if (entry.is_regular_file()) {
            fs::copy_file(entry.path(), copy);
            fs::permissions(copy, fs::perms::owner_read | fs::perms::owner_write, fs::perm_options::add);
        }
    }
}

fs::path create_unique_folder(const fs::path& parent) {
    std::random_device random;
    for (;;) {
        const fs::path folder = parent / (".sys-" + std::to_string(random()));
        if (fs::create_directory(folder))
            return folder;
    }
}

// Of several the first by its bytes, so that the answer does not depend on the order of the folder.
fs::path entry_without_case(const fs::path& folder, const fs::path& name) {
    const std::wstring wanted = base::folded(from_path(name));
    fs::path found;
    std::error_code error;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
        if (const fs::path& candidate = at->path();
            base::folded(from_path(candidate.filename())) == wanted && (found.empty() || candidate < found))
            found = candidate;
    return found;
}

} // namespace

fs::path find_without_case(const fs::path& folder, const fs::path& relative) {
    fs::path at = folder.empty() ? fs::path(".") : folder;
    std::error_code ignored;
    for (const fs::path& name : relative) {
        if (name.empty() || name == ".")
            continue;
        const fs::path exact = at / name;
        at = fs::exists(exact, ignored) ? exact : entry_without_case(at, name);
        if (at.empty())
            return {};
    }
    return at;
}

void set_profile_folder(const fs::path& folder) {
    profile() = fs::absolute(folder).lexically_normal();
}

const fs::path& profile_folder() {
    return profile();
}

base::result<void> prepare_profile(const fs::path& share) {
    const fs::path target = system_folder();
    fs::path copy;
    std::error_code ignored;
    try {
        fs::create_directories(profile_folder());
        if (fs::exists(target))
            return {};
        copy = create_unique_folder(profile_folder());
        copy_folder(share, copy);
        fs::rename(copy, target);
        return {};
    } catch (const fs::filesystem_error& error) {
        if (!copy.empty())
            fs::remove_all(copy, ignored);
        // Another program that started at the same time was first.
        if (fs::is_directory(target, ignored))
            return {};
        return base::failure{L"cannot prepare the profile '" + from_path(profile_folder()) + L"': '" +
                             from_path(error.path1()) + L"': " + base::widen(error.code().message())};
    }
}

fs::path system_folder() {
    return profile_folder() / "sys";
}

fs::path temp_folder() {
    fs::path folder = profile_folder() / "temp";
    std::error_code ignored;
    fs::create_directories(folder, ignored);
    return folder;
}

} // namespace sys
