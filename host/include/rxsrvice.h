// Services by which applications know of each other.
#pragma once

#include "rxobject.h"

// Stands in the service dictionary under the service's name, and counts those that depend on it.
class ACBASE_PORT AcRxService : public AcRxObject {
public:
    static AcRxClass* desc();
    static AcRxService* cast(const AcRxObject* object);
    AcRxClass* isA() const override;

    AcRxService() = default;

    void addDependency() { ++m_dependencies; }
    // One dependant less; without one nothing happens.
    void removeDependency();
    // Whether nobody depends on it.
    bool unloadable() const { return m_dependencies == 0; }

private:
    int m_dependencies = 0;
};
