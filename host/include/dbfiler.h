// Filers: what an object of a program's own class is written to and read from, value by value.
//
// A class files itself by four members: dwgInFields and dwgOutFields for copies in memory, dxfInFields and
// dxfOutFields for drawing files. Each calls its parent's first.
//
//     Acad::ErrorStatus Valve::dxfInFields(AcDbDxfFiler* filer) {
//         assertWriteEnabled();
//         if (AcDbEntity::dxfInFields(filer) != Acad::eOk || !filer->atSubclassData(_T("Valve")))
//             return filer->filerStatus();
//         resbuf value;
//         while (filer->readResBuf(&value) == Acad::eOk) {
//             if (value.restype == AcDb::kDxfReal)
//                 m_bore = value.resval.rreal;
//             else {
//                 filer->pushBackItem(); // what the next class begins with
//                 break;
//             }
//         }
//         return filer->filerStatus();
//     }
//
// A closed object is what its record in the drawing holds: what a class does not file by the latter two is
// gone when its object is closed.
//
// A class that answers anything but eOk (or eEndOfFile) to dxfInFields, eMakeMeProxy for instance, gets no
// object: the record is kept as it stands and opened as a proxy.
#pragma once

#include "acdb.h"
#include "acstring.h"
#include "adsdef.h"
#include "dbhandle.h"
#include "dbid.h"
#include "gepnt2d.h"
#include "gepnt3d.h"
#include "gescl3d.h"
#include "gevec2d.h"
#include "gevec3d.h"
#include "rxboiler.h"

#include <initializer_list>
#include <string>

