// Entities and the entries of tables and dictionaries as chains of result buffers, and walks from one to the
// next.
#include "acdbads.h"
#include "acutmem.h"
#include "base/case_fold.h"
#include "base/utf.h"
#include "base/wildcard.h"
#include "dbdict.h"
#include "dbobjptr.h"
#include "host/ap/documents.h"
#include "host/db/core/blocks.h"
#include "host/db/core/extended_data.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/symbol_names.h"
#include "host/dxf/record_header.h"
#include "host/ed/selection_sources.h"
#include "host/ed/system_variables.h"

#include <algorithm>
#include <array>
#include <optional>

namespace ed {

namespace {

constexpr int bad_table = 1;
constexpr int bad_name = 2;
constexpr int on_locked_layer = 35;
constexpr int deleted = 17;
constexpr int first_of_extended_data = 1000;

// The record that a name stands for in the current drawing; no_record, ERRNO 2, for others.
dxf::record_id record_of(const ads_name name) {
    AcDbImpDatabase* const database = selected_drawing();
    AcDbObjectId id;
    dxf::record_id record = dxf::no_record;
    if (database != nullptr && acdbGetObjectId(id, name) == Acad::eOk)
        record = database->record(id);
    if (record == dxf::no_record)
        set_error_number(bad_name);
    return record;
}

bool give_name(AcDbImpDatabase& database, dxf::record_id record, ads_name result) {
    return record != dxf::no_record &&
           acdbGetAdsName(*reinterpret_cast<ads_name*>(result), database.id(record)) == Acad::eOk;
}

resbuf* named(int code, AcDbObjectId id) {
    resbuf* const node = acutNewRb(code);
    acdbGetAdsName(*reinterpret_cast<ads_name*>(node->resval.rlname), id);
    return node;
}

void append(resbuf* chain, resbuf* more) {
    while (chain->rbnext != nullptr)
        chain = chain->rbnext;
    chain->rbnext = more;
}

// The data of an entity or object, extended data only of the applications that are asked for.
resbuf* list_of(AcDbImpDatabase& database, dxf::record_id record, const resbuf* applications) {
    const std::unique_ptr<AcDbObject> view = database.objects().view(record);
    if (view == nullptr)
        return nullptr;
    constexpr int entity_name = -1;
    resbuf* const list = named(entity_name, database.id(record));
    const auto& groups = view->imp().groups().groups();
    const auto data = std::find_if(groups.begin(), groups.end(), [](const dxf::group& group) {
        return group.code >= first_of_extended_data;
    });
    append(list, db::chain_of(view->imp(), std::span(groups.begin(), data)));
    resbuf* extended = nullptr;
    resbuf** tail = &extended;
    for (const resbuf* wanted = applications; wanted != nullptr; wanted = wanted->rbnext) {
        if (wanted->resval.rstring == nullptr)
            continue;
        for (auto group = data; group != groups.end(); ++group) {
            constexpr int application_code = 1001;
            if (group->code != application_code ||
                !base::wildcard_match(view->imp().decode(group->value), wanted->resval.rstring, true))
                continue;
            *tail = db::read_extended_data(view->imp(), view->imp().decode(group->value).c_str());
            while (*tail != nullptr)
                tail = &(*tail)->rbnext;
        }
    }
    if (extended != nullptr) {
        resbuf* const sentinel = acutNewRb(-3);
        sentinel->rbnext = extended;
        append(list, sentinel);
    }
    return list;
}

// What stands in one of the spaces and is walked over: entities, and their parts.
bool is_walked(AcDbImpDatabase& database, dxf::record_id record) {
    const dxf::record_kind kind = database.records().kind(record);
    return (kind == dxf::record_kind::entity || kind == dxf::record_kind::part) &&
           !database.records().gone(record) && database.blocks().in_space(record);
}

// ---- tables

std::optional<db::table_kind> table_of(const ACHAR* name) {
    constexpr std::pair<std::wstring_view, db::table_kind> rows[] = {
        {L"BLOCK", db::table_kind::block},       {L"LAYER", db::table_kind::layer},
        {L"STYLE", db::table_kind::text_style},  {L"LTYPE", db::table_kind::linetype},
        {L"VIEW", db::table_kind::view},         {L"UCS", db::table_kind::ucs},
        {L"VPORT", db::table_kind::viewport},    {L"APPID", db::table_kind::regapp},
        {L"DIMSTYLE", db::table_kind::dim_style}};
    for (const auto& [known, kind] : rows)
        if (name != nullptr && base::equal_no_case(known, name))
            return kind;
    set_error_number(bad_table);
    return std::nullopt;
}

// An entry of a table as programs see it: without handles, owners and class markers; of a block its
// definition, and the first entity in it.
resbuf* entry_list(AcDbImpDatabase& database, db::table_kind kind, dxf::record_id entry) {
    const dxf::record_id begin = kind == db::table_kind::block ? database.blocks().begin_of(entry) : entry;
    const std::unique_ptr<AcDbObject> view = database.objects().view(entry);
    if (view == nullptr || begin == dxf::no_record)
        return nullptr;
    const dxf::group_list groups(database.records().text(begin));
    std::vector<dxf::group> shown;
    int braces = 0; // of groups that programs hang on an entry
    for (const dxf::group& group : groups.groups()) {
        if (group.code == 102) {
            braces += dxf::trimmed(group.value).starts_with('{') ? 1 : -1;
            continue;
        }
        const dxf::value_kind value = dxf::kind_of_code(group.code);
        if (braces == 0 && group.code != 100 && value != dxf::value_kind::handle &&
            group.code < first_of_extended_data)
            shown.push_back(group);
    }
    resbuf* const list = db::chain_of(view->imp(), shown);
    if (kind == db::table_kind::block) {
        constexpr int first_entity = -2;
        const auto entities = database.blocks().entities(entry);
        const auto first = std::find_if(entities.begin(), entities.end(),
                                        [&](dxf::record_id id) { return !database.records().gone(id); });
        if (first != entities.end())
            append(list, named(first_entity, database.id(*first)));
    }
    return list;
}

// Where acdbTblNext stands in each table of the drawing that was walked last.
struct table_walk {
    const AcDbImpDatabase* database = nullptr;
    std::array<std::size_t, db::table_kinds> next{};
};
table_walk& walk_in(const AcDbImpDatabase& database) {
    static table_walk walk;
    if (walk.database != &database)
        walk = {&database, {}};
    return walk;
}

} // namespace

} // namespace ed

