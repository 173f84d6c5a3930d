#include "host/dwg/object_writer.h"

#include <algorithm>

namespace dwg {

namespace {

struct fixed_name {
    int number;
    std::string_view dxf, cpp;
};
constexpr fixed_name fixed_names[] = {{37, "REGION", "AcDbRegion"},
                                      {38, "3DSOLID", "AcDb3dSolid"},
                                      {39, "BODY", "AcDbBody"},
                                      {43, "OLEFRAME", "AcDbOleFrame"},
                                      {74, "OLE2FRAME", "AcDbOle2Frame"},
                                      {76, "LONG_TRANSACTION", "AcDbLongTransaction"},
                                      {81, "VBA_PROJECT", "AcDbVbaProject"}};

} // namespace

std::string_view class_without_row(std::string_view kind) {
    for (const fixed_name& one : fixed_names)
        if (one.dxf == kind)
            return one.cpp;
    return kind;
}

bool object_writer::reopen(const entry& of, bool& known) {
    known = false;
    if (!object.open(of.address, of.handle, false))
        return false;
    known = object.read_fields();
    if (!known)
        object.open(of.address, of.handle, false);
    return true;
}

std::string object_writer::kind_of_object() const {
    if (object.of_class != nullptr)
        return object.of_class->dxf_name;
    if (object.type != nullptr)
        return std::string(object.type->row->record);
    for (const fixed_name& one : fixed_names)
        if (one.number == object.number)
            return std::string(one.dxf);
    if (object.is_proxy())
        return "proxy of an unknown class";
    return "type " + std::to_string(object.number);
}

void object_writer::proxy() {
    std::string kind = kind_of_object();
    ++proxies[kind];
    const std::size_t at = out_.size();
    write.proxy(object, object.data.at(), object.of_class != nullptr ? object.of_class->number : 0);
    if (object.of_class != nullptr || object.is_proxy())
        return;
    constexpr std::string_view class_number = " 91\r\n";
    classless.push_back({out_.find(class_number, at) + class_number.size(), std::move(kind)});
}

void object_writer::end_record() {
    object.read_extended_data();
    write.extended_data(object.extended);
}

void object_writer::block_end(const block& of, bool is_end) {
    bool is_read = false;
    entry* const at = index_.find(is_end ? of.end : of.begin);
    const bool is_there = at != nullptr && !at->is_damaged;
    if (!is_there || !reopen(*at, is_read)) {
        write.text(0, is_end ? "ENDBLK" : "BLOCK"); // its handle is lost
        write.text(100, "AcDbEntity");
        write.text(8, "0");
    } else {
        write.begin(is_end ? "ENDBLK" : "BLOCK", object, of.handle);
        write.entity(object, of.is_paper, {});
    }
    if (is_end) {
        write.text(100, "AcDbBlockEnd");
    } else {
        const std::string_view name = write.name_of(of.handle);
        write.text(100, "AcDbBlockBegin");
        write.text(2, name);
        write.integer(70, of.flags);
        for (int axis = 0; axis < 3; ++axis)
            write.real(10 * (axis + 1), of.base[axis]);
        write.text(3, name);
        write.text(1, of.path);
        if (!of.description.empty())
            write.text(4, of.description);
    }
    if (is_there)
        end_record();
}

void object_writer::entity(entry& of, bool in_paper_space) {
    bool is_read = false;
    if (!reopen(of, is_read))
        return;
    std::string graphics;
    if (is_read && object.of_class != nullptr && object.common.graphics_size != 0) {
        bit_reader from(source_.objects, object.common.graphics_at,
                        object.common.graphics_at + object.common.graphics_size * 8);
        graphics = take_bytes(from, object.common.graphics_size);
    }
    write.begin(is_read ? of.type->row->record : "ACAD_PROXY_ENTITY", object, index_.owner_of(of));
    write.entity(object, in_paper_space, graphics);
    if (!is_read) {
        proxy();
        end_record();
        return;
    }
    if (of.number == type_vertex_2d)
        if (value* point = object.fields.find(10))
            point->z = point->z == 0 ? elevation_ : point->z;
    const double elevation = of.number == type_polyline_2d ? object.fields.find(10)->z : 0;
    write.fields(object, of.type->order);
    end_record();
    constexpr int deepest = 8; // what belongs to an entity has nothing of its own, if the file is sound
    if (!of.has_children || depth_ == deepest)
        return;
    ++depth_;
    const std::vector<std::uint64_t> listed = object.owned;
    elevation_ = elevation;
    for (entry* const one : index_.members(of.handle, listed, source_.version))
        entity(*one, in_paper_space);
    for (entry* const one : index_.children_of(of.handle))
        if (one->number == type_seqend)
            entity(*one, in_paper_space);
    --depth_;
}

} // namespace dwg
