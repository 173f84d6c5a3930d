#include "host/db/core/imp_object.h"

#include "base/utf.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/lines_alike.h"

namespace {

constexpr std::size_t padding = 64; // readers of groups look so far behind a text

} // namespace

void AcDbImpObject::begin_new(std::string text) {
    ++revision_;
    own_ = std::move(text);
    own_.append(padding, '\0');
    alike_.reset();
    groups_ = {};
    loaded_ = false; // there may be a million such objects before one is asked
}

void AcDbImpObject::begin_like(std::shared_ptr<db::lines_alike> lines, std::size_t number) {
    alike_ = std::move(lines);
    number_alike_ = number;
}

void AcDbImpObject::load() const {
    if (database == nullptr && own_.empty()) {
        if (alike_ != nullptr)
            const_cast<AcDbImpObject*>(this)->begin_new(alike_->text(number_alike_));
        else if (fresh_ != nullptr)
            const_cast<AcDbImpObject*>(this)->begin_new(fresh_);
    }
    if (database != nullptr)
        groups_ = dxf::group_list(database->records().text(record));
    else if (!own_.empty())
        groups_ = dxf::group_list(std::string_view(own_).substr(0, own_.size() - padding));
    loaded_ = true;
}

const dxf::group_list& AcDbImpObject::groups() const {
    if (!loaded_)
        load();
    return groups_;
}

dxf::group_list& AcDbImpObject::edit() {
    groups();
    if (writing && !news.opened_for_modify)
        tell_about_to_modify();
    ++revision_;
    return groups_;
}

// A new object's texts are UTF-8 until it joins a drawing, whose encoding they take then.
std::wstring AcDbImpObject::decode(std::string_view bytes) const {
    return database != nullptr ? database->drawing().codec().decode(bytes) : base::widen(bytes);
}

std::string AcDbImpObject::encode(std::wstring_view text) const {
    return database != nullptr ? database->drawing().codec().encode(text) : base::narrow(text);
}
