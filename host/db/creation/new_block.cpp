#include "host/db/creation/new_block.h"

#include "adscodes.h"
#include "base/case_fold.h"
#include "host/db/core/blocks.h"
#include "host/db/core/format_versions.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/record_text.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/properties.h"
#include "host/dxf/record_header.h"

#include <algorithm>

namespace db {

namespace {

constexpr dxf::group_place begin_place{"AcDbBlockBegin"};

// The first free name of an anonymous block of a kind ("*U").
std::wstring anonymous_name(AcDbImpDatabase& database, const std::wstring& kind) {
    unsigned long highest = 0;
    for (const dxf::record_id block : database.names().entries(table_kind::block)) {
        const std::wstring name = database.names().name_of(block);
        if (name.size() <= kind.size() || !base::equal_no_case(name.substr(0, kind.size()), kind))
            continue;
        wchar_t* end = nullptr;
        const unsigned long number = std::wcstoul(name.c_str() + kind.size(), &end, 10);
        if (*end == 0)
            highest = std::max(highest, number);
    }
    return kind + std::to_wstring(highest + 1);
}

// The groups that BLOCK and ENDBLK begin with.
void begin_marker(AcDbImpDatabase& database, record_text& text, std::string_view type, std::uint64_t record,
                  std::string_view marker, bool sheet) {
    text.head(type, record);
    const bool marked = database.drawing().version() >= release_13;
    if (marked)
        text.add(100, "AcDbEntity");
    if (sheet)
        text.add(67, "1");
    text.add(8, "0");
    if (marked)
        text.add(100, marker);
}

std::string begin_text(AcDbImpDatabase& database, const AcDbImpObject& block, std::uint64_t record,
                       const std::wstring& name, bool sheet) {
    record_text text(database);
    const std::string bytes = database.drawing().codec().encode(name);
    begin_marker(database, text, "BLOCK", record, "AcDbBlockBegin", sheet);
    const auto value = [&](int code) {
        return dxf::trimmed(block.groups().text(begin_place, code).value_or(""));
    };
    constexpr std::int64_t anonymous = 1;
    const std::int64_t flags = block.groups().integer(begin_place, 70).value_or(0);
    text.add(2, bytes);
    text.add(70, std::to_string(name.front() == L'*' && !sheet ? flags | anonymous : flags));
    for (const int code : {10, 20, 30})
        text.add(code, value(code));
    text.add(3, bytes);
    text.add(1, database.drawing().codec().encode(block.decode(value(1))));
    if (database.drawing().version() >= release_13 &&
        block.groups().find(begin_place, 4) != dxf::group_list::npos)
        text.add(4, database.drawing().codec().encode(block.decode(value(4))));
    return text.text();
}

std::string end_text(AcDbImpDatabase& database, std::uint64_t record, bool sheet) {
    record_text text(database);
    begin_marker(database, text, "ENDBLK", record, "AcDbBlockEnd", sheet);
    return text.text();
}

std::string record_text_of(AcDbImpDatabase& database, const AcDbImpObject& block, std::uint64_t table,
                           const std::wstring& name) {
    const int version = database.drawing().version();
    record_text text(database);
    text.head("BLOCK_RECORD", table);
    for (const dxf::group& group : block.groups().groups()) {
        const bool flag = group.code == 70 || group.code == 280 || group.code == 281;
        if (group.code == 0 || (flag && version < release_2007))
            continue;
        if (group.code == 100 && dxf::trimmed(group.value) == begin_place.marker)
            break;
        if (group.code == 2)
            text.add(2, database.drawing().codec().encode(name));
        else
            text.transcoded(block, group);
        if (group.code == 2 && version >= release_2000)
            text.add(340, "0"); // no layout
    }
    for (const dxf::group& group : block.groups().groups())
        if (group.code >= 1000)
            text.transcoded(block, group);
    return text.text();
}

} // namespace

Acad::ErrorStatus add_block(AcDbImpDatabase& database, AcDbBlockTableRecord& block, AcDbObjectId& id,
                            bool sheet) {
    AcString given;
    block.getName(given);
    std::wstring name = given.kwszPtr();
    const bool unnumbered = name.size() == 2 && name.front() == L'*';
    if (acdbSNValid(name.c_str(), 0) != RTNORM || db::blocks::is_space_name(name) != sheet)
        return Acad::eInvalidInput;
    if (unnumbered)
        name = anonymous_name(database, name);
    else if (database.names().find(table_kind::block, name) != dxf::no_record)
        return Acad::eDuplicateRecordName;
    const dxf::record_id section = database.drawing().ensure_section("BLOCKS");
    const dxf::record_id last =
        section != dxf::no_record ? database.drawing().last_in(section) : dxf::no_record;
    const bool own_record = database.names().has_block_records();
    const dxf::record_id table = database.names().table(table_kind::block);
    const dxf::record_id previous = own_record ? database.names().place_for_entry(table_kind::block) : last;
    if (last == dxf::no_record || previous == dxf::no_record)
        return Acad::eNotApplicable;

    dxf::record_table& records = database.records();
    const AcDbImpObject& imp = block.imp();
    dxf::record_id record = dxf::no_record;
    dxf::record_id begin = dxf::no_record;
    if (own_record) {
        record = records.insert_after(previous, record_text_of(database, imp, records.handle(table), name),
                                      dxf::record_kind::entry, records.handle(table));
        begin = records.insert_after(last, begin_text(database, imp, records.handle(record), name, sheet),
                                     dxf::record_kind::block, records.handle(record));
    } else {
        record = begin =
            records.insert_after(last, begin_text(database, imp, 0, name, sheet), dxf::record_kind::block, 0);
        records.set_owner(begin, records.put_owner(records.handle(begin)));
    }
    records.insert_after(begin, end_text(database, own_record ? records.handle(record) : 0, sheet),
                         dxf::record_kind::block_end, records.handle(record));
    database.drawing().add_block(begin);
    database.objects().adopt(block, record);
    id = database.id(record);
    database.objects().content_changed(table);
    database.objects().appended(block);
    return Acad::eOk;
}

} // namespace db
