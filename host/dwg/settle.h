// Groups that are computed of several fields.
#pragma once

#include "host/dwg/object_reader.h"

namespace dwg {

void settle_text(object_reader& object);
void settle_attribute(object_reader& object);
void settle_vertex(object_reader& object);
void settle_face_record(object_reader& object);
void settle_polyline(object_reader& object);
void settle_polyline_3d(object_reader& object);
void settle_dimension(object_reader& object);
void settle_flat(object_reader& object);
void settle_mtext(object_reader& object);
void settle_mline(object_reader& object);
void settle_hatch(object_reader& object);
void settle_clip(object_reader& object);
void settle_multileader(object_reader& object);
void settle_layer(object_reader& object);
void settle_style(object_reader& object);
void settle_view(object_reader& object);
void settle_view_port(object_reader& object);
void settle_dictionary(object_reader& object);
void settle_visual_style(object_reader& object);
void settle_mline_style(object_reader& object);
void settle_layout(object_reader& object);
void settle_image_reactor(object_reader& object);

} // namespace dwg
