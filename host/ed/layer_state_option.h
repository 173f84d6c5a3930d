// The option stAte of -LAYER: states of all layers that the drawing keeps by name.
#pragma once

namespace ed {

// False when the user ended it.
bool layer_state_option();

} // namespace ed
