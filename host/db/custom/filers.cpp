// What all filers have in common: values as bytes, and as groups.
#include "acutmem.h"
#include "base/utf.h"
#include "base/wide_format.h"
#include "dbfiler.h"
#include "host/rx/result_buffer.h"

#include <algorithm>
#include <limits>

ACRX_NO_CONS_DEFINE_MEMBERS(AcDbDwgFiler, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcDbDxfFiler, AcRxObject)

AcDbDwgFiler::~AcDbDwgFiler() = default;
AcDbDxfFiler::~AcDbDxfFiler() = default;

Acad::ErrorStatus AcDbDwgFiler::dwgVersion(AcDb::AcDbDwgVersion& version,
                                           AcDb::MaintenanceReleaseVersion& maintenance) const {
    version = AcDb::kDHL_CURRENT;
    maintenance = AcDb::kMReleaseCurrent;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDwgFiler::readString(AcString& text) {
    Adesk::UInt32 length = 0;
    if (const Acad::ErrorStatus status = readUInt32(&length); status != Acad::eOk)
        return status;
    std::string bytes;
    // What the stream does not hold is not made room for.
    constexpr Adesk::UInt32 step = 4096;
    while (bytes.size() < length) {
        const std::size_t from = bytes.size();
        bytes.resize(from + std::min<std::size_t>(step, length - from));
        if (const Acad::ErrorStatus status = readBytes(bytes.data() + from, bytes.size() - from);
            status != Acad::eOk)
            return status;
    }
    text = base::widen(bytes).c_str();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDwgFiler::readString(ACHAR** text) {
    AcString read;
    const Acad::ErrorStatus status = readString(read);
    return status == Acad::eOk ? acutNewString(read.kwszPtr(), *text) : status;
}

Acad::ErrorStatus AcDbDwgFiler::writeString(const ACHAR* text) {
    const std::string bytes = base::narrow(text != nullptr ? text : L"");
    writeUInt32(static_cast<Adesk::UInt32>(bytes.size()));
    return writeBytes(bytes.data(), bytes.size());
}

Acad::ErrorStatus AcDbDwgFiler::readBChunk(ads_binary* chunk) {
    Adesk::UInt16 length = 0;
    if (const Acad::ErrorStatus status = readUInt16(&length); status != Acad::eOk)
        return status;
    if (length > std::numeric_limits<short>::max())
        return Acad::eFilerError;
    chunk->clen = static_cast<short>(length);
    chunk->buf = new char[length + std::size_t(1)]; // the caller's
    return readBytes(chunk->buf, length);
}

Acad::ErrorStatus AcDbDwgFiler::writeBChunk(const ads_binary& chunk) {
    const auto length = static_cast<Adesk::UInt16>(chunk.clen);
    writeUInt16(length);
    return writeBytes(chunk.buf, length);
}

Acad::ErrorStatus AcDbDwgFiler::readAcDbHandle(AcDbHandle* handle) {
    Adesk::UInt64 value = 0;
    const Acad::ErrorStatus status = readUInt64(&value);
    if (status == Acad::eOk)
        *handle = AcDbHandle(value);
    return status;
}

Acad::ErrorStatus AcDbDwgFiler::writeAcDbHandle(const AcDbHandle& handle) {
    return writeUInt64(handle);
}

Acad::ErrorStatus AcDbDwgFiler::readBoolean(Adesk::Boolean* value) {
    Adesk::UInt8 byte = 0;
    const Acad::ErrorStatus status = readUInt8(&byte);
    if (status == Acad::eOk)
        *value = byte != 0;
    return status;
}

Acad::ErrorStatus AcDbDwgFiler::readReals(std::initializer_list<double*> values) {
    Acad::ErrorStatus status = Acad::eOk;
    for (double* const value : values)
        if (status == Acad::eOk)
            status = readDouble(value);
    return status;
}

Acad::ErrorStatus AcDbDwgFiler::writeReals(std::initializer_list<double> values) {
    Acad::ErrorStatus status = Acad::eOk;
    for (const double value : values)
        if (status == Acad::eOk)
            status = writeDouble(value);
    return status;
}

Acad::ErrorStatus AcDbDwgFiler::readId(AcDbObjectId* id) {
    Adesk::Int64 value = 0;
    const Acad::ErrorStatus status = readInt64(&value);
    if (status == Acad::eOk)
        id->setFromOldId(static_cast<Adesk::LongPtr>(value));
    return status;
}

Acad::ErrorStatus AcDbDwgFiler::writeId(const AcDbObjectId& id) {
    return writeInt64(id.asOldId());
}

// ---- groups

Acad::ErrorStatus AcDbDxfFiler::dwgVersion(AcDb::AcDbDwgVersion& version,
                                           AcDb::MaintenanceReleaseVersion& maintenance) const {
    version = AcDb::kDHL_CURRENT;
    maintenance = AcDb::kMReleaseCurrent;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDxfFiler::setError(Acad::ErrorStatus status, const ACHAR* format, ...) {
    m_status = status;
    va_list arguments;
    va_start(arguments, format);
    m_message = base::format_wide(format, arguments);
    va_end(arguments);
    return status;
}

Acad::ErrorStatus AcDbDxfFiler::setError(const ACHAR* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    m_message = base::format_wide(format, arguments);
    va_end(arguments);
    return m_status;
}

const ACHAR* AcDbDxfFiler::errorMessage() const {
    return m_message.c_str();
}

int AcDbDxfFiler::precision() const {
    return m_precision;
}

void AcDbDxfFiler::setPrecision(int digits) {
    m_precision = digits;
}

namespace {

resbuf value_of(AcDb::DxfCode code) {
    resbuf value{};
    value.restype = static_cast<short>(code);
    return value;
}

} // namespace

Acad::ErrorStatus AcDbDxfFiler::writeString(AcDb::DxfCode code, const ACHAR* text) {
    resbuf value = value_of(code);
    value.resval.rstring = const_cast<ACHAR*>(text != nullptr ? text : L"");
    return writeResBuf(value);
}

Acad::ErrorStatus AcDbDxfFiler::writeObjectId(AcDb::DxfCode code, const AcDbObjectId& id) {
    resbuf value = value_of(code);
    value.resval.rlname[0] = id.asOldId();
    return writeResBuf(value);
}

Acad::ErrorStatus AcDbDxfFiler::writeHandle(AcDb::DxfCode code, const AcDbHandle& handle) {
    ACHAR digits[AcDbHandle::kStrSiz];
    handle.getIntoAsciiBuffer(digits);
    return writeString(code, digits);
}

Acad::ErrorStatus AcDbDxfFiler::writeBChunk(AcDb::DxfCode code, const ads_binary& chunk) {
    resbuf value = value_of(code);
    value.resval.rbinary = chunk;
    return writeResBuf(value);
}

// A whole number goes into the member that its code has; those without a sign wrap round, and back when they
// are read.
Acad::ErrorStatus AcDbDxfFiler::writeInt64(AcDb::DxfCode code, Adesk::Int64 number) {
    resbuf value = value_of(code);
    switch (rx::kind_of(code)) {
    case rx::value_kind::int16:
        value.resval.rint = static_cast<short>(number);
        break;
    case rx::value_kind::int32:
        value.resval.rlong = static_cast<Adesk::Int32>(number);
        break;
    case rx::value_kind::int64:
        value.resval.mnInt64 = number;
        break;
    case rx::value_kind::real:
        value.resval.rreal = static_cast<double>(number);
        break;
    default:
        return setError(Acad::eInvalidDxfCode);
    }
    return writeResBuf(value);
}

Acad::ErrorStatus AcDbDxfFiler::writeReals(AcDb::DxfCode code, std::initializer_list<double> values,
                                           int /*precision*/) {
    resbuf value = value_of(code);
    if (rx::kind_of(code) == rx::value_kind::point3d) {
        std::copy(values.begin(), values.end(), value.resval.rpoint);
        return writeResBuf(value);
    }
    Acad::ErrorStatus status = Acad::eOk;
    for (const double real : values) {
        value.resval.rreal = real;
        if (status == Acad::eOk)
            status = writeResBuf(value);
        value.restype = static_cast<short>(value.restype + 10); // a coordinate each
    }
    return status;
}
