#include "host/rx/applications.h"

#include "base/case_fold.h"
#include "host/rx/runtime.h"
#include "sys/folders.h"

#include <algorithm>
#include <bit>
#include <filesystem>
#include <optional>
#include <utility>

namespace rx {

namespace {

using entry_point = AcRx::AppRetCode (*)(AcRx::AppMsgCode, void*);

// What a name is compared by: without folder, ending and case.
std::wstring compared(std::wstring_view name) {
    return base::folded(sys::from_path(sys::to_path(name).filename().replace_extension()));
}

std::optional<std::filesystem::path> locate(std::wstring_view name) {
    std::filesystem::path path = sys::to_path(name);
    if (!path.has_extension())
        path += ".arx";
    std::vector<std::filesystem::path> places{path};
    if (path.is_relative())
        places.push_back(sys::executable_folder() / path);
    for (const auto& place : places) {
        std::error_code ignored;
        // The loader takes a name without a folder for one of the system's own libraries.
        if (std::filesystem::is_regular_file(place, ignored))
            return std::filesystem::absolute(place, ignored);
    }
    return std::nullopt;
}

} // namespace

application::application(std::wstring name, sys::dynamic_library library, void* entry)
    : name_(std::move(name)), library_(std::move(library)), entry_(entry) {
}

bool application::tell(AcRx::AppMsgCode message) {
    class_registry& classes = runtime::instance().classes;
    const void* const before = classes.set_owner(entry_);
    AcRx::AppRetCode answer = AcRx::kRetError;
    ++telling_;
    try {
        answer = std::bit_cast<entry_point>(entry_)(message, this);
    } catch (...) {
        // Nothing is to be thrown across the interface, and what it is cannot be known here.
    }
    --telling_;
    classes.set_owner(before);
    return answer != AcRx::kRetError;
}

applications& applications::instance() {
    // Never destroyed: applications that are still there at the end of the program may ask for each other.
    static applications* const one = new applications;
    return *one;
}

base::result<void> applications::load(std::wstring_view path) {
    const std::wstring name(path);
    if (is_loaded(name))
        return base::failure{name + L" is loaded already"};
    const auto file = locate(name);
    if (!file)
        return base::failure{name + L": no such application"};
    auto library = sys::dynamic_library::open(*file);
    if (!library)
        return library.why();
    void* const entry = library->symbol("acrxEntryPoint");
    if (entry == nullptr)
        return base::failure{name + L" is no application: it has no acrxEntryPoint"};

    loaded_.push_back(
        std::make_unique<application>(sys::from_path(file->filename()), *std::move(library), entry));
    application& app = *loaded_.back();
    if (!app.tell(AcRx::kInitAppMsg)) {
        drop(app);
        return base::failure{name + L" refused to be loaded"};
    }
    if (announce(on_loaded, app) == nullptr)
        return base::failure{name + L" refused the drawings that are open"};
    return {};
}

base::result<void> applications::unload(std::wstring_view name) {
    application* app = find(name);
    if (app == nullptr)
        return base::failure{std::wstring(name) + L" is not loaded"};
    if (app->locked)
        return base::failure{app->name() + L" is locked and cannot be unloaded"};
    if (app->telling_ != 0)
        return base::failure{app->name() + L" is busy and cannot be unloaded"};
    app = announce(on_unloading, *app);
    if (app == nullptr)
        return {};
    if (!app->tell(AcRx::kUnloadAppMsg)) {
        const std::wstring refused = app->name() + L" refused to be unloaded";
        announce(on_loaded, *app);
        return base::failure{refused};
    }
    drop(*app);
    return {};
}

void applications::unload_all() {
    send(AcRx::kQuitMsg);
    while (!loaded_.empty()) {
        if (application* const app = announce(on_unloading, *loaded_.back())) {
            app->tell(AcRx::kUnloadAppMsg);
            drop(*app);
        }
    }
}

void applications::send(AcRx::AppMsgCode message) {
    // Whoever is told may load and unload others.
    for (const std::wstring& name : names())
        send_to(name, message);
}

bool applications::send_to(std::wstring_view name, AcRx::AppMsgCode message) {
    application* const app = find(name);
    if (app == nullptr)
        return false;
    // One whose own code waits for this call cannot be taken out, whatever it answers.
    if (app->tell(message) || app->telling_ != 0)
        return true;
    app->tell(AcRx::kUnloadAppMsg);
    drop(*app);
    return false;
}

std::vector<std::wstring> applications::names() const {
    std::vector<std::wstring> all;
    for (const auto& app : loaded_)
        all.push_back(app->name());
    return all;
}

bool applications::is_mdi_aware(std::wstring_view name) const {
    const application* const app = find(name);
    return app != nullptr && app->mdi_aware;
}

application* applications::find(std::wstring_view name) const {
    const std::wstring wanted = compared(name);
    for (const auto& app : loaded_) {
        if (compared(app->name()) == wanted)
            return app.get();
    }
    return nullptr;
}

application* applications::of_packet(const void* packet) const {
    for (const auto& app : loaded_) {
        if (app.get() == packet)
            return app.get();
    }
    return nullptr;
}

application* applications::announce(const std::function<void(const std::wstring&)>& hook,
                                    const application& app) {
    const void* const packet = &app;
    if (hook)
        hook(std::wstring(app.name())); // a copy: the hook may make the application go
    return of_packet(packet);
}

void applications::drop(const application& app) {
    const auto at =
        std::find_if(loaded_.begin(), loaded_.end(), [&](const auto& a) { return a.get() == &app; });
    if (at == loaded_.end())
        return;
    // Objects of its classes may live on, and their code with them.
    if (runtime::instance().classes.has_classes_of(app.entry_))
        kept_.push_back(std::move((*at)->library_));
    loaded_.erase(at);
}

} // namespace rx
