// The few classes of the Microsoft foundation that ObjectARX programs take for granted: CString, and CObject
// with its run-time class. Arrays are in afxcoll.h and afxtempl.h.
#pragma once

#include "tchar.h"
#include "windows.h"

#include "adesk.h"

#include <compare>
#include <cstdarg>
#include <string>

// A wide text. Positions and lengths count its units. Null pointers are empty texts. Case is told apart, and
// changed, in all scripts; blanks are those of all scripts.
//
// Where a format's arguments are those of a function that takes any (acutPrintf), a CString is handed over as
// `(LPCTSTR)text`: Clang refuses the object itself, GCC with -Wconditionally-supported. CString's own Format
// takes both.
class ACBASE_PORT CString {
public:
    CString() = default;
    CString(LPCWSTR text) : m_text(text != nullptr ? text : L"") {}
    CString(LPCWSTR text, int length);
    // From UTF-8; bytes that are none survive the way there and back.
    CString(LPCSTR utf8);
    CString(LPCSTR utf8, int length);
    explicit CString(wchar_t character, int count = 1);

    CString& operator=(LPCWSTR text);
    CString& operator=(LPCSTR utf8);
    CString& operator=(wchar_t character);

    int GetLength() const { return static_cast<int>(m_text.size()); }
    bool IsEmpty() const { return m_text.empty(); }
    void Empty() { m_text.clear(); }
    // The text, ended by nought, valid until it is changed.
    LPCWSTR GetString() const { return m_text.c_str(); }
    operator LPCWSTR() const { return m_text.c_str(); }
    // The unit at a position from 0 to the length, where nought is; other positions are errors of the
    // program.
    wchar_t GetAt(int index) const { return m_text[static_cast<std::size_t>(index)]; }
    wchar_t operator[](int index) const { return GetAt(index); }
    void SetAt(int index, wchar_t character) { m_text[static_cast<std::size_t>(index)] = character; }

    void SetString(LPCWSTR text) { *this = text; }
    void SetString(LPCWSTR text, int length) { *this = CString(text, length); }
    void Append(LPCWSTR text) { *this += text; }
    void Append(LPCWSTR text, int length) { *this += CString(text, length); }
    void Append(const CString& text) { *this += text; }
    void AppendChar(wchar_t character) { *this += character; }
    CString& operator+=(const CString& text);
    CString& operator+=(LPCWSTR text);
    CString& operator+=(LPCSTR utf8);
    CString& operator+=(wchar_t character);

    // Below, at or above nought as this text stands before, at or behind the other one, by the units'
    // numbers.
    int Compare(LPCWSTR text) const;
    int CompareNoCase(LPCWSTR text) const;
    int Collate(LPCWSTR text) const { return Compare(text); }
    int CollateNoCase(LPCWSTR text) const { return CompareNoCase(text); }

    // Parts of the text. What lies before the beginning or behind the end is left out.
    CString Mid(int first) const;
    CString Mid(int first, int count) const;
    CString Left(int count) const;
    CString Right(int count) const;
    // The units at the front that are all in the set, or all not in it.
    CString SpanIncluding(LPCWSTR set) const;
    CString SpanExcluding(LPCWSTR set) const;
    // The next part at or behind `start` between units of the set, which moves behind it. When there is none:
    // an empty text, and `start` becomes -1. An empty set leaves the whole rest as one part.
    CString Tokenize(LPCWSTR set, int& start) const;

    // Positions, -1 when it does not occur at or behind `start`. ReverseFind tells the last one, FindOneOf
    // the first of any unit of the set.
    int Find(wchar_t character, int start = 0) const;
    int Find(LPCWSTR text, int start = 0) const;
    int ReverseFind(wchar_t character) const;
    int FindOneOf(LPCWSTR set) const;

    // Change the text. Replace and Remove tell how many they found, Insert and Delete the new length.
    int Replace(wchar_t from, wchar_t to);
    int Replace(LPCWSTR from, LPCWSTR to);
    int Remove(wchar_t character);
    int Insert(int index, wchar_t character);
    int Insert(int index, LPCWSTR text);
    int Delete(int index, int count = 1);
    void Truncate(int length);
    CString& MakeUpper();
    CString& MakeLower();
    CString& MakeReverse();
    // Take blanks, one character, or those of a set away at the ends.
    CString& Trim() { return TrimRight().TrimLeft(); }
    CString& Trim(wchar_t character) { return TrimRight(character).TrimLeft(character); }
    CString& Trim(LPCWSTR set) { return TrimRight(set).TrimLeft(set); }
    CString& TrimLeft();
    CString& TrimLeft(wchar_t character);
    CString& TrimLeft(LPCWSTR set);
    CString& TrimRight();
    CString& TrimRight(wchar_t character);
    CString& TrimRight(LPCWSTR set);

    // Make the text, or its continuation, by a format of printf's kind in which %s is a wide text. CStrings
    // among the arguments give their text.
    template<typename... Arguments>
    void Format(LPCWSTR format, const Arguments&... arguments) {
        Print(false, format, Passed(arguments)...);
    }
    template<typename... Arguments>
    void AppendFormat(LPCWSTR format, const Arguments&... arguments) {
        Print(true, format, Passed(arguments)...);
    }
    void FormatV(LPCWSTR format, va_list arguments);
    void AppendFormatV(LPCWSTR format, va_list arguments);

