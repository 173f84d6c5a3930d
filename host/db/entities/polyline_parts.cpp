#include "host/db/entities/polyline_parts.h"

#include "dbents.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/part_iterator.h"
#include "host/db/creation/new_entity.h"
#include "host/dxf/group_reader.h"
#include "host/dxf/record_header.h"

#include <charconv>

namespace db {

namespace {

int whole_number(std::string_view text) {
    constexpr double most = 1e9;
    const double value = dxf::leading_real(text).value_or(0.0);
    return value > -most && value < most ? static_cast<int>(value) : 0;
}

vertex_data read_vertex(const dxf::group_list& groups) {
    vertex_data vertex;
    for (const dxf::group& group : groups.groups()) {
        constexpr int extended_data = 1000;
        if (group.code >= extended_data)
            break;
        const auto real = [&] { return dxf::leading_real(group.value).value_or(0.0); };
        const auto integer = [&] { return whole_number(group.value); };
        switch (group.code) {
        case 10:
            vertex.position.x = real();
            break;
        case 20:
            vertex.position.y = real();
            break;
        case 30:
            vertex.position.z = real();
            break;
        case 40:
            vertex.start_width = real();
            break;
        case 41:
            vertex.end_width = real();
            break;
        case 42:
            vertex.bulge = real();
            break;
        case 70:
            vertex.flags = integer();
            break;
        case 71:
        case 72:
        case 73:
        case 74:
            vertex.corners[static_cast<std::size_t>(group.code - 71)] = integer();
            break;
        default:
            break;
        }
    }
    return vertex;
}

} // namespace

std::vector<vertex_data> read_vertices(const AcDbImpObject& polyline) {
    std::vector<vertex_data> vertices;
    for (const std::unique_ptr<AcDbObject>& part : polyline.parts)
        vertices.push_back(read_vertex(part->imp().groups()));
    for (const dxf::record_id part : parts_of(polyline, "VERTEX"))
        if (!polyline.database->records().gone(part))
            vertices.push_back(read_vertex(dxf::group_list(polyline.database->records().text(part))));
    return vertices;
}

std::vector<vertex_data> drawn_vertices(const AcDbImpObject& polyline) {
    std::vector<vertex_data> all = read_vertices(polyline);
    std::vector<vertex_data> drawn;
    for (const vertex_data& vertex : all)
        if ((vertex.flags & vertex_flag::frame) == 0)
            drawn.push_back(vertex);
    return drawn.empty() ? all : drawn;
}

Acad::ErrorStatus append_vertex(AcDbEntity& polyline, AcDbEntity* vertex, AcDbObjectId& id) {
    id = AcDbObjectId::kNull;
    if (vertex == nullptr)
        return Acad::eNullObjectPointer;
    if (!polyline.isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (!vertex->isNewObject())
        return Acad::eAlreadyInDb;
    vertex->setPropertiesFrom(&polyline);
    if (polyline.imp().database != nullptr)
        return add_part(*polyline.imp().database, polyline.imp().record, *vertex, id);
    polyline.imp().parts.emplace_back(vertex);
    return Acad::eOk;
}

Acad::ErrorStatus check_vertex(const AcDbImpObject& polyline, AcDbObjectId id) {
    if (polyline.database == nullptr)
        return Acad::eNoDatabase;
    const dxf::record_table& records = polyline.database->records();
    const dxf::record_id record = polyline.database->record(id);
    if (record == dxf::no_record)
        return Acad::eNullObjectId;
    return records.type(record) == dxf::type_vertex &&
                   records.owner_handle(record) == records.handle(polyline.record)
               ? Acad::eOk
               : Acad::eInvalidInput;
}

Acad::ErrorStatus for_vertices(const AcDbImpObject& polyline,
                               const std::function<void(AcDbImpObject& vertex)>& change) {
    for (const std::unique_ptr<AcDbObject>& part : polyline.parts)
        change(part->imp());
    std::vector<AcDbEntity*> opened;
    Acad::ErrorStatus status = Acad::eOk;
    for (const dxf::record_id part : parts_of(polyline, "VERTEX")) {
        if (polyline.database->records().gone(part))
            continue;
        AcDbEntity* vertex = nullptr;
        status = acdbOpenAcDbEntity(vertex, polyline.database->id(part), AcDb::kForWrite);
        if (status != Acad::eOk)
            break;
        opened.push_back(vertex);
    }
    for (AcDbEntity* const vertex : opened) {
        if (status == Acad::eOk)
            change(vertex->imp());
        vertex->close();
    }
    return status;
}

void copy_vertices(const AcDbImpObject& from, AcDbObject* copy) {
    if (copy == nullptr)
        return;
    const auto add = [&](const AcDbObject& vertex) {
        if (AcRxObject* const made = vertex.clone())
            copy->imp().parts.emplace_back(static_cast<AcDbObject*>(made));
    };
    for (const std::unique_ptr<AcDbObject>& part : from.parts)
        add(*part);
    for (const dxf::record_id part : parts_of(from, "VERTEX"))
        if (!from.database->records().gone(part))
            add(*from.database->objects().view(part));
}

} // namespace db