resbuf* acdbEntGetX(const ads_name entity, const resbuf* applications) {
    const dxf::record_id record = ed::record_of(entity);
    if (record == dxf::no_record)
        return nullptr;
    AcDbImpDatabase& database = *ed::selected_drawing();
    if (database.records().gone(record)) {
        ed::set_error_number(ed::deleted);
        return nullptr;
    }
    return ed::list_of(database, record, applications);
}

resbuf* acdbEntGet(const ads_name entity) {
    return acdbEntGetX(entity, nullptr);
}

int acdbEntDel(const ads_name entity) {
    const dxf::record_id record = ed::record_of(entity);
    if (record == dxf::no_record)
        return RTERROR;
    AcDbEntity* opened = nullptr;
    const Acad::ErrorStatus status =
        acdbOpenObject(opened, ed::selected_drawing()->id(record), AcDb::kForWrite, true);
    if (status != Acad::eOk) {
        if (status == Acad::eOnLockedLayer)
            ed::set_error_number(ed::on_locked_layer);
        else if (status == Acad::eNotThatKindOfClass)
            ed::set_error_number(ed::bad_name);
        return RTERROR;
    }
    const Acad::ErrorStatus erased = opened->erase(!opened->isErased());
    opened->close();
    return erased == Acad::eOk ? RTNORM : RTERROR;
}

