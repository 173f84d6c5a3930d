#include "host/db/tables/text_styles.h"

#include "acgiutil.h"
#include "acutmem.h"
#include "base/case_fold.h"
#include "dbsymtb.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/shape_files.h"
#include "host/dxf/record_header.h"

namespace db {

namespace {

AcGiTextStyle made_from(const AcDbTextStyleTableRecord& record) {
    AcString file;
    AcString big_font;
    AcString typeface;
    bool bold = false;
    bool italic = false;
    Charset charset = kAnsiCharset;
    Autodesk::AutoCAD::PAL::FontUtils::FontPitch pitch;
    Autodesk::AutoCAD::PAL::FontUtils::FontFamily family;
    record.fileName(file);
    record.bigFontFileName(big_font);
    record.font(typeface, bold, italic, charset, pitch, family);
    AcGiTextStyle style(file, big_font, record.textSize(), record.xScale(), record.obliquingAngle(), 1.0,
                        (record.flagBits() & 2) != 0, (record.flagBits() & 4) != 0, record.isVertical(),
                        false, false);
    if (!typeface.isEmpty())
        style.setFont(typeface, bold, italic, charset, pitch, family);
    return style;
}

} // namespace

const AcGiTextStyle& text_styles::of(std::string_view name) {
    follow_changes();
    name = dxf::trimmed(name);
    if (name.empty())
        name = "Standard";
    if (const auto at = known_.find(name); at != known_.end())
        return at->second;
    const dxf::record_id entry =
        database_.names().find(table_kind::text_style, database_.drawing().codec().decode(name));
    const std::unique_ptr<AcDbObject> view =
        entry != dxf::no_record ? database_.objects().view(entry) : std::unique_ptr<AcDbObject>();
    const auto* const record = AcDbTextStyleTableRecord::cast(view.get());
    AcGiTextStyle style = record != nullptr ? made_from(*record) : AcGiTextStyle();
    complete_fonts(&database_, style);
    return known_.emplace(name, std::move(style)).first->second;
}

void text_styles::follow_changes() {
    const dxf::record_table& records = database_.records();
    for (; read_ < records.journal().size(); ++read_)
        if (records.type(records.journal()[read_]) == dxf::type_style)
            known_.clear();
}

const AcGiTextStyle& text_style(AcDbImpDatabase* database, std::string_view name) {
    static const AcGiTextStyle plain;
    return database != nullptr ? database->part<db::text_styles>().of(name) : plain;
}

AcDbObjectId style_of(const AcDbImpObject& object, const dxf::group_place& place) {
    if (object.database == nullptr)
        return AcDbObjectId::kNull;
    const std::string_view name = dxf::trimmed(object.groups().text(place, 7).value_or(""));
    return object.database->id(object.database->names().find(
        table_kind::text_style, name.empty() ? L"Standard" : object.decode(name)));
}

Acad::ErrorStatus set_style(AcDbImpObject& object, const dxf::group_place& place, AcDbObjectId style) {
    dxf::record_id record = dxf::no_record;
    const AcDbImpDatabase* const database = AcDbImpDatabase::find(style, record);
    if (database == nullptr || database->records().type(record) != dxf::type_style)
        return Acad::eWrongObjectType;
    if (object.database != nullptr && object.database != database)
        return Acad::eWrongDatabase;
    const std::wstring name = database->names().name_of(record);
    const std::string_view before = dxf::trimmed(object.groups().text(place, 7).value_or("Standard"));
    if (!base::equal_no_case(object.decode(before), name))
        object.edit().set_text(place, 7, object.encode(name));
    return Acad::eOk;
}

} // namespace db

Acad::ErrorStatus fromAcDbTextStyle(AcGiTextStyle& textStyle, const AcDbObjectId& styleId) {
    if (styleId.isNull())
        return Acad::eNullObjectId;
    dxf::record_id record = dxf::no_record;
    AcDbImpDatabase* const database = AcDbImpDatabase::find(styleId, record);
    if (database == nullptr)
        return Acad::eNoDatabase;
    const dxf::record_table& records = database->records();
    if (records.type(record) != dxf::type_style)
        return Acad::eWrongObjectType;
    if (records.gone(record))
        return Acad::eWasErased;
    textStyle = database->part<db::text_styles>().of(dxf::value_of(records.text(record), 2));
    return Acad::eOk;
}
