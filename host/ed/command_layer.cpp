// -LAYER: makes layers and sets their properties, by the editor's prompts.
#include "aced.h"
#include "base/case_fold.h"
#include "base/display_width.h"
#include "base/number_text.h"
#include "base/utf.h"
#include "base/wildcard.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/symbol_names.h"
#include "host/ed/color_text.h"
#include "host/ed/expected.h"
#include "host/ed/host_commands.h"
#include "host/ed/layer_list.h"
#include "host/ed/layer_options.h"
#include "host/ed/layer_state_option.h"
#include "host/ed/prompts.h"
#include "host/ed/questions.h"

#include <algorithm>

namespace ed {

namespace {

bool list_layers() {
    ACHAR pattern[256];
    const expecting hint({{}, {}, {}, layer_names});
    const int answered = acedGetString(0, L"\nEnter layer name(s) to list <*>: ", pattern, 256);
    if (answered != RTNORM)
        return false;
    std::size_t widest = 10;
    for (const AcDbObjectId id : all_layers())
        widest = std::max(widest, base::display_width(layer_name_of(id)));
    const auto row = [width = std::min<std::size_t>(widest, 40)](
                         std::wstring_view name, std::wstring_view state, std::wstring_view color,
                         std::wstring_view linetype, const std::wstring& weight) {
        acutPrintf(L"%ls  %ls %ls %ls %ls\n", base::padded(name, width).c_str(),
                   base::padded(state, 18).c_str(), base::padded(color, 12).c_str(),
                   base::padded(linetype, 16).c_str(), weight.c_str());
    };
    acutPrintf(L"\n");
    row(L"Layer name", L"State", L"Color", L"Linetype", L"Lineweight");
    for (const AcDbObjectId id : all_layers()) {
        const std::wstring name = layer_name_of(id);
        if (acedUsrBrk() != 0)
            return true;
        if (*pattern != 0 && !base::wildcard_match(name, pattern, true))
            continue;
        const AcDbObjectPointer<AcDbLayerTableRecord> layer(id, AcDb::kForRead);
        if (layer.openStatus() != Acad::eOk)
            continue;
        std::wstring state = layer->isOff() ? L"Off" : L"On";
        if (layer->isFrozen())
            state += L" Frozen";
        if (layer->isLocked())
            state += L" Locked";
        if (!layer->isPlottable())
            state += L" No-plot";
        const dxf::record_id linetype = current_drawing()->imp().record(layer->linetypeObjectId());
        const int weight = layer->lineWeight();
        const std::wstring weight_text =
            weight < 0 ? L"Default" : base::widen(base::real_text(weight / 100.0)) + L" mm";
        row(name, state, color_text(layer->color()),
            linetype != dxf::no_record ? current_drawing()->imp().names().name_of(linetype) : L"",
            weight_text);
    }
    acutPrintf(L"\nCurrent layer: \"%ls\"\n", current_layer_name().c_str());
    return true;
}

Acad::ErrorStatus add_layer(const std::wstring& name, AcDbObjectId& id) {
    AcDbLayerTablePointer table(current_drawing()->layerTableId(), AcDb::kForWrite);
    if (table.openStatus() != Acad::eOk)
        return table.openStatus();
    auto layer = std::make_unique<AcDbLayerTableRecord>();
    if (const Acad::ErrorStatus status = layer->setName(name.c_str()); status != Acad::eOk)
        return status;
    const Acad::ErrorStatus status = table->add(id, layer.get());
    if (status == Acad::eOk)
        layer.release()->close(); // the table's now
    return status;
}

std::wstring reason_for(const std::wstring& name, Acad::ErrorStatus status) {
    switch (status) {
    case Acad::eDuplicateRecordName:
        return L"Layer \"" + name + L"\" already exists.";
    case Acad::eInvalidInput:
        return L"Invalid layer name \"" + name + L"\".";
    case Acad::eNotApplicable:
        return L"The drawing has no layer table.";
    default:
        return L"Cannot make layer \"" + name + L"\".";
    }
}

// All of the list or none of it.
bool new_layers() {
    const auto take = [](const answer& given) -> std::wstring {
        const std::vector<std::wstring> names = split_list(given.text);
        for (auto name = names.begin(); name != names.end(); ++name) {
            const bool twice = std::any_of(names.begin(), name, [&](const std::wstring& other) {
                return base::equal_no_case(other, *name);
            });
            if (twice ||
                current_drawing()->imp().names().find(db::table_kind::layer, *name) != dxf::no_record)
                return reason_for(*name, Acad::eDuplicateRecordName);
            if (acdbSNValid(name->c_str(), 0) != RTNORM)
                return reason_for(*name, Acad::eInvalidInput);
        }
        for (const std::wstring& name : names) {
            AcDbObjectId id;
            if (const Acad::ErrorStatus status = add_layer(name, id); status != Acad::eOk)
                return reason_for(name, status);
        }
        return {};
    };
    return ask_value(L"\nEnter name list for new layer(s): ", {}, answer_rule::word, take) != RTCAN;
}

// Make and Set: the layer becomes current, and on. Make makes it when it is not there.
bool make_or_set(bool makes) {
    const std::wstring prompt =
        makes ? L"\nEnter name for new layer (becomes the current layer) <" + current_layer_name() + L">: "
              : L"\nEnter layer name to make current <" + current_layer_name() + L">: ";
    const expecting hint({{}, {}, {}, layer_names});
    return ask_value(prompt.c_str(), {}, answer_rule::word, [&](const answer& given) -> std::wstring {
               AcDbImpDatabase& imp = current_drawing()->imp();
               AcDbObjectId id = imp.id(imp.names().find(db::table_kind::layer, given.text));
               if (id.isNull()) {
                   if (!makes)
                       return L"Cannot find layer \"" + given.text + L"\".";
                   if (const Acad::ErrorStatus status = add_layer(given.text, id); status != Acad::eOk)
                       return reason_for(given.text, status);
               }
               if (current_drawing()->setClayer(id) != Acad::eOk)
                   return L"Cannot make layer \"" + given.text + L"\" current: it is " +
                          (layer_name_of(id).find(L'|') != std::wstring::npos ? L"of an external reference."
                                                                              : L"frozen.");
               const AcDbObjectPointer<AcDbLayerTableRecord> layer(id, AcDb::kForWrite);
               if (layer.openStatus() == Acad::eOk)
                   layer->setIsOff(false);
               return {};
           }) != RTCAN;
}

bool rename() {
    std::wstring old_name;
    const expecting hint({{}, {}, {}, layer_names});
    const int answered = ask_value(
        L"\nEnter old layer name: ", {}, answer_rule::word, [&](const answer& given) -> std::wstring {
            old_name = given.text;
            const dxf::record_id found =
                current_drawing()->imp().names().find(db::table_kind::layer, old_name);
            return found != dxf::no_record && old_name != L"0"
                       ? L""
                       : L"Cannot rename layer \"" + old_name + L"\".";
        });
    if (answered != RTNORM)
        return answered != RTCAN;
    return ask_value(L"\nEnter new layer name: ", {}, answer_rule::word,
                     [&](const answer& given) -> std::wstring {
                         const dxf::record_id found =
                             current_drawing()->imp().names().find(db::table_kind::layer, old_name);
                         const AcDbObjectPointer<AcDbLayerTableRecord> layer(
                             current_drawing()->imp().id(found), AcDb::kForWrite);
                         if (layer.openStatus() != Acad::eOk)
                             return L"Cannot rename layer \"" + old_name + L"\".";
                         const Acad::ErrorStatus status = layer->setName(given.text.c_str());
                         return status == Acad::eOk ? L"" : reason_for(given.text, status);
                     }) != RTCAN;
}

bool on() {
    return for_layers(L"\nEnter name list of layer(s) to turn on: ", false,
                      [](AcDbLayerTableRecord& layer) { layer.setIsOff(false); });
}

bool off() {
    return for_layers(L"\nEnter name list of layer(s) to turn off: ", false, [](AcDbLayerTableRecord& layer) {
        if (layer.objectId() != current_drawing()->clayer() ||
            ask_yes(L"\nReally want layer \"" + current_layer_name() + L"\" (the CURRENT layer) off?")
                .value_or(false))
            layer.setIsOff(true);
    });
}

bool freeze() {
    return for_layers(L"\nEnter name list of layer(s) to freeze: ", false, [](AcDbLayerTableRecord& layer) {
        if (layer.setIsFrozen(true) == Acad::eInvalidLayer)
            acutPrintf(L"\nCannot freeze layer \"%ls\". It is the CURRENT layer.\n",
                       layer_name_of(layer.objectId()).c_str());
    });
}

bool thaw() {
    return for_layers(L"\nEnter name list of layer(s) to thaw: ", false,
                      [](AcDbLayerTableRecord& layer) { layer.setIsFrozen(false); });
}

bool lock() {
    return for_layers(L"\nEnter name list of layer(s) to lock: ", false,
                      [](AcDbLayerTableRecord& layer) { layer.setIsLocked(true); });
}

bool unlock() {
    return for_layers(L"\nEnter name list of layer(s) to unlock: ", false,
                      [](AcDbLayerTableRecord& layer) { layer.setIsLocked(false); });
}

// Options of the editor that are not there yet.
bool not_supported() {
    acdbFail(L"\nThis option of -LAYER is not supported yet.");
    return false;
}

bool make() {
    return make_or_set(true);
}

bool set() {
    return make_or_set(false);
}

struct option {
    std::wstring_view keyword;
    bool (*run)(); // false when the user ended the command
};

constexpr option options[] = {
    {L"?", list_layers},
    {L"Make", make},
    {L"Set", set},
    {L"New", new_layers},
    {L"Rename", rename},
    {L"ON", on},
    {L"OFF", off},
    {L"Color", layer_options::color},
    {L"Ltype", layer_options::linetype},
    {L"LWeight", layer_options::lineweight},
    {L"TRansparency", layer_options::transparency},
    {L"MATerial", layer_options::material},
    {L"Plot", layer_options::plot},
    {L"Freeze", freeze},
    {L"Thaw", thaw},
    {L"LOck", lock},
    {L"Unlock", unlock},
    {L"stAte", layer_state_option},
    {L"Description", layer_options::description},
    {L"rEconcile", not_supported},
    {L"Xref", not_supported},
};

} // namespace

void layer_command() {
    if (current_drawing() == nullptr)
        return;
    std::wstring keywords;
    std::wstring shown;
    for (const option& option : options) {
        keywords += std::wstring(option.keyword) + L" ";
        shown += (shown.empty() ? L"" : L"/") + std::wstring(option.keyword);
    }
    if (!editor::instance().input.next_is_silent())
        acutPrintf(L"\nCurrent layer:  \"%ls\"", current_layer_name().c_str());
    const std::wstring prompt = L"\nEnter an option [" + shown + L"]: ";
    for (;;) {
        acedInitGet(0, keywords.c_str());
        const int answered =
            ask_value(prompt.c_str(), take_input_rules(), answer_rule::word,
                      [](const answer&) { return std::wstring(L"Invalid option keyword."); });
        ACHAR word[16];
        if (answered != RTKWORD || acedGetInput(word, 16) != RTNORM)
            return;
        const auto chosen = std::find_if(std::begin(options), std::end(options),
                                         [&](const option& option) { return option.keyword == word; });
        if (chosen == std::end(options) || !chosen->run())
            return;
    }
}

} // namespace ed
