#include "module/layertools/StayedEntities.h"

#include "acutads.h"
#include "afx.h"

void CStayedEntities::Add(Acad::ErrorStatus reason) {
    ++(reason == Acad::eOnLockedLayer ? m_locked : m_others);
}

void CStayedEntities::Add(const CStayedEntities& others) {
    m_locked += others.m_locked;
    m_refused += others.m_refused;
    m_others += others.m_others;
}

void CStayedEntities::Tell(const wchar_t* what) const {
    if (m_locked + m_refused + m_others == 0)
        return;
    CString line;
    line.Format(L"\n%d 个图元%s：", m_locked + m_refused + m_others, what);
    const wchar_t* between = L"";
    const auto add = [&](int count, const wchar_t* reason) {
        if (count == 0)
            return;
        CString part;
        part.Format(L"%s%d 个%s", between, count, reason);
        line += part;
        between = L"，";
    };
    add(m_locked, L"在锁定的图层上");
    add(m_refused, L"不能放到目标图层");
    add(m_others, L"不能修改");
    acutPrintf(L"%s。", line.GetString());
}