    // A buffer that holds the text and takes at least `length` units and the nought behind them. Until
    // ReleaseBuffer tells the new length, or finds it by the nought when it is -1, nothing else may be done
    // with the text.
    LPWSTR GetBuffer(int length = 0);
    LPWSTR GetBufferSetLength(int length);
    void ReleaseBuffer(int length = -1);
    void Preallocate(int length);

    friend CString operator+(const CString& a, const CString& b) { return CString(a) += b; }
    friend CString operator+(const CString& a, LPCWSTR b) { return CString(a) += b; }
    friend CString operator+(LPCWSTR a, const CString& b) { return CString(a) += b; }
    friend CString operator+(const CString& a, wchar_t b) { return CString(a) += b; }
    friend CString operator+(wchar_t a, const CString& b) { return CString(a) += b; }

    friend bool operator==(const CString& a, const CString& b) { return a.m_text == b.m_text; }
    friend bool operator==(const CString& a, LPCWSTR b) { return a.Compare(b) == 0; }
    friend std::strong_ordering operator<=>(const CString& a, const CString& b) {
        return a.m_text <=> b.m_text;
    }
    friend std::strong_ordering operator<=>(const CString& a, LPCWSTR b) { return a.Compare(b) <=> 0; }
    // Without it std::ranges::less would compare the addresses that the texts turn into.
    friend bool operator<(const CString& a, const CString& b) { return a.m_text < b.m_text; }

private:
    template<typename Argument>
    static Argument Passed(const Argument& argument) {
        return argument;
    }
    template<typename Character, std::size_t N>
    static const Character* Passed(const Character (&text)[N]) {
        return text;
    }
    static LPCWSTR Passed(const CString& text) { return text.GetString(); }
    void Print(bool append, const wchar_t* format, ...);

    std::wstring m_text;
};

typedef CString CStringW;

class CObject;

// What a class of CObject's tree is called, and which one it is derived from.
struct ACBASE_PORT CRuntimeClass {
    LPCSTR m_lpszClassName;
    int m_nObjectSize;
    UINT m_wSchema;
    CObject* (*m_pfnCreateObject)(); // null for a class that cannot be made by name
    const CRuntimeClass* m_pBaseClass;

    // A new object, owned by the caller; null when the class cannot be made so.
    CObject* CreateObject() const { return m_pfnCreateObject != nullptr ? m_pfnCreateObject() : nullptr; }
    // Whether it is the other class or derived from it.
    BOOL IsDerivedFrom(const CRuntimeClass* base) const;
};

// The root of classes that tell their name at run time.
class ACBASE_PORT CObject {
public:
    virtual ~CObject();
    virtual const CRuntimeClass* GetRuntimeClass() const;
    // Whether the object is of the class or of one that is derived from it.
    BOOL IsKindOf(const CRuntimeClass* aClass) const { return GetRuntimeClass()->IsDerivedFrom(aClass); }

    static const CRuntimeClass classCObject;

protected:
    CObject() = default;
    CObject(const CObject&) = delete;
    CObject& operator=(const CObject&) = delete;
};

// DECLARE_DYNAMIC stands in a class, IMPLEMENT_DYNAMIC once in its source; with DYNCREATE in place of DYNAMIC
// objects of the class can be made through its CRuntimeClass.
#define RUNTIME_CLASS(class_name) (&class_name::class##class_name)

#define DECLARE_DYNAMIC(class_name)                                                                          \
public:                                                                                                      \
    static const CRuntimeClass class##class_name;                                                            \
    const CRuntimeClass* GetRuntimeClass() const override;

#define IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, schema, create)                                  \
    const CRuntimeClass class_name::class##class_name = {#class_name, static_cast<int>(sizeof(class_name)),  \
                                                         schema, create, RUNTIME_CLASS(base_class_name)};    \
    const CRuntimeClass* class_name::GetRuntimeClass() const {                                               \
        return RUNTIME_CLASS(class_name);                                                                    \
    }

#define IMPLEMENT_DYNAMIC(class_name, base_class_name)                                                       \
    IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, 0xFFFF, nullptr)

#define DECLARE_DYNCREATE(class_name)                                                                        \
    DECLARE_DYNAMIC(class_name)                                                                              \
    static CObject* CreateObject();

#define IMPLEMENT_DYNCREATE(class_name, base_class_name)                                                     \
    CObject* class_name::CreateObject() {                                                                    \
        return new class_name;                                                                               \
    }                                                                                                        \
    IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, 0xFFFF, class_name::CreateObject)

// The object as the class, null when it is none or null itself.
#define DYNAMIC_DOWNCAST(class_name, object)                                                                 \
    (static_cast<class_name*>(AfxDynamicDownCast(RUNTIME_CLASS(class_name), object)))
ACBASE_PORT CObject* AfxDynamicDownCast(const CRuntimeClass* aClass, CObject* object);
