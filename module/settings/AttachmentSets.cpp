// The names of attachment sets, which stand at the layers of a standard and nowhere else.
#include "module/settings/StandardChanges.h"
#include "module/standard/StandardEdit.h"

#include <algorithm>

namespace StandardChanges {

std::vector<CString> AttachmentSets(const PipeStandard& standard) {
    std::vector<CString> names;
    ForEachLayerSet(standard, [&](const LayerSet& layers) {
        for (const auto& layer : layers.Layers())
            for (const CString& name : layer->m_attachments)
                if (std::ranges::find(names, name) == names.end())
                    names.push_back(name);
    });
    return names;
}

int RenameAttachmentSet(CStandardManager& manager, const CString& name, const CString& newName) {
    int count = 0;
    StandardEdit edit(manager);
    ForEachLayerSet(edit.Whole(), [&](LayerSet& layers) {
        for (auto& layer : layers.Layers()) {
            std::vector<CString>& sets = layer->m_attachments;
            const auto found = std::ranges::find(sets, name);
            if (found == sets.end())
                continue;
            ++count;
            if (newName.IsEmpty() || std::ranges::find(sets, newName) != sets.end())
                sets.erase(found);
            else
                *found = newName;
        }
    });
    return count;
}

} // namespace StandardChanges
