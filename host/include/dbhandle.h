// The handle by which a drawing file names an object.
#pragma once

#include "AdAChar.h"
#include "adesk.h"

// A number that an object keeps for its life, written in hexadecimal in the file. Nought is no handle.
class AcDbHandle {
public:
    AcDbHandle() = default;
    AcDbHandle(Adesk::UInt64 value)
        : m_value(value) {} // NOLINT(google-explicit-constructor): as ObjectARX has it
    AcDbHandle(int low, int high)
        : m_value(static_cast<Adesk::UInt64>(static_cast<Adesk::UInt32>(high)) << 32 |
                  static_cast<Adesk::UInt32>(low)) {}
    // From hexadecimal digits; no handle when the text holds anything else.
    ACDB_PORT explicit AcDbHandle(const ACHAR* digits);

    Adesk::UInt32 low() const { return static_cast<Adesk::UInt32>(m_value); }
    Adesk::UInt32 high() const { return static_cast<Adesk::UInt32>(m_value >> 32); }
    bool isNull() const { return m_value == 0; }
    void setNull() { m_value = 0; }

    static constexpr int kStrSiz = 17;
    // Writes the digits, upper case without leading noughts, into a buffer of at least kStrSiz characters.
    // False, and nothing written, when the buffer is too small.
    ACDB_PORT bool getIntoAsciiBuffer(ACHAR* buffer, size_t size = kStrSiz) const;

    operator Adesk::UInt64() const { return m_value; } // NOLINT(google-explicit-constructor)

private:
    Adesk::UInt64 m_value = 0;
};
