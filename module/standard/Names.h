// How names of the standard are compared: each look-up says whether it tells case apart.
#pragma once

#include "base/case_fold.h"
#include "module/frame/ModulePort.h"

#include "afx.h"

#include <cstddef>
#include <string_view>
#include <vector>

inline std::wstring_view ViewOf(const CString& text) {
    return {text.GetString(), static_cast<std::size_t>(text.GetLength())};
}

// Without regard to case, in all scripts.
inline bool IsSameName(std::wstring_view a, std::wstring_view b) {
    return base::equal_no_case(a, b);
}
inline bool IsSameName(const CString& a, const CString& b) {
    return IsSameName(ViewOf(a), ViewOf(b));
}

// The order of keys: by code point, case told apart.
struct KeyOrder {
    using is_transparent = void;
    ZEF_PIPESYSTEM_PORT bool operator()(std::wstring_view a, std::wstring_view b) const;
    bool operator()(const CString& a, const CString& b) const { return (*this)(ViewOf(a), ViewOf(b)); }
    bool operator()(const CString& a, std::wstring_view b) const { return (*this)(ViewOf(a), b); }
    bool operator()(std::wstring_view a, const CString& b) const { return (*this)(a, ViewOf(b)); }
};

// The same without regard to case.
struct NoCaseOrder {
    bool operator()(const CString& a, const CString& b) const {
        return base::compare_no_case(ViewOf(a), ViewOf(b)) < 0;
    }
};

// The names with the separator between them, none behind the last.
CString JoinNames(const std::vector<CString>& names, LPCTSTR separator);
