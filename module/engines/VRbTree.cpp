#include "module/engines/VRbTree.h"

#include <algorithm>
#include <deque>

IMPLEMENT_DYNAMIC(CVRbTree, CObject)

namespace {

std::wstring_view ViewOf(LPCTSTR text) {
    return text != nullptr ? std::wstring_view(text) : std::wstring_view();
}

bool IsItem(const CVRbTreeItem* position) {
    return position != nullptr && position != VRBTREE_ROOT && position != VRBTREE_FIRST &&
           position != VRBTREE_LAST;
}

} // namespace

// Where the items lie. They stay at their places; those that were destroyed are used again.
struct CVRbTree::Items {
    struct Item : CVRbTreeItem {};

    Item m_above; // the parent of the items at the top
    std::deque<Item> m_items;
    CVRbTreeItem* m_free = nullptr; // linked by m_next
    SharedArrayCache<wchar_t> m_texts;
    SharedArrayCache<CVRbTreeItem::Attrib> m_attribs;
};

CVRbTree::CVRbTree() : m_items(std::make_unique<Items>()) {
}

CVRbTree::CVRbTree(const CVRbTree& other) : CVRbTree() {
    CopyChildren(other.m_items->m_above, m_items->m_above);
}

CVRbTree& CVRbTree::operator=(const CVRbTree& other) {
    CVRbTree copy(other);
    m_items.swap(copy.m_items);
    return *this;
}

CVRbTree::~CVRbTree() = default;

CVRbTreeItem* CVRbTree::InsertItem(LPCTSTR name, CVRbTreeItem* parent, CVRbTreeItem* after) {
    CVRbTreeItem* const above = ItemAt(parent);
    if (above == nullptr || (IsItem(after) && after->m_parent != above))
        return nullptr;
    CVRbTreeItem* const item = NewItem();
    item->m_name = Shared(ViewOf(name));
    Link(*item, *above, after);
    return item;
}

bool CVRbTree::DeleteItem(CVRbTreeItem* item) {
    if (item == VRBTREE_ROOT)
        return DeleteChildren(item);
    if (!IsItem(item))
        return false;
    Unlink(*item);
    item->m_next = nullptr;
    Destroy(item);
    return true;
}

bool CVRbTree::DeleteChildren(CVRbTreeItem* item) {
    if (item == nullptr || ItemAt(item) == nullptr)
        return false;
    Destroy(std::exchange(ItemAt(item)->m_child, nullptr));
    return true;
}

void CVRbTree::DeleteAllItems() {
    m_items = std::make_unique<Items>();
}

CVRbTreeItem* CVRbTree::FindItem(LPCTSTR name, CVRbTreeItem* from) const {
    return FindFrom(
        from, [wanted = ViewOf(name)](const CVRbTreeItem& item) { return ViewOf(item.m_name) == wanted; });
}

CVRbTreeItem* CVRbTree::FindItemBy(LPCTSTR attribName, LPCTSTR value, CVRbTreeItem* from) const {
    return FindFrom(from, [name = ViewOf(attribName), wanted = ViewOf(value)](const CVRbTreeItem& item) {
        return item.HasAttrib(name, wanted);
    });
}

template<class Wanted>
CVRbTreeItem* CVRbTree::FindFrom(CVRbTreeItem* from, Wanted wanted) const {
    CVRbTreeItem* item = IsItem(from) ? from : GetValidChildItem(from);
    if (item == nullptr)
        return nullptr;
    const CVRbTreeItem* const above = item->m_parent;
    for (;;) {
        if (wanted(*item))
            return item;
        if (item->m_child != nullptr) {
            item = item->m_child;
            continue;
        }
        while (item->m_next == nullptr) {
            item = item->m_parent;
            if (item == above)
                return nullptr;
        }
        item = item->m_next;
    }
}

CVRbTreeItem* CVRbTree::GetRootItem() const {
    return m_items->m_above.m_child;
}

// The item that children of a position have as their parent; null when the position can have none.
CVRbTreeItem* CVRbTree::ItemAt(CVRbTreeItem* position) const {
    if (position == nullptr || position == VRBTREE_ROOT)
        return &m_items->m_above;
    return IsItem(position) ? position : nullptr;
}

CVRbTreeItem* CVRbTree::GetChildItem(CVRbTreeItem* item) const {
    return item != nullptr ? GetValidChildItem(item) : nullptr;
}

CVRbTreeItem* CVRbTree::GetValidChildItem(CVRbTreeItem* item) const {
    const CVRbTreeItem* const above = ItemAt(item);
    return above != nullptr ? above->m_child : nullptr;
}

CVRbTreeItem* CVRbTree::GetLastChildItem(CVRbTreeItem* item) const {
    const CVRbTreeItem* const first = GetChildItem(item);
    return first != nullptr ? first->m_prev : nullptr;
}

CVRbTreeItem* CVRbTree::GetNextSiblingItem(CVRbTreeItem* item) const {
    return IsItem(item) ? item->GetNext() : nullptr;
}

CVRbTreeItem* CVRbTree::GetPrevSiblingItem(CVRbTreeItem* item) const {
    return IsItem(item) ? item->GetPrev() : nullptr;
}

CVRbTreeItem* CVRbTree::GetParentItem(CVRbTreeItem* item) const {
    return IsItem(item) ? item->GetParent() : nullptr;
}

bool CVRbTree::ItemHasChildren(CVRbTreeItem* item) const {
    return GetChildItem(item) != nullptr;
}

CVRbTreeItem* CVRbTree::AppendItem(const CVRbTreeItem* source, CVRbTreeItem* parent) {
    return CopyTreeItem(source, parent);
}

