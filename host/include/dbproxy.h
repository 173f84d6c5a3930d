// What stands for objects of classes that nobody here knows: they are kept as they are, and entities show the
// graphics that were saved with them.
#pragma once

#include "acstring.h"
#include "dbmain.h"

class ACDB_PORT AcDbProxyObject : public AcDbObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbProxyObject);

    enum {
        kNoOperation = 0,
        kEraseAllowed = 0x1,
        kCloningAllowed = 0x80,
        kAllButCloningAllowed = 0x1,
        kAllAllowedBits = 0x81,
        kMergeIgnore = 0,
        kMergeReplace = 0x100,
        kMergeMangleName = 0x200,
    };

    AcDbProxyObject();
    ~AcDbProxyObject() override;

    // What its class allows to be done with it while the class is away.
    int proxyFlags() const;
    // As the drawing's list of classes tells; empty when it does not. Valid until the object is closed.
    const ACHAR* originalClassName() const;
    const ACHAR* originalDxfName() const;
    const ACHAR* applicationDescription() const;

    // eNotAllowedForThisProxy when its class does not allow it.
    Acad::ErrorStatus subErase(bool erasing) override;

private:
    mutable AcString m_names[3];
};

// The same for entities; it draws the picture that was kept with it.
class ACDB_PORT AcDbProxyEntity : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(AcDbProxyEntity);

    enum {
        kNoOperation = 0,
        kEraseAllowed = 0x1,
        kTransformAllowed = 0x2,
        kColorChangeAllowed = 0x4,
        kLayerChangeAllowed = 0x8,
        kLinetypeChangeAllowed = 0x10,
        kLinetypeScaleChangeAllowed = 0x20,
        kVisibilityChangeAllowed = 0x40,
        kCloningAllowed = 0x80,
        kLineWeightChangeAllowed = 0x100,
        kPlotStyleNameChangeAllowed = 0x200,
        kAllButCloningAllowed = 0x37F,
        kAllAllowedBits = 0x3FF,
    };
    enum GraphicsMetafileType { kNoMetafile = 0, kBoundingBox = 1, kFullGraphics = 2 };

    AcDbProxyEntity();
    ~AcDbProxyEntity() override;

    int proxyFlags() const;
    const ACHAR* originalClassName() const;
    const ACHAR* originalDxfName() const;
    const ACHAR* applicationDescription() const;
    // What was saved for programs that do not know the class.
    GraphicsMetafileType graphicsMetafileType() const;

    Acad::ErrorStatus subErase(bool erasing) override;

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    // eNotAllowedForThisProxy: its own data can not be changed without its class.
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;

private:
    mutable AcString m_names[3];
};
