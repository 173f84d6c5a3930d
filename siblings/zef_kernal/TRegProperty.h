// One key of the registry, and its values by type: integers are kept as REG_DWORD, reals and texts as REG_SZ,
// reals with as many digits as give them back.
#pragma once

#include "afx.h"
#include "siblings/zef_kernal/KernalPort.h"

#include <string>

class ZEF_KERNAL_PORT TRegProperty {
public:
    // The key `subKey` below `location`, e.g. GetRegLocation() and L"KOLConfig". It need not exist.
    TRegProperty(LPCTSTR location, LPCTSTR subKey);

    // The root that the location lies below; HKEY_CURRENT_USER unless it is set. Below another root nothing
    // is found and nothing is written.
    void SetTopRootKey(HKEY root) { m_root = root; }

    // False, and the target as it was, when there is no such value or it is of another kind.
    bool GetValue(LPCTSTR name, int& value) const;
    bool GetValue(LPCTSTR name, double& value) const;
    bool GetValue(LPCTSTR name, CString& value) const;

    // Write one value; the key is made when it is missing. False when the registry does not take it.
    bool SetValue(LPCTSTR name, int value);
    bool SetValue(LPCTSTR name, double value);
    bool SetValue(LPCTSTR name, LPCTSTR value);

private:
    HKEY m_root;
    std::wstring m_key;
};
