// Copies of a drawing as DXF files of other versions.
#pragma once

#include "dbmain.h"

// Each writes a copy of the drawing, whole or not at all, as an ASCII file of its version; the drawing stays
// as it is. What the version does not have is left out, or written in another form: light polylines as
// polylines, paragraph texts as texts, entities of applications as what they draw. Reals are written with as
// many digits as give them back, whatever `precision` is.
//
// eInvalidInput without a drawing or a name, eFileAccessErr when it can not be written; an old file is as it
// was then.
ACDB_PORT Acad::ErrorStatus acdbDxfOutAsR12(AcDbDatabase* database, const ACHAR* fileName,
                                            int precision = 16);
ACDB_PORT Acad::ErrorStatus acdbDxfOutAs2000(AcDbDatabase* database, const ACHAR* fileName,
                                             int precision = 16);
ACDB_PORT Acad::ErrorStatus acdbDxfOutAs2004(AcDbDatabase* database, const ACHAR* fileName,
                                             int precision = 16);
ACDB_PORT Acad::ErrorStatus acdbDxfOutAs2007(AcDbDatabase* database, const ACHAR* fileName,
                                             int precision = 16);
ACDB_PORT Acad::ErrorStatus acdbDxfOutAs2010(AcDbDatabase* database, const ACHAR* fileName,
                                             int precision = 16);
ACDB_PORT Acad::ErrorStatus acdbDxfOutAs2013(AcDbDatabase* database, const ACHAR* fileName,
                                             int precision = 16);
ACDB_PORT Acad::ErrorStatus acdbDxfOutAs2018(AcDbDatabase* database, const ACHAR* fileName,
                                             int precision = 16);
