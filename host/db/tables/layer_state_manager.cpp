#include "acdblayerstatemanager.h"

#include "dbents.h"
#include "dbobjptr.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/layer_facts.h"
#include "host/db/core/open_objects.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/implied_entries.h"
#include "host/db/tables/layer_state_file.h"
#include "host/db/tables/viewport_groups.h"
#include "sys/folders.h"

#include <algorithm>

ACRX_NO_CONS_DEFINE_MEMBERS(AcDbLayerStateManager, AcRxObject)

AcDbLayerStateManager::AcDbLayerStateManager(AcDbDatabase* pHostDb) : m_drawing(*pHostDb) {
}

namespace {

std::wstring text_of(const ACHAR* name) {
    return name != nullptr ? name : L"";
}

// The layers that are frozen in a viewport of a sheet, sorted; none for what is no viewport.
std::vector<dxf::record_id> frozen_in(AcDbImpDatabase& drawing, AcDbObjectId viewport) {
    const dxf::record_id record = drawing.record(viewport);
    if (record == dxf::no_record || drawing.records().type(record) != dxf::type_viewport)
        return {};
    std::vector<dxf::record_id> layers = db::frozen_layers(drawing.objects().view(record)->imp());
    std::sort(layers.begin(), layers.end());
    return layers;
}

bool is_among(const std::vector<dxf::record_id>& sorted, dxf::record_id layer) {
    return std::binary_search(sorted.begin(), sorted.end(), layer);
}

// Freezes in a viewport what a state says was frozen in the one that it was saved with, and thaws the others.
Acad::ErrorStatus give_frozen(AcDbImpDatabase& drawing, AcDbObjectId viewport, const db::layer_state& state) {
    const std::vector<dxf::record_id> frozen_now = frozen_in(drawing, viewport);
    AcDbObjectIdArray thaws;
    AcDbObjectIdArray freezes;
    for (const db::layer_look& look : state.looks) {
        const bool freeze = (look.flags & db::layer_frozen_in_viewport) != 0;
        if (freeze != is_among(frozen_now, drawing.record(look.layer)))
            (freeze ? freezes : thaws).append(look.layer);
    }
    if (thaws.isEmpty() && freezes.isEmpty())
        return Acad::eOk;
    const AcDbObjectPointer<AcDbViewport> open(viewport, AcDb::kForWrite);
    if (open.openStatus() != Acad::eOk)
        return open.openStatus();
    open->thawLayersInViewport(thaws);
    return open->freezeLayersInViewport(freezes);
}

std::vector<dxf::record_id> live_layers(AcDbImpDatabase& drawing) {
    std::vector<dxf::record_id> layers = drawing.names().entries(db::table_kind::layer);
    std::erase_if(layers, [&](dxf::record_id layer) { return drawing.records().gone(layer); });
    return layers;
}

// Reads a state, lets `change` change it, and writes it again.
template<class Change>
Acad::ErrorStatus rewrite(AcDbImpDatabase& drawing, const ACHAR* name, Change change) {
    db::layer_state state;
    const Acad::ErrorStatus status = db::read_layer_state(drawing, text_of(name), state);
    if (status != Acad::eOk)
        return status;
    change(state);
    return db::write_layer_state(drawing, text_of(name), state);
}

} // namespace

AcDbObjectId AcDbLayerStateManager::layerStatesDictionaryId(bool bCreateIfNotPresent) {
    return db::layer_states_dictionary(m_drawing.imp(), bCreateIfNotPresent);
}

bool AcDbLayerStateManager::hasLayerState(const ACHAR* sName) {
    const AcDbDictionaryPointer states(layerStatesDictionaryId());
    return states.openStatus() == Acad::eOk && states->has(sName);
}

Acad::ErrorStatus AcDbLayerStateManager::getLayerStateNames(AcStringArray& lsArray, bool bIncludeHidden) {
    const AcDbDictionaryPointer states(layerStatesDictionaryId());
    if (states.openStatus() != Acad::eOk)
        return Acad::eOk; // none
    for (const std::unique_ptr<AcDbDictionaryIterator> at(states->newIterator()); !at->done(); at->next()) {
        LayerStateMask mask = kNone;
        if (bIncludeHidden || getLayerStateMask(at->name(), mask) != Acad::eOk ||
            (mask & kStateIsHidden) == 0)
            lsArray.append(at->name());
    }
    return Acad::eOk;
}

