// The common part of what walks over objects.
#pragma once

#include "rxobject.h"

// Stands on one object after the other. Whoever got it owns it.
class ACBASE_PORT AcRxIterator : public AcRxObject {
public:
    static AcRxClass* desc();
    static AcRxIterator* cast(const AcRxObject* object);
    AcRxClass* isA() const override;

    // Whether all objects are behind it.
    virtual bool done() const = 0;
    // Goes to the next one; false when there is none.
    virtual bool next() = 0;
    // The object on which it stands, null when done.
    virtual AcRxObject* object() const = 0;
};
