#include "module/engines/VRbTree.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

IMPLEMENT_DYNAMIC(CVRbTreeItem, CObject)

namespace {

std::wstring_view ViewOf(LPCTSTR text) {
    return text != nullptr ? std::wstring_view(text) : std::wstring_view();
}

SharedText SharedOf(LPCTSTR text) {
    return SharedText(ViewOf(text));
}

CString TextOf(std::wstring_view text) {
    return CString(text.data(), static_cast<int>(text.size()));
}

CString TextOf(int value) {
    CString text;
    text.Format(L"%d", value);
    return text;
}

CString TextOf(double value, int precision) {
    CString text;
    text.Format(L"%.*f", precision, value);
    return text;
}

// What `parse`, one of the functions that the library has for it, reads at the front of a text.
template<class Number, class Parse>
Number NumberIn(std::wstring_view text, Number defaultValue, Parse parse) {
    constexpr std::size_t common = 64;
    TCHAR digits[common];
    CString longer;
    const TCHAR* begin = digits;
    if (text.size() < common) {
        digits[text.copy(digits, common - 1)] = L'\0';
    } else {
        longer = TextOf(text);
        begin = longer.GetString();
    }
    TCHAR* end = nullptr;
    const Number value = static_cast<Number>(parse(begin, &end));
    return end != begin ? value : defaultValue;
}

int NumberIn(std::wstring_view text, int defaultValue) {
    return NumberIn(text, defaultValue,
                    [](const TCHAR* begin, TCHAR** end) { return _tcstol(begin, end, 10); });
}

double NumberIn(std::wstring_view text, double defaultValue) {
    return NumberIn(text, defaultValue, [](const TCHAR* begin, TCHAR** end) { return _tcstod(begin, end); });
}

} // namespace

CVRbTreeItem::CVRbTreeItem() = default;
CVRbTreeItem::~CVRbTreeItem() = default;

CString CVRbTreeItem::GetName() const {
    return TextOf(ViewOf(m_name));
}

void CVRbTreeItem::SetName(LPCTSTR name) {
    m_name = SharedOf(name);
}

CString CVRbTreeItem::GetValue(LPCTSTR defaultValue) const {
    return ViewOf(m_value).empty() ? CString(defaultValue) : TextOf(ViewOf(m_value));
}

int CVRbTreeItem::GetValue(int defaultValue) const {
    return NumberIn(ViewOf(m_value), defaultValue);
}

double CVRbTreeItem::GetValue(double defaultValue) const {
    return NumberIn(ViewOf(m_value), defaultValue);
}

void CVRbTreeItem::SetValue(LPCTSTR value) {
    m_value = SharedOf(value);
}

void CVRbTreeItem::SetValue(int value) {
    SetValue(TextOf(value));
}

void CVRbTreeItem::SetValue(double value, int precision) {
    SetValue(TextOf(value, precision));
}

const CVRbTreeItem::Attrib* CVRbTreeItem::FindAttrib(std::wstring_view name) const {
    const std::span<const Attrib> attribs = m_attribs.Get();
    const auto place = std::ranges::lower_bound(attribs, name, {}, &NameOf);
    return place != attribs.end() && NameOf(*place) == name ? &*place : nullptr;
}

bool CVRbTreeItem::HasAttrib(std::wstring_view name, std::wstring_view value) const {
    const Attrib* const attrib = FindAttrib(name);
    return attrib != nullptr && ViewOf(attrib->m_value) == value;
}

CString CVRbTreeItem::GetAttrib(LPCTSTR name, LPCTSTR defaultValue) const {
    const Attrib* const attrib = FindAttrib(ViewOf(name));
    return attrib != nullptr ? TextOf(ViewOf(attrib->m_value)) : CString(defaultValue);
}

int CVRbTreeItem::GetAttrib(LPCTSTR name, int defaultValue) const {
    return NumberIn(ViewOf(GetAttrib(name)), defaultValue);
}

double CVRbTreeItem::GetAttrib(LPCTSTR name, double defaultValue) const {
    return NumberIn(ViewOf(GetAttrib(name)), defaultValue);
}

void CVRbTreeItem::SetAttrib(LPCTSTR name, LPCTSTR value) {
    const std::wstring_view wanted = ViewOf(name);
    std::vector<Attrib> attribs(m_attribs.Get().begin(), m_attribs.Get().end());
    const auto place = std::ranges::lower_bound(attribs, wanted, {}, &NameOf);
    if (place != attribs.end() && NameOf(*place) == wanted)
        place->m_value = SharedOf(value);
    else
        attribs.insert(place, {SharedOf(name), SharedOf(value)});
    m_attribs = SharedArray<Attrib>(attribs);
}

void CVRbTreeItem::SetAttrib(LPCTSTR name, int value) {
    SetAttrib(name, TextOf(value));
}

