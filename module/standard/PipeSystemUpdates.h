// Puts pipes in line with the current standard: what a pipe holds of it (system, layers, material, diameters,
// label) is written by these functions, when it is drawn and when its system or the standard changes.
//
// Without a standard they write what PipeSystemTool.h says of unknown systems. Objects that are no pipes, or
// no sections, are passed over.
#pragma once

#include "module/standard/PipeDimNode.h"
#include "module/standard/PipeSystemTool.h"

namespace PipeSystemTool {

// The pipe's layer (of a riser that of risers), then the layer of its label and that of its arrows, each of
// which the drawing gets when it lacks it. For a layer that there is not the entity keeps its own; label and
// arrows have none then. A pipe that is not open for writing stays as it is.
ZEF_PIPESYSTEM_PORT void SetPipeLayer(TDbPipe* pipe, LPCTSTR systemName);
ZEF_PIPESYSTEM_PORT void SetPipeLayer(AcDbObjectId pipe, LPCTSTR systemName);

// The name of the system, and the code that it has in older drawings. The second form is false for what is
// no pipe.
ZEF_PIPESYSTEM_PORT void SetPipeSystemName(TDbPipe* pipe, LPCTSTR name);
ZEF_PIPESYSTEM_PORT bool SetPipeSystemName(AcDbObjectId pipe, LPCTSTR name);

// The outer diameter and the wall ("PIPE_THICK", half of what GetPipeThick says) of the pipe's material and
// nominal diameter; of an unknown material that diameter, and no wall. Of a set the first entity alone.
ZEF_PIPESYSTEM_PORT void UpdatePipeInfo(TDbPipe* pipe);
ZEF_PIPESYSTEM_PORT void UpdatePipeInfo(AcDbObjectId pipe);
ZEF_PIPESYSTEM_PORT void UpdatePipeInfo(TEntitySet pipes);

// The material of the pipe's system, -1 for one without a table, and its line width: each when asked for.
ZEF_PIPESYSTEM_PORT void UpdateMaterialLineWeight(TDbPipe* pipe, bool material, bool lineWidth,
                                                  PipeMaterialEnum use);

// What stands before diameters in the pipe's label.
ZEF_PIPESYSTEM_PORT void UpdatePipeLabel(TDbPipe* pipe);

// The symbol of a riser that has a system.
ZEF_PIPESYSTEM_PORT void UpdateVPipeRadius(TDbPipe* pipe);

// Reads the tables of materials anew, when they have been read before.
ZEF_PIPESYSTEM_PORT void UpdatePipeMaterial();

// The flags of the system of exactly that name, in every group.
ZEF_PIPESYSTEM_PORT void SetPipeStatus(LPCTSTR systemName, unsigned int flags);

// Whether a longitudinal section shows crossing pipes of a system: by its name and by its code.
ZEF_PIPESYSTEM_PORT void SetShowCrossPipe(AcDbObjectId section, LPCTSTR systemName, bool show);
ZEF_PIPESYSTEM_PORT void SetShowCrossPipe(TDbVerticalSection* section, LPCTSTR systemName, bool show);
ZEF_PIPESYSTEM_PORT void SetShowCrossPipe(TDbVerticalSectionFeed* section, LPCTSTR systemName, bool show);

// Gives the pipe's label an arrangement: that one, or the first one that fits, whose widest line is shorter
// than what is seen of the pipe. False, and the pipe as it was, when none fits.
ZEF_PIPESYSTEM_PORT void UpatePipeDimType(TDbPipe* pipe, const PipeDimNode& arrangement);
ZEF_PIPESYSTEM_PORT bool UpatePipeDimType(TDbPipe* pipe, const std::vector<PipeDimNode>& arrangements);

} // namespace PipeSystemTool
