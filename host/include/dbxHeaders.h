// Everything that an application with objects of its own and without commands is used to find.
#pragma once

#include "tchar.h"

#include "AdAChar.h"
#include "acarray.h"
#include "acestext.h"
#include "acstring.h"
#include "adesk.h"

#include "dbfiler.h"
#include "drawable.h"
#include "rxboiler.h"
#include "rxclass.h"
#include "rxdict.h"
#include "rxdlinkr.h"
#include "rxobject.h"
#include "rxregsvc.h"
#include "rxsrvice.h"

#include "acutmem.h"
#include "geassign.h"
#include "gedblar.h"
#include "geintarr.h"
#include "gemat3d.h"
#include "gept2dar.h"
#include "gept3dar.h"
#include "gescl3d.h"
#include "gevc2dar.h"
#include "gevc3dar.h"
