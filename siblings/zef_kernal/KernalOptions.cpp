#include "siblings/zef_kernal/KernalOptions.h"

CString g_csSysPath;
BOOL g_bAutoLTScale = TRUE;

CString GetRegLocation() {
    return L"Software\\ZEF\\KOL";
}
