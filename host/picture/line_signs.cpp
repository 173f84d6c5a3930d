#include "host/picture/line_signs.h"

#include "host/gi/canvas.h"

#include <cmath>

namespace picture {

void draw_sign(const placed_sign& placed, double scale, const sheet_view& view, text_painter& texts,
               const sys::pen& pen) {
    const line_sign& sign = *placed.sign;
    const AcGeVector3d& along = placed.along;
    const AcGeVector3d across = AcGeVector3d::kZAxis.crossProduct(along);
    const AcGeVector3d right = sign.oriented ? AcGeVector3d::kXAxis : along;
    const AcGeVector3d x =
        right * std::cos(sign.angle) + AcGeVector3d::kZAxis.crossProduct(right) * std::sin(sign.angle);
    const double height = sign.height * scale;
    gi::text_line letters;
    letters.position = placed.place + along * (sign.x * scale) + across * (sign.y * scale);
    letters.x = x * (height * sign.width_factor);
    letters.y = AcGeVector3d::kZAxis.crossProduct(x) * height;
    if (sign.shape_number != 0) {
        const gi::shape* const shape =
            sign.shapes != nullptr ? sign.shapes->find(static_cast<unsigned>(sign.shape_number)) : nullptr;
        if (shape != nullptr)
            texts.draw_shape(*shape, letters, view, pen);
        else
            texts.lacks_shapes(sign.shape_file);
        return;
    }
    letters.text = sign.text;
    letters.written_with = sign.font.get();
    if (sign.font != nullptr)
        letters.length = gi::measure_text(sign.text, *sign.font, 1.0).width;
    texts.draw(letters, view, pen);
}

} // namespace picture
