// Entities of the add-on taken apart into what they look like, for programs that know none of them.
#pragma once

#include "module/frame/ModulePort.h"

class AcDbDatabase;

// What became of the entities.
struct TakenApart {
    int m_taken = 0; // apart
    int m_pieces = 0;
    int m_kept = 0; // that could not be taken apart
};

// All that the add-on's applications made, in the spaces and blocks of a drawing, on locked layers, too.
ZEF_PIPESYSTEM_PORT TakenApart TakeAllApart(AcDbDatabase& drawing);
