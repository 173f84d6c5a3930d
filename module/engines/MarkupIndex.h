// Where the elements of a document stand in its text, and how they hang together.
#pragma once

#include "sys/memory.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <vector>

// Elements are named by their place in the index: the high 16 bits tell the block, the low ones the slot in
// it. 0 is none, or the document itself where an element's parent is asked for.
using ElementIndex = std::uint32_t;

struct MarkupElement {
    static constexpr std::uint32_t highestLevel = (1u << 22) - 1;
    static constexpr std::uint32_t longName = (1u << 5) - 1;

    std::uint32_t start;     // of the start tag in the text; of a changed element, its number among them
    std::uint32_t length;    // from the start tag to the end of the end tag
    std::uint32_t tagLength; // of the start tag; the whole element's when it is an empty one
    ElementIndex parent;
    ElementIndex next;
    ElementIndex previous; // of the first child, the last one
    ElementIndex firstChild;
    std::uint32_t level : 22;          // 0 at the top; what is higher stays the highest
    std::uint32_t nameLength : 5;      // longName when it is that long or longer
    std::uint32_t hasPlainTag : 1;     // known to have no entity in it
    std::uint32_t hasPlainContent : 1; // known to have neither an entity nor markup but child elements in it
    std::uint32_t hasPlainEnd : 1;     // known to have an end tag of nothing but a name that is not long
    std::uint32_t isUnended : 1;       // there is no end tag
    std::uint32_t isChanged : 1;       // where it stands is told elsewhere
};

class MarkupIndex {
public:
    MarkupIndex() { Clear(); }

    // Nothing but the document itself.
    void Clear() {
        m_blocks.clear();
        m_count = 0;
        m_capacity = 0;
        MarkupElement& document = operator[](Add());
        document = {};
        document.isUnended = 1;
    }

    // Valid until the next element is added.
    MarkupElement& operator[](ElementIndex index) {
        return m_blocks[index >> slotBits].get()[index & slotMask];
    }
    const MarkupElement& operator[](ElementIndex index) const {
        return m_blocks[index >> slotBits].get()[index & slotMask];
    }

    // A new element, not filled in. Throws std::bad_alloc.
    ElementIndex Add() {
        if (m_count == m_capacity)
            Grow();
        return m_count++;
    }

private:
    struct Free {
        void operator()(MarkupElement* block) const { std::free(block); }
    };
    using Block = std::unique_ptr<MarkupElement, Free>;

    static constexpr unsigned slotBits = 16;
    static constexpr std::uint32_t slotMask = (1u << slotBits) - 1;
    static constexpr std::uint32_t firstSlots = 16;

    // The first block begins small and is doubled until it is whole, so that a small document is cheap.
    void Grow() {
        if (m_count > 0 && m_count <= slotMask) {
            m_capacity = m_count * 2;
            Block old = std::move(m_blocks.back());
            m_blocks.back() = Allocate(old.get(), m_capacity);
            static_cast<void>(old.release());
            return;
        }
        const std::uint32_t slots = m_count == 0 ? firstSlots : slotMask + 1;
        if (m_blocks.size() > slotMask)
            throw std::bad_alloc();
        m_blocks.push_back(Allocate(nullptr, slots));
        if (m_count > 0)
            sys::expect_writes(m_blocks.back().get(), slots * sizeof(MarkupElement));
        m_capacity = m_count + slots;
    }

    static Block Allocate(MarkupElement* old, std::size_t slots) {
        void* const block = std::realloc(static_cast<void*>(old), slots * sizeof(MarkupElement));
        if (block == nullptr)
            throw std::bad_alloc();
        return Block(static_cast<MarkupElement*>(block));
    }

    std::vector<Block> m_blocks;
    std::uint32_t m_count = 0;
    std::uint32_t m_capacity = 0;
};
