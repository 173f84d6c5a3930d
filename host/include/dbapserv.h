// What the application around a database does for it.
#pragma once

#include "dbmain.h"

class ACDB_PORT AcDbHostApplicationServices {
public:
    AcDbHostApplicationServices() = default;
    AcDbHostApplicationServices(const AcDbHostApplicationServices&) = delete;
    AcDbHostApplicationServices& operator=(const AcDbHostApplicationServices&) = delete;
    virtual ~AcDbHostApplicationServices();

    // The database that calls without one mean: that of the current document. Null when none is open.
    AcDbDatabase* workingDatabase() const { return m_working; }
    void setWorkingDatabase(AcDbDatabase* database) { m_working = database; }

private:
    AcDbDatabase* m_working = nullptr;
};

ACDB_PORT AcDbHostApplicationServices* acdbHostApplicationServices();
