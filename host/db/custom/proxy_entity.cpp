#include "acgi.h"
#include "dbproxy.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/custom/proxy_graphics.h"
#include "host/dxf/record_header.h"

#include <optional>

ACRX_DXF_DEFINE_MEMBERS(AcDbProxyObject, AcDbObject, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0,
                        ACAD_PROXY_OBJECT, "ObjectDBX Classes")
ACRX_DXF_DEFINE_MEMBERS(AcDbProxyEntity, AcDbEntity, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0,
                        ACAD_PROXY_ENTITY, "ObjectDBX Classes")

namespace {

constexpr int name_group = 1; // of a CLASS record: the name in drawing files
constexpr int class_group = 2;
constexpr int application_group = 3;

// The drawing's CLASS record for an object: of a proxy the one that its number names, of any other object the
// one of its type.
std::optional<dxf::group_list> class_record(const AcDbImpObject& imp, std::string_view marker) {
    if (imp.database == nullptr)
        return std::nullopt;
    const dxf::record_table& records = imp.database->records();
    const dxf::record_id section = imp.database->drawing().parts().classes;
    if (section == dxf::no_record)
        return std::nullopt;
    const std::string_view type = records.type_name(imp.record);
    const bool is_proxy = type == "ACAD_PROXY_ENTITY" || type == "ACAD_PROXY_OBJECT";
    // Numbers begin at 500. Files up to 2017 hold them in group 91, later ones in group 90.
    constexpr std::int64_t first_number = 500;
    const dxf::group_place place{marker};
    std::int64_t number = imp.groups().integer(place, 91).value_or(0);
    if (number < first_number)
        number = imp.groups().integer(place, 90).value_or(0);
    number -= first_number;
    for (dxf::record_id id = records.next(section);
         id != dxf::no_record && records.type(id) == dxf::type_class; id = records.next(id), --number)
        if (is_proxy ? number == 0 : dxf::value_of(records.text(id), name_group) == type)
            return dxf::group_list(records.text(id));
    return std::nullopt;
}

std::wstring class_text(const AcDbImpObject& imp, std::string_view marker, int code) {
    const auto record = class_record(imp, marker);
    return record ? imp.decode(dxf::trimmed(record->text({"*"}, code).value_or(""))) : std::wstring();
}

// Everything is allowed with what the drawing has no class for.
int class_flags(const AcDbImpObject& imp, std::string_view marker, int all) {
    const auto record = class_record(imp, marker);
    return record ? static_cast<int>(record->integer({"*"}, 90).value_or(0)) & all : all;
}

constexpr std::string_view object_marker = "AcDbProxyObject";
constexpr std::string_view entity_marker = "AcDbProxyEntity";

} // namespace

AcDbProxyObject::AcDbProxyObject() = default;
AcDbProxyObject::~AcDbProxyObject() = default;

int AcDbProxyObject::proxyFlags() const {
    assertReadEnabled();
    return class_flags(imp(), object_marker, kAllAllowedBits | kMergeReplace | kMergeMangleName);
}

const ACHAR* AcDbProxyObject::originalClassName() const {
    assertReadEnabled();
    return m_names[0] = class_text(imp(), object_marker, class_group).c_str();
}

const ACHAR* AcDbProxyObject::originalDxfName() const {
    assertReadEnabled();
    return m_names[1] = class_text(imp(), object_marker, name_group).c_str();
}

const ACHAR* AcDbProxyObject::applicationDescription() const {
    assertReadEnabled();
    return m_names[2] = class_text(imp(), object_marker, application_group).c_str();
}

Acad::ErrorStatus AcDbProxyObject::subErase(bool /*erasing*/) {
    return (proxyFlags() & kEraseAllowed) != 0 ? Acad::eOk : Acad::eNotAllowedForThisProxy;
}

AcDbProxyEntity::AcDbProxyEntity() = default;
AcDbProxyEntity::~AcDbProxyEntity() = default;

int AcDbProxyEntity::proxyFlags() const {
    assertReadEnabled();
    return class_flags(imp(), entity_marker, kAllAllowedBits);
}

const ACHAR* AcDbProxyEntity::originalClassName() const {
    assertReadEnabled();
    return m_names[0] = class_text(imp(), entity_marker, class_group).c_str();
}

const ACHAR* AcDbProxyEntity::originalDxfName() const {
    assertReadEnabled();
    return m_names[1] = class_text(imp(), entity_marker, name_group).c_str();
}

const ACHAR* AcDbProxyEntity::applicationDescription() const {
    assertReadEnabled();
    return m_names[2] = class_text(imp(), entity_marker, application_group).c_str();
}

AcDbProxyEntity::GraphicsMetafileType AcDbProxyEntity::graphicsMetafileType() const {
    assertReadEnabled();
    return static_cast<GraphicsMetafileType>(db::kind_of_proxy_graphics(db::read_proxy_graphics(imp())));
}

Acad::ErrorStatus AcDbProxyEntity::subErase(bool /*erasing*/) {
    return (proxyFlags() & kEraseAllowed) != 0 ? Acad::eOk : Acad::eNotAllowedForThisProxy;
}

Adesk::Boolean AcDbProxyEntity::subWorldDraw(AcGiWorldDraw* draw) {
    db::draw_proxy_graphics(db::read_proxy_graphics(imp()), imp(), *draw);
    return true;
}

Acad::ErrorStatus AcDbProxyEntity::subTransformBy(const AcGeMatrix3d& /*matrix*/) {
    return Acad::eNotAllowedForThisProxy;
}
