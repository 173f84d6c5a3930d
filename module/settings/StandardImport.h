// What a drawing or an older program's file has and the standard lacks or says otherwise, as proposals that a
// manager takes over one by one.
#pragma once

#include "module/standard/StandardManager.h"

#include "dbmain.h"

#include <filesystem>
#include <optional>

struct StandardProposal {
    enum Kind {
        kChangedLayer, // of a system or a group of other layers that there is
        kNewLayer,
        kNewSystem, // the layer's system is not there
        kOtherLayer // of no system
    };
    Kind kind = kChangedLayer;
    CString owner;
    CString key;
    LayerNode layer;
    CString what; // in words: "颜色 3 → 1"
    int entities = 0;
};

// A layer as a source has it.
struct ImportedLayer {
    CString system; // and layer type, where the source tells them
    CString type;
    LayerNode layer; // name, colour, linetype, lineweight, plot flag
    bool hasWeight = false;
    int entities = 0;
};

// The layers that a drawing uses, without those of references; in the order of its table.
std::vector<ImportedLayer> LayersUsedIn(AcDbDatabase& drawing);
// The lines of "LAYERDEF.DAT" (LayerDefinitions.h); lines that are none are counted. Nothing when the file
// can not be read.
std::optional<std::vector<ImportedLayer>> LayersDefinedIn(const std::filesystem::path& file, int& passedOver);

// Where a layer belongs: to the definition of its name, to a system and type by the name rules, else to the
// group of other layers "导入图层". What is in line with the standard is no proposal.
std::vector<StandardProposal> Propose(const PipeStandard& standard, const std::vector<ImportedLayer>& layers);

// Takes one over; a new system comes into the group, by the first creation rule. Why it can not be done, ""
// when it is done.
CString Accept(CStandardManager& manager, const StandardProposal& proposal, const CString& group);
