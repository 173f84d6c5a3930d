#include "host/db/core/imp_object.h"

#include "base/utf.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/lines_alike.h"
#include "host/dxf/code_line.h"
#include "host/dxf/common_patch.h"

void AcDbImpObject::begin_new(std::string text) {
    ++revision_;
    own_ = dxf::padded_string(std::move(text));
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
    if (database == nullptr || patched_)
        groups_ = dxf::group_list(own_text());
    else
        groups_ = dxf::group_list(database->records().text(record));
    loaded_ = true;
}

const dxf::group_list& AcDbImpObject::groups() const {
    if (!loaded_)
        load();
    return groups_;
}

void AcDbImpObject::look_on(AcDbImpDatabase& drawing, dxf::record_id id) {
    database = &drawing;
    record = id;
    life = db::object_state::viewed;
}

void AcDbImpObject::begin_change() {
    about_to_modify();
    ++revision_;
}

dxf::group_list& AcDbImpObject::edit() {
    groups();
    begin_change();
    return groups_;
}

dxf::padded_text AcDbImpObject::text_to_patch() const {
    return patched_ ? own_text() : database->records().text(record);
}

void AcDbImpObject::patch(std::string text) {
    own_ = dxf::padded_string(std::move(text));
    patched_ = true;
}

std::optional<std::int64_t> AcDbImpObject::common_integer(const dxf::group_place& place, int code) const {
    if (can_patch()) {
        if (!dxf::may_hold(text_to_patch(), std::to_string(code)))
            return std::nullopt;
        if (const auto value = dxf::common_value(text_to_patch(), place, code))
            return dxf::leading_integer(*value);
    }
    return groups().integer(place, code);
}

void AcDbImpObject::set_common(const dxf::group_place& place, int code, std::string_view value) {
    begin_change(); // and whoever is told may read the groups
    std::optional<std::string> text;
    if (can_patch())
        text = dxf::with_common(text_to_patch(), database->drawing().style(), place, code, value);
    if (!text)
        return edit().set_text(place, code, value);
    patch(std::move(*text));
    if (code == 8)
        layer_ = value;
}

void AcDbImpObject::remove_common(const dxf::group_place& place, int code) {
    begin_change();
    std::optional<std::string> text;
    if (can_patch())
        text = dxf::without_common(text_to_patch(), place, code);
    if (!text)
        return edit().remove(place, code);
    patch(std::move(*text));
}

void AcDbImpObject::forget() {
    ++revision_;
    if (loaded_)
        groups_ = {};
    own_ = {};
    layer_.reset();
    loaded_ = patched_ = false;
}

bool AcDbImpObject::write() {
    dxf::record_table& records = database->records();
    if (loaded_ && groups_.changed())
        return records.replace(record, groups_.write(database->drawing().style()));
    if (own_text() == records.text(record))
        return false;
    records.replace_look(record, own_text(), layer_);
    return true;
}

// A new object's texts are UTF-8 until it joins a drawing, whose encoding they take then.
std::wstring AcDbImpObject::decode(std::string_view bytes) const {
    return database != nullptr ? database->drawing().codec().decode(bytes) : base::widen(bytes);
}

std::string AcDbImpObject::encode(std::wstring_view text) const {
    return database != nullptr ? database->drawing().codec().encode(text) : base::narrow(text);
}
