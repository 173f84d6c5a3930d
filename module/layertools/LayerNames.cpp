#include "module/layertools/LayerNames.h"

#include "base/case_fold.h"

CLayerNames::CLayerNames(const TPickEntSet& picked) {
    for (int i = 0; i < picked.GetCount(); ++i)
        Add(picked.GetLayerName(i));
}

void CLayerNames::Add(const CString& name) {
    if (!name.IsEmpty() && m_folded.insert(base::folded(name.GetString())).second)
        m_names.push_back(name);
}

bool CLayerNames::Holds(const CString& name) const {
    return m_folded.contains(base::folded(name.GetString()));
}
