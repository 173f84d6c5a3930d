#include "host/db/custom/group_filers.h"

#include "adscodes.h"
#include "base/number_text.h"
#include "host/db/core/extended_data.h"
#include "host/db/core/imp_database.h"
#include "host/dxf/record_header.h"
#include "host/rx/result_buffer.h"

#include <cmath>
#include <cstdio>

namespace db {

namespace {

AcDbDatabase* database_of(const AcDbImpObject& object) {
    return object.database != nullptr ? &object.database->self() : nullptr;
}

// Of a new object, which may go anywhere, the last version.
Acad::ErrorStatus version_of(const AcDbImpObject& object, AcDb::AcDbDwgVersion& version,
                             AcDb::MaintenanceReleaseVersion& maintenance) {
    struct row {
        int number; // in $ACADVER
        AcDb::AcDbDwgVersion version;
    };
    static constexpr row rows[] = {{1009, AcDb::kDHL_1009}, {1012, AcDb::kDHL_1012}, {1014, AcDb::kDHL_1014},
                                   {1015, AcDb::kDHL_1015}, {1018, AcDb::kDHL_1018}, {1021, AcDb::kDHL_1021},
                                   {1024, AcDb::kDHL_1024}, {1027, AcDb::kDHL_1027}, {1032, AcDb::kDHL_1032}};
    maintenance = AcDb::kMReleaseCurrent;
    version = object.database != nullptr ? AcDb::kDHL_1009 : AcDb::kDHL_CURRENT;
    if (object.database != nullptr)
        for (const row& row : rows)
            if (row.number <= object.database->drawing().version())
                version = row.version;
    return Acad::eOk;
}

} // namespace

Acad::ErrorStatus group_input::dwgVersion(AcDb::AcDbDwgVersion& version,
                                          AcDb::MaintenanceReleaseVersion& maintenance) const {
    return version_of(object_, version, maintenance);
}

Acad::ErrorStatus group_output::dwgVersion(AcDb::AcDbDwgVersion& version,
                                           AcDb::MaintenanceReleaseVersion& maintenance) const {
    return version_of(object_, version, maintenance);
}

int group_input::rewindFiler() {
    go_to(0);
    return RTNORM;
}

AcDbDatabase* group_input::database() const {
    return database_of(object_);
}

Acad::ErrorStatus group_input::readResBuf(resbuf* value) {
    if (value == nullptr)
        return Acad::eInvalidInput;
    while (at_ < groups_.size() && groups_[at_].code < 1000) {
        last_ = at_;
        at_ += groups_of_value(groups_, last_);
        const dxf::group& first = groups_[last_];
        *value = {};
        value->restype = static_cast<short>(first.code);
        switch (rx::kind_of(first.code)) {
        case rx::value_kind::none:
        case rx::value_kind::unknown:
            continue; // no value; the file keeps it
        case rx::value_kind::text:
            value->resval.rstring = texts_.emplace_back(object_.decode(first.value)).data();
            break;
        case rx::value_kind::binary: {
            std::string& bytes = bytes_.emplace_back(bytes_of_digits(dxf::trimmed(first.value)));
            value->resval.rbinary = {static_cast<short>(bytes.size()), bytes.data()};
            break;
        }
        default:
            read_plain_value(object_, groups_, last_, *value);
            break;
        }
        return Acad::eOk;
    }
    last_ = at_;
    return Acad::eEndOfFile;
}

bool group_input::atSubclassData(const ACHAR* name) {
    if (atEOF() || name == nullptr || groups_[at_].code != 100 ||
        object_.decode(dxf::trimmed(groups_[at_].value)) != name)
        return false;
    last_ = at_++;
    return true;
}

Acad::ErrorStatus group_input::writeResBuf(const resbuf& /*value*/) {
    return setError(Acad::eFilerError);
}

int group_output::rewindFiler() {
    return RTERROR;
}

AcDbDatabase* group_output::database() const {
    return database_of(object_);
}

Acad::ErrorStatus group_output::readResBuf(resbuf* /*value*/) {
    return setError(Acad::eNoInputFiler);
}

Acad::ErrorStatus group_output::writeResBuf(const resbuf& value) {
    resbuf alone = value;
    alone.rbnext = nullptr;
    constexpr auto allowed = [](int code) { return code > 0 && code <= AcDb::kDxfXdMax; };
    return groups_of(object_, &alone, allowed, groups_) ? Acad::eOk : setError(Acad::eInvalidResBuf);
}

std::string group_output::real_as_it_stands(int code, double value) const {
    if (has_place_) {
        const auto& groups = object_.groups().groups();
        const std::size_t here = first_ + groups_.size();
        if (here < groups.size() && groups[here].code == code &&
            dxf::leading_real(groups[here].value) == value)
            return std::string(groups[here].value);
    }
    return base::real_text(value);
}

Acad::ErrorStatus group_output::writeReals(AcDb::DxfCode code, std::initializer_list<double> values,
                                           int digits) {
    int at = code;
    for (const double value : values) {
        if (!std::isfinite(value)) // the file can not hold it
            return setError(Acad::eInvalidInput);
        const int wanted = digits != kDfltPrec ? digits : precision();
        if (wanted >= 0 && wanted < kMaxPrec) {
            char text[400]; // the largest number has 309 digits in front of the point
            std::snprintf(text, sizeof text, "%.*f", wanted, value);
            groups_.push_back({at, text});
        } else {
            groups_.push_back({at, real_as_it_stands(at, value)});
        }
        at += 10; // the next coordinate's
    }
    return Acad::eOk;
}

} // namespace db
