// An array of anything that can be copied.
#pragma once

#include "afx.h"

#include <vector>

// Elements that lie together. An index must be that of an element unless a call says otherwise.
template<typename TYPE, typename ARG_TYPE = const TYPE&>
class CArray : public CObject {
public:
    INT_PTR GetSize() const { return static_cast<INT_PTR>(m_items.size()); }
    INT_PTR GetCount() const { return GetSize(); }
    // The last index, -1 when there is none.
    INT_PTR GetUpperBound() const { return GetSize() - 1; }
    BOOL IsEmpty() const { return m_items.empty(); }
    // Drops elements at the end, or adds new ones there. How the array grows is its own affair.
    void SetSize(INT_PTR size, INT_PTR /*growBy*/ = -1) { m_items.resize(static_cast<std::size_t>(size)); }
    void FreeExtra() { m_items.shrink_to_fit(); }
    void RemoveAll() { m_items.clear(); }

    TYPE& operator[](INT_PTR index) { return m_items[static_cast<std::size_t>(index)]; }
    const TYPE& operator[](INT_PTR index) const { return m_items[static_cast<std::size_t>(index)]; }
    TYPE& GetAt(INT_PTR index) { return (*this)[index]; }
    const TYPE& GetAt(INT_PTR index) const { return (*this)[index]; }
    TYPE& ElementAt(INT_PTR index) { return (*this)[index]; }
    void SetAt(INT_PTR index, ARG_TYPE value) { (*this)[index] = value; }
    // The same at any index; the array grows as far as it must.
    void SetAtGrow(INT_PTR index, ARG_TYPE value) {
        TYPE copy(value); // the value may be an element
        if (index >= GetSize())
            SetSize(index + 1);
        (*this)[index] = std::move(copy);
    }
    TYPE* GetData() { return m_items.data(); }
    const TYPE* GetData() const { return m_items.data(); }

    // Adds at the end; the index of the (first) new element.
    INT_PTR Add(ARG_TYPE value) {
        m_items.push_back(value);
        return GetUpperBound();
    }
    INT_PTR Append(const CArray& other) {
        const INT_PTR at = GetSize();
        const std::vector<TYPE> items(other.m_items); // the other one may be this one
        m_items.insert(m_items.end(), items.begin(), items.end());
        return at;
    }
    void Copy(const CArray& other) { m_items = other.m_items; }
    // Inserts in front of the element at the index; behind the end the array grows first.
    void InsertAt(INT_PTR index, ARG_TYPE value, INT_PTR count = 1) {
        const TYPE copy(value); // the value may be an element
        if (index > GetSize())
            SetSize(index);
        m_items.insert(m_items.begin() + index, static_cast<std::size_t>(count), copy);
    }
    void RemoveAt(INT_PTR index, INT_PTR count = 1) {
        m_items.erase(m_items.begin() + index, m_items.begin() + index + count);
    }

    auto begin() { return m_items.begin(); }
    auto end() { return m_items.end(); }
    auto begin() const { return m_items.begin(); }
    auto end() const { return m_items.end(); }

private:
    std::vector<TYPE> m_items;
};
