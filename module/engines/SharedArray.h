// An unchanging array that its copies share, in the room of one pointer; and a cache by which arrays that
// come again and again become one. All copies of an array belong to one thread together.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <span>
#include <string_view>
#include <utility>

template<class T>
class SharedArray {
public:
    SharedArray() = default;
    explicit SharedArray(std::span<const T> items) {
        if (items.empty())
            return;
        void* const room = ::operator new(sizeof(Head) + items.size_bytes());
        m_head = ::new (room) Head{1, static_cast<std::uint32_t>(items.size())};
        std::uninitialized_copy(items.begin(), items.end(), Items());
    }
    SharedArray(const SharedArray& other) : m_head(other.m_head) {
        if (m_head != nullptr)
            ++m_head->m_owners;
    }
    SharedArray(SharedArray&& other) noexcept : m_head(std::exchange(other.m_head, nullptr)) {}
    SharedArray& operator=(SharedArray other) noexcept {
        std::swap(m_head, other.m_head);
        return *this;
    }
    ~SharedArray() {
        if (m_head != nullptr && --m_head->m_owners == 0) {
            std::destroy_n(Items(), m_head->m_size);
            ::operator delete(m_head);
        }
    }

    // Valid as long as a copy of the array is.
    std::span<const T> Get() const {
        return m_head != nullptr ? std::span<const T>(Items(), m_head->m_size) : std::span<const T>();
    }

    // Whether they are copies of one another; so are all empty ones.
    bool IsShared(const SharedArray& other) const { return m_head == other.m_head; }

    // For hashing: the same number for copies of one another.
    std::uint32_t GetBits() const {
        return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(m_head) / sizeof(Head));
    }

private:
    // The items lie behind it. An empty array has none.
    struct Head {
        std::uint32_t m_owners;
        std::uint32_t m_size;
    };
    static_assert(alignof(T) <= sizeof(Head));

    T* Items() const { return reinterpret_cast<T*>(m_head + 1); }

    Head* m_head = nullptr;
};

using SharedText = SharedArray<wchar_t>;

inline std::wstring_view ViewOf(const SharedText& text) {
    return {text.Get().data(), text.Get().size()};
}

inline std::uint32_t GetBits(wchar_t unit) {
    return static_cast<std::uint32_t>(unit);
}

// Remembers the last arrays that it was asked for. Items have operator== and a function GetBits that gives
// the same number for equal ones.
template<class T>
class SharedArrayCache {
public:
    // One that is not new when the same was asked for lately.
    SharedArray<T> Get(std::span<const T> items) {
        // Longer ones hardly come twice, and looking at them would cost more than it saves.
        constexpr std::size_t longest = 32;
        if (items.empty() || items.size() > longest)
            return SharedArray<T>(items);
        std::uint32_t hash = 2166136261u;
        for (const T& item : items)
            hash = (hash ^ GetBits(item)) * 16777619u;
        SharedArray<T>& kept = m_arrays[(hash ^ hash >> 15) % m_arrays.size()];
        if (!std::ranges::equal(kept.Get(), items))
            kept = SharedArray<T>(items);
        return kept;
    }

private:
    std::array<SharedArray<T>, 512> m_arrays;
};