int acdbEntNext(const ads_name entity, ads_name result) {
    AcDbImpDatabase* const database = ed::selected_drawing();
    if (database == nullptr || result == nullptr)
        return RTERROR;
    dxf::record_id at = database->drawing().parts().entities;
    if (entity != nullptr && !ads_name_nil(entity))
        at = ed::record_of(entity);
    if (at == dxf::no_record)
        return RTERROR;
    do
        at = database->records().next(at);
    while (at != dxf::no_record && !ed::is_walked(*database, at));
    return ed::give_name(*database, at, result) ? RTNORM : RTERROR;
}

int acdbEntLast(ads_name result) {
    AcDbImpDatabase* const database = ed::selected_drawing();
    if (database == nullptr || result == nullptr)
        return RTERROR;
    for (dxf::record_id id = database->records().size(); id-- > 0;)
        if (database->records().kind(id) == dxf::record_kind::entity && ed::is_walked(*database, id))
            return ed::give_name(*database, id, result) ? RTNORM : RTERROR;
    return RTERROR;
}

int acdbEntUpd(const ads_name entity) {
    return ed::record_of(entity) != dxf::no_record ? RTNORM : RTERROR;
}

int acdbTblObjName(const ACHAR* table, const ACHAR* name, ads_name result) {
    AcDbImpDatabase* const database = ed::selected_drawing();
    const auto kind = ed::table_of(table);
    if (database == nullptr || !kind || name == nullptr || result == nullptr)
        return RTERROR;
    return ed::give_name(*database, database->names().find(*kind, name), result) ? RTNORM : RTERROR;
}

resbuf* acdbTblSearch(const ACHAR* table, const ACHAR* name, int setNext) {
    AcDbImpDatabase* const database = ed::selected_drawing();
    const auto kind = ed::table_of(table);
    if (database == nullptr || !kind || name == nullptr)
        return nullptr;
    const dxf::record_id entry = database->names().find(*kind, name);
    if (entry == dxf::no_record)
        return nullptr;
    if (setNext != 0) {
        const auto entries = database->names().entries(*kind);
        ed::walk_in(*database).next[static_cast<std::size_t>(*kind)] =
            static_cast<std::size_t>(std::find(entries.begin(), entries.end(), entry) - entries.begin() + 1);
    }
    return ed::entry_list(*database, *kind, entry);
}

resbuf* acdbTblNext(const ACHAR* table, int rewind) {
    AcDbImpDatabase* const database = ed::selected_drawing();
    const auto kind = ed::table_of(table);
    if (database == nullptr || !kind)
        return nullptr;
    std::size_t& next = ed::walk_in(*database).next[static_cast<std::size_t>(*kind)];
    if (rewind != 0)
        next = 0;
    const auto entries = database->names().entries(*kind);
    while (next < entries.size()) {
        const dxf::record_id entry = entries[next++];
        if (database->records().gone(entry) ||
            (*kind == db::table_kind::block && db::blocks::is_space_name(database->names().name_of(entry))))
            continue;
        if (resbuf* const list = ed::entry_list(*database, *kind, entry))
            return list;
    }
    return nullptr;
}

int acdbNamedObjDict(ads_name result) {
    AcDbImpDatabase* const database = ed::selected_drawing();
    return database != nullptr && result != nullptr &&
                   ed::give_name(*database, database->drawing().ensure_root_dictionary(), result)
               ? RTNORM
               : RTERROR;
}

resbuf* acdbDictSearch(const ads_name dictionary, const ACHAR* key, int /*setNext*/) {
    const dxf::record_id record = ed::record_of(dictionary);
    if (record == dxf::no_record || key == nullptr)
        return nullptr;
    AcDbImpDatabase& database = *ed::selected_drawing();
    const AcDbObjectPointer<AcDbDictionary> opened(database.id(record));
    AcDbObjectId entry;
    if (opened.openStatus() != Acad::eOk || opened->getAt(key, entry) != Acad::eOk)
        return nullptr;
    return ed::list_of(database, database.record(entry), nullptr);
}
