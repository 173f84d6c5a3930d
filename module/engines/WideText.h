// A long wide text that grows at its end. Other than std::wstring it leaves new room as it is, so that a file
// is decoded straight into it, and grows without being copied where the system can do that.
#pragma once

#include <cstddef>
#include <string_view>

class WideText {
public:
    // That many noughts follow the text: a scanner may look ahead without asking for the end.
    static constexpr std::size_t padding = 64;

    WideText() = default;
    explicit WideText(std::wstring_view text) { Append(text); }
    WideText(WideText&& other) noexcept;
    WideText& operator=(WideText&& other) noexcept;
    ~WideText();

    const wchar_t* GetData() const { return m_units != nullptr ? m_units : nothing; }
    std::size_t GetSize() const { return m_size; }
    std::wstring_view GetView() const { return {GetData(), m_size}; }
    std::wstring_view GetView(std::size_t first, std::size_t size) const { return {GetData() + first, size}; }

    // Makes room for `size` more units at the end and gives the place where they begin. Throws
    // std::bad_alloc.
    wchar_t* Extend(std::size_t size);
    // Whether that much fits without the text being moved.
    bool HasRoom(std::size_t size) const { return m_capacity - m_size >= size; }
    // The text ends behind the first `size` units of what was made room for.
    void SetSize(std::size_t size);

    // `text` is no part of this text. Throws std::bad_alloc.
    void Append(std::wstring_view text);

    // Gives back the room that is not needed.
    void Trim();

private:
    static constexpr wchar_t nothing[padding] = {};

    bool Resize(std::size_t capacity);

    wchar_t* m_units = nullptr;
    std::size_t m_size = 0;
    std::size_t m_capacity = 0; // the padding not counted
};
