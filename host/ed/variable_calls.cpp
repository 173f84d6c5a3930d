// acedGetVar and acedSetVar: system variables as programs ask for them.
#include "acedads.h"
#include "acutmem.h"
#include "adscodes.h"
#include "host/ed/system_variables.h"

int acedGetVar(const ACHAR* name, resbuf* result) {
    ed::variable_value value;
    if (name == nullptr || result == nullptr || ed::get_variable(name, value) != ed::variable_status::well)
        return RTERROR;
    result->rbnext = nullptr;
    if (const int* whole = std::get_if<int>(&value)) {
        result->restype = RTSHORT;
        result->resval.rint = static_cast<short>(*whole);
    } else if (const double* real = std::get_if<double>(&value)) {
        result->restype = RTREAL;
        result->resval.rreal = *real;
    } else if (const AcGePoint3d* point = std::get_if<AcGePoint3d>(&value)) {
        result->restype = ed::is_flat_point(name) ? RTPOINT : RT3DPOINT;
        result->resval.rpoint[X] = point->x;
        result->resval.rpoint[Y] = point->y;
        result->resval.rpoint[Z] = point->z;
    } else {
        result->restype = RTSTR;
        acutNewString(std::get<std::wstring>(value).c_str(), result->resval.rstring);
    }
    return RTNORM;
}

int acedSetVar(const ACHAR* name, const resbuf* value) {
    if (name == nullptr || value == nullptr)
        return RTERROR;
    ed::variable_value wanted;
    switch (value->restype) {
    case RTSHORT:
        wanted = static_cast<int>(value->resval.rint);
        break;
    case RTLONG:
        wanted = static_cast<int>(value->resval.rlong);
        break;
    case RTREAL:
    case RTANG:
    case RTORINT:
        wanted = value->resval.rreal;
        break;
    case RTSTR:
        wanted = std::wstring(value->resval.rstring != nullptr ? value->resval.rstring : L"");
        break;
    case RTPOINT:
    case RT3DPOINT: {
        const ads_real* const at = value->resval.rpoint;
        wanted = AcGePoint3d(at[X], at[Y], value->restype == RTPOINT ? 0.0 : at[Z]);
        break;
    }
    default:
        return RTREJ;
    }
    switch (ed::set_variable(name, wanted)) {
    case ed::variable_status::well:
        return RTNORM;
    case ed::variable_status::read_only:
        ed::set_error_number(20);
        return RTERROR;
    case ed::variable_status::out_of_range:
        ed::set_error_number(22);
        return RTERROR;
    case ed::variable_status::wrong_type:
        return RTREJ;
    case ed::variable_status::unknown:
        break;
    }
    return RTERROR;
}
