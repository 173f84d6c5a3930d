// Entity names of the C interface and object ids.
#pragma once

#include "acestext.h"
#include "adscodes.h"
#include "adsdef.h"
#include "dbid.h"

// eInvalidAdsName for a name that stands for nothing.
ACCORE_PORT Acad::ErrorStatus acdbGetObjectId(AcDbObjectId& id, const ads_name name);
// eNullObjectId for a null id.
ACCORE_PORT Acad::ErrorStatus acdbGetAdsName(ads_name& name, AcDbObjectId id);
// Registers an application for extended data in the current drawing: RTNORM when it was added, RTERROR when
// it was there already or its name is none.
ACCORE_PORT int acdbRegApp(const ACHAR* application);
// The entity or object of the current drawing with a handle. RTERROR, ERRNO 13, when there is none.
ACCORE_PORT int acdbHandEnt(const ACHAR* handle, ads_name result);
