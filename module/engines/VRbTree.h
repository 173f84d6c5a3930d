// An ordered tree of named items, each with a text value and text attributes: the form that the module's XML
// files have in memory. An element is an item, its tag the name, its text the value.
//
// Items are made and destroyed by their tree alone; a pointer to one is good until then, also when the item
// is moved. Null texts are empty ones. Where an item is asked for, or about, null is allowed: it gives null,
// an empty text or the default. A tree and what was copied from it share texts, so they belong to one thread
// together.
#pragma once

#include "module/engines/SharedArray.h"
#include "module/frame/ModulePort.h"

#include "afx.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

class CVRbTree;
class CVRbTreeItem;
struct MarkupFault;

// Positions that are no item, with the numbers that they have at tree controls.
inline CVRbTreeItem* const VRBTREE_ROOT = reinterpret_cast<CVRbTreeItem*>(static_cast<LONG_PTR>(-65536));
inline CVRbTreeItem* const VRBTREE_FIRST = reinterpret_cast<CVRbTreeItem*>(static_cast<LONG_PTR>(-65535));
inline CVRbTreeItem* const VRBTREE_LAST = reinterpret_cast<CVRbTreeItem*>(static_cast<LONG_PTR>(-65534));

class ZEF_PIPESYSTEM_PORT CVRbTreeItem : public CObject {
    DECLARE_DYNAMIC(CVRbTreeItem)

public:
    ~CVRbTreeItem() override;

    CString GetName() const;
    void SetName(LPCTSTR name);

    // Whether the value is more than an empty text.
    bool HasValue() const { return !ViewOf(m_value).empty(); }

    // The value, or the default when it is empty. As a number: the one that it begins with, blanks before it
    // skipped, or the default when it begins with none.
    CString GetValue(LPCTSTR defaultValue = nullptr) const;
    int GetValue(int defaultValue) const;
    double GetValue(double defaultValue) const;

    // Integers become their decimal text; reals that with `precision` digits behind the point, 6 when it is
    // negative: 1.5 with 2 gives "1.50".
    void SetValue(LPCTSTR value);
    void SetValue(int value);
    void SetValue(double value, int precision);
    void SetValue(double value) = delete;

    // The same for attributes, except that one that is there and empty is an empty text.
    CString GetAttrib(LPCTSTR name, LPCTSTR defaultValue = nullptr) const;
    int GetAttrib(LPCTSTR name, int defaultValue) const;
    double GetAttrib(LPCTSTR name, double defaultValue) const;
    void SetAttrib(LPCTSTR name, LPCTSTR value);
    void SetAttrib(LPCTSTR name, int value);
    void SetAttrib(LPCTSTR name, double value, int precision);
    void SetAttrib(LPCTSTR name, double value) = delete;

    // False when there is no such attribute.
    bool DeleteAttrib(LPCTSTR name);
    void DeleteAllAttribs();

    int GetAttribCount() const;

    // Attributes in the order of their names (by the units' numbers): GetNextAttrib gives the iterator's one
    // and moves on; false, and nothing given, behind the last one.
    int GetAttribIterator() const { return 0; }
    bool GetNextAttrib(int& iterator, CString& name, CString& value) const;

    // Null where there is none. The first child; the siblings; the parent, null for an item at the top.
    CVRbTreeItem* GetChild() const { return m_child; }
    CVRbTreeItem* GetNext() const { return m_next; }
    CVRbTreeItem* GetPrev() const;
    CVRbTreeItem* GetParent() const;

    // How many items stand above this one.
    int GetLevel() const;

    // The first direct child of that name, or whose attribute has that value; null when there is none. The
    // attribute's text is compared with the text that SetAttrib would give it for the number.
    CVRbTreeItem* FindSubItem(LPCTSTR name) const;
    CVRbTreeItem* FindSubItemBy(LPCTSTR attribName, LPCTSTR value) const;
    CVRbTreeItem* FindSubItemBy(LPCTSTR attribName, int value) const;
    CVRbTreeItem* FindSubItemBy(LPCTSTR attribName, double value, int precision) const;

    // The same among the direct children of the item at the top that this one lies below, or that it is.
    CVRbTreeItem* FindTopSubItem(LPCTSTR name) const;
    CVRbTreeItem* FindTopSubItemBy(LPCTSTR attribName, LPCTSTR value) const;
    CVRbTreeItem* FindTopSubItemBy(LPCTSTR attribName, int value) const;
    CVRbTreeItem* FindTopSubItemBy(LPCTSTR attribName, double value, int precision) const;

    // The names, or the values of one attribute, from the top down to this item, each followed by "/".
    CString GetPath() const;
    CString GetPathBy(LPCTSTR attribName) const;

private:
    friend class CVRbTree;
    friend int LoadTreeFromXml(LPCTSTR path, CVRbTree& tree, std::optional<MarkupFault>* fault,
                               bool judgesBytes);

    struct Attrib {
        SharedText m_name;
        SharedText m_value;

        bool operator==(const Attrib& other) const {
            return m_name.IsShared(other.m_name) && m_value.IsShared(other.m_value);
        }
        friend std::uint32_t GetBits(const Attrib& attrib) {
            return attrib.m_name.GetBits() * 31 + attrib.m_value.GetBits();
        }
    };

