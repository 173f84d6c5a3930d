#include "module/engines/MarkupDoc.h"

#include "module/engines/MarkupReader.h"
#include "module/engines/MarkupSyntax.h"
#include "module/engines/MarkupTree.h"
#include "module/engines/MarkupWriter.h"
#include "sys/file_reader.h"
#include "sys/folders.h"

#include <algorithm>
#include <cwchar>
#include <new>
#include <unordered_map>
#include <utility>

namespace {

std::wstring_view ViewOf(const wchar_t* text) {
    return text != nullptr ? text : std::wstring_view();
}

MarkupNode NodeOf(MarkupPiece piece) {
    switch (piece) {
    case MarkupPiece::EndTag:
        return MarkupNode::EndTag;
    case MarkupPiece::Comment:
        return MarkupNode::Comment;
    case MarkupPiece::CDataSection:
        return MarkupNode::CDataSection;
    case MarkupPiece::ProcessingInstruction:
        return MarkupNode::ProcessingInstruction;
    case MarkupPiece::DocumentType:
        return MarkupNode::DocumentType;
    default:
        return MarkupNode::Text;
    }
}

// What `act` gives, or the given answer when memory is short.
template<class Answer, class Act>
Answer Try(Answer otherwise, Act act) {
    try {
        return act();
    } catch (const std::bad_alloc&) {
        return otherwise;
    }
}

} // namespace

struct MarkupDoc::State {
    static constexpr int nowhere = -2;

    MarkupTree tree;
    MarkupResult result;
    unsigned flags = 0;

    // The cursor: on `current` when `node` tells an element; else behind it, 0 being the front of the level,
    // and on the node that is told when there is one.
    ElementIndex parent = 0;
    ElementIndex current = 0;
    MarkupNode node = MarkupNode::None;
    MarkupTree::Span nodeSpan;
    MarkupTree::Span nodeInner; // without its marks

    // What is told of the current node and does not stand so in the store: its data, and other texts by where
    // they begin.
    std::wstring elementData;
    bool hasData = false;
    std::unordered_map<const wchar_t*, std::wstring> resolved;
    // How far the attributes of the current element were told: the one at that place.
    AttributeScan attributes;
    int attributePlace = nowhere;

    bool IsBusy() const { return (flags & (FileReadInProgress | FileWriteInProgress)) != 0; }
    bool IsOnElement() const { return node == MarkupNode::Element; }
    ElementIndex GetNextElement() const {
        return current != 0 ? tree.GetElement(current).next : tree.GetElement(parent).firstChild;
    }

    void Forget();
    void MoveTo(ElementIndex element);
    void Reset();
    bool FindNode();
    ElementIndex FindNamed(ElementIndex first, std::wstring_view name) const;
    std::wstring_view Resolve(std::wstring_view raw) {
        return IsOnElement() && tree.GetElement(current).hasPlainTag ? raw : ResolveEntities(raw);
    }
    std::wstring_view ResolveEntities(std::wstring_view raw);
    std::wstring_view GetElementData() {
        const MarkupElement& record = tree.GetElement(current);
        return record.firstChild == 0 && record.hasPlainContent ? tree.GetView(tree.GetContent(current))
                                                                : GatherElementData();
    }
    std::wstring_view GatherElementData();
    void AppendData(std::wstring_view text);
    bool FindAttribute(int place) { return (place == attributePlace && place >= 0) || SeekAttribute(place); }
    bool SeekAttribute(int place);
    std::uint32_t FindPlaceBehind() const;
    void AddElement(std::wstring_view name, std::wstring_view data);
    void SetAttribute(std::wstring_view name, std::wstring_view value);
};

// To be called whenever the cursor moves or the text changes.
void MarkupDoc::State::Forget() {
    hasData = false;
    if (!resolved.empty())
        resolved.clear();
    attributePlace = nowhere;
}

void MarkupDoc::State::MoveTo(ElementIndex element) {
    current = element;
    node = element != 0 ? MarkupNode::Element : MarkupNode::None;
    Forget();
}

void MarkupDoc::State::Reset() {
    parent = 0;
    MoveTo(0);
}

