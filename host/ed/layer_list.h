// The layers of the current drawing that options of -LAYER work on.
#pragma once

#include "dbsymtb.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace ed {

std::wstring current_layer_name();
std::vector<AcDbObjectId> all_layers();
std::wstring layer_name_of(AcDbObjectId id);
std::vector<std::wstring> layer_names();

// The parts of a list by commas.
std::vector<std::wstring> split_list(std::wstring_view list);
// The layers that a list names: a layer of exactly that name, else those that its patterns fit.
std::vector<AcDbObjectId> layers_of(const std::wstring& list);

// Asks for a list of layers, by names and patterns, and does something to each. Enter means the current layer
// when `has_default` is set, else nothing. False when the user ended it.
bool for_layers(const std::wstring& prompt, bool has_default,
                const std::function<void(AcDbLayerTableRecord&)>& change);

} // namespace ed
