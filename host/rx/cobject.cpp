#include "afx.h"

CObject::~CObject() = default;

const CRuntimeClass CObject::classCObject = {"CObject", static_cast<int>(sizeof(CObject)), 0xFFFF, nullptr,
                                             nullptr};

const CRuntimeClass* CObject::GetRuntimeClass() const {
    return &classCObject;
}

BOOL CRuntimeClass::IsDerivedFrom(const CRuntimeClass* base) const {
    if (base == nullptr)
        return FALSE;
    for (const CRuntimeClass* c = this; c != nullptr; c = c->m_pBaseClass) {
        if (c == base)
            return TRUE;
    }
    return FALSE;
}

CObject* AfxDynamicDownCast(const CRuntimeClass* aClass, CObject* object) {
    return object != nullptr && object->IsKindOf(aClass) ? object : nullptr;
}
