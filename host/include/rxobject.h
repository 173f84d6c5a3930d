// The root of all classes whose type can be asked for at run time.
#pragma once

#include "acadstrc.h"
#include "rxdefs.h"

class AcRxClass;

class ACBASE_PORT AcRxObject {
public:
    virtual ~AcRxObject();

    // The description of this class.
    static AcRxClass* desc();
    // The object, or null for a null pointer.
    static AcRxObject* cast(const AcRxObject* object);

    // Whether the object is of the class or of one that is derived from it. False for a null class.
    bool isKindOf(const AcRxClass* aClass) const;
    // The description of the object's own class.
    virtual AcRxClass* isA() const;

    // The protocol extension of the given class that the object's class, or the nearest of its parents that
    // has one, was given by AcRxClass::addX. Null when there is none.
    AcRxObject* queryX(const AcRxClass* protocolClass) const;
    // The same for callers that are sure of it: without an extension it is an error of the program, which
    // stops.
    AcRxObject* x(const AcRxClass* protocolClass) const;

    // A copy, which the caller owns. Null from a class that does not copy itself.
    virtual AcRxObject* clone() const;
    // Takes over what the other object holds. eNotImplementedYet from a class that does not say how.
    virtual Acad::ErrorStatus copyFrom(const AcRxObject* other);
    // Whether the two mean the same; unless a class says more, whether they are one object.
    virtual bool isEqualTo(const AcRxObject* other) const;
    // kEqual for equal objects; kNotOrderable otherwise, unless a class says more.
    virtual AcRx::Ordering comparedTo(const AcRxObject* other) const;

protected:
    AcRxObject() = default;
    AcRxObject(const AcRxObject&) = default;
    AcRxObject& operator=(const AcRxObject&) = default;
};

// The extension of the protocol class that an object's class was given; see AcRxObject::x.
#define ACRX_X_CALL(object, protocolClass) (static_cast<protocolClass*>((object)->x(protocolClass::desc())))
// The same, null when there is none.
#define ACRX_PE_PTR(object, protocolClass)                                                                   \
    (static_cast<protocolClass*>((object)->queryX(protocolClass::desc())))
