// Marks what zef_kernal offers to the add-on's other modules.
#pragma once

#include "windows.h"

#ifdef zef_kernal_EXPORTS
#define ZEF_KERNAL_PORT __declspec(dllexport)
#else
#define ZEF_KERNAL_PORT __declspec(dllimport)
#endif