Acad::ErrorStatus AcDbLayerStateManager::getLayerStateLayers(AcStringArray& layerArray, const ACHAR* sName,
                                                             bool bInvert) {
    AcDbImpDatabase& drawing = m_drawing.imp();
    db::layer_state state;
    if (const Acad::ErrorStatus status = db::read_layer_state(drawing, text_of(sName), state);
        status != Acad::eOk)
        return status;
    std::vector<dxf::record_id> known;
    for (const db::layer_look& look : state.looks)
        known.push_back(drawing.record(look.layer));
    std::sort(known.begin(), known.end());
    for (const dxf::record_id layer : live_layers(drawing))
        if (is_among(known, layer) != bInvert)
            layerArray.append(drawing.names().name_of(layer).c_str());
    return Acad::eOk;
}

Acad::ErrorStatus AcDbLayerStateManager::saveLayerState(const ACHAR* sName, LayerStateMask mask) {
    return saveLayerState(sName, mask, AcDbObjectId::kNull);
}

Acad::ErrorStatus AcDbLayerStateManager::saveLayerState(const ACHAR* sName, LayerStateMask mask,
                                                        const AcDbObjectId& idVp) {
    AcDbImpDatabase& drawing = m_drawing.imp();
    if (layerStatesDictionaryId(true).isNull())
        return Acad::eNotApplicable;
    db::layer_state state;
    db::read_layer_state(drawing, text_of(sName), state); // its description stays
    state.mask = mask;
    state.of_viewport = !idVp.isNull();
    state.current_layer = drawing.names().name_of(drawing.layers().current());
    state.looks.clear();
    const std::vector<dxf::record_id> frozen = frozen_in(drawing, idVp);
    for (const dxf::record_id layer : live_layers(drawing)) {
        db::settle_entry(drawing, layer); // what is saved must not name what is not
        state.looks.push_back(db::look_of(drawing, layer));
        if (is_among(frozen, layer))
            state.looks.back().flags |= db::layer_frozen_in_viewport;
    }
    return db::write_layer_state(drawing, text_of(sName), state);
}

Acad::ErrorStatus AcDbLayerStateManager::restoreLayerState(const ACHAR* sName, AcDbObjectId idVp,
                                                           int nRestoreFlags,
                                                           const LayerStateMask* pClientMask) {
    AcDbImpDatabase& drawing = m_drawing.imp();
    db::layer_state state;
    if (const Acad::ErrorStatus status = db::read_layer_state(drawing, text_of(sName), state);
        status != Acad::eOk)
        return status;
    const int mask = state.mask & (pClientMask != nullptr ? *pClientMask : kAll);
    for (const db::layer_look& look : state.looks)
        if (const Acad::ErrorStatus status = db::give_look(drawing, look, mask); status != Acad::eOk)
            return status;
    if (nRestoreFlags != kUndefDoNothing) {
        AcStringArray unknown;
        getLayerStateLayers(unknown, sName, true);
        for (const AcString& name : unknown) {
            db::layer_look look =
                db::look_of(drawing, drawing.names().find(db::table_kind::layer, name.kwszPtr()));
            look.flags |= ((nRestoreFlags & kUndefTurnOff) != 0 ? db::layer_off : 0) |
                          ((nRestoreFlags & kUndefFreeze) != 0 ? db::layer_frozen : 0);
            db::give_look(drawing, look, kOn | kFrozen);
        }
    }
    const bool has_viewport = (mask & kCurrentViewport) != 0 && state.of_viewport && !idVp.isNull();
    return has_viewport ? give_frozen(drawing, idVp, state) : Acad::eOk;
}

bool AcDbLayerStateManager::compareLayerStateToDb(const ACHAR* sName, const AcDbObjectId& idVp) {
    AcDbImpDatabase& drawing = m_drawing.imp();
    db::layer_state state;
    if (db::read_layer_state(drawing, text_of(sName), state) != Acad::eOk)
        return false;
    const std::vector<dxf::record_id> frozen = frozen_in(drawing, idVp);
    const bool compares_viewport =
        (state.mask & kCurrentViewport) != 0 && state.of_viewport && !idVp.isNull();
    return std::all_of(state.looks.begin(), state.looks.end(), [&](const db::layer_look& look) {
        const dxf::record_id layer = drawing.record(look.layer);
        const bool frozen_then = (look.flags & db::layer_frozen_in_viewport) != 0;
        return (db::difference(look, db::look_of(drawing, layer)) & state.mask) == 0 &&
               (!compares_viewport || frozen_then == is_among(frozen, layer));
    });
}

