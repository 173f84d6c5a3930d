// The interface's own text.
#pragma once

#include "AdAChar.h"
#include "acadstrc.h"
#include "adesk.h"

#include <compare>
#include <cstdarg>
#include <string>

// A wide text. Positions and lengths count its units; a null pointer is an empty text. Case is told apart as
// the host does for names, in all scripts.
class ACBASE_PORT AcString {
public:
    AcString() = default;
    AcString(const ACHAR* text) : m_text(text != nullptr ? text : ACRX_T("")) {}
    // From UTF-8; bytes that are none survive the way there and back.
    explicit AcString(const char* utf8);
    explicit AcString(ACHAR character) : m_text(1, character) {}

    AcString& operator=(const ACHAR* text) { return assign(text); }
    AcString& assign(const ACHAR* text);
    AcString& assign(const AcString& text) { return *this = text; }
    AcString& setEmpty();

    bool isEmpty() const { return m_text.empty(); }
    unsigned length() const { return static_cast<unsigned>(m_text.size()); }
    unsigned tcharLength() const { return length(); }
    // The text, ended by nought, valid until it is changed. Never null.
    const ACHAR* kACharPtr() const { return m_text.c_str(); }
    const ACHAR* kTCharPtr() const { return m_text.c_str(); }
    const wchar_t* kwszPtr() const { return m_text.c_str(); }
    const wchar_t* constPtr() const { return m_text.c_str(); }
    operator const ACHAR*() const { return m_text.c_str(); }
    // The unit at the position, nought behind the end.
    ACHAR getAt(int index) const;

    AcString& append(const ACHAR* text);
    AcString& append(const AcString& text);
    AcString& append(ACHAR character);
    AcString& operator+=(const ACHAR* text) { return append(text); }
    AcString& operator+=(const AcString& text) { return append(text); }
    AcString& operator+=(ACHAR character) { return append(character); }

    // Makes the text by a format of printf's kind, in which %s is a wide text. An AcString argument is handed
    // over as its kACharPtr(), never as the object.
    AcString& format(const ACHAR* format, ...);
    AcString& formatV(const ACHAR* format, va_list arguments);

    // Below, at or above nought as the text stands before, at or behind the other one, by the units' numbers.
    int compare(const ACHAR* text) const;
    int compareNoCase(const ACHAR* text) const;
    // Whether the other text stands in front of this one.
    bool matchesStart(const ACHAR* text) const;

    // The position of the first or last occurrence, -1 when there is none.
    int find(const ACHAR* text) const;
    int find(ACHAR character) const;
    int findRev(ACHAR character) const;
    // `count` units from the position on, all of them when it is negative; what lies behind the end is left
    // out.
    AcString substr(int start, int count) const;
    AcString& makeUpper();
    AcString& makeLower();
    // Takes blanks away at both ends.
    AcString& trim();

    friend AcString operator+(const AcString& a, const AcString& b) { return AcString(a).append(b); }
    friend AcString operator+(const AcString& a, const ACHAR* b) { return AcString(a).append(b); }
    friend AcString operator+(const ACHAR* a, const AcString& b) { return AcString(a).append(b); }
    friend bool operator==(const AcString& a, const AcString& b) { return a.m_text == b.m_text; }
    friend bool operator==(const AcString& a, const ACHAR* b) { return a.compare(b) == 0; }
    friend std::strong_ordering operator<=>(const AcString& a, const AcString& b) {
        return a.m_text <=> b.m_text;
    }
    friend std::strong_ordering operator<=>(const AcString& a, const ACHAR* b) { return a.compare(b) <=> 0; }
    // Without it std::ranges::less would compare the addresses that the texts turn into.
    friend bool operator<(const AcString& a, const AcString& b) { return a.m_text < b.m_text; }

private:
    std::wstring m_text;
};