bool MarkupDoc::State::FindNode() {
    tree.GetText(); // what was changed finds its place
    Forget();
    const MarkupTree::Span content = tree.GetContent(parent);
    std::uint32_t from = content.begin;
    if (IsOnElement())
        from = tree.GetPlace(current).GetEnd();
    else if (node != MarkupNode::None)
        from = nodeSpan.GetEnd();
    const ElementIndex next = GetNextElement();
    const std::uint32_t end = next != 0 ? tree.GetPlace(next).begin : content.GetEnd();
    if (from == end) {
        if (next != 0)
            MoveTo(next);
        return next != 0;
    }
    const FoundPiece found = FindPiece(tree.GetView({0, end}), from);
    node = NodeOf(found.piece);
    nodeSpan = {from, static_cast<std::uint32_t>(found.end) - from};
    nodeInner = {static_cast<std::uint32_t>(found.inner), static_cast<std::uint32_t>(found.innerLength)};
    return true;
}

// The first element from that one on, on its level, that has this name; 0 when there is none.
ElementIndex MarkupDoc::State::FindNamed(ElementIndex first, std::wstring_view name) const {
    while (first != 0 && tree.GetName(first) != name)
        first = tree.GetElement(first).next;
    return first;
}

std::wstring_view MarkupDoc::State::ResolveEntities(std::wstring_view raw) {
    if (raw.find(L'&') == raw.npos)
        return raw;
    const auto [found, isNew] = resolved.try_emplace(raw.data());
    if (isNew)
        AppendResolved(found->second, raw);
    return found->second;
}

std::wstring_view MarkupDoc::State::GatherElementData() {
    if (hasData)
        return elementData;
    const bool isPlain = tree.GetElement(current).hasPlainContent;
    elementData.clear();
    constexpr std::size_t fewUnits =
        8; // a line end and an indent: most of what stands between child elements
    tree.ForOwnText(current, [this, isPlain](std::wstring_view text) {
        if (!isPlain) {
            AppendData(text);
        } else if (text.size() > fewUnits) {
            elementData += text;
        } else {
            for (const wchar_t unit : text)
                elementData += unit;
        }
    });
    hasData = true;
    return elementData;
}

// Adds what the texts and CDATA sections hold that lie between two tags.
void MarkupDoc::State::AppendData(std::wstring_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const FoundPiece piece = FindPiece(text, at);
        const std::wstring_view inner = text.substr(piece.inner, piece.innerLength);
        if (piece.piece == MarkupPiece::Text)
            AppendResolved(elementData, inner);
        else if (piece.piece == MarkupPiece::CDataSection)
            elementData += inner;
        at = piece.end;
    }
}

// Goes to the attribute at that place of the current element; false when there is none.
bool MarkupDoc::State::SeekAttribute(int place) {
    if (!IsOnElement() || place < 0)
        return false;
    if (place < attributePlace || attributePlace == nowhere) {
        attributes = tree.GetAttributes(current);
        attributePlace = -1;
    }
    while (attributePlace < place) {
        if (!attributes.Next())
            return false;
        ++attributePlace;
    }
    return true;
}

// Where in the parent's content a new element would stand: behind the current node and the line end that
// follows it, or at the end when there is no current node.
std::uint32_t MarkupDoc::State::FindPlaceBehind() const {
    const MarkupTree::Span content = tree.GetContent(parent);
    if (node == MarkupNode::None)
        return content.GetEnd();
    const MarkupTree::Span mine = IsOnElement() ? tree.GetPlace(current) : nodeSpan;
    if (mine.size == 0) // the line end of a new element is not written yet
        return mine.begin;
    const ElementIndex next = GetNextElement();
    const std::uint32_t end = next != 0 ? tree.GetPlace(next).begin : content.GetEnd();
    const std::wstring_view rest = tree.GetView({mine.GetEnd(), end - mine.GetEnd()});
    if (rest.starts_with(L"\r\n"))
        return mine.GetEnd() + 2;
    return mine.GetEnd() + (rest.starts_with(L'\n') ? 1u : 0u);
}

void MarkupDoc::State::AddElement(std::wstring_view name, std::wstring_view data) {
    const ElementIndex previous = node == MarkupNode::None ? tree.GetLastChild(parent) : current;
    MoveTo(tree.Insert(parent, previous, FindPlaceBehind(), name, data));
}

