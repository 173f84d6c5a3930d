// Marks what zef_public offers to the add-on's other modules.
#pragma once

#include "windows.h"

#ifdef zef_public_EXPORTS
#define ZEF_PUBLIC_PORT __declspec(dllexport)
#else
#define ZEF_PUBLIC_PORT __declspec(dllimport)
#endif
