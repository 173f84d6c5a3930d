// What the current standard says, for the module's own parts and the add-on's other modules.
//
// The groups of the standard are asked in their order, the first hit wins. Without a standard every question
// has the answer of nothing found, also where a list that it is handed has something in it.
#pragma once

#include "module/standard/PipeStandard.h"
#include "siblings/zef_kernal/TDPtrList.h"

#include "dbid.h"

class TDbPipe;
class TDbVerticalSection;
class TDbVerticalSectionFeed;
class TEntitySet;

// What the material of a system is for.
enum PipeMaterialEnum {
    kIndoorMaterial = 0,
    kOutdoorMaterial,
};

namespace PipeSystemTool {

// ---- names of systems; "" when nothing is found

// The system of a pipe: its name, else what its code stands for; of several the first that has one.
ZEF_PIPESYSTEM_PORT CString GetPipeSystemName(AcDbObjectId pipe);
ZEF_PIPESYSTEM_PORT CString GetPipeSystemName(const TDbPipe* pipe);
ZEF_PIPESYSTEM_PORT CString GetPipeSystemName(const TEntitySet& pipes);

// The system of the layer of that type and name, both without case; of the second form of the first layer of
// that name, of the others by the record of the drawing's layer.
ZEF_PIPESYSTEM_PORT CString GetPipeSystemNameByLayer(LPCTSTR layerName, LPCTSTR layerType);
ZEF_PIPESYSTEM_PORT CString GetPipeSystemNameByLayer(LPCTSTR layerName);
ZEF_PIPESYSTEM_PORT CString GetPipeSystemNameByLayer(AcDbObjectId layerId);
ZEF_PIPESYSTEM_PORT CString GetPipeSystemNameByLayer(AcDbObjectId layerId, LPCTSTR layerType);
// The system whose pipe, riser or bend layer it is.
ZEF_PIPESYSTEM_PORT CString GetPipeSystemNameByPipeLayer(LPCTSTR layerName);
ZEF_PIPESYSTEM_PORT CString GetPipeSystemNameByPipeLayer(AcDbObjectId layerId);

// From the initial name of a system to its current one, and back. The name itself when there is none.
ZEF_PIPESYSTEM_PORT CString OriginSystemNameToCurrentName(LPCTSTR oldName);
ZEF_PIPESYSTEM_PORT CString CurrentSystemNameToOriginName(LPCTSTR currentName);

// System names and group names are told apart by case, but for GetPipeSystemGroup.
ZEF_PIPESYSTEM_PORT bool IsPipeSystemOfCurrentStandard(LPCTSTR systemName);
ZEF_PIPESYSTEM_PORT bool IsGroupIncludedSystem(LPCTSTR groupName, LPCTSTR systemName);
// The group that has a layer of that name.
ZEF_PIPESYSTEM_PORT CString GetPipeSystemGroupName(LPCTSTR layerName);
// False, and nothing given, when there is no such group.
ZEF_PIPESYSTEM_PORT bool GetPipeSystemGroup(LPCTSTR groupName, PipeClassificationNode& group);
// Append the names of all systems of the group that has this one, or of the group. Whether there are names in
// the list then.
ZEF_PIPESYSTEM_PORT bool GetPipeSystemNamesOfGroupByPipeSystemName(LPCTSTR systemName,
                                                                   std::vector<CString>& names);
ZEF_PIPESYSTEM_PORT bool GetPipeSystemsBySystemGroup(LPCTSTR groupName, std::vector<CString>& names);
// Appends all groups, of their systems also the layer types that are aliases unless these are not wanted.
// Whether there are groups in the list then.
ZEF_PIPESYSTEM_PORT bool GetPipeSystems(std::vector<PipeClassificationNode>& groups,
                                        bool includeMapped = true);
// The name of the standard file, without folder and extension.
ZEF_PIPESYSTEM_PORT CString GetCurrentStandardName();
// Appends the standard files of the system folder, or of another one, sorted by name. Whether there are any
// in the list then.
ZEF_PIPESYSTEM_PORT bool GetPipeSystemStandardFiles(std::vector<CString>& names);
ZEF_PIPESYSTEM_PORT bool GetPipeSystemStandardFiles(LPCTSTR folder, std::vector<CString>& names);

// ---- layers; layer names and types are compared without case

// The name of the layer of a type in a system, else, in a group of other layers of that type, of the layer
// whose key is the system's name. "" when there is none. With `create` the drawing gets the layer, unless it
// has one of that name.
ZEF_PIPESYSTEM_PORT CString GetLayerName(LPCTSTR systemName, LPCTSTR layerType, bool create = false);
// The colour of the drawing's layer of that name, else of the standard's, else a new colour.
ZEF_PIPESYSTEM_PORT AcCmColor GetLayerColor(LPCTSTR layerName);
// Of the layer that GetLayerName names.
ZEF_PIPESYSTEM_PORT CString GetLinetypeName(LPCTSTR systemName, LPCTSTR layerType);
ZEF_PIPESYSTEM_PORT CString GetLayerRemark(LPCTSTR systemName, LPCTSTR layerType);

// The names of all layers of a type in a system: with ";" between, or appended; whether there are names then.
ZEF_PIPESYSTEM_PORT CString GetLayerNames(LPCTSTR systemName, LPCTSTR layerType);
ZEF_PIPESYSTEM_PORT bool GetLayerNames(LPCTSTR systemName, LPCTSTR layerType, std::vector<CString>& names);

// The pipe, riser and bend layers of systems, each name once: joined, or appended when the list lacks it.
ZEF_PIPESYSTEM_PORT CString GetPipeLayers(LPCTSTR systemName, LPCTSTR separator);
ZEF_PIPESYSTEM_PORT CString GetPipeLayers(const std::vector<CString>& systemNames, LPCTSTR separator);
ZEF_PIPESYSTEM_PORT CString GetPipeLayers(const CString* systemNames, int count, LPCTSTR separator);
ZEF_PIPESYSTEM_PORT void GetPipeLayers(LPCTSTR systemName, std::vector<CString>& names);
ZEF_PIPESYSTEM_PORT void GetPipeLayers(const std::vector<CString>& systemNames, std::vector<CString>& names);
ZEF_PIPESYSTEM_PORT void GetPipeLayers(const CString* systemNames, int count, std::vector<CString>& names);

// The layers of a type, and the pipe, riser and bend layers (each name once), of all systems of groups.
ZEF_PIPESYSTEM_PORT CString GetSystemGroupLayers(LPCTSTR groupName, LPCTSTR layerType, LPCTSTR separator);
ZEF_PIPESYSTEM_PORT void GetSystemGroupLayers(LPCTSTR groupName, LPCTSTR layerType,
                                              std::vector<CString>& names);
ZEF_PIPESYSTEM_PORT CString GetSystemGroupPipeLayers(LPCTSTR groupName, LPCTSTR separator);
ZEF_PIPESYSTEM_PORT CString GetSystemGroupPipeLayers(const std::vector<CString>& groupNames,
                                                     LPCTSTR separator);
ZEF_PIPESYSTEM_PORT CString GetSystemGroupPipeLayers(const CString* groupNames, int count, LPCTSTR separator);
ZEF_PIPESYSTEM_PORT void GetSystemGroupPipeLayers(LPCTSTR groupName, std::vector<CString>& names);
ZEF_PIPESYSTEM_PORT void GetSystemGroupPipeLayers(const std::vector<CString>& groupNames,
                                                  std::vector<CString>& names);
ZEF_PIPESYSTEM_PORT void GetSystemGroupPipeLayers(const CString* groupNames, int count,
                                                  std::vector<CString>& names);

// The layer of a type in the system whose pipe layer, or riser layer, has that name; aliases only when asked
// for. "" when there is none.
ZEF_PIPESYSTEM_PORT CString GetLayerByPipeLayer(LPCTSTR layerName, LPCTSTR layerType, bool includeMapped);
ZEF_PIPESYSTEM_PORT CString GetLayerByVPipeLayer(LPCTSTR layerName, LPCTSTR layerType, bool includeMapped);

// Adds the layers that belong to the attachment set of exactly that name, and names the set.
ZEF_PIPESYSTEM_PORT void GetLayerAttachInfo(LPCTSTR attachName, LayerAttachNode& set);

// Tells by `type` alone what layer it is: 0 a pipe layer, 1 a riser layer, 2 a bend layer; another layer
// leaves it as it was, so callers set it to -1 before. Always false.
ZEF_PIPESYSTEM_PORT bool IsPipeLayer(LPCTSTR layerName, int* type);
ZEF_PIPESYSTEM_PORT bool SystemGroupContainLayer(LPCTSTR groupName, LPCTSTR layerName, LPCTSTR layerType);

// ---- values of systems, by exact name

// The material; "" for an unknown system.
ZEF_PIPESYSTEM_PORT CString GetPipeMaterial(LPCTSTR systemName, PipeMaterialEnum use);
// Of pipes as drawn; 0.35 for an unknown system.
ZEF_PIPESYSTEM_PORT double GetPipeLineWidth(LPCTSTR systemName);
// The label. Where the marker occurs in it: what stands before the first one (cut), or all but the markers.
ZEF_PIPESYSTEM_PORT CString GetPipeDim(LPCTSTR systemName, bool cut, LPCTSTR marker);
// What stands in the label behind the first marker; "" without one.
ZEF_PIPESYSTEM_PORT CString GetPipeDimB(LPCTSTR systemName, LPCTSTR marker);
// The radii of risers as drawn: 0.5, 0.5 and 0.25 for an unknown system.
ZEF_PIPESYSTEM_PORT double GetVPipeRadius(LPCTSTR systemName);
ZEF_PIPESYSTEM_PORT double GetVPipeRadius1(LPCTSTR systemName);
ZEF_PIPESYSTEM_PORT double GetVPipeRadius2(LPCTSTR systemName);
ZEF_PIPESYSTEM_PORT int GetVPipeType(LPCTSTR systemName);
ZEF_PIPESYSTEM_PORT unsigned int GetPipeStatus(LPCTSTR systemName);
ZEF_PIPESYSTEM_PORT CString GetPipeWaterFlowStatus(LPCTSTR systemName);
ZEF_PIPESYSTEM_PORT CString GetPipeRemark(LPCTSTR systemName);

// Whether a longitudinal section shows crossing pipes of a system: what was set for its name, else for its
// code. False for what is no section.
ZEF_PIPESYSTEM_PORT bool IsShowCrossPipe(AcDbObjectId section, LPCTSTR systemName);
ZEF_PIPESYSTEM_PORT bool IsShowCrossPipe(const TDbVerticalSection* section, LPCTSTR systemName);
ZEF_PIPESYSTEM_PORT bool IsShowCrossPipe(const TDbVerticalSectionFeed* section, LPCTSTR systemName);

// ---- materials and diameters, from the tables of zef_public; millimetres

// The place of a material in the add-on's list, or in another one, without case; 0 when it is not there.
ZEF_PIPESYSTEM_PORT int GetMaterialIndex(LPCTSTR material);
ZEF_PIPESYSTEM_PORT int GetMaterialIndex(const TWCStringList& list, LPCTSTR material);
// The same by exact name; -1 when it is not there. And back: "" for a number that is none.
ZEF_PIPESYSTEM_PORT int GetIndexOfPIpeMaterial(LPCTSTR material);
ZEF_PIPESYSTEM_PORT CString GetPipeMaterialByIndex(int index);
// Of the system's material.
ZEF_PIPESYSTEM_PORT int GetPipeMaterialIndex(LPCTSTR systemName, PipeMaterialEnum use);
// What stands before diameters in labels; by exact name.
ZEF_PIPESYSTEM_PORT CString GetPrefixOfPipeMaterial(LPCTSTR material);
ZEF_PIPESYSTEM_PORT CString GetPrefixOfPipeMaterial(int index);
// Appends the nominal diameters of a material, rounded, in the order of its table; they are the caller's.
// Whether there are any in the list then.
ZEF_PIPESYSTEM_PORT bool GetPipeDnByMaterial(LPCTSTR material, TDPtrList<int>& diameters);
// The diameters of the nominal one, which agrees within 0.001; the nominal one itself when the table has
// none.
ZEF_PIPESYSTEM_PORT double GetPipeInnerDn(LPCTSTR material, double dn);
ZEF_PIPESYSTEM_PORT double GetPipeOuterDn(LPCTSTR material, double dn);
// Outer less inner diameter: twice the wall. 0 when the table has none.
ZEF_PIPESYSTEM_PORT double GetPipeThick(LPCTSTR material, double dn);

// ---- text styles: of a use, or by exact name

ZEF_PIPESYSTEM_PORT CString GetTextStyleName(TextStyleEnum use);
// False, and nothing given, when there is no such style.
ZEF_PIPESYSTEM_PORT bool GetTextStyleInfo(TextStyleEnum use, TextStyleNode& style);
ZEF_PIPESYSTEM_PORT bool GetTextStyleInfo(LPCTSTR name, TextStyleNode& style);
// Puts all styles in the place of what the list held; false without a standard.
ZEF_PIPESYSTEM_PORT bool GetAllTextStyleInfo(std::vector<TextStyleNode>& styles);
ZEF_PIPESYSTEM_PORT double GetTextStyleHeight(TextStyleEnum use, double defaultHeight);
ZEF_PIPESYSTEM_PORT double GetTextStyleHeight(LPCTSTR name, double defaultHeight);
ZEF_PIPESYSTEM_PORT double GetTextStyleScale(TextStyleEnum use, double defaultScale);
ZEF_PIPESYSTEM_PORT double GetTextStyleScale(LPCTSTR name, double defaultScale);

} // namespace PipeSystemTool
