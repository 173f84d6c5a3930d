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

// ---- entities as chains of group codes and values, which the caller frees

// The data of an entity or object of the current drawing: its name (-1), its groups in the order in which its
// file has them, and behind -3 the extended data of the applications that a chain of texts names (patterns
// are allowed). Null, ERRNO 2 for a name that is none, 17 for what is erased.
ACCORE_PORT resbuf* acdbEntGet(const ads_name entity);
ACCORE_PORT resbuf* acdbEntGetX(const ads_name entity, const resbuf* applications);
// Changes the colour of a layer of the current drawing: a chain of its name (-1), the index (62, negative for
// a layer that is off) and, for a true colour, 420 and the names of a colour book (430, "BOOK$COLOUR"). They
// become the layer's groups as they are given. Other objects and other groups are not supported: RTERROR, and
// nothing is changed.
ACCORE_PORT int acdbEntMod(const resbuf* chain);
// Erases an entity, or brings it back when it is erased. RTERROR, ERRNO 2 for a name that is none, 35 for one
// on a locked layer.
ACCORE_PORT int acdbEntDel(const ads_name entity);
// The entity, or part of one, behind another in the order of the drawing; the first one for null. RTERROR
// behind the last one.
ACCORE_PORT int acdbEntNext(const ads_name entity, ads_name result);
// The newest entity, parts left out. RTERROR when there is none.
ACCORE_PORT int acdbEntLast(ads_name result);
// Shows an entity anew: there is no screen, RTNORM for a name that is one.
ACCORE_PORT int acdbEntUpd(const ads_name entity);

// ---- symbol tables: "BLOCK", "LAYER", "STYLE", "LTYPE", "VIEW", "UCS", "VPORT", "APPID", "DIMSTYLE"

// An entry without its handles and class markers; of a block its definition with the name of the first entity
// in it (-2). Null when there is none; ERRNO 1 for a table that is none. With setNext not 0 acdbTblNext goes
// on behind it.
ACCORE_PORT resbuf* acdbTblSearch(const ACHAR* table, const ACHAR* name, int setNext);
// The next entry of a table, or with `rewind` not 0 the first one; null behind the last one. Model space and
// sheets are no entries here.
ACCORE_PORT resbuf* acdbTblNext(const ACHAR* table, int rewind);
// The name of an entry's object.
ACCORE_PORT int acdbTblObjName(const ACHAR* table, const ACHAR* name, ads_name result);

// ---- dictionaries

// The dictionary of all others. RTERROR in drawings before R13.
ACCORE_PORT int acdbNamedObjDict(ads_name result);
// What a dictionary has under a key, as acdbEntGet gives it; null when there is nothing. setNext is not
// looked at: there is no walk through dictionaries here (AcDbDictionary::newIterator is one).
ACCORE_PORT resbuf* acdbDictSearch(const ads_name dictionary, const ACHAR* key, int setNext);
