#include "siblings/zef_pipewire/TDxfFields.h"

#include <algorithm>

namespace {

// What an object's values are written as.
struct Writer {
    AcDbDxfFiler& filer;
    AcDb::DxfCode code;

    void operator()(const int* value) const { filer.writeInt32(code, *value); }
    void operator()(const bool* value) const { filer.writeBool(code, *value); }
    void operator()(const double* value) const { filer.writeDouble(code, *value); }
    void operator()(const CString* value) const { filer.writeString(code, value->GetString()); }
    void operator()(const AcGePoint3d* value) const { filer.writePoint3d(code, *value); }
    void operator()(const AcDbObjectId* value) const { filer.writeObjectId(code, *value); }
    template<class Value>
    void operator()(const std::optional<Value>* value) const {
        if (*value)
            (*this)(&**value);
    }
    template<class List>
    void operator()(const List* values) const {
        for (const auto& value : *values)
            (*this)(&value);
    }
};

// Puts a group that was read into what it belongs to.
struct Reader {
    const resbuf& value;

    void operator()(int* target) const { *target = Whole(); }
    void operator()(bool* target) const { *target = Whole() != 0; }
    void operator()(double* target) const { *target = value.resval.rreal; }
    void operator()(CString* target) const { *target = value.resval.rstring; }
    void operator()(AcGePoint3d* target) const {
        const ads_point& point = value.resval.rpoint;
        target->set(point[X], point[Y], point[Z]);
    }
    void operator()(AcDbObjectId* target) const { target->setFromOldId(value.resval.rlname[0]); }
    void operator()(AcDbObjectIdArray* target) const {
        AcDbObjectId id;
        (*this)(&id);
        target->append(id);
    }
    template<class Value>
    void operator()(std::optional<Value>* target) const {
        (*this)(&target->emplace());
    }
    template<class Value>
    void operator()(std::vector<Value>* target) const {
        Value one{};
        (*this)(&one);
        target->push_back(one);
    }

    int Whole() const {
        constexpr int firstLong = 90; // codes from 90 to 99 hold 32 bits, the others that are used here 16
        constexpr int lastLong = 99;
        return value.restype >= firstLong && value.restype <= lastLong ? value.resval.rlong
                                                                       : value.resval.rint;
    }
};

struct Emptier {
    void operator()(AcDbObjectIdArray* target) const { target->removeAll(); }
    template<class Value>
    void operator()(std::vector<Value>* target) const {
        target->clear();
    }
    template<class Value>
    void operator()(std::optional<Value>* target) const {
        target->reset();
    }
    template<class Value>
    void operator()(Value*) const {}
};

constexpr int versionCode = AcDb::kDxfInt16;

} // namespace

Acad::ErrorStatus TDxfFields::Write(AcDbDxfFiler* filer) const {
    filer->writeString(AcDb::kDxfSubclass, m_marker);
    filer->writeInt16(static_cast<AcDb::DxfCode>(versionCode), m_version);
    for (const Field& field : m_fields)
        std::visit(Writer{*filer, static_cast<AcDb::DxfCode>(field.code)}, field.target);
    return filer->filerStatus();
}

Acad::ErrorStatus TDxfFields::Read(AcDbDxfFiler* filer) const {
    if (!filer->atSubclassData(m_marker))
        return filer->filerStatus();
    for (const Field& field : m_fields)
        std::visit(Emptier{}, field.target);
    resbuf value{};
    const auto hasCode = [&value](const Field& field) { return field.code == value.restype; };
    auto next = m_fields.begin(); // they mostly come in their order
    while (filer->readResBuf(&value) == Acad::eOk) {
        if (value.restype == AcDb::kDxfSubclass) { // the next class begins
            filer->pushBackItem();
            break;
        }
        if (value.restype == versionCode && value.resval.rint > m_version)
            return Acad::eMakeMeProxy;
        auto field = std::find_if(next, m_fields.end(), hasCode);
        if (field == m_fields.end())
            field = std::find_if(m_fields.begin(), next, hasCode);
        else
            next = field;
        if (field != m_fields.end() && hasCode(*field))
            std::visit(Reader{value}, field->target);
    }
    return filer->filerStatus();
}
