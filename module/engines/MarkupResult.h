// What happened in the last parse or file operation: records, their markup and their words.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// In the order of the table of words in MarkupResult.cpp; those before FileError are faults of the text.
enum class MarkupEvent {
    RootHasSibling,
    NoRootElement,
    LoneEndTag,
    UnendedStartTag,
    FirstTagSyntax,
    ExclamationTagSyntax,
    DoctypeTagSyntax,
    CommentTagSyntax,
    CDataSectionSyntax,
    UnterminatedTagSyntax,
    FileError,
    Read,
    Write,
    ByteOrderMark,
    ConvertedTo,
    ConvertedFrom,
    NullsRemoved,
    ConversionLoss,
    Utf8Detection,
    EndianSwap,
    TruncationError,
};

class MarkupResult {
public:
    void Clear() { *this = {}; }

    // Notes an event with the values of its attributes, as far as it has any. Of the faults of a text that
    // has very many, the first thousand are noted.
    void Add(MarkupEvent event, std::size_t number = 0, std::size_t number2 = 0);
    void Add(MarkupEvent event, std::wstring_view text, std::size_t number = 0, std::size_t number2 = 0);

    // Adds what another one has.
    void Add(const MarkupResult& other);

    // Whether any fault of the text was added.
    bool HasFaults() const { return m_faults > 0; }

    // <lone_end_tag tagname="b" offset="3"/>...
    std::wstring GetMarkup() const;
    // The faults on a line each, below one line for the file.
    std::wstring GetWords() const;

private:
    struct Record {
        MarkupEvent event;
        std::wstring text;
        std::size_t number;
        std::size_t number2;
    };

    std::vector<Record> m_records;
    std::size_t m_faults = 0;
};