Acad::ErrorStatus AcDbLayerStateManager::deleteLayerState(const ACHAR* sName) {
    const AcDbDictionaryPointer states(layerStatesDictionaryId(), AcDb::kForWrite);
    AcDbObjectId id;
    if (states.openStatus() != Acad::eOk || states->remove(sName, id) != Acad::eOk)
        return Acad::eKeyNotFound;
    const AcDbXrecordPointer state(id, AcDb::kForWrite);
    return state.openStatus() == Acad::eOk ? state->erase() : state.openStatus();
}

Acad::ErrorStatus AcDbLayerStateManager::renameLayerState(const ACHAR* sOldName, const ACHAR* sNewName) {
    const AcDbDictionaryPointer states(layerStatesDictionaryId(), AcDb::kForWrite);
    if (states.openStatus() != Acad::eOk || !states->has(sOldName))
        return Acad::eKeyNotFound;
    AcDbObjectId old_state;
    AcDbObjectId taken;
    states->getAt(sOldName, old_state);
    if (states->getAt(sNewName, taken) == Acad::eOk && taken != old_state)
        return Acad::eDuplicateKey;
    return states->setName(sOldName, sNewName) ? Acad::eOk : Acad::eInvalidKey;
}

Acad::ErrorStatus AcDbLayerStateManager::exportLayerState(const ACHAR* sNameToExport,
                                                          const ACHAR* sFilename) {
    db::named_state state;
    if (const Acad::ErrorStatus status = db::name_layer_state(m_drawing.imp(), text_of(sNameToExport), state);
        status != Acad::eOk)
        return status;
    return db::write_layer_state_file(sys::to_path(text_of(sFilename)), state) ? Acad::eOk
                                                                               : Acad::eFileAccessErr;
}

Acad::ErrorStatus AcDbLayerStateManager::importLayerState(const ACHAR* sFilename) {
    AcString name;
    return importLayerState(sFilename, name);
}

Acad::ErrorStatus AcDbLayerStateManager::importLayerState(const ACHAR* sFilename, AcString& sName) {
    db::named_state state;
    if (const Acad::ErrorStatus status = db::read_layer_state_file(sys::to_path(text_of(sFilename)), state);
        status != Acad::eOk)
        return status;
    sName = state.name.c_str();
    return db::take_layer_state(m_drawing.imp(), state);
}

Acad::ErrorStatus AcDbLayerStateManager::importLayerStateFromDb(const ACHAR* pStateName, AcDbDatabase* pDb) {
    if (pDb == nullptr)
        return Acad::eNullObjectPointer;
    db::named_state state;
    const Acad::ErrorStatus status = db::name_layer_state(pDb->imp(), text_of(pStateName), state);
    return status == Acad::eOk ? db::take_layer_state(m_drawing.imp(), state) : status;
}

Acad::ErrorStatus AcDbLayerStateManager::getLayerStateMask(const ACHAR* sName, LayerStateMask& returnMask) {
    db::layer_state state;
    const Acad::ErrorStatus status = db::read_layer_state(m_drawing.imp(), text_of(sName), state);
    if (status == Acad::eOk)
        returnMask = static_cast<LayerStateMask>(state.mask);
    return status;
}

Acad::ErrorStatus AcDbLayerStateManager::setLayerStateMask(const ACHAR* sName, LayerStateMask mask) {
    return rewrite(m_drawing.imp(), sName, [&](db::layer_state& state) { state.mask = mask; });
}

Acad::ErrorStatus AcDbLayerStateManager::getLayerStateDescription(const ACHAR* sName, AcString& description) {
    db::layer_state state;
    const Acad::ErrorStatus status = db::read_layer_state(m_drawing.imp(), text_of(sName), state);
    if (status == Acad::eOk)
        description = state.description.c_str();
    return status;
}

Acad::ErrorStatus AcDbLayerStateManager::setLayerStateDescription(const ACHAR* sName, const ACHAR* sDesc) {
    return rewrite(m_drawing.imp(), sName,
                   [&](db::layer_state& state) { state.description = text_of(sDesc); });
}

bool AcDbLayerStateManager::layerStateHasViewportData(const ACHAR* sName) {
    db::layer_state state;
    return db::read_layer_state(m_drawing.imp(), text_of(sName), state) == Acad::eOk && state.of_viewport;
}
