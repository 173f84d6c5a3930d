// Text functions under the names that programs of either character width use. Here the character is wide.
//
// Where a function compares without case or changes case it does so for all scripts. Reading a number from a
// text that holds none gives nought.
#pragma once

#include "windows.h"

#include "adesk.h"

#include <cstdarg>
#include <cstddef>
#include <cwchar>

typedef wchar_t _TCHAR;
typedef unsigned int _TUCHAR;

#define _T(x) ACRX_T(x)
#define _TEXT(x) ACRX_T(x)

inline std::size_t _tcslen(const TCHAR* s) {
    return std::wcslen(s);
}
inline TCHAR* _tcscpy(TCHAR* to, const TCHAR* from) {
    return std::wcscpy(to, from);
}
inline TCHAR* _tcsncpy(TCHAR* to, const TCHAR* from, std::size_t n) {
    return std::wcsncpy(to, from, n);
}
inline TCHAR* _tcscat(TCHAR* to, const TCHAR* from) {
    return std::wcscat(to, from);
}
inline TCHAR* _tcsncat(TCHAR* to, const TCHAR* from, std::size_t n) {
    return std::wcsncat(to, from, n);
}
inline int _tcscmp(const TCHAR* a, const TCHAR* b) {
    return std::wcscmp(a, b);
}
inline int _tcsncmp(const TCHAR* a, const TCHAR* b, std::size_t n) {
    return std::wcsncmp(a, b, n);
}
// Compares one character.
inline int _tccmp(const TCHAR* a, const TCHAR* b) {
    return *a < *b ? -1 : *a > *b;
}
inline const TCHAR* _tcschr(const TCHAR* s, TCHAR c) {
    return std::wcschr(s, c);
}
inline TCHAR* _tcschr(TCHAR* s, TCHAR c) {
    return std::wcschr(s, c);
}
inline const TCHAR* _tcsrchr(const TCHAR* s, TCHAR c) {
    return std::wcsrchr(s, c);
}
inline TCHAR* _tcsrchr(TCHAR* s, TCHAR c) {
    return std::wcsrchr(s, c);
}
inline const TCHAR* _tcsstr(const TCHAR* s, const TCHAR* part) {
    return std::wcsstr(s, part);
}
inline TCHAR* _tcsstr(TCHAR* s, const TCHAR* part) {
    return std::wcsstr(s, part);
}
inline const TCHAR* _tcspbrk(const TCHAR* s, const TCHAR* set) {
    return std::wcspbrk(s, set);
}
inline std::size_t _tcsspn(const TCHAR* s, const TCHAR* set) {
    return std::wcsspn(s, set);
}
inline std::size_t _tcscspn(const TCHAR* s, const TCHAR* set) {
    return std::wcscspn(s, set);
}

// Below, at or above nought; the first `n` units where a number is given.
ACBASE_PORT int _tcsicmp(const TCHAR* a, const TCHAR* b);
ACBASE_PORT int _tcsnicmp(const TCHAR* a, const TCHAR* b, std::size_t n);
// Change the text in place and return it.
ACBASE_PORT TCHAR* _tcsupr(TCHAR* s);
ACBASE_PORT TCHAR* _tcslwr(TCHAR* s);
// A copy, which the caller frees with free.
ACBASE_PORT TCHAR* _tcsdup(const TCHAR* s);

// Copy and append within a buffer of `size` characters. 0; where the text does not fit, EINVAL or ERANGE and
// an empty text in the buffer.
ACBASE_PORT int _tcscpy_s(TCHAR* to, std::size_t size, const TCHAR* from);
ACBASE_PORT int _tcscat_s(TCHAR* to, std::size_t size, const TCHAR* from);
template<std::size_t N>
int _tcscpy_s(TCHAR (&to)[N], const TCHAR* from) {
    return _tcscpy_s(to, N, from);
}
template<std::size_t N>
int _tcscat_s(TCHAR (&to)[N], const TCHAR* from) {
    return _tcscat_s(to, N, from);
}

// Read a number from the front of a text, blanks before it skipped; what is too large becomes the largest.
ACBASE_PORT int _ttoi(const TCHAR* s);
ACBASE_PORT LONG _ttol(const TCHAR* s);
ACBASE_PORT double _tstof(const TCHAR* s);
ACBASE_PORT LONG _tcstol(const TCHAR* s, TCHAR** end, int base);
ACBASE_PORT ULONG _tcstoul(const TCHAR* s, TCHAR** end, int base);
ACBASE_PORT double _tcstod(const TCHAR* s, TCHAR** end);
inline int _tstoi(const TCHAR* s) {
    return _ttoi(s);
}
inline int _wtoi(const wchar_t* s) {
    return _ttoi(s);
}
inline LONG _tstol(const TCHAR* s) {
    return _ttol(s);
}
inline LONG _wtol(const wchar_t* s) {
    return _ttol(s);
}
inline double _ttof(const TCHAR* s) {
    return _tstof(s);
}
inline double _wtof(const wchar_t* s) {
    return _tstof(s);
}

// Print by a format of printf's kind in which %s is a wide text, into a buffer that is large enough, or of
// `size` characters. The number of characters written, -1 when they do not fit; then the sized forms leave an
// empty text.
ACBASE_PORT int _stprintf(TCHAR* to, const TCHAR* format, ...);
ACBASE_PORT int _vstprintf(TCHAR* to, const TCHAR* format, va_list arguments);
ACBASE_PORT int _vstprintf_s(TCHAR* to, std::size_t size, const TCHAR* format, va_list arguments);
ACBASE_PORT int _stprintf_s(TCHAR* to, std::size_t size, const TCHAR* format, ...);
template<std::size_t N, typename... Arguments>
int _stprintf_s(TCHAR (&to)[N], const TCHAR* format, Arguments... arguments) {
    return _stprintf_s(to, N, format, arguments...);
}
#define swprintf_s _stprintf_s

// Blanks, digits and case of single characters. Blanks and case are those of all scripts, digits the ten.
ACBASE_PORT int _istspace(int c);
inline int _istdigit(int c) {
    return c >= '0' && c <= '9';
}
inline int _istxdigit(int c) {
    return _istdigit(c) || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}
ACBASE_PORT int _totupper(int c);
ACBASE_PORT int _totlower(int c);