void MarkupDoc::State::SetAttribute(std::wstring_view name, std::wstring_view value) {
    const std::wstring_view old = tree.GetTag(current);
    std::wstring written(name);
    written += L"=\"";
    AppendEscaped(written, value);
    written += L'"';

    AttributeScan scan = tree.GetAttributes(current);
    while (scan.Next()) {
        if (scan.GetName() == name) {
            std::wstring tag(old);
            tree.SetTag(current, tag.replace(scan.GetBegin(), scan.GetEnd() - scan.GetBegin(), written));
            return;
        }
    }
    std::wstring tag(old.substr(0, old.size() - (old.ends_with(L"/>") ? 2 : 1)));
    while (IsBlank(tag.back()))
        tag.pop_back();
    if (tag.back() == L'=') // an attribute that would take the new one for its value
        tag += L"\"\"";
    tree.SetTag(current, tag.append(L" ").append(written).append(old.ends_with(L"/>") ? L"/>" : L">"));
}

MarkupDoc::MarkupDoc() : m_state(std::make_unique<State>()) {
}
MarkupDoc::MarkupDoc(MarkupDoc&&) noexcept = default;
MarkupDoc& MarkupDoc::operator=(MarkupDoc&&) noexcept = default;
MarkupDoc::~MarkupDoc() = default;

bool MarkupDoc::SetDocumentText(const wchar_t* text) {
    if (m_state->IsBusy())
        return false;
    m_state->result.Clear();
    m_state->Reset();
    return Try(false, [&] {
        m_state->tree = {};
        m_state->tree = MarkupTree(WideText(ViewOf(text)), nullptr, m_state->result);
        return !m_state->result.HasFaults();
    });
}

std::wstring_view MarkupDoc::GetDocumentText() {
    return Try(std::wstring_view(), [&] {
        m_state->Forget();
        return m_state->tree.GetText();
    });
}

bool MarkupDoc::LoadFile(const wchar_t* path) {
    State& state = *m_state;
    if (state.IsBusy())
        return false;
    state.result.Clear();
    state.flags |= FileReadInProgress;
    const bool isRead = Try(false, [&] {
        auto file = sys::file_reader::open(sys::to_path(ViewOf(path)));
        if (!file)
            return false;
        const auto reader = std::make_unique<MarkupReader>(std::move(*file));
        MarkupTree tree;
        MarkupResult faults;
        do {
            faults.Clear();
            tree = MarkupTree({}, reader.get(), faults);
        } while (reader->BeginsAnew());
        if (reader->HasFailed())
            return false;
        state.Reset();
        state.tree = std::move(tree);
        reader->Tell(state.result);
        state.result.Add(faults);
        const MarkupFileForm form = reader->GetForm();
        state.flags &= ~unsigned(ByteOrderMark | BigEndian);
        state.flags |= (form.hasMark ? ByteOrderMark : 0u) | (form.isBigEndian ? BigEndian : 0u);
        return true;
    });
    if (!isRead)
        state.result.Add(MarkupEvent::FileError);
    state.flags &= ~unsigned(FileReadInProgress);
    return isRead && !state.result.HasFaults();
}

bool MarkupDoc::SaveFile(const wchar_t* path) {
    State& state = *m_state;
    if (state.IsBusy())
        return false;
    state.result.Clear();
    state.flags |= FileWriteInProgress;
    const bool isWritten = Try(false, [&] {
        state.Forget();
        const MarkupFileForm form = {(state.flags & ByteOrderMark) != 0, (state.flags & BigEndian) != 0};
        return WriteMarkupFile(ViewOf(path), state.tree.GetText(), form, state.result);
    });
    state.flags &= ~unsigned(FileWriteInProgress);
    return isWritten;
}

std::wstring MarkupDoc::GetErrorText() const {
    return m_state->result.GetWords();
}

std::wstring MarkupDoc::GetResult() const {
    return m_state->result.GetMarkup();
}

unsigned MarkupDoc::GetDocumentFlags() const {
    return m_state->flags;
}

void MarkupDoc::SetDocumentFlags(unsigned flags) {
    m_state->flags = flags;
}

void MarkupDoc::ResetPosition() {
    m_state->Reset();
}

bool MarkupDoc::FindElement(const wchar_t* name) {
    State& state = *m_state;
    ElementIndex element = state.GetNextElement();
    if (name != nullptr && *name != L'\0')
        element = state.FindNamed(element, name);
    if (element != 0)
        state.MoveTo(element);
    return element != 0;
}