// A stream of values without codes. Reading gives the values in the order in which they were written; one
// that is not there makes the status eEndOfFile, and all further ones.
class ACDB_PORT AcDbDwgFiler : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbDwgFiler);
    AcDbDwgFiler() = default;
    AcDbDwgFiler(const AcDbDwgFiler&) = delete;
    AcDbDwgFiler& operator=(const AcDbDwgFiler&) = delete;
    ~AcDbDwgFiler() override;

    // The first failure since the last reset; eOk when there was none.
    virtual Acad::ErrorStatus filerStatus() const = 0;
    virtual AcDb::FilerType filerType() const = 0;
    virtual void setFilerStatus(Acad::ErrorStatus status) = 0;
    virtual void resetFilerStatus() = 0;
    // The version of the file that is written or read.
    virtual Acad::ErrorStatus dwgVersion(AcDb::AcDbDwgVersion& version,
                                         AcDb::MaintenanceReleaseVersion& maintenance) const;

    // Raw bytes: what all the others are made of.
    virtual Acad::ErrorStatus readBytes(void* bytes, Adesk::UIntPtr count) = 0;
    virtual Acad::ErrorStatus writeBytes(const void* bytes, Adesk::UIntPtr count) = 0;
    // From the beginning (0), from where it stands (1) or from the end (2).
    virtual Acad::ErrorStatus seek(Adesk::Int64 offset, int method) = 0;
    virtual Adesk::Int64 tell() const = 0;

    Acad::ErrorStatus readHardOwnershipId(AcDbHardOwnershipId* id) { return readId(id); }
    Acad::ErrorStatus readSoftOwnershipId(AcDbSoftOwnershipId* id) { return readId(id); }
    Acad::ErrorStatus readHardPointerId(AcDbHardPointerId* id) { return readId(id); }
    Acad::ErrorStatus readSoftPointerId(AcDbSoftPointerId* id) { return readId(id); }
    Acad::ErrorStatus writeHardOwnershipId(const AcDbHardOwnershipId& id) { return writeId(id); }
    Acad::ErrorStatus writeSoftOwnershipId(const AcDbSoftOwnershipId& id) { return writeId(id); }
    Acad::ErrorStatus writeHardPointerId(const AcDbHardPointerId& id) { return writeId(id); }
    Acad::ErrorStatus writeSoftPointerId(const AcDbSoftPointerId& id) { return writeId(id); }

    // The text is the caller's (acutDelString).
    Acad::ErrorStatus readString(ACHAR** text);
    Acad::ErrorStatus readString(AcString& text);
    Acad::ErrorStatus writeString(const ACHAR* text);
    Acad::ErrorStatus writeString(const AcString& text) { return writeString(text.kwszPtr()); }
    // The buffer is the caller's (delete[]).
    Acad::ErrorStatus readBChunk(ads_binary* chunk);
    Acad::ErrorStatus writeBChunk(const ads_binary& chunk);
    Acad::ErrorStatus readAcDbHandle(AcDbHandle* handle);
    Acad::ErrorStatus writeAcDbHandle(const AcDbHandle& handle);

    Acad::ErrorStatus readInt64(Adesk::Int64* value) { return readValue(value); }
    Acad::ErrorStatus readInt32(Adesk::Int32* value) { return readValue(value); }
    Acad::ErrorStatus readInt16(Adesk::Int16* value) { return readValue(value); }
    Acad::ErrorStatus readInt8(Adesk::Int8* value) { return readValue(value); }
    Acad::ErrorStatus readUInt64(Adesk::UInt64* value) { return readValue(value); }
    Acad::ErrorStatus readUInt32(Adesk::UInt32* value) { return readValue(value); }
    Acad::ErrorStatus readUInt16(Adesk::UInt16* value) { return readValue(value); }
    Acad::ErrorStatus readUInt8(Adesk::UInt8* value) { return readValue(value); }
    Acad::ErrorStatus readBoolean(Adesk::Boolean* value);
    Acad::ErrorStatus readBool(bool* value) { return readBoolean(value); }
    Acad::ErrorStatus readDouble(double* value) { return readValue(value); }
    Acad::ErrorStatus readPoint2d(AcGePoint2d* value) { return readReals({&value->x, &value->y}); }
    Acad::ErrorStatus readPoint3d(AcGePoint3d* value) { return readReals({&value->x, &value->y, &value->z}); }
    Acad::ErrorStatus readVector2d(AcGeVector2d* value) { return readReals({&value->x, &value->y}); }
    Acad::ErrorStatus readVector3d(AcGeVector3d* value) {
        return readReals({&value->x, &value->y, &value->z});
    }
    Acad::ErrorStatus readScale3d(AcGeScale3d* value) {
        return readReals({&value->sx, &value->sy, &value->sz});
    }

    Acad::ErrorStatus writeInt64(Adesk::Int64 value) { return writeValue(value); }
    Acad::ErrorStatus writeInt32(Adesk::Int32 value) { return writeValue(value); }
    Acad::ErrorStatus writeInt16(Adesk::Int16 value) { return writeValue(value); }
    Acad::ErrorStatus writeInt8(Adesk::Int8 value) { return writeValue(value); }
    Acad::ErrorStatus writeUInt64(Adesk::UInt64 value) { return writeValue(value); }
    Acad::ErrorStatus writeUInt32(Adesk::UInt32 value) { return writeValue(value); }
    Acad::ErrorStatus writeUInt16(Adesk::UInt16 value) { return writeValue(value); }
    Acad::ErrorStatus writeUInt8(Adesk::UInt8 value) { return writeValue(value); }
    Acad::ErrorStatus writeBoolean(Adesk::Boolean value) { return writeValue<Adesk::UInt8>(value ? 1 : 0); }
    Acad::ErrorStatus writeBool(bool value) { return writeBoolean(value); }
    Acad::ErrorStatus writeDouble(double value) { return writeValue(value); }
    Acad::ErrorStatus writePoint2d(const AcGePoint2d& value) { return writeReals({value.x, value.y}); }
    Acad::ErrorStatus writePoint3d(const AcGePoint3d& value) {
        return writeReals({value.x, value.y, value.z});
    }
    Acad::ErrorStatus writeVector2d(const AcGeVector2d& value) { return writeReals({value.x, value.y}); }
    Acad::ErrorStatus writeVector3d(const AcGeVector3d& value) {
        return writeReals({value.x, value.y, value.z});
    }
    Acad::ErrorStatus writeScale3d(const AcGeScale3d& value) {
        return writeReals({value.sx, value.sy, value.sz});
    }

    // The same by one name.
    Acad::ErrorStatus readItem(AcDbHardOwnershipId* id) { return readId(id); }
    Acad::ErrorStatus readItem(AcDbSoftOwnershipId* id) { return readId(id); }
    Acad::ErrorStatus readItem(AcDbHardPointerId* id) { return readId(id); }
    Acad::ErrorStatus readItem(AcDbSoftPointerId* id) { return readId(id); }
    Acad::ErrorStatus readItem(ACHAR** text) { return readString(text); }
    Acad::ErrorStatus readItem(AcString& text) { return readString(text); }
    Acad::ErrorStatus readItem(ads_binary* chunk) { return readBChunk(chunk); }
    Acad::ErrorStatus readItem(AcDbHandle* handle) { return readAcDbHandle(handle); }
    Acad::ErrorStatus readItem(Adesk::Int64* value) { return readValue(value); }
    Acad::ErrorStatus readItem(Adesk::Int32* value) { return readValue(value); }
    Acad::ErrorStatus readItem(Adesk::Int16* value) { return readValue(value); }
    Acad::ErrorStatus readItem(Adesk::Int8* value) { return readValue(value); }
    Acad::ErrorStatus readItem(Adesk::UInt64* value) { return readValue(value); }
    Acad::ErrorStatus readItem(Adesk::UInt32* value) { return readValue(value); }
    Acad::ErrorStatus readItem(Adesk::UInt16* value) { return readValue(value); }
    Acad::ErrorStatus readItem(Adesk::UInt8* value) { return readValue(value); }
    Acad::ErrorStatus readItem(bool* value) { return readBoolean(value); }
    Acad::ErrorStatus readItem(double* value) { return readValue(value); }
    Acad::ErrorStatus readItem(AcGePoint2d* value) { return readPoint2d(value); }
    Acad::ErrorStatus readItem(AcGePoint3d* value) { return readPoint3d(value); }
    Acad::ErrorStatus readItem(AcGeVector2d* value) { return readVector2d(value); }
    Acad::ErrorStatus readItem(AcGeVector3d* value) { return readVector3d(value); }
    Acad::ErrorStatus readItem(AcGeScale3d* value) { return readScale3d(value); }
    Acad::ErrorStatus readItem(void* bytes, Adesk::UIntPtr count) { return readBytes(bytes, count); }
    Acad::ErrorStatus writeItem(const AcDbHardOwnershipId& id) { return writeId(id); }
    Acad::ErrorStatus writeItem(const AcDbSoftOwnershipId& id) { return writeId(id); }
    Acad::ErrorStatus writeItem(const AcDbHardPointerId& id) { return writeId(id); }
    Acad::ErrorStatus writeItem(const AcDbSoftPointerId& id) { return writeId(id); }
    Acad::ErrorStatus writeItem(const ACHAR* text) { return writeString(text); }
    Acad::ErrorStatus writeItem(const AcString& text) { return writeString(text); }
    Acad::ErrorStatus writeItem(const ads_binary& chunk) { return writeBChunk(chunk); }
    Acad::ErrorStatus writeItem(const AcDbHandle& handle) { return writeAcDbHandle(handle); }
    Acad::ErrorStatus writeItem(Adesk::Int64 value) { return writeValue(value); }
    Acad::ErrorStatus writeItem(Adesk::Int32 value) { return writeValue(value); }
    Acad::ErrorStatus writeItem(Adesk::Int16 value) { return writeValue(value); }
    Acad::ErrorStatus writeItem(Adesk::Int8 value) { return writeValue(value); }
    Acad::ErrorStatus writeItem(Adesk::UInt64 value) { return writeValue(value); }
    Acad::ErrorStatus writeItem(Adesk::UInt32 value) { return writeValue(value); }
    Acad::ErrorStatus writeItem(Adesk::UInt16 value) { return writeValue(value); }
    Acad::ErrorStatus writeItem(Adesk::UInt8 value) { return writeValue(value); }
    Acad::ErrorStatus writeItem(bool value) { return writeBoolean(value); }
    Acad::ErrorStatus writeItem(double value) { return writeValue(value); }
    Acad::ErrorStatus writeItem(const AcGePoint2d& value) { return writePoint2d(value); }
    Acad::ErrorStatus writeItem(const AcGePoint3d& value) { return writePoint3d(value); }
    Acad::ErrorStatus writeItem(const AcGeVector2d& value) { return writeVector2d(value); }
    Acad::ErrorStatus writeItem(const AcGeVector3d& value) { return writeVector3d(value); }
    Acad::ErrorStatus writeItem(const AcGeScale3d& value) { return writeScale3d(value); }
    Acad::ErrorStatus writeItem(const void* bytes, Adesk::UIntPtr count) { return writeBytes(bytes, count); }

