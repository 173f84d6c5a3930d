#include "host/ed/coordinates.h"

#include "acedads.h"
#include "geassign.h"
#include "host/ed/system_variables.h"
#include "host/ed/unit_text.h"

#include <array>
#include <cmath>
#include <vector>

namespace ed {

namespace {

// The parts of a text between the separators.
std::vector<std::wstring_view> parts_of(std::wstring_view text, wchar_t separator) {
    std::vector<std::wstring_view> parts;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find(separator, at), text.size());
        parts.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    return parts;
}

// "x,y[,z]". A z that is left out is `z`.
std::optional<AcGePoint3d> cartesian(std::wstring_view text, double z) {
    const auto parts = parts_of(text, L',');
    if (parts.size() < 2 || parts.size() > 3)
        return std::nullopt;
    std::array<double, 3> values = {0.0, 0.0, z};
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const auto value = read_length(parts[i]);
        if (!value)
            return std::nullopt;
        values[i] = *value;
    }
    return AcGePoint3d(values[0], values[1], values[2]);
}

// "d<a", "d<a,z", "d<a<b": with a height, or an angle out of the plane.
std::optional<AcGePoint3d> polar(std::wstring_view text, double z) {
    const auto parts = parts_of(text, L'<');
    if (parts.size() < 2 || parts.size() > 3)
        return std::nullopt;
    const std::size_t comma = parts.back().find(L',');
    std::wstring_view last = parts.back().substr(0, comma);
    const auto distance = read_length(parts[0]);
    const auto direction = read_direction(parts.size() == 2 ? last : parts[1]);
    if (!distance || !direction)
        return std::nullopt;
    double flat = *distance;
    if (comma != parts.back().npos) {
        const auto height = read_length(parts.back().substr(comma + 1));
        if (!height || parts.size() == 3)
            return std::nullopt;
        z = *height;
    } else if (parts.size() == 3) {
        const auto out = parse_angle(last, static_cast<angle_form>(variable<int>(L"AUNITS")));
        if (!out)
            return std::nullopt;
        flat = *distance * std::cos(out->radians);
        z = *distance * std::sin(out->radians);
    }
    return AcGePoint3d(flat * std::cos(*direction), flat * std::sin(*direction), z);
}

} // namespace

AcGeMatrix3d user_to_world() {
    const AcGePoint3d origin = variable<AcGePoint3d>(L"UCSORG");
    const AcGeVector3d x = variable<AcGePoint3d>(L"UCSXDIR").asVector();
    const AcGeVector3d y = variable<AcGePoint3d>(L"UCSYDIR").asVector();
    const AcGeVector3d z = x.crossProduct(y);
    AcGeMatrix3d matrix;
    if (!z.isZeroLength()) // a drawing may hold anything
        matrix.setCoordSystem(origin, x, y, z);
    return matrix;
}

AcGePoint3d to_world(const AcGePoint3d& user) {
    return user_to_world() * user;
}

AcGePoint3d to_user(const AcGePoint3d& world) {
    return user_to_world().inverse() * world;
}

std::optional<double> read_length(std::wstring_view text) {
    return parse_length(text, static_cast<length_form>(variable<int>(L"LUNITS")));
}

std::optional<double> read_direction(std::wstring_view text) {
    const auto angle = parse_angle(text, static_cast<angle_form>(variable<int>(L"AUNITS")));
    if (!angle)
        return std::nullopt;
    if (angle->direction)
        return angle->radians;
    const double turned = variable<int>(L"ANGDIR") != 0 ? -angle->radians : angle->radians;
    return within_turn(turned + variable<double>(L"ANGBASE"));
}

std::optional<AcGePoint3d> read_point(std::wstring_view text) {
    const bool relative = text.starts_with(L'@');
    if (relative)
        text.remove_prefix(1);
    const AcGePoint3d last = relative ? variable<AcGePoint3d>(L"LASTPOINT") : AcGePoint3d();
    if (relative && text.empty())
        return last;
    const bool world = text.starts_with(L'*');
    if (world ||
        text.starts_with(L'#')) // "#": not from the last point, which no prompt here takes for granted
        text.remove_prefix(1);
    const double elevation = relative || world ? 0.0 : variable<double>(L"ELEVATION");
    const auto read = text.find(L'<') != text.npos ? polar(text, elevation) : cartesian(text, elevation);
    if (!read)
        return std::nullopt;
    if (!relative)
        return world ? to_user(*read) : *read;
    if (!world)
        return last + read->asVector();
    return last + user_to_world().inverse() * read->asVector();
}

std::optional<AcGePoint3d> take_point(std::wstring_view text) {
    const auto point = read_point(text);
    if (point)
        put_variable(L"LASTPOINT", *point);
    return point;
}

} // namespace ed
