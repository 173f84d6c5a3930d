// The options of -LAYER that set a property of layers. Each asks for the value, then for a list of layers.
#pragma once

namespace ed::layer_options {

// False when the user ended the command.
bool color();
bool linetype();
bool lineweight();
bool transparency();
bool material();
bool plot();
bool description();

} // namespace ed::layer_options
