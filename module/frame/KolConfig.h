// The registry key of the add-on's shared options.
#pragma once

#include "siblings/zef_kernal/KernalOptions.h"
#include "siblings/zef_kernal/TRegProperty.h"

// "KOLConfig" of the current user.
inline TRegProperty OpenKolConfig() {
    TRegProperty config(GetRegLocation(), L"KOLConfig");
    config.SetTopRootKey(HKEY_CURRENT_USER);
    return config;
}
