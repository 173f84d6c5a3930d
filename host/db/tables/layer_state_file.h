// A layer state outside of a drawing: layers and linetypes by their names, as files (.las) hold it, and as it
// goes from one drawing to another.
#pragma once

#include "base/result.h"
#include "host/db/tables/layer_state.h"

#include <filesystem>
#include <string>
#include <vector>

namespace db {

struct named_look {
    std::wstring layer;
    std::wstring linetype;
    layer_look look; // without ids
};

struct named_state {
    std::wstring name;
    layer_state head; // without looks
    std::vector<named_look> looks;
};

// eKeyNotFound.
Acad::ErrorStatus name_layer_state(AcDbImpDatabase& drawing, const std::wstring& name, named_state& state);

// Puts a state into a drawing, which gets the layers that it lacks, those of references left out; a linetype
// that can not be loaded becomes Continuous. eDuplicateKey where there is a state of the name, what
// write_layer_state answers.
Acad::ErrorStatus take_layer_state(AcDbImpDatabase& drawing, const named_state& state);

// A file has groups as drawings have: the state, then for each layer its name and what it shows. Texts are
// ASCII, with \U+XXXX for other characters; such in UTF-8 or in the system's code page are read, too.
base::result<void> write_layer_state_file(const std::filesystem::path& file, const named_state& state);
// eFileNotFound; eInvalidInput for what is no file of one state.
Acad::ErrorStatus read_layer_state_file(const std::filesystem::path& file, named_state& state);

} // namespace db
