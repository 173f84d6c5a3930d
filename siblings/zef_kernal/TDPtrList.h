// The kernel's lists: of pointers, which belong to whoever holds the list, and of texts.
#pragma once

#include "afx.h"

#include <cstddef>
#include <vector>

template<class T>
class TDPtrList {
public:
    void Append(T* item) { m_items.push_back(item); }
    int GetCount() const { return static_cast<int>(m_items.size()); }
    // From 0 to GetCount() - 1.
    T* GetAt(int index) const { return m_items[static_cast<std::size_t>(index)]; }
    // Forgets the pointers; what they point to stays.
    void RemoveAll() { m_items.clear(); }
    void DeleteAll() {
        for (T* item : m_items)
            delete item;
        m_items.clear();
    }

private:
    std::vector<T*> m_items;
};

class TWCStringList {
public:
    void Append(LPCTSTR text) { m_items.emplace_back(text); }
    int GetCount() const { return static_cast<int>(m_items.size()); }
    const CString& GetAt(int index) const { return m_items[static_cast<std::size_t>(index)]; }

private:
    std::vector<CString> m_items;
};
