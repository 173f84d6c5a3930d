// What all of the geometry shares.
#pragma once

#include "getol.h"

struct ACGE_PORT AcGeContext {
    // The tolerance where a call is given none. Change it with care: it is everyone's.
    static AcGeTol gTol;
};
