#include "host/db/entities/block_clip.h"

#include "dbdict.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/open_objects.h"

#include <cmath>
#include <limits>
#include <memory>

namespace db {

namespace {

// What stands under a key of a dictionary, to be read.
std::unique_ptr<AcDbObject> entry(const AcDbObject* dictionary, const ACHAR* key) {
    AcDbObjectId id;
    const AcDbDictionary* const all = AcDbDictionary::cast(dictionary);
    if (all == nullptr || all->getAt(key, id) != Acad::eOk)
        return nullptr;
    AcDbImpDatabase& database = *dictionary->imp().database;
    const dxf::record_id record = database.record(id);
    if (record == dxf::no_record || database.records().gone(record))
        return nullptr;
    return database.objects().view(record);
}

// Three rows of four numbers.
AcGeMatrix3d matrix_of(const double* numbers) {
    AcGeMatrix3d matrix;
    for (unsigned row = 0; row < 3; ++row)
        for (unsigned column = 0; column < 4; ++column)
            matrix(row, column) = numbers[row * 4 + column];
    return matrix;
}

} // namespace

std::optional<AcGiClipBoundary> clip_of(const AcDbObject& reference) {
    const AcDbObjectId extension = reference.extensionDictionary();
    if (extension.isNull())
        return std::nullopt;
    AcDbImpDatabase& database = *reference.imp().database;
    const std::unique_ptr<AcDbObject> own = database.objects().view(database.record(extension));
    const std::unique_ptr<AcDbObject> filters = entry(own.get(), L"ACAD_FILTER");
    const std::unique_ptr<AcDbObject> filter = entry(filters.get(), L"SPATIAL");
    if (filter == nullptr || database.records().type_name(filter->imp().record) != "SPATIAL_FILTER")
        return std::nullopt;

    AcGiClipBoundary clip;
    bool enabled = false;
    bool behind_planes = false; // where numbers are those of the two matrices
    std::vector<double> numbers;
    for (const dxf::group& group : filter->imp().groups().groups()) {
        const double value =
            dxf::leading_real(group.value).value_or(std::numeric_limits<double>::quiet_NaN());
        switch (group.code) {
        case 10:
            clip.m_aptPoints.append(AcGePoint2d(value, 0.0));
            break;
        case 20:
            if (!clip.m_aptPoints.isEmpty())
                clip.m_aptPoints.last().y = value;
            break;
        case 71:
            enabled = value != 0.0;
            break;
        case 72:
            clip.m_bClippingFront = value != 0.0;
            break;
        case 73:
            clip.m_bClippingBack = value != 0.0;
            behind_planes = true;
            break;
        case 40:
            if (behind_planes)
                numbers.push_back(value);
            else
                clip.m_dFrontClipZ = value;
            break;
        case 41:
            clip.m_dBackClipZ = value;
            break;
        default:
            break;
        }
    }
    constexpr std::size_t in_matrix = 12;
    if (!enabled || numbers.size() < 2 * in_matrix)
        return std::nullopt;
    for (const double number : numbers)
        if (!std::isfinite(number))
            return std::nullopt;
    for (const AcGePoint2d& corner : clip.m_aptPoints)
        if (!std::isfinite(corner.x) || !std::isfinite(corner.y))
            return std::nullopt;
    clip.m_xInverseBlockRefXForm = matrix_of(numbers.data());
    clip.m_xToClipSpace = matrix_of(numbers.data() + in_matrix);
    return clip;
}

} // namespace db
