#include "host/dwg/settle.h"

#include <algorithm>
#include <cmath>

namespace dwg {

namespace {

// Gives points that stand without a third coordinate this one.
void raise_point(object_reader& object, int group, double z) {
    if (value* point = object.fields.find(group)) {
        point->type = value_type::point3;
        point->z = z;
    }
}

double elevation_of(object_reader& object) {
    const double z = object.fields.real(30);
    object.fields.drop(30);
    return z;
}

} // namespace

void settle_text(object_reader& object) {
    if (object.fields.integer(72) == 0 && object.fields.integer(73) == 0)
        object.fields.drop(11);
}

void settle_attribute(object_reader& object) {
    settle_text(object);
    if (value* vertical = object.fields.find(73))
        vertical->code = 74;
}

void settle_vertex(object_reader& object) {
    if (object.fields.integer(91) == 0)
        object.fields.drop(91);
}

void settle_face_record(object_reader& object) {
    object.fields.add_point(10, 0, 0, 0);
    object.fields.add_integer(70, 128);
}

void settle_polyline(object_reader& object) {
    object.fields.add_point(10, 0, 0, elevation_of(object));
}

void settle_polyline_3d(object_reader& object) {
    const std::int64_t curve = object.variable('c');
    object.fields.set_integer(75, curve == 1 ? 5 : curve == 2 ? 6 : 0);
    object.fields.set_integer(70, object.fields.integer(70) | 8 | (curve != 0 ? 4 : 0));
    object.fields.add_point(10, 0, 0, 0);
}

void settle_dimension(object_reader& object) {
    const double z = elevation_of(object);
    for (const int group : {11, 12})
        raise_point(object, group, z);
    if (value* arc = object.fields.find(16); arc != nullptr && arc->type == value_type::point2)
        raise_point(object, 16, z);
    // Kinds by type: ordinate, linear, aligned, three points, two lines, radius, diameter; arcs have a class.
    constexpr int kinds[] = {6, 0, 1, 5, 2, 4, 3};
    constexpr int first = 20;
    const int kind = object.of_class == nullptr                    ? kinds[object.number - first]
                     : object.type->row->record == "ARC_DIMENSION" ? 5
                                                                   : 8;
    const std::int64_t flags = object.variable('f');
    object.fields.drop(10070);
    object.fields.add_integer(70, kind + ((flags & 1) != 0 ? 0 : 128) + ((flags & 2) != 0 ? 32 : 0) +
                                      (kind == 6 && (object.variable('g') & 1) != 0 ? 64 : 0));
}

void settle_flat(object_reader& object) {
    const double z = elevation_of(object);
    for (const int group : {10, 11, 12, 13})
        raise_point(object, group, z);
}

// The text is written in pieces of at most 250 characters, of which the last has group 1.
void settle_mtext(object_reader& object) {
    constexpr std::size_t piece = 250;
    value* held = object.fields.find(1);
    if (held == nullptr || held->size <= piece)
        return;
    const std::string text(object.fields.stored(*held));
    const bool utf8 = object.since(r2007);
    object.fields.drop(1);
    std::size_t begin = 0;
    while (begin < text.size()) {
        // Characters of several bytes stay whole.
        std::size_t end = begin;
        for (std::size_t count = 0; end < text.size() && count < piece; ++count) {
            const auto lead = static_cast<unsigned char>(text[end]);
            std::size_t size = 1;
            if (utf8)
                size = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
            else if (lead >= 0x81 && object.source.two_byte_text)
                size = 2;
            if (!utf8 && count != 0 && count + size > piece)
                break;
            count += utf8 ? 0 : size - 1;
            end = std::min(end + size, text.size());
        }
        object.fields.add_text(end == text.size() ? 1 : 3, std::string_view(text).substr(begin, end - begin));
        begin = end;
    }
}

void settle_mline(object_reader& object) {
    object.fields.set_integer(71, object.variable('f') == 3 ? 3 : 1);
    if (const value* style = object.fields.find(340))
        object.fields.add_name(2, style->number);
}

void settle_hatch(object_reader& object) {
    object.fields.add_point(10, 0, 0, elevation_of(object));
    constexpr std::uint8_t gradient = 2;
    if (object.variable('h') == 0)
        for (value& one : object.fields.all())
            if (one.segment == gradient)
                one.type = value_type::nothing;
}

void settle_clip(object_reader& object) {
    constexpr int rectangle = 1;
    if (object.variable('k') == rectangle) {
        object.fields.add_integer(91, 2);
        return;
    }
    // A polygon is written closed.
    value* count = object.fields.find(91);
    const value* first = object.fields.find(14);
    if (count == nullptr || first == nullptr)
        return;
    const value closing = *first;
    ++count->number;
    object.fields.add_point(14, closing.x, closing.y);
}

void settle_multileader(object_reader& object) {
    value* second = object.fields.find(10272);
    value* third = object.fields.find(10273);
    if (second != nullptr && third != nullptr) {
        std::swap(second->number, third->number);
        second->code = 273;
        third->code = 272;
    }
}

void settle_layer(object_reader& object) {
    const std::int64_t bits = object.variable('f');
    std::int64_t flags = object.fields.integer(70);
    flags |= (bits & 1) != 0 ? 1 : 0;
    flags |= (bits & 4) != 0 ? 2 : 0;
    flags |= (bits & 8) != 0 ? 4 : 0;
    object.fields.set_integer(70, flags);
    if ((bits & 2) != 0)
        object.fields.set_integer(62, -std::abs(object.fields.integer(62)));
    object.fields.add_integer(290, (bits & 0x10) != 0 ? 1 : 0);
    object.fields.add_integer(370, line_weight(static_cast<unsigned>(bits >> 5 & 0x1F)));
}

void settle_style(object_reader& object) {
    const std::int64_t kind = (object.variable('s') != 0 ? 1 : 0) | (object.variable('v') != 0 ? 4 : 0);
    object.fields.set_integer(70, object.fields.integer(70) | kind);
}

void settle_view(object_reader& object) {
    object.fields.set_integer(70, object.fields.integer(70) | object.variable('p'));
}

void settle_view_port(object_reader& object) {
    const double height = object.fields.real(40);
    if (value* width = object.fields.find(41); width != nullptr && height != 0)
        width->x /= height;
    object.fields.set_integer(71, object.fields.integer(71) | (object.variable('f') != 0 ? 8 : 0));
    object.fields.add_integer(74, object.variable('i') | object.variable('j') << 1);
}

void settle_dictionary(object_reader& object) {
    const bool owns = object.variable('h') != 0;
    for (value& one : object.fields.all())
        if (one.code == 350 && owns)
            one.code = 360;
}

// Up to 2007 the brightness is a whole number, which DXF has as a real one.
void settle_visual_style(object_reader& object) {
    if (value* brightness = object.fields.find(44);
        brightness != nullptr && brightness->type == value_type::integer) {
        brightness->x = static_cast<double>(brightness->integer());
        brightness->type = value_type::real;
    }
}

void settle_mline_style(object_reader& object) {
    const std::int64_t bits = object.fields.integer(70);
    std::int64_t flags = bits & ~std::int64_t(1 | 2 | 32 | 64 | 512 | 1024);
    constexpr std::pair<int, int> exchanged[] = {{1, 2},   {2, 1},      {32, 64},
                                                 {64, 32}, {512, 1024}, {1024, 512}};
    for (const auto& [from, to] : exchanged)
        flags |= (bits & from) != 0 ? to : 0;
    object.fields.set_integer(70, flags);
}

void settle_layout(object_reader& object) {
    // The limits are written with two coordinates, all other points with three; nothing else is to do but the
    // name of the plotted view, which is empty when there is none.
    if (value* view = object.fields.find(6);
        view != nullptr && view->type == value_type::name && view->number == 0) {
        view->type = value_type::text;
        view->size = 0;
    }
}

void settle_image_reactor(object_reader& object) {
    object.fields.add_handle(330, object.common.owner);
}

} // namespace dwg
