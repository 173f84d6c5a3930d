// Everything that an application with commands is used to find.
#pragma once

#include "tchar.h"

#include "dbxHeaders.h"

#include "rxregsvc.h"

#include "acutads.h"
#include "adscodes.h"
#include "adsdef.h"
