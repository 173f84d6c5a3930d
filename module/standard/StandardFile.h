// Standard files (".vrsl"): XML in UTF-8.
//
// Reading is lenient: what is not known is passed over; a missing section is an empty part of the standard; a
// missing or empty value is the field's default, a number that is none is 0.
#pragma once

#include "module/engines/MarkupFault.h"
#include "module/standard/PipeStandard.h"

// Reads a whole standard. False, and the standard as it was, when the file can not be read, is not
// well-formed or has no root. `fault` becomes what is wrong with the file; one that was read may have one,
// too.
ZEF_PIPESYSTEM_PORT bool ReadStandardFile(LPCTSTR path, PipeStandard& standard,
                                          std::optional<MarkupFault>* fault = nullptr);

// Writes a standard whole or not at all. False when that fails.
ZEF_PIPESYSTEM_PORT bool WriteStandardFile(LPCTSTR path, const PipeStandard& standard);
