#include "acutmem.h"
#include "base/case_fold.h"
#include "dbsymtb.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/layer_facts.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/properties.h"
#include "host/db/tables/symbol_entry.h"
#include "host/dxf/record_header.h"

using db::layer_place;

ACRX_CONS_DEFINE_MEMBERS(AcDbLayerTableRecord, AcDbSymbolTableRecord, 0)

AcDbLayerTableRecord::AcDbLayerTableRecord() {
    imp().begin_new(db::new_entry_text("AcDbLayerTableRecord"));
}

namespace {

// Bits of group 70.
constexpr int frozen_bit = 1;
constexpr int viewport_default_bit = 2;
constexpr int locked_bit = 4;

void set_flag(AcDbLayerTableRecord& layer, AcDbImpObject& imp, std::int64_t bit, bool on) {
    layer.assertWriteEnabled();
    const std::int64_t flags = imp.groups().integer(layer_place, 70).value_or(0);
    imp.edit().set_integer(layer_place, 70, on ? flags | bit : flags & ~bit);
}

} // namespace

BIT_GETTER(AcDbLayerTableRecord, isFrozen, layer_place, 70, frozen_bit)

Acad::ErrorStatus AcDbLayerTableRecord::setIsFrozen(bool frozen) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (frozen && imp().database != nullptr && imp().database->layers().current() == imp().record)
        return Acad::eInvalidLayer;
    set_flag(*this, imp(), frozen_bit, frozen);
    return Acad::eOk;
}

VALUE_GETTER(AcDbLayerTableRecord, isOff,
             imp().groups().integer(layer_place, 62).value_or(AcCmColor::kACIWhite) < 0)

void AcDbLayerTableRecord::setIsOff(bool off) {
    assertWriteEnabled();
    const std::int64_t index = imp().groups().integer(layer_place, 62).value_or(AcCmColor::kACIWhite);
    if ((index < 0) != off)
        imp().edit().set_integer(layer_place, 62, index == 0 ? -AcCmColor::kACIWhite : -index);
}

BIT_GETTER(AcDbLayerTableRecord, VPDFLT, layer_place, 70, viewport_default_bit)

void AcDbLayerTableRecord::setVPDFLT(bool frozen) {
    set_flag(*this, imp(), viewport_default_bit, frozen);
}

BIT_GETTER(AcDbLayerTableRecord, isLocked, layer_place, 70, locked_bit)

void AcDbLayerTableRecord::setIsLocked(bool locked) {
    set_flag(*this, imp(), locked_bit, locked);
}

AcCmColor AcDbLayerTableRecord::color() const {
    assertReadEnabled();
    AcCmColor color = db::read_color(imp(), layer_place, AcCmColor::kACIWhite);
    if (!color.isByColor() && !color.isByACI()) // which files may say, but no layer can be
        color.setColorIndex(AcCmColor::kACIWhite);
    return color;
}

void AcDbLayerTableRecord::setColor(const AcCmColor& color) {
    assertWriteEnabled();
    const Adesk::UInt16 index = color.colorIndex();
    if (index < 1 || index > AcCmColor::kACImaximum || color == this->color())
        return;
    db::write_color(imp(), layer_place, color, isOff() ? -1 : 1);
}

AcDbObjectId AcDbLayerTableRecord::linetypeObjectId() const {
    assertReadEnabled();
    if (imp().database == nullptr)
        return AcDbObjectId::kNull;
    const std::wstring name =
        imp().decode(dxf::trimmed(imp().groups().text(layer_place, 6).value_or("Continuous")));
    return imp().database->id(imp().database->names().find(db::table_kind::linetype, name));
}

Acad::ErrorStatus AcDbLayerTableRecord::setLinetypeObjectId(AcDbObjectId id) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    dxf::record_id record = dxf::no_record;
    const AcDbImpDatabase* const database = AcDbImpDatabase::find(id, record);
    if (database == nullptr || database->records().type(record) != dxf::type_ltype)
        return Acad::eWrongObjectType;
    if (imp().database != nullptr && imp().database != database)
        return Acad::eWrongDatabase;
    const std::wstring name = database->names().name_of(record);
    if (base::equal_no_case(name, L"ByLayer") || base::equal_no_case(name, L"ByBlock"))
        return Acad::eInvalidInput;
    if (linetypeObjectId() != id)
        imp().edit().set_text(layer_place, 6, imp().encode(name));
    return Acad::eOk;
}

VALUE_GETTER(AcDbLayerTableRecord, isPlottable, imp().groups().integer(layer_place, 290).value_or(1) != 0)

Acad::ErrorStatus AcDbLayerTableRecord::setIsPlottable(bool plottable) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    AcString name;
    getName(name);
    if (plottable && base::equal_no_case(name.kwszPtr(), L"DEFPOINTS"))
        return Acad::eInvalidInput; // never plots
    if (!db::knows_line_weights(imp()))
        return Acad::eNotApplicable;
    if (isPlottable() != plottable)
        imp().edit().set_integer(layer_place, 290, plottable ? 1 : 0);
    return Acad::eOk;
}

AcDb::LineWeight AcDbLayerTableRecord::lineWeight() const {
    assertReadEnabled();
    const auto weight =
        static_cast<int>(imp().groups().integer(layer_place, 370).value_or(AcDb::kLnWtByLwDefault));
    return db::is_line_weight(weight) ? static_cast<AcDb::LineWeight>(weight) : AcDb::kLnWtByLwDefault;
}

Acad::ErrorStatus AcDbLayerTableRecord::setLineWeight(AcDb::LineWeight weight) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (!db::is_line_weight(weight) || weight == AcDb::kLnWtByLayer || weight == AcDb::kLnWtByBlock)
        return Acad::eBadLineWeightValue;
    if (!db::knows_line_weights(imp()))
        return Acad::eNotApplicable;
    if (lineWeight() != weight)
        imp().edit().set_integer(layer_place, 370, weight);
    return Acad::eOk;
}

// A layer's description is extended data: AcAecLayerStandard, a text that nobody reads, the description.

ACHAR* AcDbLayerTableRecord::description() const {
    resbuf* const data = xData(L"AcAecLayerStandard");
    const resbuf* last = data;
    int texts = 0;
    const ACHAR* found = L"";
    for (; last != nullptr; last = last->rbnext)
        if (last->restype == 1000 && ++texts == 2)
            found = last->resval.rstring;
    ACHAR* copy = nullptr;
    acutNewString(found, copy);
    acutRelRb(data);
    return copy;
}

Acad::ErrorStatus AcDbLayerTableRecord::setDescription(const ACHAR* description) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (imp().database != nullptr)
        db::register_application(*imp().database, L"AcAecLayerStandard");
    resbuf* const data = acutBuildList(1001, L"AcAecLayerStandard", 1000, L"", 1000,
                                       description != nullptr ? description : L"", 0);
    const Acad::ErrorStatus status = setXData(data);
    acutRelRb(data);
    return status;
}

Acad::ErrorStatus AcDbLayerTableRecord::subErase(bool erasing) {
    const bool stays = imp().database->names().name_of(imp().record) == L"0" ||
                       imp().database->layers().current() == imp().record;
    return erasing && stays ? Acad::eCannotBeErasedByCaller : AcDbSymbolTableRecord::subErase(erasing);
}
