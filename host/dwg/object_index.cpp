#include "host/dwg/object_index.h"

#include "base/byte_order.h"
#include "base/ordered_work.h"
#include "host/dwg/checksums.h"

#include <algorithm>
#include <utility>

namespace dwg {

std::wstring hexadecimal(std::uint64_t handle) {
    std::wstring out;
    do
        out.insert(out.begin(), L"0123456789ABCDEF"[handle & 15]);
    while ((handle >>= 4) != 0);
    return out;
}

std::wstring left_out(const entry& of, const std::wstring& why) {
    return L"object " + hexadecimal(of.handle) + L": " + why + L"; it is left out";
}

void object_index::read_map(std::string_view map, std::size_t file_size, std::vector<std::wstring>& damage) {
    constexpr std::size_t least_of_pair = 2;
    entries_.reserve(map.size() / (2 * least_of_pair));
    std::size_t page = 0;
    while (map.size() >= 2) {
        const std::size_t size = base::big_endian(map, 0, 2);
        ++page;
        if (size <= 2)
            break;
        if (size > map.size()) {
            damage.push_back(L"page " + std::to_wstring(page) + L" of the map of its objects is cut off");
            break;
        }
        if (size + 2 <= map.size() && crc16(map.substr(0, size), crc_start) != base::big_endian(map, size, 2))
            damage.push_back(L"the check sum of page " + std::to_wstring(page) +
                             L" of the map of its objects is wrong");
        bit_reader pairs(map.substr(0, size), 16, size * 8);
        std::uint64_t handle = 0;
        std::int64_t address = 0;
        while (pairs.left() >= 8 * least_of_pair) {
            handle += pairs.MC();
            address += pairs.signed_MC();
            if (pairs.bad())
                break;
            entry& fresh = entries_.emplace_back();
            fresh.handle = handle;
            fresh.address = address < 0 ? file_size : static_cast<std::size_t>(address);
        }
        map.remove_prefix(std::min(map.size(), size + 2));
    }
    // Files have them in rising order.
    const auto rises = [](const entry& a, const entry& b) { return a.handle < b.handle; };
    const auto same = [](const entry& a, const entry& b) { return a.handle == b.handle; };
    if (!std::is_sorted(entries_.begin(), entries_.end(), rises))
        std::stable_sort(entries_.begin(), entries_.end(), rises);
    const auto last = std::unique(entries_.begin(), entries_.end(), same);
    if (last != entries_.end())
        damage.push_back(std::to_wstring(entries_.end() - last) +
                         L" handles stand twice in the map of its objects; the first of each is read");
    entries_.erase(last, entries_.end());
}

void object_index::look_at_all(object_source& source, std::uint64_t model, std::uint64_t paper,
                               std::vector<std::wstring>& damage) {
    constexpr std::size_t in_a_part = 4096;
    struct found {
        std::vector<std::pair<std::uint64_t, std::string>> names;
        std::vector<std::wstring> damage;
        std::vector<std::uint64_t> known;
    };
    const auto look = [&](object_reader& object, entry& one, found& out) {
        if (!object.open(one.address, one.handle)) {
            one.is_damaged = true;
            out.damage.push_back(left_out(one, object.why()));
            return;
        }
        out.known.push_back(one.handle);
        one.number = object.number;
        one.type = object.type;
        one.is_entity = object.is_entity;
        one.mode = static_cast<std::uint8_t>(object.common.mode);
        one.owner = object.common.owner;
        one.next = object.common.next;
        const bool is_entry = one.type != nullptr && one.type->row->role == role::entry;
        if (is_entry || one.number == type_mline_style)
            out.names.emplace_back(one.handle, object.text());
    };
    const auto worker = [&] {
        return [&, object = object_reader(source)](std::size_t part, found& out) mutable {
            out.names.clear();
            out.damage.clear();
            out.known.clear();
            const std::size_t end = std::min(entries_.size(), (part + 1) * in_a_part);
            for (std::size_t i = part * in_a_part; i < end; ++i)
                look(object, entries_[i], out);
        };
    };
    std::vector<std::uint64_t> known;
    std::vector<std::pair<std::uint64_t, std::string>> names;
    known.reserve(entries_.size());
    const auto take = [&](std::size_t, found& part) {
        known.insert(known.end(), part.known.begin(), part.known.end());
        std::move(part.names.begin(), part.names.end(), std::back_inserter(names));
        std::move(part.damage.begin(), part.damage.end(), std::back_inserter(damage));
    };
    base::work_in_order<found>((entries_.size() + in_a_part - 1) / in_a_part, worker, take);

    source.known = std::move(known);
    model_space = model;
    paper_space = paper;
    const bool has_model = find(model) != nullptr;
    const bool has_paper = find(paper) != nullptr;
    for (auto& [handle, name] : names) {
        // The header may be damaged; then the blocks' names tell.
        if (find(handle)->number == type_block_header) {
            if (name == "*Model_Space" && !has_model)
                model_space = handle;
            if (name == "*Paper_Space" && !has_paper)
                paper_space = handle;
        }
        source.names.emplace(handle, std::move(name));
    }
    std::vector<entry*>* of_owner = nullptr;
    std::uint64_t owner = 0;
    for (entry& one : entries_) {
        if (one.is_damaged)
            continue;
        if (!one.is_entity)
            others_.push_back(&one);
        if (!one.is_entity || one.is_block_end())
            continue;
        if (of_owner == nullptr || owner != owner_of(one)) {
            owner = owner_of(one);
            of_owner = &children_[owner];
            if (entry* const of = find(owner))
                of->has_children = true;
        }
        of_owner->push_back(&one);
    }
}

entry* object_index::find(std::uint64_t handle) {
    const auto at =
        std::lower_bound(entries_.begin(), entries_.end(), handle,
                         [](const entry& one, std::uint64_t wanted) { return one.handle < wanted; });
    return at != entries_.end() && at->handle == handle ? &*at : nullptr;
}

const entry* object_index::first_of(int number) const {
    const auto at =
        std::find_if(others_.begin(), others_.end(), [&](const entry* one) { return one->number == number; });
    return at != others_.end() ? *at : nullptr;
}

std::vector<entry*> object_index::members(std::uint64_t owner, const std::vector<std::uint64_t>& listed,
                                          int version) {
    std::vector<entry*> found;
    const auto place = [&](entry& of) {
        if (of.is_damaged || of.is_placed || !of.is_entity || of.is_block_end() || owner_of(of) != owner)
            return false;
        of.is_placed = true;
        if (of.number != type_seqend)
            found.push_back(&of);
        return true;
    };
    // Mostly the one behind the one before.
    entry* near = nullptr;
    const auto next_to = [&](std::uint64_t handle) {
        const bool is_next =
            near != nullptr && near + 1 < entries_.data() + entries_.size() && near[1].handle == handle;
        near = is_next ? near + 1 : find(handle);
        return near;
    };
    if (version >= r2004) {
        for (const std::uint64_t handle : listed)
            if (entry* const of = next_to(handle))
                place(*of);
    } else if (!listed.empty()) {
        for (entry* of = next_to(listed.front()); of != nullptr && place(*of);)
            of = next_to(of->next);
    }
    for (entry* const of : children_of(owner))
        place(*of);
    return found;
}

const std::vector<entry*>& object_index::children_of(std::uint64_t owner) const {
    static const std::vector<entry*> none;
    const auto found = children_.find(owner);
    return found != children_.end() ? found->second : none;
}

} // namespace dwg
