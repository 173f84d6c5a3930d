#include "host/db/tables/symbol_entry.h"
#include "host/db/core/format_versions.h"

#include "adscodes.h"
#include "base/case_fold.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/lines_alike.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/record_text.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/entry_fields.h"
#include "host/db/tables/implied_entries.h"
#include "host/db/tables/properties.h"
#include "host/dxf/record_header.h"

#include <algorithm>
#include <utility>

namespace db {

namespace {

// What a new record holds before anything is set.
struct entry_row {
    std::string_view type;
    const section& fields;
};
constexpr entry_row rows[] = {
    {"LAYER", layer_place},       {"LTYPE", linetype_place},           {"STYLE", text_style_place},
    {"APPID", application_place}, {"DIMSTYLE", dimension_style_place}, {"VIEW", view_place},
    {"UCS", ucs_place},
};

// Plot style and material of a layer that names none are those of layer 0: the format wants them named.
void add_plotting(AcDbImpDatabase& database, const AcDbImpObject& layer, record_text& text) {
    const dxf::record_id zero = database.names().find(table_kind::layer, L"0");
    if (zero == dxf::no_record || database.drawing().version() < release_2000)
        return;
    const dxf::group_list model(database.records().text(zero));
    for (const int code : {390, 347, 348})
        if (const auto handle = model.text(layer_place, code);
            handle && layer.groups().find(layer_place, code) == dxf::group_list::npos)
            text.add(code, *handle);
}

} // namespace

const char* const new_block_text =
    "0\nBLOCK_RECORD\n100\nAcDbSymbolTableRecord\n100\nAcDbBlockTableRecord\n2\n\n70\n0\n280\n1\n281\n0\n"
    "100\nAcDbBlockBegin\n70\n0\n10\n0.0\n20\n0.0\n30\n0.0\n1\n\n";

std::string new_entry_text(std::string_view class_name) {
    std::string text;
    for (const entry_row& row : rows)
        if (row.fields.marker == class_name) { // else a class whose records only files bring
            dxf::append_group(text, plain_style, 0, row.type);
            dxf::append_group(text, plain_style, 100, "AcDbSymbolTableRecord");
            append_fresh(text, row.fields);
        }
    return text;
}

std::string entry_text(AcDbImpDatabase& database, table_kind kind, const AcDbImpObject& entry) {
    const int version = database.drawing().version();
    bool plotting_is_due = kind == table_kind::layer;
    const dxf::record_id table = database.names().table(kind);
    record_text text(database);
    text.head(entry.groups().groups().front().value, database.records().handle(table));
    for (const dxf::group& group : entry.groups().groups()) {
        const bool weight = group.code == 370 || group.code == 290 || group.code == 390;
        const bool true_color = group.code == 420 && kind == table_kind::layer;
        // Of a dash the first versions know the length alone.
        const bool in_line = kind == table_kind::linetype &&
                             (group.code == 9 || group.code == 340 || (group.code > 40 && group.code < 49) ||
                              (group.code > 73 && group.code < 76) || group.code == 50);
        if (group.code == 0 || (version < release_13 && (group.code == 100 || in_line)) ||
            (weight && version < release_2000) || (true_color && version < release_2004))
            continue;
        if (group.code >= 1000 && std::exchange(plotting_is_due, false))
            add_plotting(database, entry, text);
        text.transcoded(entry, group);
    }
    if (plotting_is_due)
        add_plotting(database, entry, text);
    return text.text();
}

Acad::ErrorStatus add_entry(AcDbImpDatabase& database, table_kind kind, AcDbSymbolTableRecord& entry,
                            AcDbObjectId& id) {
    AcDbImpObject& imp = entry.imp();
    if (imp.groups().empty())
        return Acad::eNotImplementedYet;
    AcString name;
    entry.getName(name);
    if (acdbSNValid(name.kwszPtr(), 1) != RTNORM)
        return Acad::eInvalidInput;
    if (database.names().find(kind, name.kwszPtr()) != dxf::no_record)
        return Acad::eDuplicateRecordName;
    const dxf::record_id previous = database.names().place_for_entry(kind);
    if (previous == dxf::no_record)
        return Acad::eNotApplicable; // the drawing has no such table
    const dxf::record_id table = database.names().table(kind);
    if (dxf::value_of(database.records().text(table), 2) != imp.groups().groups().front().value)
        return Acad::eNotThatKindOfClass;

    if (kind == table_kind::layer)
        settle_layer_zero(database);
    register_applications(database, imp);
    const dxf::record_id record = database.records().insert_after(
        previous, entry_text(database, kind, imp), dxf::record_kind::entry, database.records().handle(table));
    database.objects().adopt(entry, record);
    id = database.id(record);
    database.objects().content_changed(table);
    database.objects().appended(entry);
    return Acad::eOk;
}

void register_applications(AcDbImpDatabase& database, const AcDbImpObject& object) {
    constexpr int application_code = 1001;
    for (const dxf::group& group : object.groups().groups())
        if (group.code == application_code)
            register_application(database, object.decode(dxf::trimmed(group.value)).c_str());
}

bool register_application(AcDbImpDatabase& database, const ACHAR* name) {
    if (database.names().find(table_kind::regapp, name) != dxf::no_record)
        return true;
    auto record = std::make_unique<AcDbRegAppTableRecord>();
    AcDbObjectId id;
    if (record->setName(name) != Acad::eOk ||
        add_entry(database, table_kind::regapp, *record, id) != Acad::eOk)
        return false;
    record.release()->close(); // the database's now
    return true;
}

} // namespace db
