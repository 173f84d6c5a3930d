// The names of Windows' own types that programs use in passing. No function of Windows is here.
#pragma once

#include <cstddef>
#include <cstdint>

#define __declspec(attribute) ARX_DECLSPEC_##attribute
#define ARX_DECLSPEC_dllexport __attribute__((visibility("default")))
#define ARX_DECLSPEC_dllimport __attribute__((visibility("default")))
#define ARX_DECLSPEC_noinline __attribute__((noinline))
#define ARX_DECLSPEC_noreturn [[noreturn]]
#define ARX_DECLSPEC_novtable
#define ARX_DECLSPEC_selectany __attribute__((weak))
#define ARX_DECLSPEC_thread thread_local
#define ARX_DECLSPEC_align(n) __attribute__((aligned(n)))
#define ARX_DECLSPEC_deprecated

#define WINAPI
#define APIENTRY
#define CALLBACK

typedef std::uint8_t BYTE;
typedef std::uint16_t WORD;
typedef std::uint32_t DWORD;
typedef std::int32_t BOOL;
typedef char CHAR;
typedef wchar_t WCHAR;
typedef std::int16_t SHORT;
typedef std::uint16_t USHORT;
typedef std::int32_t INT;
typedef std::uint32_t UINT;
typedef std::int32_t LONG;
typedef std::uint32_t ULONG;
typedef std::int64_t LONGLONG;
typedef std::uint64_t ULONGLONG;
typedef std::intptr_t INT_PTR;
typedef std::uintptr_t UINT_PTR;
typedef std::intptr_t LONG_PTR;
typedef std::uintptr_t DWORD_PTR;
typedef UINT_PTR WPARAM;
typedef LONG_PTR LPARAM;
typedef LONG_PTR LRESULT;
typedef DWORD COLORREF;

#define VOID void
typedef void* LPVOID;
typedef const void* LPCVOID;
typedef char* LPSTR;
typedef const char* LPCSTR;
typedef wchar_t* LPWSTR;
typedef const wchar_t* LPCWSTR;
typedef wchar_t TCHAR;
typedef TCHAR* LPTSTR;
typedef const TCHAR* LPCTSTR;

// Handles of what lives in the system: each points to a type of its own that nobody defines.
typedef void* HANDLE;
typedef struct HINSTANCE__* HINSTANCE;
typedef HINSTANCE HMODULE;
typedef struct HWND__* HWND;
typedef struct HKEY__* HKEY;
#define HKEY_CURRENT_USER (reinterpret_cast<HKEY>(static_cast<INT_PTR>(static_cast<LONG>(0x80000001))))

#ifndef TRUE
#define TRUE 1
#define FALSE 0
#endif
#define MAX_PATH 260

#define DLL_PROCESS_DETACH 0
#define DLL_PROCESS_ATTACH 1
#define DLL_THREAD_ATTACH 2
#define DLL_THREAD_DETACH 3

#define RGB(r, g, b)                                                                                         \
    (static_cast<COLORREF>(static_cast<BYTE>(r)) | static_cast<COLORREF>(static_cast<BYTE>(g)) << 8 |        \
     static_cast<COLORREF>(static_cast<BYTE>(b)) << 16)
#define GetRValue(rgb) (static_cast<BYTE>((rgb)&0xFF))
#define GetGValue(rgb) (static_cast<BYTE>(((rgb) >> 8) & 0xFF))
#define GetBValue(rgb) (static_cast<BYTE>(((rgb) >> 16) & 0xFF))

#define LOWORD(value) (static_cast<WORD>(static_cast<DWORD_PTR>(value) & 0xFFFF))
#define HIWORD(value) (static_cast<WORD>((static_cast<DWORD_PTR>(value) >> 16) & 0xFFFF))

struct POINT {
    LONG x, y;
};
// A message of the window system.
struct MSG {
    HWND hwnd;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    DWORD time;
    POINT pt;
};
