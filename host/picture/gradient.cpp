#include "host/picture/gradient.h"

#include "base/case_fold.h"
#include "host/db/core/imp_object.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace picture {

namespace {

constexpr std::size_t most_colors = 16;

// The colours that a hatch names: an index or a true colour for each.
std::vector<AcCmEntityColor> colors_of(const AcDbHatch& hatch) {
    std::vector<AcCmEntityColor> colors;
    bool in_gradient = false; // the same codes say other things before
    for (const dxf::group& group : hatch.imp().groups().groups()) {
        constexpr int first_of_programs = 1000;
        if (group.code >= first_of_programs)
            break;
        in_gradient = in_gradient || group.code == 453;
        const auto number = [&] { return dxf::leading_integer(group.value).value_or(0); };
        if (!in_gradient)
            continue;
        if (group.code == 463 && colors.size() < most_colors)
            colors.emplace_back();
        if (colors.empty())
            continue;
        if (group.code == 63)
            colors.back().setColorIndex(
                static_cast<Adesk::UInt16>(std::clamp<std::int64_t>(number(), 0, 255)));
        if (group.code == 421)
            colors.back().setRGB(static_cast<Adesk::UInt8>(number() >> 16),
                                 static_cast<Adesk::UInt8>(number() >> 8),
                                 static_cast<Adesk::UInt8>(number()));
    }
    return colors;
}

// A shade of one colour: 0 black, 0.5 the colour itself, 1 white.
AcCmEntityColor shade(const AcCmEntityColor& color, double tint) {
    const auto part = [&](int value) {
        constexpr double white = 255.0;
        const double shaded = tint < 0.5 ? value * tint * 2.0 : value + (white - value) * (tint * 2.0 - 1.0);
        return static_cast<Adesk::UInt8>(std::clamp(std::lround(shaded), 0L, 255L));
    };
    AcCmEntityColor made;
    made.setRGB(part(color.red()), part(color.green()), part(color.blue()));
    return made;
}

sys::ink between(const sys::ink& a, const sys::ink& b) {
    const auto half = [](unsigned char x, unsigned char y) {
        return static_cast<unsigned char>((x + y) / 2);
    };
    return {half(a.red, b.red), half(a.green, b.green), half(a.blue, b.blue), a.opacity};
}

} // namespace

std::optional<sys::shading> gradient_of(const AcDbHatch& hatch, const AcGeMatrix3d& to_world,
                                        std::span<const std::vector<AcGePoint3d>> rims,
                                        const sheet_view& view,
                                        const std::function<sys::ink(const AcCmEntityColor&)>& ink_of) {
    if (!hatch.isGradient())
        return std::nullopt;
    std::vector<AcCmEntityColor> colors = colors_of(hatch);
    if (hatch.getGradientOneColorMode() && !colors.empty())
        colors = {colors.front(), shade(colors.front(), hatch.getShadeTintValue())};
    if (colors.size() < 2)
        return std::nullopt;
    // The box around the rims, turned as the gradient is.
    const AcGeMatrix3d plane = to_world * AcGeMatrix3d::planeToWorld(hatch.normal()) *
                               AcGeMatrix3d::translation({0.0, 0.0, hatch.elevation()}) *
                               AcGeMatrix3d::rotation(hatch.gradientAngle(), AcGeVector3d::kZAxis);
    AcGeMatrix3d back;
    if (!plane.inverse(back))
        return std::nullopt;
    AcGePoint2d least(1e300, 1e300);
    AcGePoint2d most(-1e300, -1e300);
    for (const std::vector<AcGePoint3d>& rim : rims)
        for (const AcGePoint3d& point : rim) {
            const AcGePoint3d there = back * point;
            least = {std::min(least.x, there.x), std::min(least.y, there.y)};
            most = {std::max(most.x, there.x), std::max(most.y, there.y)};
        }
    const double width = most.x - least.x;
    const double height = most.y - least.y;
    if (!(width > 0.0 || height > 0.0) || !std::isfinite(width) || !std::isfinite(height))
        return std::nullopt;
    const auto on_sheet = [&](double x, double y) {
        return view.at(plane * AcGePoint3d(least.x + width * x, least.y + height * y, 0.0));
    };

    std::wstring name = base::folded(hatch.gradientName());
    const bool inverse = name.starts_with(L"inv");
    if (inverse)
        name.erase(0, 3);
    sys::ink dark = ink_of(colors[0]);
    sys::ink light = ink_of(colors[1]);
    if (inverse)
        std::swap(dark, light);
    const double shift = std::clamp(static_cast<double>(hatch.gradientShift()), 0.0, 1.0) / 4.0;
    sys::shading made;
    made.from = on_sheet(0.0, 0.5);
    made.to = on_sheet(1.0, 0.5);
    if (name == L"cylinder") {
        made.stops = {{0.0, dark}, {0.5 - shift, light}, {1.0, dark}};
    } else if (name == L"spherical" || name == L"hemispherical" || name == L"curved") {
        const double middle_y = name == L"spherical" ? 0.5 : 0.0;
        const double reach = name == L"spherical" ? 0.5 : name == L"curved" ? 1.5 : 1.0;
        made.round = true;
        made.from = on_sheet(0.5 - shift, middle_y + shift);
        const double radius = std::max(width, height) * reach * view.scale();
        made.to = {made.from.x + radius, made.from.y};
        made.stops = {{0.0, light}, {1.0, dark}};
    } else if (shift > 0.0) { // linear, and what is not known
        made.stops = {{0.0, dark}, {0.5 - shift, between(dark, light)}, {1.0, light}};
    } else {
        made.stops = {{0.0, dark}, {1.0, light}};
    }
    return made;
}

} // namespace picture
