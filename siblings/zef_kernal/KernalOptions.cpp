#include "siblings/zef_kernal/KernalOptions.h"

BOOL g_bAutoLTScale = TRUE;

CString GetRegLocation() {
    return L"Software\\ZEF\\KOL";
}
