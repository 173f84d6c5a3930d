// What a command could not change of a layer's entities, and why.
#pragma once

#include "acadstrc.h"

class CStayedEntities {
public:
    // One that can not be opened for that reason, or that does not take the target layer.
    void Add(Acad::ErrorStatus reason);
    void AddRefused() { ++m_refused; }
    void Add(const CStayedEntities& others);

    // Tells how many there are, in one line; nothing when there are none. `what` is what they are left as.
    void Tell(const wchar_t* what) const;

private:
    int m_locked = 0;
    int m_refused = 0;
    int m_others = 0;
};
