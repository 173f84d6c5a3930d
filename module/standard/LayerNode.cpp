#include "module/standard/LayerNode.h"

#include <algorithm>

bool LayerNode::IsContainLayerAttach(LPCTSTR name) const {
    return std::ranges::any_of(m_attachments, [name](const CString& one) { return one == name; });
}
