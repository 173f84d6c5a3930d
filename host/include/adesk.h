// The number types of the interface and the marks that its declarations carry.
#pragma once

#include "AdAChar.h"
#include "acbasedefs.h"

#include <cstddef>
#include <cstdint>

namespace Adesk {

typedef std::int8_t Int8;
typedef std::int16_t Int16;
typedef std::int32_t Int32;
typedef std::int64_t Int64;
typedef std::uint8_t UInt8;
typedef std::uint16_t UInt16;
typedef std::uint32_t UInt32;
typedef std::uint64_t UInt64;

// As wide as a pointer.
typedef std::intptr_t IntPtr;
typedef std::uintptr_t UIntPtr;
typedef std::intptr_t LongPtr;
typedef std::uintptr_t ULongPtr;

typedef IntPtr IntDbId;

typedef unsigned char uchar;

typedef bool Boolean;
inline constexpr Boolean kTrue = true;
inline constexpr Boolean kFalse = false;

} // namespace Adesk

// Marks without a meaning for the compilers that build us.
#define ADESK_NO_VTABLE
#define ADESK_STDCALL
#define ADESK_DATA_ALIGN(x) x
#define ADESK_DEPRECATED
#define ADESK_OVERRIDE override
#define ADESK_FINAL final
#define ADESK_SEALED final
#define ADESK_SEALED_VIRTUAL final
#define ADESK_UNREFED_PARAM(x) ((void)(x))
