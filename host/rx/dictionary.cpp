#include "host/rx/dictionary.h"

#include "base/case_fold.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace rx {

// Walks over the numbers that were there: an entry that goes meanwhile is passed over.
class dictionary::iterator : public AcRxDictionaryIterator {
public:
    iterator(const dictionary& from, std::vector<Adesk::UInt32> ids) : from_(from), ids_(std::move(ids)) {}

    bool done() const override {
        while (at_ != ids_.size() && !from_.has(ids_[at_]))
            ++at_;
        return at_ == ids_.size();
    }
    bool next() override {
        if (!done())
            ++at_;
        return !done();
    }
    AcRxObject* object() const override { return done() ? nullptr : from_.at(ids_[at_]); }
    const ACHAR* key() const override { return done() ? nullptr : from_.keyAt(ids_[at_]); }
    Adesk::UInt32 id() const override { return done() ? 0 : ids_[at_]; }

private:
    const dictionary& from_;
    std::vector<Adesk::UInt32> ids_;
    mutable std::size_t at_ = 0;
};

dictionary::~dictionary() {
    if (manner_.deletes_objects) {
        for (const auto& [key, e] : entries_)
            delete e.object;
    }
}

std::wstring dictionary::compared(const ACHAR* key) const {
    return manner_.ignores_case ? base::folded(key) : std::wstring(key);
}

dictionary::entries::iterator dictionary::find(const ACHAR* key) {
    return key != nullptr ? entries_.find(compared(key)) : entries_.end();
}

dictionary::entries::iterator dictionary::find(Adesk::UInt32 id) {
    const auto found = by_id_.find(id);
    return found != by_id_.end() ? found->second : entries_.end();
}

const dictionary::entry* dictionary::look(const ACHAR* key) const {
    const auto found = key != nullptr ? entries_.find(compared(key)) : entries_.end();
    return found != entries_.end() ? &found->second : nullptr;
}

const dictionary::entry* dictionary::look(Adesk::UInt32 id) const {
    const auto found = by_id_.find(id);
    return found != by_id_.end() ? &found->second->second : nullptr;
}

AcRxObject* dictionary::at(const ACHAR* key) const {
    const entry* const e = look(key);
    return e != nullptr ? e->object : nullptr;
}

AcRxObject* dictionary::at(Adesk::UInt32 id) const {
    const entry* const e = look(id);
    return e != nullptr ? e->object : nullptr;
}

AcRxObject* dictionary::replace(entry& e, AcRxObject* object) {
    if (manner_.refuses_doubles)
        return e.object;
    AcRxObject* const before = std::exchange(e.object, object);
    if (!manner_.deletes_objects || before == object)
        return before;
    delete before;
    return nullptr;
}

AcRxObject* dictionary::atPut(const ACHAR* key, AcRxObject* object, Adesk::UInt32& id) {
    id = 0;
    if (key == nullptr || object == nullptr)
        return nullptr;
    if (const auto found = find(key); found != entries_.end()) {
        if (!manner_.refuses_doubles)
            id = found->second.id;
        return replace(found->second, object);
    }
    while (by_id_.contains(next_id_))
        ++next_id_;
    id = next_id_++;
    atKeyAndIdPut(key, id, object);
    return nullptr;
}

AcRxObject* dictionary::atPut(Adesk::UInt32 id, AcRxObject* object) {
    const auto found = find(id);
    if (found == entries_.end() || object == nullptr || manner_.refuses_doubles)
        return nullptr;
    return replace(found->second, object);
}

bool dictionary::atKeyAndIdPut(const ACHAR* key, Adesk::UInt32 id, AcRxObject* object) {
    if (key == nullptr || object == nullptr || id == 0 || by_id_.contains(id))
        return false;
    const auto [at, added] = entries_.try_emplace(compared(key), entry{key, id, arrivals_, object});
    if (!added)
        return false;
    ++arrivals_;
    by_id_.emplace(id, at);
    return true;
}

bool dictionary::rename(entries::iterator at, const ACHAR* key) {
    if (at == entries_.end() || key == nullptr)
        return false;
    const auto other = find(key);
    if (other != entries_.end() && other != at)
        return false;
    auto node = entries_.extract(at);
    node.key() = compared(key);
    node.mapped().key = key;
    const Adesk::UInt32 id = node.mapped().id;
    by_id_[id] = entries_.insert(std::move(node)).position;
    return true;
}

bool dictionary::resetKey(const ACHAR* oldKey, const ACHAR* newKey) {
    return rename(find(oldKey), newKey);
}

bool dictionary::resetKey(Adesk::UInt32 id, const ACHAR* newKey) {
    return rename(find(id), newKey);
}

AcRxObject* dictionary::remove(entries::iterator at) {
    if (at == entries_.end())
        return nullptr;
    std::unique_ptr<AcRxObject> object(at->second.object);
    by_id_.erase(at->second.id);
    entries_.erase(at);
    return manner_.deletes_objects ? nullptr : object.release();
}

AcRxObject* dictionary::remove(const ACHAR* key) {
    return remove(find(key));
}

AcRxObject* dictionary::remove(Adesk::UInt32 id) {
    return remove(find(id));
}

bool dictionary::has(const ACHAR* key) const {
    return look(key) != nullptr;
}

bool dictionary::has(Adesk::UInt32 id) const {
    return look(id) != nullptr;
}

Adesk::UInt32 dictionary::idAt(const ACHAR* key) const {
    const entry* const e = look(key);
    return e != nullptr ? e->id : 0;
}

const ACHAR* dictionary::keyAt(Adesk::UInt32 id) const {
    const entry* const e = look(id);
    return e != nullptr ? e->key.c_str() : nullptr;
}

Adesk::UInt32 dictionary::numEntries() const {
    return static_cast<Adesk::UInt32>(entries_.size());
}

AcRxDictionaryIterator* dictionary::newIterator(AcRx::DictIterType type) {
    std::vector<const entry*> order;
    order.reserve(entries_.size());
    for (const auto& [key, e] : entries_)
        order.push_back(&e);
    if (type == AcRx::kDictCollated)
        std::sort(order.begin(), order.end(),
                  [](const entry* a, const entry* b) { return a->arrival < b->arrival; });
    std::vector<Adesk::UInt32> ids;
    ids.reserve(order.size());
    for (const entry* e : order)
        ids.push_back(e->id);
    return new iterator(*this, std::move(ids));
}

} // namespace rx
