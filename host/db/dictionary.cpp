#include "dbdict.h"

#include "adscodes.h"
#include "base/case_fold.h"
#include "dbsymtb.h"
#include "host/db/imp_database.h"
#include "host/db/imp_object.h"
#include "host/db/record_text.h"
#include "host/dxf/record_header.h"

#include <algorithm>

ACRX_CONS_DEFINE_MEMBERS(AcDbDictionary, AcDbObject, 0)

// A dictionary holds its entries as pairs of groups: 3 the key, then 350 or, when it owns them hard, 360.

struct AcDbDictionaryIterator::Entries {
    struct Entry {
        std::wstring key;
        AcDbObjectId id;
    };
    std::vector<Entry> all;
    std::size_t at = 0;
};

namespace {

struct entry {
    std::size_t at; // the group of the key; that of the handle stands behind it
    std::wstring key;
    dxf::record_id object;
};

bool is_owner_code(int code) {
    return code == 350 || code == 360;
}

// The entries whose objects are there, in the order of the file.
std::vector<entry> entries_of(const AcDbImpObject& imp) {
    std::vector<entry> found;
    if (imp.database == nullptr)
        return found;
    const auto& groups = imp.groups().groups();
    for (std::size_t i = 0; i + 1 < groups.size(); ++i) {
        if (groups[i].code != 3 || !is_owner_code(groups[i + 1].code))
            continue;
        const dxf::record_id object = imp.database->records().find(dxf::parse_handle(groups[i + 1].value));
        if (object != dxf::no_record && !imp.database->records().gone(object))
            found.push_back({i, imp.decode(groups[i].value), object});
    }
    return found;
}

const entry* find(const std::vector<entry>& entries, std::wstring_view key) {
    const auto at = std::find_if(entries.begin(), entries.end(),
                                 [&](const entry& entry) { return base::equal_no_case(entry.key, key); });
    return at == entries.end() ? nullptr : &*at;
}

bool valid_key(const ACHAR* key) {
    return key != nullptr && *key != 0 && acdbSNValid(*key == L'*' ? key + 1 : key, 1) == RTNORM;
}

// The text of a new object in a dictionary: its head, then the groups that it holds so far.
std::string object_text(AcDbImpDatabase& database, const AcDbImpObject& object, std::uint64_t owner) {
    db::record_text text(database);
    text.add(0, object.groups().groups().front().value);
    text.add_handle(5, database.records().new_handle());
    text.add(102, "{ACAD_REACTORS");
    text.add_handle(330, owner);
    text.add(102, "}");
    text.add_handle(330, owner);
    for (const dxf::group& group : object.groups().groups())
        if (group.code != 0)
            text.transcoded(object, group);
    return text.text();
}

} // namespace

AcDbDictionary::AcDbDictionary() {
    imp().begin_new("0\nDICTIONARY\n100\nAcDbDictionary\n281\n1\n");
}

AcDbDictionary::~AcDbDictionary() = default;

Acad::ErrorStatus AcDbDictionary::getAt(const ACHAR* key, AcDbObjectId& id) const {
    assertReadEnabled();
    if (key == nullptr)
        return Acad::eInvalidKey;
    const auto entries = entries_of(imp());
    const entry* const found = find(entries, key);
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
    const auto entries = entries_of(imp());
    return std::any_of(entries.begin(), entries.end(),
                       [&](const entry& entry) { return imp().database->id(entry.object) == id; });
}

Adesk::UInt32 AcDbDictionary::numEntries() const {
    assertReadEnabled();
    return static_cast<Adesk::UInt32>(entries_of(imp()).size());
}

Acad::ErrorStatus AcDbDictionary::setAt(const ACHAR* key, AcDbObject* object, AcDbObjectId& id) {
    if (!valid_key(key))
        return Acad::eInvalidKey;
    if (object == nullptr)
        return Acad::eNullObjectPointer;
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (imp().database == nullptr)
        return Acad::eNoDatabase;
    if (!object->isNewObject())
        return Acad::eAlreadyInDb;
    if (object->imp().groups().empty())
        return Acad::eNotImplementedYet;
    AcDbImpDatabase& database = *imp().database;
    const dxf::record_id previous = database.drawing().last_in(database.drawing().parts().objects);
    if (previous == dxf::no_record)
        return Acad::eNotApplicable;

    const std::uint64_t owner = database.records().handle(imp().record);
    const dxf::record_id record = database.records().insert_after(
        previous, object_text(database, object->imp(), owner), dxf::record_kind::object, owner);
    char digits[20];
    std::snprintf(digits, sizeof digits, "%llX",
                  static_cast<unsigned long long>(database.records().handle(record)));

    const auto entries = entries_of(imp());
    dxf::group_list& groups = imp().edit();
    const bool hard = groups.integer({"AcDbDictionary"}, 280).value_or(0) == 1;
    std::vector<dxf::group_list::fresh_group> pair = {{3, imp().encode(key)}, {hard ? 360 : 350, digits}};
    if (const entry* const old = find(entries, key)) {
        database.set_erased(old->object, true);
        pair[1].code = groups.groups()[old->at + 1].code;
        groups.splice(old->at, old->at + 2, pair);
    } else {
        std::size_t end = groups.groups().size();
        while (end > 0 && groups.groups()[end - 1].code >= 1000)
            --end;
        groups.splice(end, end, pair);
    }
    database.adopt(*object, record);
    id = database.id(record);
    return Acad::eOk;
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
    const auto entries = entries_of(imp());
    const entry* const found = find(entries, key);
    if (found == nullptr)
        return Acad::eKeyNotFound;
    id = imp().database->id(found->object);
    imp().edit().splice(found->at, found->at + 2, {});
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDictionary::remove(AcDbObjectId id) {
    for (const entry& entry : entries_of(imp()))
        if (imp().database->id(entry.object) == id)
            return remove(entry.key.c_str());
    return Acad::eKeyNotFound;
}

bool AcDbDictionary::setName(const ACHAR* oldKey, const ACHAR* newKey) {
    if (!isWriteEnabled() || oldKey == nullptr || !valid_key(newKey))
        return false;
    const auto entries = entries_of(imp());
    const entry* const found = find(entries, oldKey);
    const entry* const taken = find(entries, newKey);
    if (found == nullptr || (taken != nullptr && taken != found))
        return false;
    const dxf::group_list::fresh_group key[] = {{3, imp().encode(newKey)}};
    imp().edit().splice(found->at, found->at + 1, key);
    return true;
}

AcDbDictionaryIterator* AcDbDictionary::newIterator() const {
    assertReadEnabled();
    auto sorted = std::make_unique<AcDbDictionaryIterator::Entries>();
    for (const entry& entry : entries_of(imp()))
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
