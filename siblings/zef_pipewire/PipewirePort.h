// Marks what zef_pipewire offers to the add-on's other modules.
#pragma once

#include "windows.h"

#ifdef zef_pipewire_EXPORTS
#define ZEF_PIPEWIRE_PORT __declspec(dllexport)
#else
#define ZEF_PIPEWIRE_PORT __declspec(dllimport)
#endif
