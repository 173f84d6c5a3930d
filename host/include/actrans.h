// Transactions, as the editor has them.
#pragma once

#include "dbtrans.h"

class ACDB_PORT AcTransactionManager : public AcDbTransactionManager {
public:
    ACRX_DECLARE_MEMBERS(AcTransactionManager);
    ~AcTransactionManager() override;

    // There is no screen: nothing to do.
    virtual void flushGraphics() = 0;

protected:
    AcTransactionManager() = default;
};

ACDB_PORT AcTransactionManager* acTransactionManagerPtr();
#define actrTransactionManager acTransactionManagerPtr()
