#include "host/db/core/layer_facts.h"

#include "base/case_fold.h"
#include "host/db/core/symbol_names.h"
#include "host/dxf/record_header.h"

db::layer_facts& AcDbImpDatabase::layers() const {
    return part<db::layer_facts>();
}

namespace db {

std::wstring layer_facts::name_of(dxf::record_id entity) const {
    const std::string_view bytes =
        dxf::trimmed(database_.records().layer_names()[database_.records().layer(entity)]);
    return bytes.empty() ? L"0" : database_.drawing().codec().decode(bytes);
}

std::string layer_facts::bytes_of(std::wstring_view name) const {
    const dxf::record_id layer = database_.names().find(table_kind::layer, name);
    if (layer == dxf::no_record)
        return database_.drawing().codec().encode(name);
    return std::string(dxf::value_of(database_.records().text(layer), 2));
}

std::string_view layer_facts::bytes_of(dxf::record_id layer) {
    const dxf::padded_text text = database_.records().text(layer);
    if (text.data() != spelled_text_) { // another layer, or another text of it: texts never change
        spelled_text_ = text.data();
        spelled_ = dxf::value_of(text, 2);
    }
    return spelled_;
}

std::vector<bool> layer_facts::numbers_of(std::wstring_view name) {
    const dxf::name_set& known = database_.records().layer_names();
    for (; names_read_ < known.size(); ++names_read_) {
        const std::string_view bytes = dxf::trimmed(known[names_read_]);
        numbers_[base::folded(bytes.empty() ? L"0" : database_.drawing().codec().decode(bytes))].push_back(
            names_read_);
    }
    std::vector<bool> numbers(known.size());
    if (const auto at = numbers_.find(base::folded(name)); at != numbers_.end())
        for (const std::uint32_t number : at->second)
            numbers[number] = true;
    return numbers;
}

const std::vector<dxf::record_id>& layer_facts::name_holders() {
    const auto look = [&](dxf::record_id id) {
        if (id >= is_holder_.size())
            is_holder_.resize(database_.records().size());
        if (!is_holder_[id] && database_.records().text(id).find("1003") != std::string_view::npos) {
            is_holder_[id] = true;
            holders_.push_back(id);
        }
    };
    const auto& journal = database_.records().journal();
    if (is_holder_.empty()) {
        for (dxf::record_id id = 0; id < database_.records().size(); ++id)
            look(id);
        journal_read_ = journal.size();
    }
    for (; journal_read_ < journal.size(); ++journal_read_)
        look(journal[journal_read_]);
    return holders_;
}

const layer_facts::named_layer& layer_facts::named_by(dxf::record_id entity) {
    const dxf::record_table& records = database_.records();
    if (const std::size_t changes = database_.names().changes(); changes != entries_of_named_) {
        entries_of_named_ = changes;
        named_.clear();
    }
    const std::uint32_t number = records.layer(entity);
    if (number >= named_.size())
        named_.resize(records.layer_names().size());
    named_layer& named = named_[number];
    if (!named.known) {
        constexpr std::int64_t lock_bit = 4;
        named.known = true;
        named.record = database_.names().find(table_kind::layer, name_of(entity));
        named.locked =
            named.record != dxf::no_record &&
            (dxf::group_list(records.text(named.record)).integer({"AcDbLayerTableRecord"}, 70).value_or(0) &
             lock_bit) != 0;
    }
    return named;
}

dxf::record_id layer_facts::record_of(dxf::record_id entity) {
    return named_by(entity).record;
}

bool layer_facts::is_locked(dxf::record_id entity) {
    return named_by(entity).locked;
}

dxf::record_id layer_facts::current() const {
    const auto name = database_.drawing().header_value("$CLAYER");
    const dxf::record_id named =
        name ? database_.names().find(table_kind::layer, database_.drawing().codec().decode(*name))
             : dxf::no_record;
    return named != dxf::no_record ? named : database_.names().find(table_kind::layer, L"0");
}

} // namespace db
