#include "module/engines/VRbTreeXml.h"

#include "base/utf.h"
#include "module/engines/MarkupDoc.h"
#include "module/engines/VRbTree.h"
#include "sys/file.h"
#include "sys/folders.h"
#include "sys/plain_text.h"

#include <vector>

namespace {

bool HasLoss(const MarkupDoc& document) {
    const std::wstring result = document.GetResult();
    return result.find(L"<conversion_loss") != result.npos ||
           result.find(L"<truncation_error") != result.npos;
}

std::optional<std::wstring> ReadByBytes(LPCTSTR path) {
    const auto file = sys::read_file(sys::to_path(path));
    sys::text_form form;
    const auto text = file ? sys::utf8_of(file->view(), form) : std::nullopt;
    return text ? std::optional(base::widen(*text)) : std::nullopt;
}

// A number that mostly differs between the start tags of a file.
std::size_t GetKey(std::wstring_view tag) {
    std::size_t key = tag.size();
    for (std::size_t at = 1; at < tag.size(); at += 5)
        key = key * 31 + static_cast<std::size_t>(tag[at]);
    return key;
}

} // namespace

int LoadTreeFromXml(LPCTSTR path, CVRbTree& tree, std::optional<MarkupFault>* fault, bool judgesBytes) {
    MarkupDoc document;
    bool isRead = document.LoadFile(path);
    if (judgesBytes && HasLoss(document))
        if (const auto text = ReadByBytes(path))
            isRead = document.SetDocumentText(text->c_str());
    if (fault != nullptr)
        *fault = FindMarkupFault(document);
    if (!isRead)
        return 0;
    document.ResetPosition();
    if (!document.FindElement())
        return 0;

    // What the last start tags came to: most files are made of a few, which come again and again.
    struct KnownTag {
        std::wstring_view tag;
        SharedText name;
        SharedArray<CVRbTreeItem::Attrib> attribs;
    };
    std::vector<KnownTag> known(256);
    std::vector<CVRbTreeItem::Attrib> attribs;
    const auto readTag = [&](CVRbTreeItem& item) {
        item.m_name = tree.Shared(document.GetTagName());
        attribs.clear();
        for (int i = 0;; ++i) {
            const std::wstring_view name = document.GetAttributeName(i);
            if (name.empty())
                break;
            attribs.push_back({tree.Shared(name), tree.Shared(document.GetAttributeValue(i))});
        }
        if (!attribs.empty())
            tree.AddAttribs(item, attribs);
    };
    // Takes over the current element and goes inside it.
    const auto enter = [&](CVRbTreeItem& item) {
        const std::wstring_view tag = document.GetStartTag();
        KnownTag& same = known[GetKey(tag) % known.size()];
        if (item.GetAttribCount() > 0) {
            readTag(item); // what the root has stays beside
        } else if (same.tag == tag) {
            item.m_name = same.name;
            item.m_attribs = same.attribs;
        } else {
            readTag(item);
            same = {tag, item.m_name, item.m_attribs};
        }
        item.m_value = tree.Shared(document.GetElementData());
        document.IntoElement();
    };

    CVRbTreeItem* const root = tree.GetRootItem() != nullptr ? tree.GetRootItem() : tree.InsertItem(nullptr);
    CVRbTreeItem* item = root;
    enter(*root);
    for (;;) {
        if (document.FindElement()) {
            CVRbTreeItem* const child = tree.NewItem();
            CVRbTree::Link(*child, *item, VRBTREE_LAST);
            enter(*child);
            item = child;
            continue;
        }
        // The form of the file, not its content.
        if (item->m_child != nullptr &&
            ViewOf(item->m_value).find_first_not_of(L" \t\r\n") == std::wstring::npos)
            item->m_value = {};
        if (item == root)
            return 1;
        document.OutOfElement();
        item = item->m_parent;
    }
}

int SaveTreeToXml(const CVRbTree& tree, LPCTSTR path, LPCTSTR encoding, bool standalone) {
    const CVRbTreeItem* const root = tree.GetRootItem();
    if (root == nullptr)
        return 0;
    CString declaration;
    declaration.Format(L"<?xml version=\"1.0\" encoding=\"%s\" standalone=\"%s\"?>\r\n",
                       encoding != nullptr ? encoding : L"utf-8", standalone ? L"yes" : L"no");
    MarkupDoc document;
    // A text without an element is not well-formed yet.
    document.SetDocumentText(declaration);

    const auto add = [&](const CVRbTreeItem& item) {
        const bool hasChildren = item.GetChild() != nullptr;
        if (!document.AddElement(item.GetName(), hasChildren ? nullptr : item.GetValue().GetString()))
            return false;
        CString name, value;
        for (int at = item.GetAttribIterator(); item.GetNextAttrib(at, name, value);) {
            if (!document.SetAttribute(name, value))
                return false;
        }
        return true;
    };
    const CVRbTreeItem* item = root;
    for (;;) {
        if (!add(*item))
            return 0;
        if (item->GetChild() != nullptr) {
            document.IntoElement();
            item = item->GetChild();
            continue;
        }
        while (item != root && item->GetNext() == nullptr) {
            document.OutOfElement();
            item = item->GetParent();
        }
        if (item == root)
            return document.SaveFile(path) ? 1 : 0;
        item = item->GetNext();
    }
}
