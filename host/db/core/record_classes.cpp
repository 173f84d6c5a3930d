#include "host/db/core/record_classes.h"

#include "dbdict.h"
#include "dbents.h"
#include "dblayout.h"
#include "dbproxy.h"
#include "dbsymtb.h"
#include "dbxrecrd.h"
#include "host/db/core/entity_classes.h"
#include "host/db/core/host_classes.h"
#include "host/db/core/symbol_names.h"
#include "host/dxf/record_header.h"

#include <string_view>
#include <unordered_set>

namespace db {

namespace {

// The types of which the drawing says that an application brings them.
class application_types {
public:
    explicit application_types(AcDbImpDatabase& database) : database_(database) {}

    bool contains(std::string_view type) {
        follow_changes();
        return types_.contains(type);
    }

private:
    void follow_changes() {
        const dxf::record_table& records = database_.records();
        bool changed = !known_;
        for (; read_ < records.journal().size(); ++read_)
            changed = changed || records.type(records.journal()[read_]) == dxf::type_class;
        if (!changed)
            return;
        known_ = true;
        types_.clear();
        const dxf::record_id section = database_.drawing().parts().classes;
        for (dxf::record_id id = section != dxf::no_record ? records.next(section) : section;
             id != dxf::no_record && records.type(id) == dxf::type_class; id = records.next(id))
            if (!records.gone(id) && dxf::value_of(records.text(id), 3) != "ObjectDBX Classes")
                types_.insert(dxf::value_of(records.text(id), 1));
    }

    AcDbImpDatabase& database_;
    bool known_ = false;
    std::size_t read_ = 0; // of the journal of records
    std::unordered_set<std::string_view> types_;
};

bool is_of_application(const AcDbImpDatabase& database, dxf::record_id record) {
    return database.part<application_types>().contains(database.records().type_name(record));
}

} // namespace

AcRxClass* class_of(const AcDbImpDatabase& database, dxf::record_id record) {
    const dxf::record_table& all = database.records();
    const std::string_view type = all.type_name(record);
    switch (all.kind(record)) {
    case dxf::record_kind::table:
    case dxf::record_kind::implied:
        if (all.type(record) == dxf::type_block_record)
            return AcDbBlockTableRecord::desc();
        return class_of_table(database.names().kind_of_table(record));
    case dxf::record_kind::entry:
        return class_of_entry(type);
    case dxf::record_kind::block:
        // Before R13 there are no block records: a block is its own.
        return database.drawing().table("BLOCK_RECORD") == dxf::no_record ? AcDbBlockTableRecord::desc()
                                                                          : AcDbBlockBegin::desc();
    case dxf::record_kind::block_end:
        return AcDbBlockEnd::desc();
    case dxf::record_kind::entity:
    case dxf::record_kind::part: {
        AcRxClass* const known = class_of_entity(all, record);
        return known == AcDbEntity::desc() && is_of_application(database, record) ? AcDbProxyEntity::desc()
                                                                                  : known;
    }
    case dxf::record_kind::object:
        if (all.type(record) == dxf::type_dictionary || type == "ACDBDICTIONARYWDFLT")
            return AcDbDictionary::desc();
        if (all.type(record) == dxf::type_layout)
            return AcDbLayout::desc();
        if (all.type(record) == dxf::type_xrecord)
            return AcDbXrecord::desc();
        if (AcRxClass* const type_of_application = application_class(type, false))
            return type_of_application;
        return is_of_application(database, record) ? AcDbProxyObject::desc() : AcDbObject::desc();
    case dxf::record_kind::structure:
    case dxf::record_kind::header:
        break;
    }
    return nullptr;
}

AcRxClass* class_of_unread(const AcDbImpDatabase& database, dxf::record_id record) {
    return database.records().kind(record) == dxf::record_kind::object ? AcDbProxyObject::desc()
                                                                       : AcDbProxyEntity::desc();
}

} // namespace db
