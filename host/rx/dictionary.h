// The one kind of dictionary that the host has.
#pragma once

#include "rxdict.h"

#include <map>
#include <string>
#include <unordered_map>

namespace rx {

// How a dictionary treats its entries.
struct dictionary_manner {
    bool deletes_objects = false; // entry and object end together
    bool ignores_case = false;
    bool refuses_doubles = false; // atPut never replaces
};

class dictionary : public AcRxDictionary {
public:
    using manner = dictionary_manner;

    dictionary() = default;
    explicit dictionary(manner m) : manner_(m) {}
    ~dictionary() override;

    AcRxObject* at(const ACHAR* key) const override;
    AcRxObject* at(Adesk::UInt32 id) const override;
    AcRxObject* atPut(const ACHAR* key, AcRxObject* object, Adesk::UInt32& id) override;
    AcRxObject* atPut(Adesk::UInt32 id, AcRxObject* object) override;
    bool atKeyAndIdPut(const ACHAR* key, Adesk::UInt32 id, AcRxObject* object) override;
    bool resetKey(const ACHAR* oldKey, const ACHAR* newKey) override;
    bool resetKey(Adesk::UInt32 id, const ACHAR* newKey) override;
    AcRxObject* remove(const ACHAR* key) override;
    AcRxObject* remove(Adesk::UInt32 id) override;
    bool has(const ACHAR* key) const override;
    bool has(Adesk::UInt32 id) const override;
    Adesk::UInt32 idAt(const ACHAR* key) const override;
    const ACHAR* keyAt(Adesk::UInt32 id) const override;
    Adesk::UInt32 numEntries() const override;
    AcRxDictionaryIterator* newIterator(AcRx::DictIterType type = AcRx::kDictSorted) override;
    bool deletesObjects() const override { return manner_.deletes_objects; }
    bool isCaseSensitive() const override { return !manner_.ignores_case; }

private:
    struct entry {
        std::wstring key; // as it was given
        Adesk::UInt32 id;
        std::uint64_t arrival;
        AcRxObject* object;
    };
    // By the key as it is compared. Entries stay where they are, so that keys may be looked on.
    using entries = std::map<std::wstring, entry>;
    class iterator;

    std::wstring compared(const ACHAR* key) const;
    entries::iterator find(const ACHAR* key);
    entries::iterator find(Adesk::UInt32 id);
    const entry* look(const ACHAR* key) const;
    const entry* look(Adesk::UInt32 id) const;
    AcRxObject* replace(entry& e, AcRxObject* object);
    AcRxObject* remove(entries::iterator at);
    bool rename(entries::iterator at, const ACHAR* key);

    manner manner_;
    entries entries_;
    std::unordered_map<Adesk::UInt32, entries::iterator> by_id_;
    Adesk::UInt32 next_id_ = 1;
    std::uint64_t arrivals_ = 0;
};

} // namespace rx