void CVRbTreeItem::SetAttrib(LPCTSTR name, double value, int precision) {
    SetAttrib(name, TextOf(value, precision));
}

bool CVRbTreeItem::DeleteAttrib(LPCTSTR name) {
    const Attrib* const found = FindAttrib(ViewOf(name));
    if (found == nullptr)
        return false;
    std::vector<Attrib> attribs(m_attribs.Get().begin(), m_attribs.Get().end());
    attribs.erase(attribs.begin() + (found - m_attribs.Get().data()));
    m_attribs = SharedArray<Attrib>(attribs);
    return true;
}

void CVRbTreeItem::DeleteAllAttribs() {
    m_attribs = {};
}

int CVRbTreeItem::GetAttribCount() const {
    return static_cast<int>(m_attribs.Get().size());
}

bool CVRbTreeItem::GetNextAttrib(int& iterator, CString& name, CString& value) const {
    if (iterator < 0 || iterator >= GetAttribCount())
        return false;
    const Attrib& attrib = m_attribs.Get()[static_cast<std::size_t>(iterator++)];
    name = TextOf(ViewOf(attrib.m_name));
    value = TextOf(ViewOf(attrib.m_value));
    return true;
}

CVRbTreeItem* CVRbTreeItem::GetPrev() const {
    return m_parent->m_child != this ? m_prev : nullptr;
}

CVRbTreeItem* CVRbTreeItem::GetParent() const {
    return m_parent->m_parent != nullptr ? m_parent : nullptr;
}

int CVRbTreeItem::GetLevel() const {
    int level = 0;
    for (const CVRbTreeItem* item = m_parent; item->m_parent != nullptr; item = item->m_parent)
        ++level;
    return level;
}

CVRbTreeItem* CVRbTreeItem::FindSubItem(LPCTSTR name) const {
    const std::wstring_view wanted = ViewOf(name);
    CVRbTreeItem* child = m_child;
    while (child != nullptr && ViewOf(child->m_name) != wanted)
        child = child->m_next;
    return child;
}

CVRbTreeItem* CVRbTreeItem::FindSubItemBy(LPCTSTR attribName, LPCTSTR value) const {
    const std::wstring_view wantedName = ViewOf(attribName);
    const std::wstring_view wantedValue = ViewOf(value);
    CVRbTreeItem* child = m_child;
    while (child != nullptr && !child->HasAttrib(wantedName, wantedValue))
        child = child->m_next;
    return child;
}

CVRbTreeItem* CVRbTreeItem::FindSubItemBy(LPCTSTR attribName, int value) const {
    return FindSubItemBy(attribName, TextOf(value));
}

CVRbTreeItem* CVRbTreeItem::FindSubItemBy(LPCTSTR attribName, double value, int precision) const {
    return FindSubItemBy(attribName, TextOf(value, precision));
}

const CVRbTreeItem* CVRbTreeItem::Top() const {
    const CVRbTreeItem* item = this;
    while (item->m_parent->m_parent != nullptr)
        item = item->m_parent;
    return item;
}

CVRbTreeItem* CVRbTreeItem::FindTopSubItem(LPCTSTR name) const {
    return Top()->FindSubItem(name);
}

CVRbTreeItem* CVRbTreeItem::FindTopSubItemBy(LPCTSTR attribName, LPCTSTR value) const {
    return Top()->FindSubItemBy(attribName, value);
}

CVRbTreeItem* CVRbTreeItem::FindTopSubItemBy(LPCTSTR attribName, int value) const {
    return Top()->FindSubItemBy(attribName, value);
}

CVRbTreeItem* CVRbTreeItem::FindTopSubItemBy(LPCTSTR attribName, double value, int precision) const {
    return Top()->FindSubItemBy(attribName, value, precision);
}

template<class PartOf>
CString CVRbTreeItem::PathOf(PartOf partOf) const {
    std::vector<const CVRbTreeItem*> items;
    for (const CVRbTreeItem* item = this; item->m_parent != nullptr; item = item->m_parent)
        items.push_back(item);
    std::wstring path;
    for (auto item = items.rbegin(); item != items.rend(); ++item)
        path.append(partOf(**item)) += L'/';
    return TextOf(path);
}

CString CVRbTreeItem::GetPath() const {
    return PathOf([](const CVRbTreeItem& item) { return ViewOf(item.m_name); });
}

CString CVRbTreeItem::GetPathBy(LPCTSTR attribName) const {
    return PathOf([wanted = ViewOf(attribName)](const CVRbTreeItem& item) {
        const Attrib* const attrib = item.FindAttrib(wanted);
        return attrib != nullptr ? ViewOf(attrib->m_value) : std::wstring_view();
    });
}

void CVRbTreeItem::CopyTextsFrom(const CVRbTreeItem& source) {
    m_name = source.m_name;
    m_value = source.m_value;
    m_attribs = source.m_attribs;
}
