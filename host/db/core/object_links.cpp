#include "host/db/core/object_links.h"

#include "dbdict.h"
#include "host/db/core/format_versions.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/record_text.h"
#include "host/dxf/record_header.h"

#include <algorithm>
#include <utility>

namespace db {

namespace {

// Where braces stand: [first, last), both 102 included; first is where they would be put when there are none,
// behind the handle, the extension dictionary in front of reactors.
struct extent {
    std::size_t first, last;
    bool found() const { return first != last; }
};

extent find_braces(const dxf::group_list& list, std::string_view braces) {
    const auto& groups = list.groups();
    std::size_t put = 0;
    for (std::size_t i = 0; i < groups.size() && groups[i].code != 100 && groups[i].code < 1000; ++i) {
        if (groups[i].code == 0 || groups[i].code == 5 || groups[i].code == 105)
            put = i + 1;
        if (groups[i].code != 102 || !groups[i].value.starts_with('{'))
            continue;
        std::size_t last = i + 1;
        while (last < groups.size() && groups[last].code != 102)
            ++last;
        last = std::min(last + 1, groups.size());
        if (groups[i].value == braces)
            return {i, last};
        if (braces == reactor_braces)
            put = last;
        i = last - 1;
    }
    return {put, put};
}

std::size_t find_handle(const dxf::group_list& list, const extent& in, std::uint64_t handle) {
    const auto& groups = list.groups();
    for (std::size_t i = in.first; i < in.last; ++i)
        if (groups[i].code != 102 && dxf::parse_handle(groups[i].value) == handle)
            return i;
    return in.last;
}

} // namespace

std::vector<std::uint64_t> links(const dxf::group_list& list, std::string_view braces) {
    const extent in = find_braces(list, braces);
    std::vector<std::uint64_t> handles;
    for (std::size_t i = in.first; i < in.last; ++i)
        if (list.groups()[i].code != 102)
            handles.push_back(dxf::parse_handle(list.groups()[i].value));
    return handles;
}

bool has_link(const dxf::group_list& groups, std::string_view braces, std::uint64_t handle) {
    const extent in = find_braces(groups, braces);
    return find_handle(groups, in, handle) != in.last;
}

void add_link(dxf::group_list& groups, std::string_view braces, int code, std::uint64_t handle) {
    const extent in = find_braces(groups, braces);
    std::vector<dxf::group_list::fresh_group> fresh = {{code, handle_text(handle)}};
    std::size_t at = in.last - 1;
    if (!in.found()) {
        fresh.insert(fresh.begin(), {102, std::string(braces)});
        fresh.push_back({102, "}"});
        at = in.first;
    }
    groups.splice(at, at, fresh);
}

bool remove_link(dxf::group_list& groups, std::string_view braces, std::uint64_t handle) {
    const extent in = find_braces(groups, braces);
    const std::size_t at = find_handle(groups, in, handle);
    if (at == in.last)
        return false;
    const bool alone = in.last - in.first == 3;
    groups.splice(alone ? in.first : at, alone ? in.last : at + 1, {});
    return true;
}

void set_owner(dxf::group_list& list, std::uint64_t handle) {
    const auto& groups = list.groups();
    const dxf::group_list::fresh_group owner[] = {{330, handle_text(handle)}};
    bool in_braces = false;
    std::size_t put = 0;
    for (std::size_t i = 0; i < groups.size() && groups[i].code != 100 && groups[i].code < 1000; ++i) {
        if (groups[i].code == 102)
            in_braces = groups[i].value.starts_with('{');
        if (groups[i].code == 330 && !in_braces) {
            if (dxf::parse_handle(groups[i].value) != handle)
                list.splice(i, i + 1, owner);
            return;
        }
        put = i + 1;
    }
    list.splice(put, put, owner);
}

Acad::ErrorStatus may_link(const AcDbObject& object) {
    if (object.imp().database == nullptr)
        return Acad::eNoDatabase;
    if (!object.isWriteEnabled())
        return Acad::eNotOpenForWrite;
    return object.imp().database->drawing().version() >= release_13 ? Acad::eOk : Acad::eNotApplicable;
}

} // namespace db

Acad::ErrorStatus AcDbObject::releaseExtensionDictionary() {
    if (const Acad::ErrorStatus status = db::may_link(*this); status != Acad::eOk)
        return status;
    AcDbDictionary* dictionary = nullptr;
    const AcDbObjectId id = extensionDictionary();
    if (id.isNull())
        return Acad::eKeyNotFound;
    if (const auto status = acdbOpenObject(dictionary, id, AcDb::kForWrite); status != Acad::eOk)
        return status;
    const bool empty = dictionary->numEntries() == 0;
    if (empty)
        dictionary->erase();
    dictionary->close();
    if (!empty)
        return Acad::eContainerNotEmpty;
    db::remove_link(m_imp->edit(), db::dictionary_braces, id.handle());
    return Acad::eOk;
}

bool AcDbObject::hasPersistentReactor(AcDbObjectId id) const {
    assertReadEnabled();
    return !id.isNull() && db::has_link(m_imp->groups(), db::reactor_braces, id.handle());
}

Acad::ErrorStatus AcDbObject::addPersistentReactor(AcDbObjectId id) {
    if (const Acad::ErrorStatus status = db::may_link(*this); status != Acad::eOk)
        return status;
    if (m_imp->database->record(id) == dxf::no_record)
        return Acad::eNullObjectId;
    if (!hasPersistentReactor(id))
        db::add_link(m_imp->edit(), db::reactor_braces, 330, id.handle());
    return Acad::eOk;
}

Acad::ErrorStatus AcDbObject::removePersistentReactor(AcDbObjectId id) {
    if (const Acad::ErrorStatus status = db::may_link(*this); status != Acad::eOk)
        return status;
    if (!hasPersistentReactor(id))
        return Acad::eKeyNotFound;
    db::remove_link(m_imp->edit(), db::reactor_braces, id.handle());
    return Acad::eOk;
}

Acad::ErrorStatus AcDbObject::setOwnerId(AcDbObjectId owner) {
    if (const Acad::ErrorStatus status = db::may_link(*this); status != Acad::eOk)
        return status;
    if (m_imp->database->record(owner) == dxf::no_record)
        return Acad::eWrongDatabase;
    db::set_owner(m_imp->edit(), owner.handle());
    return Acad::eOk;
}
