// An XML document as one wide text with an index of its elements, walked with a cursor. It takes what real
// files hold: an attribute twice, an entity that nobody knows or a stray `&` do not stop it; what does is
// told by result records. Only &lt; &amp; &gt; &quot; &apos; and numeric references are ever resolved.
//
// Offsets and lengths count the units of wchar_t. Nothing is thrown.
#pragma once

#include "module/frame/ModulePort.h"

#include <memory>
#include <string>
#include <string_view>

// What the cursor stands on. Their names in documents are "document_type", "start_tag", "end_tag" (one
// without a start), "cdata_section", "processing_instruction" and "comment".
enum class MarkupNode {
    None,
    Element,
    Text,
    CDataSection,
    Comment,
    ProcessingInstruction,
    DocumentType,
    EndTag,
};

class ZEF_PIPESYSTEM_PORT MarkupDoc {
public:
    // A set of bits. While one of the first two is set, SetDocumentText, LoadFile and SaveFile refuse:
    // LoadFile and SaveFile set theirs as long as they run. The last two are how the file was written that
    // was loaded, and how SaveFile writes.
    enum DocumentFlags : unsigned {
        FileReadInProgress = 16,
        FileWriteInProgress = 32,
        ByteOrderMark = 64,
        BigEndian = 128,
    };

    // An empty document.
    MarkupDoc();
    MarkupDoc(MarkupDoc&&) noexcept;
    MarkupDoc& operator=(MarkupDoc&&) noexcept;
    ~MarkupDoc();

    // The whole document ---------------------------------------------------------------------------------

    // Takes a copy of the text, null being an empty one, parses it and puts the cursor before the first
    // element. True when it is well-formed: one root, tags that pair, no broken markup. Otherwise
    // GetErrorText tells why, and what was understood can be walked all the same. An empty text is not
    // well-formed, but may be built upon by AddElement; so may one that holds only a declaration.
    bool SetDocumentText(const wchar_t* text);

    // The text with all changes. Valid until the document is changed.
    std::wstring_view GetDocumentText();

    // Reads a file and parses it as SetDocumentText does. Its encoding is told by its byte-order mark, else
    // by the XML declaration or a Content-Type in an HTML head, else it is UTF-8 when the bytes are, and the
    // system's ANSI code page otherwise. False when the file cannot be read, with the document as it was, or
    // when the text is not well-formed.
    bool LoadFile(const wchar_t* path);

    // Writes the text in the encoding that it declares, in UTF-8 when it declares none or one that is not
    // known, with a byte-order mark when the file that was loaded had one, and in UTF-16. A character that
    // the encoding lacks is written as a numeric reference. The file is written whole or not at all; false,
    // and the old file as it was, when it cannot be.
    bool SaveFile(const wchar_t* path);

    // What happened in the last of SetDocumentText, LoadFile and SaveFile, for people: one line for each
    // record, without a last line end. A good text that came from no file gives an empty one.
    std::wstring GetErrorText() const;

    // The same as markup, a sequence of empty elements such as <lone_end_tag tagname="b" offset="3"/>. Of
    // more than a thousand faults the first thousand are there.
    std::wstring GetResult() const;

    // DocumentFlags.
    unsigned GetDocumentFlags() const;
    void SetDocumentFlags(unsigned flags);

    // The cursor -----------------------------------------------------------------------------------------

    // Puts the cursor before the first top-level element.
    void ResetPosition();

    // Moves to the next element of the current level that has this name, or to the next one of any name when
    // `name` is null or empty. False, and the cursor as it was, when there is none.
    bool FindElement(const wchar_t* name = nullptr);

    // Moves to the next node of the current level, be it an element or not. False, and the cursor as it was,
    // when there is none.
    bool FindNode();

    // Goes inside the current element: before its first child. False when there is no current element.
    bool IntoElement();

    // Makes the parent the current element again. False at the top level.
    bool OutOfElement();

    // What the cursor stands on. --------------------------------------------------------------------------
    // Without a current node the texts are empty. They are valid until the cursor moves or the document
    // changes, and no nought follows them.

    MarkupNode GetNodeType() const;

    // How many elements the cursor's level lies inside.
    unsigned GetLevel() const;

    // The element's name. Of other nodes: "#text", "#cdata-section", "#comment", the target of a processing
    // instruction, the name in a document type, the name in an end tag.
    std::wstring_view GetTagName() const;

    // An element's start tag as it stands, from `<` to `>`: equal ones have the same name and attributes.
    std::wstring_view GetStartTag() const;

    // The text that lies directly inside the element, CDATA sections included and entities resolved, with
    // its blanks and line ends as they stand. Of other nodes: what they hold.
    std::wstring_view GetElementData() const;

    // The value of the first attribute of that name, entities resolved; empty when there is none.
    std::wstring_view GetAttribute(const wchar_t* name) const;

    // The name and the value of the attribute at a place, counted from 0; empty when there is none. A tag's
    // attributes, asked for one after the other, take time in line with their number.
    std::wstring_view GetAttributeName(int index) const;
    std::wstring_view GetAttributeValue(int index) const;

    // Changes. ----------------------------------------------------------------------------------------------
    // A null text is an empty one; the five characters < & > " ' are written as entities. False, and nothing
    // changed, when a name is none of XML's.

    // Adds an element behind the current node, or as the last one of the level when there is none; it becomes
    // the current element. A line end follows it, and stands before it when its parent was empty.
    bool AddElement(const wchar_t* name, const wchar_t* data = nullptr);

    // Replaces what is inside the current element. False without one, and when it has child elements.
    bool SetElementData(const wchar_t* data);

    // Gives the current element's first attribute of that name another value, or a new attribute behind the
    // others. False without a current element.
    bool SetAttribute(const wchar_t* name, const wchar_t* value);

private:
    struct State;
    std::unique_ptr<State> m_state;
};
