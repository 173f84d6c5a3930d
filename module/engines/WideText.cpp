#include "module/engines/WideText.h"

#include <algorithm>
#include <cstdlib>
#include <cwchar>
#include <new>
#include <utility>

WideText::WideText(WideText&& other) noexcept
    : m_units(std::exchange(other.m_units, nullptr)), m_size(std::exchange(other.m_size, 0)),
      m_capacity(std::exchange(other.m_capacity, 0)) {
}

WideText& WideText::operator=(WideText&& other) noexcept {
    WideText taken(std::move(other));
    std::swap(m_units, taken.m_units);
    std::swap(m_size, taken.m_size);
    std::swap(m_capacity, taken.m_capacity);
    return *this;
}

WideText::~WideText() {
    std::free(m_units);
}

wchar_t* WideText::Extend(std::size_t size) {
    if (m_units == nullptr || size > m_capacity - m_size) {
        const std::size_t needed = m_size + size;
        if (!Resize(std::max(needed, m_size + m_size / 2)) && !Resize(needed))
            throw std::bad_alloc();
    }
    return m_units + m_size;
}

void WideText::SetSize(std::size_t size) {
    m_size = size;
    std::wmemset(m_units + size, L'\0', padding);
}

void WideText::Append(std::wstring_view text) {
    std::wmemcpy(Extend(text.size()), text.data(), text.size());
    SetSize(m_size + text.size());
}

void WideText::Trim() {
    if (m_units != nullptr)
        Resize(m_size);
}

bool WideText::Resize(std::size_t capacity) {
    void* const units = std::realloc(m_units, (capacity + padding) * sizeof(wchar_t));
    if (units == nullptr)
        return false;
    m_units = static_cast<wchar_t*>(units);
    m_capacity = capacity;
    return true;
}
