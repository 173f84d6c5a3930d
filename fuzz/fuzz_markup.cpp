// Any bytes as a document's text, which is walked and changed: what is told must agree with itself, and a
// well-formed document stays one whatever is done to it. Up to the first nought stands what is done.
#include "base/utf.h"
#include "module/engines/MarkupDoc.h"
#include "tests/module_markup_support.h"

#include <algorithm>
#include <cstdlib>

namespace {

void insist(bool condition) {
    if (!condition)
        std::abort();
}

// Visits every node of the document.
void visit(MarkupDoc& doc) {
    doc.ResetPosition();
    for (;;) {
        if (doc.FindNode()) {
            insist(doc.GetNodeType() != MarkupNode::None);
            insist(doc.GetNodeType() == MarkupNode::EndTag || doc.GetNodeType() == MarkupNode::DocumentType ||
                   doc.GetNodeType() == MarkupNode::ProcessingInstruction || !doc.GetTagName().empty());
            static_cast<void>(doc.GetElementData());
            doc.IntoElement();
        } else if (!doc.OutOfElement()) {
            return;
        }
    }
}

// Changes the document as the bytes tell.
void change(MarkupDoc& doc, std::string_view bytes) {
    static const wchar_t* const words[] = {L"a", L"b", L"水", L"<&>", L"", nullptr, L"x y", L"&#65;"};
    doc.ResetPosition();
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto act = static_cast<unsigned char>(bytes[i]) % 9;
        const wchar_t* const name = words[static_cast<unsigned char>(bytes[i + 1]) % 8];
        const wchar_t* const value = words[static_cast<unsigned char>(bytes[i + 1]) / 8 % 8];
        switch (act) {
        case 0:
            doc.FindElement();
            break;
        case 1:
            doc.IntoElement();
            break;
        case 2:
            doc.OutOfElement();
            break;
        case 3:
            doc.FindNode();
            break;
        case 4:
            if (doc.AddElement(name, value))
                insist(doc.GetTagName() == name && doc.GetElementData() == (value != nullptr ? value : L""));
            break;
        case 5:
            if (doc.SetElementData(value))
                insist(doc.GetElementData() == (value != nullptr ? value : L""));
            break;
        case 6:
            if (doc.SetAttribute(name, value))
                insist(doc.GetAttribute(name) == (value != nullptr ? value : L""));
            break;
        case 7:
            doc.ResetPosition();
            break;
        default:
            static_cast<void>(doc.GetDocumentText());
        }
    }
}

std::wstring told_from_the_top(MarkupDoc& doc) {
    doc.ResetPosition();
    return test::told(doc);
}

void read_as_text(std::string_view head, std::string_view bytes) {
    const std::wstring text = base::widen(bytes);
    MarkupDoc doc;
    const bool is_good = doc.SetDocumentText(text.c_str());
    insist(is_good == doc.GetErrorText().empty() && is_good == doc.GetResult().empty());
    insist(doc.GetDocumentText() == text.c_str());
    const std::wstring before = told_from_the_top(doc);
    visit(doc);
    insist(told_from_the_top(doc) == before);
    change(doc, head);
    const std::wstring changed = told_from_the_top(doc);
    const std::wstring written(doc.GetDocumentText());
    insist(told_from_the_top(doc) == changed);
    MarkupDoc again;
    const bool is_good_again = again.SetDocumentText(written.c_str());
    // A second root may have been added.
    if (is_good) {
        insist(is_good_again || again.GetErrorText() == L"root element has sibling");
        insist(told_from_the_top(again) == changed);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::size_t head = std::min(bytes.find('\0'), bytes.size());
    if (head < 64)
        read_as_text(bytes.substr(0, head), bytes.substr(std::min(head + 1, bytes.size())));
    return 0;
}
