// Descriptions of classes, and how they are made and put into order.
#pragma once

#include "rxobject.h"

#include <memory>

namespace rx {
struct class_data;
class class_registry;
} // namespace rx

// Tells what a class is called, what it is derived from, how its objects are made and how they stand in
// drawing files. The class dictionary owns the descriptions; newAcRxClass and deleteAcRxClass make and end
// them.
class ACBASE_PORT AcRxClass : public AcRxObject {
public:
    static AcRxClass* desc();
    static AcRxClass* cast(const AcRxObject* object);
    AcRxClass* isA() const override;

    // The class's name, as the program writes it.
    const ACHAR* name() const;
    // The name of its objects in drawing files; null when they do not stand there.
    const ACHAR* dxfName() const;
    // The application that brings it, null when it said none.
    const ACHAR* appName() const;
    // The version of the drawing file in which it first stood, noughts when it said none.
    void getClassVersion(int& dwgVersion, int& maintenanceVersion) const;
    // What is allowed with its objects while the application is away.
    int proxyFlags() const;

    // The class that it is derived from; null for AcRxObject, and as long as the parent is not registered.
    AcRxClass* myParent() const { return m_parent; }
    // Whether it is the other class or derived from it.
    bool isDerivedFrom(const AcRxClass* other) const;

    // A new object of the class, owned by the caller; null when the class is abstract.
    AcRxObject* create() const;

    // Gives the class an extension: objects of the class and of those derived from it answer it to
    // queryX(protocolClass). The caller keeps owning it and takes it back with delX. Returns the extension
    // that stood there before, null when there was none or nothing was added because an argument was null.
    AcRxObject* addX(AcRxClass* protocolClass, AcRxObject* extension);
    // The extension that was given to this very class; null when there is none.
    AcRxObject* getX(const AcRxClass* protocolClass) const;
    // Takes the extension of this very class away and returns it; null when there was none.
    AcRxObject* delX(AcRxClass* protocolClass);
    // The extension of this class or of its nearest parent that has one; null when there is none.
    AcRxObject* queryX(const AcRxClass* protocolClass) const;

    AcRxClass(const AcRxClass&) = delete;
    AcRxClass& operator=(const AcRxClass&) = delete;
    ~AcRxClass() override;

private:
    friend class rx::class_registry;
    AcRxClass();

    AcRxClass* m_parent = nullptr;
    std::unique_ptr<rx::class_data> m_data;
};

// Registers a class. Its name must be new, case counts: null when it is taken or empty, and nothing is
// changed. The class takes its place below its parent now, when the parent is known, or with
// acrxBuildClassHierarchy.
ACBASE_PORT AcRxClass* newAcRxClass(const ACHAR* className, const ACHAR* parentClassName, int proxyFlags = 0,
                                    AcRxObject* (*pseudoConstructor)() = nullptr,
                                    const ACHAR* dxfName = nullptr, const ACHAR* appName = nullptr);
// The same for a class that says since which version of drawing files it stands in them.
ACBASE_PORT AcRxClass* newAcRxClass(const ACHAR* className, const ACHAR* parentClassName, int dwgVersion,
                                    int maintenanceVersion, int proxyFlags,
                                    AcRxObject* (*pseudoConstructor)() = nullptr,
                                    const ACHAR* dxfName = nullptr, const ACHAR* appName = nullptr);

// Puts every class below its parent that was registered after it.
ACBASE_PORT void acrxBuildClassHierarchy();

// Ends a class. Those derived from it lose their parent until the name is registered again; extensions stay
// with their owners. A null class, and one that is not in the class dictionary, is left alone.
ACBASE_PORT void deleteAcRxClass(AcRxClass* aClass);
