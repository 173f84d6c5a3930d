// Arrays of the interface.
#pragma once

#include <algorithm>
#include <type_traits>
#include <utility>
#include <vector>

// Elements that lie together, counted by int. An index must be that of an element unless a call says
// otherwise.
template<typename T>
class AcArray {
    static_assert(!std::is_same_v<T, bool>, "An array of bool has no elements that can be pointed to.");

public:
    // Empty; the argument tells how many elements there will be. How the array grows is its own affair.
    explicit AcArray(int physicalLength = 0, int /*growLength*/ = 0) { setPhysicalLength(physicalLength); }

    // The number of elements, and how many find room before the next growth.
    int length() const { return static_cast<int>(m_items.size()); }
    int logicalLength() const { return length(); }
    int physicalLength() const { return static_cast<int>(m_items.capacity()); }
    bool isEmpty() const { return m_items.empty(); }

    // Drops elements at the end, or adds new ones there.
    AcArray& setLogicalLength(int length) {
        m_items.resize(room(length));
        return *this;
    }
    // Makes room. Less room than there are elements drops those at the end.
    AcArray& setPhysicalLength(int length) {
        if (room(length) < m_items.size())
            m_items.resize(room(length));
        if (room(length) < m_items.capacity())
            m_items.shrink_to_fit();
        m_items.reserve(room(length));
        return *this;
    }

    T& operator[](int index) { return m_items[static_cast<std::size_t>(index)]; }
    const T& operator[](int index) const { return m_items[static_cast<std::size_t>(index)]; }
    T& at(int index) { return (*this)[index]; }
    const T& at(int index) const { return (*this)[index]; }
    AcArray& setAt(int index, const T& value) {
        (*this)[index] = value;
        return *this;
    }
    AcArray& setAll(const T& value) {
        std::fill(m_items.begin(), m_items.end(), value);
        return *this;
    }
    // Of an array that is not empty.
    T& first() { return m_items.front(); }
    const T& first() const { return m_items.front(); }
    T& last() { return m_items.back(); }
    const T& last() const { return m_items.back(); }

    // Adds at the end; the index of the (first) new element.
    int append(const T& value) {
        m_items.push_back(value);
        return length() - 1;
    }
    int append(T&& value) {
        m_items.push_back(std::move(value));
        return length() - 1;
    }
    int append(const AcArray& other) {
        const int at = length();
        const std::size_t count = other.m_items.size(); // the other one may be this one
        m_items.reserve(m_items.size() + count);
        for (std::size_t i = 0; i != count; ++i)
            m_items.push_back(other.m_items[i]);
        return at;
    }
    // Inserts in front of the element at the index, or at the end when it is the length.
    AcArray& insertAt(int index, const T& value) {
        m_items.insert(m_items.begin() + index, value);
        return *this;
    }

    AcArray& removeAt(int index) {
        m_items.erase(m_items.begin() + index);
        return *this;
    }
    // Removes the elements from the first to the last index.
    AcArray& removeSubArray(int start, int end) {
        m_items.erase(m_items.begin() + start, m_items.begin() + end + 1);
        return *this;
    }
    // Removes the first element at or behind `start` that equals the value; whether there was one.
    bool remove(const T& value, int start = 0) {
        const int index = find(value, start);
        if (index >= 0)
            removeAt(index);
        return index >= 0;
    }
    AcArray& removeFirst() { return removeAt(0); }
    AcArray& removeLast() {
        m_items.pop_back();
        return *this;
    }
    AcArray& removeAll() {
        m_items.clear();
        return *this;
    }

    bool contains(const T& value, int start = 0) const { return find(value, start) >= 0; }
    // The index of the first element at or behind `start` that equals the value, -1 when there is none.
    int find(const T& value, int start = 0) const {
        for (int i = std::max(start, 0); i < length(); ++i) {
            if ((*this)[i] == value)
                return i;
        }
        return -1;
    }
    // The same; whether there was one. Without one the index stays as it is.
    bool find(const T& value, int& index, int start) const {
        const int found = find(value, start);
        if (found >= 0)
            index = found;
        return found >= 0;
    }

    AcArray& reverse() {
        std::reverse(m_items.begin(), m_items.end());
        return *this;
    }
    AcArray& swap(int index1, int index2) {
        std::swap((*this)[index1], (*this)[index2]);
        return *this;
    }

    // The elements as a plain array, valid until the length grows.
    const T* asArrayPtr() const { return m_items.data(); }
    T* asArrayPtr() { return m_items.data(); }

    auto begin() { return m_items.begin(); }
    auto end() { return m_items.end(); }
    auto begin() const { return m_items.begin(); }
    auto end() const { return m_items.end(); }

    friend bool operator==(const AcArray& a, const AcArray& b) { return a.m_items == b.m_items; }

private:
    static std::size_t room(int length) { return static_cast<std::size_t>(std::max(length, 0)); }

    std::vector<T> m_items;
};
