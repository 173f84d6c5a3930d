// Reads a file of markup: finds its encoding and makes wide text of its bytes.
#pragma once

#include "module/engines/MarkupEncoding.h"
#include "module/engines/MarkupInput.h"
#include "module/engines/MarkupResult.h"
#include "sys/file_reader.h"
#include "sys/text_stream.h"

#include <array>
#include <cstddef>
#include <memory>
#include <string_view>

class MarkupReader : public MarkupInput {
public:
    // Reads the front of the file, which was just opened.
    explicit MarkupReader(sys::file_reader file);

    std::size_t GetExpectedSize() const override { return static_cast<std::size_t>(m_file.size()); }
    bool Read(WideText& text) override;

    // To be asked when Read has given false: whether the encoding was guessed wrong. Then the text that was
    // read is to be forgotten, and reading begins anew.
    bool BeginsAnew();

    // True when the file could not be read to its end.
    bool HasFailed() const { return m_hasFailed; }

    // What happened, when all was read.
    void Tell(MarkupResult& result) const;
    MarkupFileForm GetForm() const { return {m_hasMark, m_encoding.IsBigEndian()}; }

private:
    std::string_view GetBlock();

    sys::file_reader m_file;
    std::array<char, markupBlockSize> m_bytes;
    std::size_t m_first = 0; // of the bytes that are not decoded yet
    std::size_t m_end = 0;
    std::size_t m_length = 0; // of what was read
    bool m_isAtEnd = false;
    bool m_hasFailed = false;

    MarkupEncoding m_encoding;
    bool m_hasMark = false;
    bool m_isGuess = false; // UTF-8, because nothing tells another one
    std::unique_ptr<sys::text_stream> m_stream;
    std::size_t m_nulls = 0;
    std::size_t m_lost = 0;
    bool m_isCut = false;    // in the middle of a character
    std::size_t m_ready = 0; // up to where in the text memory was made ready
};