private:
    template<class Value>
    Acad::ErrorStatus readValue(Value* value) {
        return readBytes(value, sizeof *value);
    }
    template<class Value>
    Acad::ErrorStatus writeValue(Value value) {
        return writeBytes(&value, sizeof value);
    }
    Acad::ErrorStatus readReals(std::initializer_list<double*> values);
    Acad::ErrorStatus writeReals(std::initializer_list<double> values);
    Acad::ErrorStatus readId(AcDbObjectId* id);
    Acad::ErrorStatus writeId(const AcDbObjectId& id);
};

// A stream of group codes with values.
class ACDB_PORT AcDbDxfFiler : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbDxfFiler);
    AcDbDxfFiler() = default;
    AcDbDxfFiler(const AcDbDxfFiler&) = delete;
    AcDbDxfFiler& operator=(const AcDbDxfFiler&) = delete;
    ~AcDbDxfFiler() override;

    enum { kDfltPrec = -1, kMaxPrec = 16 };

    // Back to the first group. 0 when that was possible.
    virtual int rewindFiler() = 0;
    // The error that was set last; the end of the groups is none.
    virtual Acad::ErrorStatus filerStatus() const = 0;
    virtual void resetFilerStatus() = 0;
    virtual AcDb::FilerType filerType() const = 0;
    virtual AcDbDatabase* database() const = 0;
    virtual Acad::ErrorStatus dwgVersion(AcDb::AcDbDwgVersion& version,
                                         AcDb::MaintenanceReleaseVersion& maintenance) const;
    // Sets an error with a message (printf's manner), or a message alone.
    virtual Acad::ErrorStatus setError(Acad::ErrorStatus status, const ACHAR* format = nullptr, ...);
    virtual Acad::ErrorStatus setError(const ACHAR* format, ...);
    virtual const ACHAR* errorMessage() const;
    // Digits behind the point that reals are written with; kDfltPrec: as many as give the value back.
    virtual int precision() const;
    virtual void setPrecision(int digits);
    // Whether values that are what is meant without them are written too.
    virtual bool includesDefaultValues() const { return false; }
    virtual bool isModifyingExistingObject() const { return false; }

    // ---- reading

    // The next group. Texts in it stay the filer's, and are there as long as it is. eEndOfFile when there is
    // none left.
    virtual Acad::ErrorStatus readResBuf(resbuf* value) = 0;
    Acad::ErrorStatus readItem(resbuf* value) { return readResBuf(value); }
    // The group that was read last is read again next.
    virtual void pushBackItem() = 0;
    // Whether the next group is the marker (100) of a class; then it is read with that.
    virtual bool atSubclassData(const ACHAR* name) = 0;
    virtual bool atEOF() = 0;
    virtual bool atEndOfObject() = 0;
    virtual bool atExtendedData() = 0;

    // ---- writing

    virtual Acad::ErrorStatus writeResBuf(const resbuf& value) = 0;
    Acad::ErrorStatus writeString(AcDb::DxfCode code, const ACHAR* text);
    Acad::ErrorStatus writeString(AcDb::DxfCode code, const AcString& text) {
        return writeString(code, text.kwszPtr());
    }
    // The object's handle; 0 for none.
    Acad::ErrorStatus writeObjectId(AcDb::DxfCode code, const AcDbObjectId& id);
    Acad::ErrorStatus writeHandle(AcDb::DxfCode code, const AcDbHandle& handle);
    Acad::ErrorStatus writeBChunk(AcDb::DxfCode code, const ads_binary& chunk);
    Acad::ErrorStatus writeInt8(AcDb::DxfCode code, Adesk::Int8 value) { return writeInt64(code, value); }
    Acad::ErrorStatus writeInt16(AcDb::DxfCode code, Adesk::Int16 value) { return writeInt64(code, value); }
    Acad::ErrorStatus writeInt32(AcDb::DxfCode code, Adesk::Int32 value) { return writeInt64(code, value); }
    Acad::ErrorStatus writeInt64(AcDb::DxfCode code, Adesk::Int64 value);
    Acad::ErrorStatus writeUInt8(AcDb::DxfCode code, Adesk::UInt8 value) { return writeInt64(code, value); }
    Acad::ErrorStatus writeUInt16(AcDb::DxfCode code, Adesk::UInt16 value) { return writeInt64(code, value); }
    Acad::ErrorStatus writeUInt32(AcDb::DxfCode code, Adesk::UInt32 value) { return writeInt64(code, value); }
    Acad::ErrorStatus writeUInt64(AcDb::DxfCode code, Adesk::UInt64 value) {
        return writeInt64(code, static_cast<Adesk::Int64>(value));
    }
    Acad::ErrorStatus writeBoolean(AcDb::DxfCode code, Adesk::Boolean value) {
        return writeInt64(code, value ? 1 : 0);
    }
    Acad::ErrorStatus writeBool(AcDb::DxfCode code, bool value) { return writeInt64(code, value ? 1 : 0); }
    Acad::ErrorStatus writeDouble(AcDb::DxfCode code, double value, int precision = kDfltPrec) {
        return writeReals(code, {value}, precision);
    }
    Acad::ErrorStatus writePoint2d(AcDb::DxfCode code, const AcGePoint2d& value, int precision = kDfltPrec) {
        return writeReals(code, {value.x, value.y}, precision);
    }
    Acad::ErrorStatus writePoint3d(AcDb::DxfCode code, const AcGePoint3d& value, int precision = kDfltPrec) {
        return writeReals(code, {value.x, value.y, value.z}, precision);
    }
    Acad::ErrorStatus writeVector2d(AcDb::DxfCode code, const AcGeVector2d& value,
                                    int precision = kDfltPrec) {
        return writeReals(code, {value.x, value.y}, precision);
    }
    Acad::ErrorStatus writeVector3d(AcDb::DxfCode code, const AcGeVector3d& value,
                                    int precision = kDfltPrec) {
        return writeReals(code, {value.x, value.y, value.z}, precision);
    }
    Acad::ErrorStatus writeScale3d(AcDb::DxfCode code, const AcGeScale3d& value, int precision = kDfltPrec) {
        return writeReals(code, {value.sx, value.sy, value.sz}, precision);
    }
    // Extended data follows: its first item is an application's name (1001).
    Acad::ErrorStatus writeXDataStart() { return Acad::eOk; }

    // The same by one name.
    Acad::ErrorStatus writeItem(const resbuf& value) { return writeResBuf(value); }
    Acad::ErrorStatus writeItem(AcDb::DxfCode code, const ACHAR* text) { return writeString(code, text); }
    Acad::ErrorStatus writeItem(AcDb::DxfCode code, const AcString& text) { return writeString(code, text); }
    Acad::ErrorStatus writeItem(AcDb::DxfCode code, const AcDbObjectId& id) {
        return writeObjectId(code, id);
    }
    Acad::ErrorStatus writeItem(AcDb::DxfCode code, const AcDbHandle& handle) {
        return writeHandle(code, handle);
    }
    Acad::ErrorStatus writeItem(AcDb::DxfCode code, const ads_binary& chunk) {
        return writeBChunk(code, chunk);
    }
    Acad::ErrorStatus writeItem(AcDb::DxfCode code, Adesk::Int8 value) { return writeInt64(code, value); }
    Acad::ErrorStatus writeItem(AcDb::DxfCode code, Adesk::Int16 value) { return writeInt64(code, value); }
    Acad::ErrorStatus writeItem(AcDb::DxfCode code, Adesk::Int32 value) { return writeInt64(code, value); }
    Acad::ErrorStatus writeItem(AcDb::DxfCode code, Adesk::Int64 value) { return writeInt64(code, value); }
    Acad::ErrorStatus writeItem(AcDb::DxfCode code, Adesk::UInt8 value) { return writeInt64(code, value); }
    Acad::ErrorStatus writeItem(AcDb::DxfCode code, Adesk::UInt16 value) { return writeInt64(code, value); }
    Acad::ErrorStatus writeItem(AcDb::DxfCode code, Adesk::UInt32 value) { return writeInt64(code, value); }
    Acad::ErrorStatus writeItem(AcDb::DxfCode code, Adesk::UInt64 value) { return writeUInt64(code, value); }
    Acad::ErrorStatus writeItem(AcDb::DxfCode code, bool value) { return writeBool(code, value); }
    Acad::ErrorStatus writeItem(AcDb::DxfCode code, double value, int precision = kDfltPrec) {
        return writeDouble(code, value, precision);
    }
    Acad::ErrorStatus writeItem(AcDb::DxfCode code, const AcGePoint2d& value, int precision = kDfltPrec) {
        return writePoint2d(code, value, precision);
    }
    Acad::ErrorStatus writeItem(AcDb::DxfCode code, const AcGePoint3d& value, int precision = kDfltPrec) {
        return writePoint3d(code, value, precision);
    }
    Acad::ErrorStatus writeItem(AcDb::DxfCode code, const AcGeVector2d& value, int precision = kDfltPrec) {
        return writeVector2d(code, value, precision);
    }
    Acad::ErrorStatus writeItem(AcDb::DxfCode code, const AcGeVector3d& value, int precision = kDfltPrec) {
        return writeVector3d(code, value, precision);
    }
    Acad::ErrorStatus writeItem(AcDb::DxfCode code, const AcGeScale3d& value, int precision = kDfltPrec) {
        return writeScale3d(code, value, precision);
    }

protected:
    // A value, or the coordinates of a point: each has a code ten above the one before it.
    virtual Acad::ErrorStatus writeReals(AcDb::DxfCode code, std::initializer_list<double> values,
                                         int precision);

    Acad::ErrorStatus m_status = Acad::eOk;

private:
    std::wstring m_message;
    int m_precision = kDfltPrec;
};
