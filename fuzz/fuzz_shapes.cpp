// Any bytes as a file of shapes: reading and drawing end soon and do no harm, whatever shapes draw each
// other.
#include "host/gi/shape_font.h"

#include <cmath>
#include <cstdlib>

namespace {

void insist(bool condition) {
    if (!condition)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    // The first byte chooses a head, so that what follows is reached soon.
    constexpr const char* heads[] = {"shapes 1.0\r\n\x1A", "unifont 1.0\r\n\x1A", "bigfont 1.0\r\n\x1A", ""};
    if (size == 0)
        return 0;
    const std::string rest(reinterpret_cast<const char*>(data) + 1, size - 1);
    const std::string head = heads[data[0] % 4];
    const auto font = gi::shape_font::read(head.empty() ? rest : "AutoCAD-86 " + head + rest);
    if (!font) {
        insist(!font.error().empty());
        return 0;
    }
    constexpr unsigned numbers = 0x10000;
    for (unsigned number = 0; number < numbers; ++number) {
        const gi::shape* const shape = (*font)->find(number);
        if (shape == nullptr)
            continue;
        insist(shape == (*font)->find(number));
        for (const auto& stroke : shape->strokes)
            for (const AcGePoint2d& point : stroke)
                insist(point.x >= shape->least.x && point.x <= shape->most.x && point.y >= shape->least.y &&
                       point.y <= shape->most.y && std::isfinite(point.x) && std::isfinite(point.y));
    }
    static_cast<void>((*font)->number_of("a"));
    return 0;
}