    CVRbTreeItem();

    static std::wstring_view NameOf(const Attrib& attrib) { return ViewOf(attrib.m_name); }
    const Attrib* FindAttrib(std::wstring_view name) const;
    bool HasAttrib(std::wstring_view name, std::wstring_view value) const;
    void CopyTextsFrom(const CVRbTreeItem& source);
    const CVRbTreeItem* Top() const;
    template<class PartOf>
    CString PathOf(PartOf partOf) const;

    // The items at the top are children of an item that nobody sees.
    CVRbTreeItem* m_parent = nullptr;
    CVRbTreeItem* m_child = nullptr;
    CVRbTreeItem* m_next = nullptr;
    CVRbTreeItem* m_prev = nullptr; // of the first child: the last one
    SharedText m_name;
    SharedText m_value;
    SharedArray<Attrib> m_attribs; // sorted by name
};

class ZEF_PIPESYSTEM_PORT CVRbTree : public CObject {
    DECLARE_DYNAMIC(CVRbTree)

public:
    CVRbTree();
    CVRbTree(const CVRbTree& other);
    CVRbTree& operator=(const CVRbTree& other);
    ~CVRbTree() override;

    // In the functions below `parent` is an item of this tree, or root or null for the top; `after` is a
    // child of it, or first, or last (also root and null). What is asked for amiss is not done.

    // A new item. Null when `after` is no child of the parent.
    CVRbTreeItem* InsertItem(LPCTSTR name, CVRbTreeItem* parent = VRBTREE_ROOT,
                             CVRbTreeItem* after = VRBTREE_LAST);

    // Destroys an item with all that is below it, or only that; root means all items. False for null.
    bool DeleteItem(CVRbTreeItem* item);
    bool DeleteChildren(CVRbTreeItem* item);
    void DeleteAllItems();

    // The first item of exactly that name, or whose attribute has that value. Each item is looked at before
    // its children, these before its following siblings, beginning with `from`, or with the first item at the
    // top when that is null or root. Null when there is none.
    CVRbTreeItem* FindItem(LPCTSTR name, CVRbTreeItem* from = nullptr) const;
    CVRbTreeItem* FindItemBy(LPCTSTR attribName, LPCTSTR value, CVRbTreeItem* from = nullptr) const;

    // The first item at the top, null when the tree is empty.
    CVRbTreeItem* GetRootItem() const;

    // Null where there is none. The children of root are the items at the top; GetValidChildItem takes null
    // for root.
    CVRbTreeItem* GetChildItem(CVRbTreeItem* item) const;
    CVRbTreeItem* GetValidChildItem(CVRbTreeItem* item) const;
    CVRbTreeItem* GetLastChildItem(CVRbTreeItem* item) const;
    CVRbTreeItem* GetNextSiblingItem(CVRbTreeItem* item) const;
    CVRbTreeItem* GetPrevSiblingItem(CVRbTreeItem* item) const;
    CVRbTreeItem* GetParentItem(CVRbTreeItem* item) const;
    bool ItemHasChildren(CVRbTreeItem* item) const;

    // Adds a copy of an item with all below it, of this tree or another, as the last child. The new item;
    // null for none. The two are the same.
    CVRbTreeItem* AppendItem(const CVRbTreeItem* source, CVRbTreeItem* parent = VRBTREE_ROOT);
    CVRbTreeItem* CopyTreeItem(const CVRbTreeItem* source, CVRbTreeItem* parent = VRBTREE_ROOT);

    // Adds copies of all items of a tree, which may be this one, as the last children.
    void AppendTree(const CVRbTree& tree, CVRbTreeItem* parent = VRBTREE_ROOT);

    // Moves an item with all below it. False, and nothing moved, when it would come below itself or `after`
    // is no other child of the parent.
    bool MoveItemTo(CVRbTreeItem* item, CVRbTreeItem* parent, CVRbTreeItem* after = VRBTREE_LAST);

    // Makes a copy of an item with all below it the only content of a tree, which may be this one. False for
    // null.
    bool MakeTree(const CVRbTreeItem* item, CVRbTree& tree) const;

private:
    friend int LoadTreeFromXml(LPCTSTR path, CVRbTree& tree, std::optional<MarkupFault>* fault,
                               bool judgesBytes);

    SharedText Shared(std::wstring_view text);
    void AddAttribs(CVRbTreeItem& item, std::vector<CVRbTreeItem::Attrib>& attribs);
    CVRbTreeItem* NewItem();
    CVRbTreeItem* ItemAt(CVRbTreeItem* position) const;
    void CopyChildren(const CVRbTreeItem& source, CVRbTreeItem& target);
    void Destroy(CVRbTreeItem* first);
    static void Link(CVRbTreeItem& item, CVRbTreeItem& parent, CVRbTreeItem* after);
    static void Unlink(CVRbTreeItem& item);
    template<class Wanted>
    CVRbTreeItem* FindFrom(CVRbTreeItem* from, Wanted wanted) const;

    struct Items;
    std::unique_ptr<Items> m_items;
};
