// What can be drawn.
#pragma once

#include "rxobject.h"

class AcDbObjectId;
class AcGiDrawableTraits;
class AcGiViewportDraw;
class AcGiWorldDraw;

// Draws itself through what the host hands it: the attributes first, then the geometry, the same for all
// views where that is possible, for each view where it is not.
class ACGI_PORT AcGiDrawable : public AcRxObject {
public:
    static AcRxClass* desc();
    static AcGiDrawable* cast(const AcRxObject* object);
    AcRxClass* isA() const override;

    // What setAttributes tells about the drawable.
    enum SetAttributesFlags : Adesk::UInt32 {
        kDrawableNone = 0,
        kDrawableIsInvisible = 4,
    };

    // Sets colour, layer and linetype. SetAttributesFlags together.
    Adesk::UInt32 setAttributes(AcGiDrawableTraits* traits) { return subSetAttributes(traits); }
    // Draws. True when that was all; false when viewportDraw is needed too.
    Adesk::Boolean worldDraw(AcGiWorldDraw* draw) { return subWorldDraw(draw); }
    // Draws what depends on the view.
    void viewportDraw(AcGiViewportDraw* draw) { subViewportDraw(draw); }

    // Whether it stands in a database, and its id there.
    virtual Adesk::Boolean isPersistent() const = 0;
    virtual AcDbObjectId id() const = 0;

protected:
    virtual Adesk::UInt32 subSetAttributes(AcGiDrawableTraits* traits) = 0;
    virtual Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) = 0;
    virtual void subViewportDraw(AcGiViewportDraw* draw) = 0;
};