bool MarkupDoc::FindNode() {
    return Try(false, [&] { return m_state->FindNode(); });
}

bool MarkupDoc::IntoElement() {
    State& state = *m_state;
    if (!state.IsOnElement())
        return false;
    state.parent = state.current;
    state.MoveTo(0);
    return true;
}

bool MarkupDoc::OutOfElement() {
    State& state = *m_state;
    const ElementIndex element = state.parent;
    if (element == 0)
        return false;
    state.parent = state.tree.GetElement(element).parent;
    state.MoveTo(element);
    return true;
}

MarkupNode MarkupDoc::GetNodeType() const {
    return m_state->node;
}

unsigned MarkupDoc::GetLevel() const {
    const State& state = *m_state;
    return state.parent == 0 ? 0 : state.tree.GetElement(state.parent).level + 1u;
}

std::wstring_view MarkupDoc::GetTagName() const {
    const State& state = *m_state;
    switch (state.node) {
    case MarkupNode::Element:
        return state.tree.GetName(state.current);
    case MarkupNode::Text:
        return L"#text";
    case MarkupNode::CDataSection:
        return L"#cdata-section";
    case MarkupNode::Comment:
        return L"#comment";
    case MarkupNode::None:
        return {};
    default:
        return GetFrontName(TrimFront(state.tree.GetView(state.nodeInner)));
    }
}

std::wstring_view MarkupDoc::GetStartTag() const {
    return m_state->IsOnElement() ? m_state->tree.GetTag(m_state->current) : std::wstring_view();
}

std::wstring_view MarkupDoc::GetElementData() const {
    State& state = *m_state;
    return Try(std::wstring_view(), [&]() -> std::wstring_view {
        switch (state.node) {
        case MarkupNode::Element:
            return state.GetElementData();
        case MarkupNode::Text:
            return state.Resolve(state.tree.GetView(state.nodeInner));
        case MarkupNode::CDataSection:
        case MarkupNode::Comment:
            return state.tree.GetView(state.nodeInner);
        case MarkupNode::None:
            return {};
        default:
            const std::wstring_view inner = TrimFront(state.tree.GetView(state.nodeInner));
            return TrimFront(inner.substr(GetFrontName(inner).size()));
        }
    });
}

std::wstring_view MarkupDoc::GetAttribute(const wchar_t* name) const {
    State& state = *m_state;
    if (!state.IsOnElement())
        return {};
    const std::wstring_view wanted = ViewOf(name);
    for (AttributeScan scan = state.tree.GetAttributes(state.current); scan.Next();)
        if (scan.GetName() == wanted)
            return Try(std::wstring_view(), [&] { return state.Resolve(scan.GetValue()); });
    return {};
}

std::wstring_view MarkupDoc::GetAttributeName(int index) const {
    return m_state->FindAttribute(index) ? m_state->attributes.GetName() : std::wstring_view();
}

std::wstring_view MarkupDoc::GetAttributeValue(int index) const {
    State& state = *m_state;
    return Try(std::wstring_view(), [&] {
        return state.FindAttribute(index) ? state.Resolve(state.attributes.GetValue()) : std::wstring_view();
    });
}

bool MarkupDoc::AddElement(const wchar_t* name, const wchar_t* data) {
    if (!IsName(ViewOf(name)))
        return false;
    return Try(false, [&] {
        m_state->AddElement(ViewOf(name), ViewOf(data));
        return true;
    });
}

bool MarkupDoc::SetElementData(const wchar_t* data) {
    State& state = *m_state;
    if (!state.IsOnElement() || state.tree.GetElement(state.current).firstChild != 0)
        return false;
    return Try(false, [&] {
        std::wstring content;
        AppendEscaped(content, ViewOf(data));
        state.Forget();
        state.tree.SetContent(state.current, content);
        return true;
    });
}

bool MarkupDoc::SetAttribute(const wchar_t* name, const wchar_t* value) {
    State& state = *m_state;
    if (!state.IsOnElement() || !IsName(ViewOf(name)))
        return false;
    return Try(false, [&] {
        state.Forget();
        state.SetAttribute(ViewOf(name), ViewOf(value));
        return true;
    });
}
