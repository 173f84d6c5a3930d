#include "host/ap/document.h"

#include "actrans.h"
#include "host/ap/documents.h"
#include "host/db/core/imp_database.h"
#include "sys/folders.h"

#include <algorithm>

namespace ap {

namespace {

// From the weakest to the strongest.
constexpr AcAp::DocLockMode by_strength[] = {
    AcAp::kNotLocked, AcAp::kRead, AcAp::kAutoWrite, AcAp::kProtectedAutoWrite, AcAp::kWrite, AcAp::kXWrite,
};

AcAp::DocLockMode stronger(AcAp::DocLockMode a, AcAp::DocLockMode b) {
    const auto place = [](AcAp::DocLockMode mode) {
        return std::find(std::begin(by_strength), std::end(by_strength), mode);
    };
    return place(b) != std::end(by_strength) && place(b) > place(a) ? b : a;
}

} // namespace

document::document(std::unique_ptr<AcDbDatabase> database, std::wstring title)
    : layer_history(database->imp()), database_(std::move(database)), title_(std::move(title)) {
}

document::~document() = default;

std::wstring document::title_of(const std::wstring& path) {
    return sys::from_path(sys::to_path(path).filename());
}

const ACHAR* document::fileName() const {
    return database_->imp().file_name.c_str();
}

AcAp::DocLockMode document::lockMode(bool includeMyLocks) const {
    if (includeMyLocks)
        return mode();
    const owner others =
        documents::instance().context() == owner::command ? owner::application : owner::command;
    return mode_of(others);
}

AcTransactionManager* document::transactionManager() const {
    return acTransactionManagerPtr();
}

void document::lock(owner who, AcAp::DocLockMode mode, std::wstring name) {
    locks_.push_back({who, mode, std::move(name)});
}

const std::wstring* document::last_lock(owner who) const {
    const auto last =
        std::find_if(locks_.rbegin(), locks_.rend(), [&](const held_lock& held) { return held.who == who; });
    return last != locks_.rend() ? &last->name : nullptr;
}

std::optional<std::wstring> document::unlock(owner who) {
    const auto last =
        std::find_if(locks_.rbegin(), locks_.rend(), [&](const held_lock& held) { return held.who == who; });
    if (last == locks_.rend())
        return std::nullopt;
    std::wstring name = std::move(last->name);
    locks_.erase(std::next(last).base());
    return name;
}

AcAp::DocLockMode document::mode_of(owner who) const {
    AcAp::DocLockMode strongest = AcAp::kNotLocked;
    for (const held_lock& held : locks_)
        if (held.who == who)
            strongest = stronger(strongest, held.mode);
    return strongest;
}

AcAp::DocLockMode document::mode() const {
    return stronger(mode_of(owner::command), mode_of(owner::application));
}

AcAp::DocLockMode document::mode_with(owner who, AcAp::DocLockMode more) const {
    return stronger(mode_of(who), more);
}

bool document::has_automatic_lock(owner who) const {
    return std::any_of(locks_.begin(), locks_.end(), [&](const held_lock& held) {
        return held.who == who && (held.mode == AcAp::kAutoWrite || held.mode == AcAp::kProtectedAutoWrite);
    });
}

bool document::may_write(owner who) const {
    const AcAp::DocLockMode held = mode_of(who);
    return held != AcAp::kNotLocked && held != AcAp::kRead;
}

} // namespace ap
