// Marks what zef_pipeSystem offers to the add-on's other modules.
#pragma once

#include "windows.h"

#ifdef zef_pipeSystem_EXPORTS
#define ZEF_PIPESYSTEM_PORT __declspec(dllexport)
#else
#define ZEF_PIPESYSTEM_PORT __declspec(dllimport)
#endif
