// The macros by which a class says that its type can be asked for at run time.
//
//     class Valve : public AcDbEntity {            // in the header
//     public:
//         ACRX_DECLARE_MEMBERS(Valve);
//         ...
//     };
//     ACRX_DXF_DEFINE_MEMBERS(Valve, AcDbEntity, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, VALVE,
//     VALVEAPP)
//
//     Valve::rxInit();                              // when the application comes
//     acrxBuildClassHierarchy();
//     deleteAcRxClass(Valve::desc());               // when it goes
#pragma once

#include "rxclass.h"
#include "rxdict.h"
#include "rxobject.h"
#include "rxregsvc.h"

// Inside the class: desc() gives the description (null before rxInit), cast() the object as this class or
// null, isA() the object's own class, rxInit() registers the class.
#define ACRX_DECLARE_MEMBERS_EXPIMP(CLASS_NAME, PORT)                                                        \
private:                                                                                                     \
    PORT static AcRxClass* gpDesc;                                                                           \
                                                                                                             \
public:                                                                                                      \
    PORT static AcRxClass* desc();                                                                           \
    static CLASS_NAME* cast(const AcRxObject* object) {                                                      \
        return object != nullptr && object->isKindOf(CLASS_NAME::desc())                                     \
                   ? static_cast<CLASS_NAME*>(const_cast<AcRxObject*>(object))                               \
                   : nullptr;                                                                                \
    }                                                                                                        \
    PORT AcRxClass* isA() const override;                                                                    \
    PORT static void rxInit()

#define ACRX_DECLARE_MEMBERS(CLASS_NAME) ACRX_DECLARE_MEMBERS_EXPIMP(CLASS_NAME, )

// What all classes share. A class is registered anew when the description that it had was deleted.
#define ACRX_DEFINE_MEMBERS(CLASS_NAME)                                                                      \
    AcRxClass* CLASS_NAME::gpDesc = nullptr;                                                                 \
    AcRxClass* CLASS_NAME::desc() {                                                                          \
        return gpDesc;                                                                                       \
    }                                                                                                        \
    AcRxClass* CLASS_NAME::isA() const {                                                                     \
        return CLASS_NAME::desc();                                                                           \
    }

#define ACRX_INIT_MEMBERS(CLASS_NAME, ...)                                                                   \
    void CLASS_NAME::rxInit() {                                                                              \
        if (gpDesc == nullptr || acrxClassDictionary->at(_ACRX_T(#CLASS_NAME)) != gpDesc)                    \
            gpDesc = newAcRxClass(_ACRX_T(#CLASS_NAME), __VA_ARGS__);                                        \
    }

// An abstract class.
#define ACRX_NO_CONS_DEFINE_MEMBERS(CLASS_NAME, PARENT_CLASS)                                                \
    ACRX_DEFINE_MEMBERS(CLASS_NAME)                                                                          \
    ACRX_INIT_MEMBERS(CLASS_NAME, _ACRX_T(#PARENT_CLASS))

// A class that AcRxClass::create can make objects of, by the constructor without arguments.
#define ACRX_CONS_DEFINE_MEMBERS(CLASS_NAME, PARENT_CLASS, VERNO)                                            \
    ACRX_DEFINE_MEMBERS(CLASS_NAME)                                                                          \
    ACRX_INIT_MEMBERS(CLASS_NAME, _ACRX_T(#PARENT_CLASS), VERNO,                                             \
                      []() -> AcRxObject* { return new CLASS_NAME; })

// A class whose objects stand in drawing files: since which version, what may be done with them while the
// application is away, under which name and of which application ("APP|description"). The two names with or
// without quotes.
#define ACRX_DXF_DEFINE_MEMBERS(CLASS_NAME, PARENT_CLASS, DWG_VERSION, MAINTENANCE_VERSION, PROXY_FLAGS,     \
                                DXF_NAME, APP)                                                               \
    ACRX_DEFINE_MEMBERS(CLASS_NAME)                                                                          \
    ACRX_INIT_MEMBERS(                                                                                       \
        CLASS_NAME, _ACRX_T(#PARENT_CLASS), DWG_VERSION, MAINTENANCE_VERSION, PROXY_FLAGS,                   \
        []() -> AcRxObject* { return new CLASS_NAME; }, _ACRX_T(#DXF_NAME), _ACRX_T(#APP))
