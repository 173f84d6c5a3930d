#include "host/db/core/blocks.h"

#include "base/case_fold.h"
#include "host/db/core/references.h"
#include "host/db/core/symbol_names.h"

#include <utility>

db::blocks& AcDbImpDatabase::blocks() const {
    return part<db::blocks>();
}

namespace db {

dxf::record_id blocks::find(std::wstring_view name) const {
    return database_.names().find(table_kind::block, name);
}

dxf::record_id blocks::find_bytes(std::string_view name) {
    if (const std::size_t revision = database_.names().revision(); revision != names_read_) {
        by_bytes_.clear();
        names_read_ = revision;
    }
    const auto [at, added] = by_bytes_.try_emplace(name, dxf::no_record);
    if (added)
        at->second = database_.names().find(table_kind::block, database_.drawing().codec().decode(name));
    return at->second;
}

std::pair<blocks::begins::const_iterator, blocks::begins::const_iterator>
blocks::begins_of(dxf::record_id block) {
    const std::vector<dxf::record_id>& all = database_.drawing().parts().block_begins;
    for (; begins_read_ < all.size(); ++begins_read_)
        begins_.emplace(database_.records().owner_handle(all[begins_read_]), all[begins_read_]);
    return begins_.equal_range(database_.records().handle(block));
}

dxf::record_id blocks::begin_of(dxf::record_id block) {
    const auto [first, last] = begins_of(block);
    for (auto begin = first; begin != last; ++begin)
        if (!database_.records().gone(begin->second))
            return begin->second;
    return dxf::no_record;
}

std::vector<dxf::record_id> blocks::entities(dxf::record_id block) {
    const dxf::record_table& all = database_.records();
    std::vector<dxf::record_id> found;
    const std::uint64_t owner = all.handle(block);

    const auto take = [&](dxf::record_id from) {
        for (dxf::record_id id = all.next(from); id != dxf::no_record; id = all.next(id)) {
            const dxf::record_kind kind = all.kind(id);
            if (kind == dxf::record_kind::structure || kind == dxf::record_kind::block_end ||
                kind == dxf::record_kind::block)
                break;
            if (kind == dxf::record_kind::entity && all.owner_handle(id) == owner)
                found.push_back(id);
        }
    };
    const auto [first, last] = begins_of(block);
    for (auto begin = first; begin != last; ++begin)
        take(begin->second);
    if (is_space_name(database_.names().name_of(block)) &&
        database_.drawing().parts().entities != dxf::no_record)
        take(database_.drawing().parts().entities);
    return found;
}

std::vector<dxf::record_id> blocks::drawn_of(dxf::record_id block) {
    std::vector<dxf::record_id> drawn = entities(block);
    std::erase_if(drawn, [&](dxf::record_id entity) {
        if (database_.records().gone(entity))
            return true;
        constexpr std::int64_t constant = 2;
        return database_.records().type_name(entity) == "ATTDEF" &&
               (dxf::group_list(database_.records().text(entity))
                    .integer({"AcDbAttributeDefinition"}, 70)
                    .value_or(0) &
                constant) == 0;
    });
    return drawn;
}

AcGePoint3d blocks::base_of(dxf::record_id block) {
    if (const auto base = database_.references().base_point(block))
        return *base;
    const auto [first, last] = begins_of(block);
    if (first == last)
        return {};
    const dxf::group_list groups(database_.records().text(first->second));
    constexpr dxf::group_place place{"AcDbBlockBegin"};
    return {groups.real(place, 10).value_or(0.0), groups.real(place, 20).value_or(0.0),
            groups.real(place, 30).value_or(0.0)};
}

bool blocks::is_space_name(std::wstring_view block) {
    const std::wstring folded = base::folded(block);
    return folded.starts_with(L"*model_space") || folded.starts_with(L"*paper_space");
}

bool blocks::in_space(dxf::record_id entity) {
    if (database_.records().kind(entity) == dxf::record_kind::part)
        entity = database_.records().find(database_.records().owner_handle(entity));
    if (entity == dxf::no_record)
        return false;
    const std::uint32_t owner = database_.records().owner(entity);
    if (owner >= spaces_.size())
        spaces_.resize(owner + 1, -1);
    if (spaces_[owner] < 0) {
        const dxf::record_id block = database_.records().find(database_.records().owner_handle(entity));
        spaces_[owner] = block != dxf::no_record && is_space_name(database_.names().name_of(block)) ? 1 : 0;
    }
    return spaces_[owner] == 1;
}

void blocks::set_contents_erased(dxf::record_id block, bool erased) {
    std::vector<dxf::record_id>& with_it = erased_with_[block];
    const std::vector<dxf::record_id> before = std::exchange(with_it, {});
    if (!erased) {
        for (const dxf::record_id id : before)
            database_.records().set_gone(id, false);
        return;
    }
    const auto [first, last] = begins_of(block);
    for (auto begin = first; begin != last; ++begin)
        for (dxf::record_id id = begin->second; id != dxf::no_record; id = database_.records().next(id)) {
            if (database_.records().set_gone(id, true))
                with_it.push_back(id);
            if (database_.records().kind(id) == dxf::record_kind::block_end)
                break;
        }
}

} // namespace db
