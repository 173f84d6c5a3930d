// Pointers of a record to its children that are as const as the record: who has a const standard, or a const
// part of one, reaches const records only.
#pragma once

#include <memory>
#include <type_traits>
#include <utility>

template<class Pointer>
class DeepConst {
public:
    using Record = std::remove_reference_t<decltype(*std::declval<Pointer&>())>;

    DeepConst() = default;
    DeepConst(Pointer pointer) : m_pointer(std::move(pointer)) {}
    // A copy of a const one would not be const.
    DeepConst(const DeepConst&) = delete;
    DeepConst& operator=(const DeepConst&) = delete;
    DeepConst(DeepConst&&) noexcept = default;
    DeepConst& operator=(DeepConst&&) noexcept = default;
    ~DeepConst() = default;

    Record* get() { return &*m_pointer; }
    const Record* get() const { return &*m_pointer; }
    Record& operator*() { return *m_pointer; }
    const Record& operator*() const { return *m_pointer; }
    Record* operator->() { return get(); }
    const Record* operator->() const { return get(); }

private:
    Pointer m_pointer;
};

// Never null.
template<class Record>
using Owned = DeepConst<std::unique_ptr<Record>>;
template<class Record>
using Linked = DeepConst<Record*>;

// For the twin of a const look-up: what it found belongs to an object that is not const.
template<class Record>
Record* Changeable(const Record* found) {
    return const_cast<Record*>(found);
}
