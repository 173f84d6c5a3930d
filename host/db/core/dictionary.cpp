#include "dbdict.h"

#include "adscodes.h"
#include "dbsymtb.h"
#include "host/db/core/dictionary_index.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/dxf/record_header.h"

#include <algorithm>

ACRX_CONS_DEFINE_MEMBERS(AcDbDictionary, AcDbObject, 0)

struct AcDbDictionaryIterator::Entries {
    struct Entry {
        std::wstring key;
        AcDbObjectId id;
    };
    std::vector<Entry> all;
    std::size_t at = 0;
};

namespace {

using db::dictionary_place;
using entry = db::dictionary_entry;

bool is_owner_code(int code) {
    return code == 350 || code == 360;
}

} // namespace

bool db::is_dictionary_key(const ACHAR* key) {
    std::wstring name = key != nullptr ? key : L"";
    if (name.starts_with(L'*'))
        name = name.substr(1, name.ends_with(L'*') && name.size() > 1 ? name.size() - 2 : name.npos);
    return acdbSNValid(name.c_str(), 1) == RTNORM;
}

// The entries as they stand in the groups.
AcDbDictionary::Index& AcDbDictionary::index() const {
    if (!m_index)
        m_index = std::make_unique<Index>();
    Index& index = *m_index;
    const auto& groups = imp().groups().groups();
    if (index.revision == imp().revision())
        return index;
    index.revision = imp().revision();
    index.object = &imp();
    index.hard = isTreatElementsAsHard();
    index.all.clear();
    index.by_key.clear();
    if (imp().database == nullptr)
        return index;
    for (std::size_t i = 0; i + 1 < groups.size(); ++i) {
        if (groups[i].code != 3 || !is_owner_code(groups[i + 1].code))
            continue;
        const dxf::record_id object = imp().database->records().find(dxf::parse_handle(groups[i + 1].value));
        if (object != dxf::no_record)
            index.add({i, imp().decode(groups[i].value), object});
    }
    return index;
}

AcDbDictionary::AcDbDictionary() {
    imp().begin_as("0\nDICTIONARY\n100\nAcDbDictionary\n281\n1\n");
}

AcDbDictionary::~AcDbDictionary() = default;

Acad::ErrorStatus AcDbDictionary::getAt(const ACHAR* key, AcDbObjectId& id) const {
    assertReadEnabled();
    if (key == nullptr)
        return Acad::eInvalidKey;
    const entry* const found = index().find(key);
    if (found == nullptr)
        return Acad::eKeyNotFound;
    id = imp().database->id(found->object);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDictionary::getAt(const ACHAR* key, AcDbObject*& object, AcDb::OpenMode mode) const {
    object = nullptr;
    AcDbObjectId id;
    const Acad::ErrorStatus status = getAt(key, id);
    return status == Acad::eOk ? acdbOpenObject(object, id, mode) : status;
}

bool AcDbDictionary::has(const ACHAR* key) const {
    AcDbObjectId id;
    return getAt(key, id) == Acad::eOk;
}

bool AcDbDictionary::has(AcDbObjectId id) const {
    assertReadEnabled();
    const Index& entries = index();
    return std::any_of(entries.all.begin(), entries.all.end(), [&](const entry& entry) {
        return entries.is_live(entry) && imp().database->id(entry.object) == id;
    });
}

Adesk::UInt32 AcDbDictionary::numEntries() const {
    assertReadEnabled();
    const Index& entries = index();
    return static_cast<Adesk::UInt32>(std::count_if(
        entries.all.begin(), entries.all.end(), [&](const entry& entry) { return entries.is_live(entry); }));
}

Acad::ErrorStatus AcDbDictionary::remove(const ACHAR* key) {
    AcDbObjectId id;
    return remove(key, id);
}

Acad::ErrorStatus AcDbDictionary::remove(const ACHAR* key, AcDbObjectId& id) {
    if (key == nullptr)
        return Acad::eInvalidKey;
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    const entry* const found = index().find(key);
    if (found == nullptr)
        return Acad::eKeyNotFound;
    id = imp().database->id(found->object);
    const std::size_t at = found->at;
    imp().edit().splice(at, at + 2, {});
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDictionary::remove(AcDbObjectId id) {
    const Index& entries = index();
    for (const entry& entry : entries.all)
        if (entries.is_live(entry) && imp().database->id(entry.object) == id)
            return remove(std::wstring(entry.key).c_str());
    return Acad::eKeyNotFound;
}

bool AcDbDictionary::setName(const ACHAR* oldKey, const ACHAR* newKey) {
    if (!isWriteEnabled() || oldKey == nullptr || !db::is_dictionary_key(newKey))
        return false;
    const entry* const found = index().find(oldKey);
    const entry* const taken = index().find(newKey);
    if (found == nullptr || (taken != nullptr && taken != found))
        return false;
    const std::size_t at = found->at;
    const dxf::group_list::fresh_group key[] = {{3, imp().encode(newKey)}};
    imp().edit().splice(at, at + 1, key);
    return true;
}

bool AcDbDictionary::isTreatElementsAsHard() const {
    assertReadEnabled();
    return imp().groups().integer(dictionary_place, 280).value_or(0) == 1;
}

void AcDbDictionary::setTreatElementsAsHard(bool hard) {
    assertWriteEnabled();
    static constexpr int order[] = {280, 281};
    if (isTreatElementsAsHard() != hard)
        imp().edit().set_integer({dictionary_place.marker, order}, 280, hard ? 1 : 0);
}

AcDbDictionaryIterator* AcDbDictionary::newIterator() const {
    assertReadEnabled();
    auto sorted = std::make_unique<AcDbDictionaryIterator::Entries>();
    const Index& entries = index();
    for (const entry& entry : entries.all)
        if (entries.is_live(entry))
            sorted->all.push_back({entry.key, imp().database->id(entry.object)});
    std::stable_sort(sorted->all.begin(), sorted->all.end(),
                     [](const auto& a, const auto& b) { return base::compare_no_case(a.key, b.key) < 0; });
    return new AcDbDictionaryIterator(std::move(sorted)); // the caller's
}

AcDbDictionaryIterator::AcDbDictionaryIterator(std::unique_ptr<Entries> entries)
    : m_entries(std::move(entries)) {
}
AcDbDictionaryIterator::~AcDbDictionaryIterator() = default;

const ACHAR* AcDbDictionaryIterator::name() const {
    return done() ? nullptr : m_entries->all[m_entries->at].key.c_str();
}

Acad::ErrorStatus AcDbDictionaryIterator::getObject(AcDbObject*& object, AcDb::OpenMode mode) {
    object = nullptr;
    return done() ? Acad::eInvalidIndex : acdbOpenObject(object, objectId(), mode);
}

AcDbObjectId AcDbDictionaryIterator::objectId() const {
    return done() ? AcDbObjectId::kNull : m_entries->all[m_entries->at].id;
}

bool AcDbDictionaryIterator::done() const {
    return m_entries->at >= m_entries->all.size();
}

bool AcDbDictionaryIterator::next() {
    if (!done())
        ++m_entries->at;
    return !done();
}
