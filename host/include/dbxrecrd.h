// Xrecords: a chain of group codes and values that an application keeps in a dictionary.
#pragma once

#include "dbmain.h"

class ACDB_PORT AcDbXrecord : public AcDbObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbXrecord);
    AcDbXrecord();
    ~AcDbXrecord() override;

    // A copy of the data that the caller frees (acutRelRb); null, with eOk, when it is empty.
    Acad::ErrorStatus rbChain(resbuf** chain, AcDbDatabase* auxDb = nullptr) const;
    // Copies a chain and replaces all data. Codes 1 to 369: eInvalidResBuf for others, and nothing changed.
    Acad::ErrorStatus setFromRbChain(const resbuf& chain, AcDbDatabase* auxDb = nullptr);
};