CVRbTreeItem* CVRbTree::CopyTreeItem(const CVRbTreeItem* source, CVRbTreeItem* parent) {
    CVRbTreeItem* const above = ItemAt(parent);
    if (!IsItem(source) || above == nullptr)
        return nullptr;
    // The copy is linked when it is whole, because the parent may lie below the source.
    CVRbTreeItem* const copy = NewItem();
    copy->CopyTextsFrom(*source);
    CopyChildren(*source, *copy);
    Link(*copy, *above, VRBTREE_LAST);
    return copy;
}

void CVRbTree::AppendTree(const CVRbTree& tree, CVRbTreeItem* parent) {
    CVRbTreeItem* const above = ItemAt(parent);
    if (above == nullptr)
        return;
    CVRbTreeItem* const holder = NewItem();
    CopyChildren(tree.m_items->m_above, *holder);
    while (CVRbTreeItem* const copy = holder->m_child) {
        Unlink(*copy);
        Link(*copy, *above, VRBTREE_LAST);
    }
    Destroy(holder);
}

bool CVRbTree::MoveItemTo(CVRbTreeItem* item, CVRbTreeItem* parent, CVRbTreeItem* after) {
    CVRbTreeItem* const above = ItemAt(parent);
    if (!IsItem(item) || above == nullptr || after == item || (IsItem(after) && after->m_parent != above))
        return false;
    for (const CVRbTreeItem* up = above; up != nullptr; up = up->m_parent) {
        if (up == item)
            return false;
    }
    Unlink(*item);
    Link(*item, *above, after);
    return true;
}

bool CVRbTree::MakeTree(const CVRbTreeItem* item, CVRbTree& tree) const {
    if (!IsItem(item))
        return false;
    CVRbTree made;
    made.CopyTreeItem(item);
    tree.m_items.swap(made.m_items);
    return true;
}

SharedText CVRbTree::Shared(std::wstring_view text) {
    return m_items->m_texts.Get(text);
}

// Of several attributes of one name the last one stays; those that the item has are the first.
void CVRbTree::AddAttribs(CVRbTreeItem& item, std::vector<CVRbTreeItem::Attrib>& attribs) {
    using Attrib = CVRbTreeItem::Attrib;
    const std::span<const Attrib> old = item.m_attribs.Get();
    if (old.empty() && attribs.size() == 1) { // as in most files
        item.m_attribs = m_items->m_attribs.Get(attribs);
        return;
    }
    attribs.insert(attribs.begin(), old.begin(), old.end());
    std::ranges::stable_sort(attribs, {}, &CVRbTreeItem::NameOf);
    const auto kept = std::unique(attribs.rbegin(), attribs.rend(), [](const Attrib& a, const Attrib& b) {
        return CVRbTreeItem::NameOf(a) == CVRbTreeItem::NameOf(b);
    });
    item.m_attribs = m_items->m_attribs.Get(std::span(kept.base(), attribs.end()));
}

// In the tree, but linked to nothing.
CVRbTreeItem* CVRbTree::NewItem() {
    CVRbTreeItem* const used = m_items->m_free;
    if (used == nullptr)
        return &m_items->m_items.emplace_back();
    m_items->m_free = std::exchange(used->m_next, nullptr);
    return used;
}

// The target must not lie below the source.
void CVRbTree::CopyChildren(const CVRbTreeItem& source, CVRbTreeItem& target) {
    const CVRbTreeItem* from = &source;
    CVRbTreeItem* to = &target;
    for (;;) {
        if (from->m_child != nullptr) {
            from = from->m_child;
        } else {
            while (from != &source && from->m_next == nullptr) {
                from = from->m_parent;
                to = to->m_parent;
            }
            if (from == &source)
                return;
            from = from->m_next;
            to = to->m_parent;
        }
        CVRbTreeItem* const copy = NewItem();
        copy->CopyTextsFrom(*from);
        Link(*copy, *to, VRBTREE_LAST);
        to = copy;
    }
}

// Destroys an item, which is linked to no parent any more, those that follow it, and all below them.
void CVRbTree::Destroy(CVRbTreeItem* first) {
    while (first != nullptr) {
        CVRbTreeItem* const item = std::exchange(first, first->m_next);
        if (CVRbTreeItem* const child = std::exchange(item->m_child, nullptr)) {
            child->m_prev->m_next = first;
            first = child;
        }
        item->m_name = {};
        item->m_value = {};
        item->m_attribs = {};
        item->m_next = std::exchange(m_items->m_free, item);
    }
}

void CVRbTree::Link(CVRbTreeItem& item, CVRbTreeItem& parent, CVRbTreeItem* after) {
    CVRbTreeItem* const first = parent.m_child;
    item.m_parent = &parent;
    item.m_next = nullptr;
    item.m_prev = &item;
    if (first == nullptr) {
        parent.m_child = &item;
    } else if (after == VRBTREE_FIRST) {
        item.m_next = first;
        item.m_prev = std::exchange(first->m_prev, &item);
        parent.m_child = &item;
    } else {
        CVRbTreeItem* const before = IsItem(after) ? after : first->m_prev;
        item.m_prev = before;
        item.m_next = std::exchange(before->m_next, &item);
        (item.m_next != nullptr ? item.m_next : first)->m_prev = &item;
    }
}

void CVRbTree::Unlink(CVRbTreeItem& item) {
    CVRbTreeItem& parent = *item.m_parent;
    CVRbTreeItem* const first = parent.m_child;
    (item.m_next != nullptr ? item.m_next : first)->m_prev = item.m_prev;
    if (first == &item)
        parent.m_child = item.m_next;
    else
        item.m_prev->m_next = item.m_next;
}
