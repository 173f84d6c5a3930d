#include "host/ed/layer_state_option.h"

#include "acdblayerstatemanager.h"
#include "acedads.h"
#include "host/ap/documents.h"
#include "host/db/core/imp_database.h"
#include "host/db/tables/layer_tracking.h"
#include "host/db/tables/spaces.h"
#include "host/ed/expected.h"
#include "host/ed/host_commands.h"
#include "host/ed/questions.h"
#include "sys/folders.h"

namespace ed {

namespace {

std::vector<std::wstring> state_names(bool hidden) {
    AcStringArray names;
    AcDbLayerStateManager(current_drawing()).getLayerStateNames(names, hidden);
    std::vector<std::wstring> found;
    for (const AcString& name : names)
        found.emplace_back(name.kwszPtr());
    return found;
}

// The viewport of a sheet that the user looks through; null on the Model tab.
AcDbObjectId viewport_of_sheet() {
    AcDbImpDatabase& drawing = current_drawing()->imp();
    const dxf::record_id viewport = db::current_viewport(drawing);
    return viewport != dxf::no_record && drawing.records().type(viewport) == dxf::type_viewport
               ? drawing.id(viewport)
               : AcDbObjectId::kNull;
}

std::wstring reason_for(const std::wstring& name, Acad::ErrorStatus status) {
    switch (status) {
    case Acad::eOk:
        return {};
    case Acad::eKeyNotFound:
        return L"Layer state \"" + name + L"\" not found.";
    case Acad::eDuplicateKey:
        return L"Layer state \"" + name + L"\" already exists.";
    case Acad::eInvalidKey:
        return L"Invalid layer state name \"" + name + L"\".";
    default:
        return L"This drawing can not hold the layer state.";
    }
}

bool list_states() {
    acutPrintf(L"\nLayer states:\n");
    for (const std::wstring& name : state_names(false))
        acutPrintf(L"  \"%ls\"\n", name.c_str());
    return true;
}

// Asks for the name of a state, and does something to it. False when the user ended it.
bool for_state(const wchar_t* prompt,
               Acad::ErrorStatus (*act)(AcDbLayerStateManager& states, const std::wstring& name)) {
    const expecting hint({{}, {}, {}, [] { return state_names(true); }});
    std::wstring taken;
    return ask_name(prompt, taken, [&](const std::wstring& name) {
               AcDbLayerStateManager states(current_drawing());
               return reason_for(name, act(states, name));
           }) != RTCAN;
}

bool save() {
    return for_state(
        L"\nEnter new layer state name: ", [](AcDbLayerStateManager& states, const std::wstring& name) {
            return states.saveLayerState(name.c_str(), AcDbLayerStateManager::kAll, viewport_of_sheet());
        });
}

bool restore() {
    return for_state(L"\nEnter name of layer state to restore: ",
                     [](AcDbLayerStateManager& states, const std::wstring& name) {
                         return states.restoreLayerState(name.c_str(), viewport_of_sheet());
                     });
}

bool remove() {
    return for_state(L"\nEnter name of layer state to delete: ",
                     [](AcDbLayerStateManager& states, const std::wstring& name) {
                         return states.deleteLayerState(name.c_str());
                     });
}

// The file without an extension gets the one that such files have.
std::filesystem::path state_file(const std::wstring& name) {
    std::filesystem::path file = sys::to_path(name);
    if (!file.has_extension())
        file += ".las";
    return file;
}

bool import_state() {
    std::wstring name;
    const int answered = ask_file(L"\nEnter name of layer state file to import: ", L".las", name);
    if (answered != RTNORM || name.empty())
        return answered != RTCAN;
    const std::filesystem::path file = state_file(name);
    AcString state;
    AcDbLayerStateManager states(current_drawing());
    const Acad::ErrorStatus status = states.importLayerState(sys::from_path(file).c_str(), state);
    const std::wstring why = status == Acad::eFileNotFound    ? L"Cannot find the file '" + name + L"'."
                             : status == Acad::eFileAccessErr ? L"Cannot read the file '" + name + L"'."
                             : status == Acad::eInvalidInput  ? L"'" + name + L"' holds no layer state."
                                                              : reason_for(state.kwszPtr(), status);
    if (!why.empty())
        acdbFail((L"\n" + why).c_str());
    return true;
}

bool export_state() {
    std::wstring name;
    const expecting hint({{}, {}, {}, [] { return state_names(true); }});
    int answered = ask_name(L"\nEnter name of layer state to export: ", name, [](const std::wstring& given) {
        return AcDbLayerStateManager(current_drawing()).hasLayerState(given.c_str())
                   ? std::wstring()
                   : reason_for(given, Acad::eKeyNotFound);
    });
    std::wstring file;
    if (answered == RTNORM)
        answered = ask_file(L"\nEnter file name: ", L".las", file);
    if (answered == RTNORM && !file.empty() &&
        AcDbLayerStateManager(current_drawing())
                .exportLayerState(name.c_str(), sys::from_path(state_file(file)).c_str()) != Acad::eOk)
        acdbFail((L"\nCannot write the file '" + file + L"'.").c_str());
    return answered != RTCAN;
}

bool rename() {
    AcDbLayerStateManager states(current_drawing());
    std::wstring old_name;
    const expecting hint({{}, {}, {}, [] { return state_names(true); }});
    const int answered =
        ask_name(L"\nEnter name of layer state to rename: ", old_name, [&](const std::wstring& name) {
            return states.hasLayerState(name.c_str()) ? std::wstring() : reason_for(name, Acad::eKeyNotFound);
        });
    if (answered != RTNORM)
        return answered != RTCAN;
    std::wstring new_name;
    return ask_name(L"\nEnter new layer state name: ", new_name, [&](const std::wstring& name) {
               return reason_for(name, states.renameLayerState(old_name.c_str(), name.c_str()));
           }) != RTCAN;
}

} // namespace

bool layer_state_option() {
    std::wstring word;
    if (ask_keyword(L"\nEnter an option [?/Save/Restore/Name/Delete/Import/EXport]: ",
                    L"? Save Restore Name Delete Import EXport", word) == RTCAN)
        return false;
    return word == L"?"         ? list_states()
           : word == L"Save"    ? save()
           : word == L"Restore" ? restore()
           : word == L"Name"    ? rename()
           : word == L"Delete"  ? remove()
           : word == L"Import"  ? import_state()
           : word == L"EXport"  ? export_state()
                                : true;
}

void layerpmode_command() {
    std::wstring word = db::follows_layers() ? L"ON" : L"OFF";
    if (ask_keyword(L"\nEnter LAYERP mode [ON/OFF] <" + word + L">: ", L"ON OFF", word) == RTNORM)
        db::follows_layers() = word == L"ON";
}

void layerp_command() {
    if (current_drawing() == nullptr)
        return;
    acutPrintf(ap::documents::instance().current()->layer_history.take_back()
                   ? L"\nRestored previous layer status.\n"
                   : L"\n*No previous layer status*\n");
}

} // namespace ed
