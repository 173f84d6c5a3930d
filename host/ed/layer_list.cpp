#include "host/ed/layer_list.h"

#include "base/wildcard.h"
#include "dbobjptr.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/layer_facts.h"
#include "host/db/core/symbol_names.h"
#include "host/ed/expected.h"
#include "host/ed/prompts.h"
#include "host/ed/questions.h"

namespace ed {

std::wstring current_layer_name() {
    const dxf::record_id current = current_drawing()->imp().layers().current();
    return current != dxf::no_record ? current_drawing()->imp().names().name_of(current) : L"0";
}

std::vector<AcDbObjectId> all_layers() {
    std::vector<AcDbObjectId> ids;
    AcDbImpDatabase& imp = current_drawing()->imp();
    for (const dxf::record_id entry : imp.names().entries(db::table_kind::layer))
        if (!imp.records().gone(entry))
            ids.push_back(imp.id(entry));
    return ids;
}

std::wstring layer_name_of(AcDbObjectId id) {
    return current_drawing()->imp().names().name_of(current_drawing()->imp().record(id));
}

std::vector<std::wstring> split_list(std::wstring_view list) {
    std::vector<std::wstring> parts(1);
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (list[i] == L',')
            parts.emplace_back();
        else
            parts.back() += list[i];
    }
    std::erase_if(parts, [](const std::wstring& part) { return part.empty(); });
    return parts;
}

std::vector<AcDbObjectId> layers_of(const std::wstring& list) {
    AcDbImpDatabase& imp = current_drawing()->imp();
    if (const dxf::record_id exact = imp.names().find(db::table_kind::layer, list); exact != dxf::no_record)
        return {imp.id(exact)};
    std::vector<AcDbObjectId> found;
    for (const AcDbObjectId id : all_layers())
        if (base::wildcard_match(layer_name_of(id), list, true))
            found.push_back(id);
    return found;
}

std::vector<std::wstring> layer_names() {
    std::vector<std::wstring> names;
    for (const AcDbObjectId id : all_layers())
        names.push_back(layer_name_of(id));
    return names;
}

bool for_layers(const std::wstring& prompt, bool has_default,
                const std::function<void(AcDbLayerTableRecord&)>& change) {
    std::vector<AcDbObjectId> chosen;
    const expecting hint({{}, {}, {}, layer_names});
    const int answered =
        ask_value(prompt.c_str(), {}, answer_rule::word, [&](const answer& given) -> std::wstring {
            chosen = layers_of(given.text);
            return chosen.empty() ? L"No matching layer names found." : L"";
        });
    if (answered == RTCAN)
        return false;
    if (answered == RTNONE && has_default)
        chosen = {current_drawing()->clayer()};
    for (const AcDbObjectId id : chosen) {
        const AcDbObjectPointer<AcDbLayerTableRecord> layer(id, AcDb::kForWrite);
        if (layer.openStatus() == Acad::eOk)
            change(*layer.object());
    }
    return true;
}

} // namespace ed
