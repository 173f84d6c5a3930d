#include "siblings/zef_kernal/TEntitySet.h"

#include "aced.h"

void TEntitySet::UpdateGraphic() const {
    if (!m_entities.empty())
        acedUpdateDisplay();
}
