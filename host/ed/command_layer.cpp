// -LAYER: makes layers and sets their properties, by the editor's prompts.
#include "aced.h"
#include "base/case_fold.h"
#include "base/display_width.h"
#include "base/number_text.h"
#include "base/utf.h"
#include "base/wildcard.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "host/ap/documents.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/layer_facts.h"
#include "host/db/core/record_text.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/properties.h"
#include "host/ed/color_text.h"
#include "host/ed/expected.h"
#include "host/ed/host_commands.h"
#include "host/ed/layer_state_option.h"
#include "host/ed/prompts.h"
#include "host/ed/questions.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <memory>

namespace ed {

namespace {

AcDbDatabase* database() {
    return ap::documents::instance().current_database();
}

std::wstring current_name() {
    const dxf::record_id current = database()->imp().layers().current();
    return current != dxf::no_record ? database()->imp().names().name_of(current) : L"0";
}

std::vector<AcDbObjectId> all_layers() {
    std::vector<AcDbObjectId> ids;
    AcDbImpDatabase& imp = database()->imp();
    for (const dxf::record_id entry : imp.names().entries(db::table_kind::layer))
        if (!imp.records().gone(entry))
            ids.push_back(imp.id(entry));
    return ids;
}

std::wstring name_of(AcDbObjectId id) {
    return database()->imp().names().name_of(database()->imp().record(id));
}

std::vector<std::wstring> layer_names() {
    std::vector<std::wstring> names;
    for (const AcDbObjectId id : all_layers())
        names.push_back(name_of(id));
    return names;
}

// The parts of a list by commas.
std::vector<std::wstring> split(std::wstring_view list) {
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

// The layers that a list names: a layer of exactly that name, else those that its patterns fit.
std::vector<AcDbObjectId> layers_of(const std::wstring& list) {
    AcDbImpDatabase& imp = database()->imp();
    if (const dxf::record_id exact = imp.names().find(db::table_kind::layer, list); exact != dxf::no_record)
        return {imp.id(exact)};
    std::vector<AcDbObjectId> found;
    for (const AcDbObjectId id : all_layers())
        if (base::wildcard_match(name_of(id), list, true))
            found.push_back(id);
    return found;
}

// Asks for a list of layers, by names and patterns, and does something to each. Enter means the current layer
// when `has_default` is set, else nothing. False when the user ended it.
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
        chosen = {database()->clayer()};
    for (const AcDbObjectId id : chosen) {
        const AcDbObjectPointer<AcDbLayerTableRecord> layer(id, AcDb::kForWrite);
        if (layer.openStatus() == Acad::eOk)
            change(*layer.object());
    }
    return true;
}

// ---- options

bool list_layers() {
    ACHAR pattern[256];
    const expecting hint({{}, {}, {}, layer_names});
    const int answered = acedGetString(0, L"\nEnter layer name(s) to list <*>: ", pattern, 256);
    if (answered != RTNORM)
        return false;
    std::size_t widest = 10;
    for (const AcDbObjectId id : all_layers())
        widest = std::max(widest, base::display_width(name_of(id)));
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
        const std::wstring name = name_of(id);
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
        const dxf::record_id linetype = database()->imp().record(layer->linetypeObjectId());
        const int weight = layer->lineWeight();
        const std::wstring weight_text =
            weight < 0 ? L"Default" : base::widen(base::real_text(weight / 100.0)) + L" mm";
        row(name, state, color_text(layer->color()),
            linetype != dxf::no_record ? database()->imp().names().name_of(linetype) : L"", weight_text);
    }
    acutPrintf(L"\nCurrent layer: \"%ls\"\n", current_name().c_str());
    return true;
}

Acad::ErrorStatus add_layer(const std::wstring& name, AcDbObjectId& id) {
    AcDbLayerTablePointer table(database()->layerTableId(), AcDb::kForWrite);
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
        const std::vector<std::wstring> names = split(given.text);
        for (auto name = names.begin(); name != names.end(); ++name) {
            const bool twice = std::any_of(names.begin(), name, [&](const std::wstring& other) {
                return base::equal_no_case(other, *name);
            });
            if (twice || database()->imp().names().find(db::table_kind::layer, *name) != dxf::no_record)
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
        makes ? L"\nEnter name for new layer (becomes the current layer) <" + current_name() + L">: "
              : L"\nEnter layer name to make current <" + current_name() + L">: ";
    const expecting hint({{}, {}, {}, layer_names});
    return ask_value(prompt.c_str(), {}, answer_rule::word, [&](const answer& given) -> std::wstring {
               AcDbImpDatabase& imp = database()->imp();
               AcDbObjectId id = imp.id(imp.names().find(db::table_kind::layer, given.text));
               if (id.isNull()) {
                   if (!makes)
                       return L"Cannot find layer \"" + given.text + L"\".";
                   if (const Acad::ErrorStatus status = add_layer(given.text, id); status != Acad::eOk)
                       return reason_for(given.text, status);
               }
               if (database()->setClayer(id) != Acad::eOk)
                   return L"Cannot make layer \"" + given.text + L"\" current: it is " +
                          (name_of(id).find(L'|') != std::wstring::npos ? L"of an external reference."
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
            const dxf::record_id found = database()->imp().names().find(db::table_kind::layer, old_name);
            return found != dxf::no_record && old_name != L"0"
                       ? L""
                       : L"Cannot rename layer \"" + old_name + L"\".";
        });
    if (answered != RTNORM)
        return answered != RTCAN;
    return ask_value(L"\nEnter new layer name: ", {}, answer_rule::word,
                     [&](const answer& given) -> std::wstring {
                         const dxf::record_id found =
                             database()->imp().names().find(db::table_kind::layer, old_name);
                         const AcDbObjectPointer<AcDbLayerTableRecord> layer(database()->imp().id(found),
                                                                             AcDb::kForWrite);
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
        if (layer.objectId() != database()->clayer() ||
            ask_yes(L"\nReally want layer \"" + current_name() + L"\" (the CURRENT layer) off?")
                .value_or(false))
            layer.setIsOff(true);
    });
}

bool freeze() {
    return for_layers(L"\nEnter name list of layer(s) to freeze: ", false, [](AcDbLayerTableRecord& layer) {
        if (layer.setIsFrozen(true) == Acad::eInvalidLayer)
            acutPrintf(L"\nCannot freeze layer \"%ls\". It is the CURRENT layer.\n",
                       name_of(layer.objectId()).c_str());
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

bool color() {
    AcCmColor chosen;
    bool turns_off = false;
    std::wstring shown;
    acedInitGet(0, L"Truecolor");
    input_rules rules = take_input_rules();
    const auto take = [&](const answer& given) -> std::wstring {
        const auto parsed = parse_color(given.text);
        if (!parsed)
            return L"A color number (1-255), name or red,green,blue is required.";
        chosen = *parsed;
        turns_off = given.text.front() == L'-';
        shown = given.text;
        return {};
    };
    int answered = ask_value(L"\nNew color [Truecolor]: ", rules, answer_rule::word, take);
    if (answered == RTKWORD)
        answered = ask_value(L"\nRed,Green,Blue: ", {}, answer_rule::word, take);
    if (answered != RTNORM)
        return answered != RTCAN;
    return for_layers(L"\nEnter name list of layer(s) for color " + shown + L" <" + current_name() + L">: ",
                      true, [&](AcDbLayerTableRecord& layer) {
                          // A negative number sets the colour and turns the layer off, another one turns it
                          // on.
                          layer.setColor(chosen);
                          layer.setIsOff(turns_off);
                      });
}

bool linetype() {
    AcDbObjectId chosen;
    std::wstring name = L"Continuous";
    const int answered =
        ask_value(L"\nEnter loaded linetype name <Continuous>: ", {}, answer_rule::word,
                  [&](const answer& given) -> std::wstring {
                      name = given.text;
                      if (base::equal_no_case(name, L"ByLayer") || base::equal_no_case(name, L"ByBlock"))
                          return L"A layer has a linetype of its own.";
                      return has_linetype(name) ? L"" : linetype_missing(name);
                  });
    if (answered == RTCAN)
        return false;
    chosen = database()->imp().id(database()->imp().names().find(db::table_kind::linetype, name));
    return for_layers(L"\nEnter name list of layer(s) for linetype \"" + name + L"\" <" + current_name() +
                          L">: ",
                      true, [&](AcDbLayerTableRecord& layer) { layer.setLinetypeObjectId(chosen); });
}

// The legal lineweight that is nearest to a width in millimetres.
AcDb::LineWeight nearest_weight(double millimetres) {
    int best = 0;
    for (int weight = 0; weight <= AcDb::kLnWt211; ++weight)
        if (db::is_line_weight(weight) &&
            std::abs(weight - millimetres * 100) < std::abs(best - millimetres * 100))
            best = weight;
    return static_cast<AcDb::LineWeight>(best);
}

bool lineweight() {
    AcDb::LineWeight chosen = AcDb::kLnWtByLwDefault;
    acedInitGet(0, L"Default");
    const int answered = ask_value(L"\nEnter lineweight (0.0mm - 2.11mm) [Default]: ", take_input_rules(),
                                   answer_rule::word, [&](const answer& given) -> std::wstring {
                                       const auto width = base::parse_real(base::narrow(given.text));
                                       if (!width || *width < 0 || *width > 2.11)
                                           return L"Requires a width from 0.0 to 2.11 mm.";
                                       chosen = nearest_weight(*width);
                                       return {};
                                   });
    if (answered == RTCAN)
        return false;
    const std::wstring shown =
        chosen < 0 ? L"Default" : base::widen(base::real_text(static_cast<int>(chosen) / 100.0)) + L"mm";
    return for_layers(L"\nEnter name list of layers(s) for lineweight " + shown + L" <" + current_name() +
                          L">: ",
                      true, [&](AcDbLayerTableRecord& layer) {
                          if (layer.setLineWeight(chosen) != Acad::eOk)
                              acdbFail(L"\nDrawings of this version hold no lineweights.");
                      });
}

// A layer's transparency is extended data: AcCmTransparency, the opacity as a byte with a mark above it.
bool transparency() {
    int percent = 0;
    const int answered = ask_value(L"\nEnter transparency value (0-90): ", {}, answer_rule::word,
                                   [&](const answer& given) -> std::wstring {
                                       const auto value = base::parse_integer(base::narrow(given.text));
                                       if (!value || *value < 0 || *value > 90)
                                           return L"Requires an integer between 0 and 90.";
                                       percent = static_cast<int>(*value);
                                       return {};
                                   });
    if (answered != RTNORM)
        return answered != RTCAN;
    acdbRegApp(L"AcCmTransparency");
    const int opacity = (100 - percent) * 255 / 100;
    constexpr int mark = 0x02000000;
    const std::unique_ptr<resbuf, int (*)(resbuf*)> data(
        acutBuildList(1001, L"AcCmTransparency", 1071, mark | opacity, 0), acutRelRb);
    return for_layers(L"\nEnter name list of layer(s) to set transparency to " + std::to_wstring(percent) +
                          L" <" + current_name() + L">: ",
                      true, [&](AcDbLayerTableRecord& layer) {
                          if (layer.setXData(data.get()) != Acad::eOk)
                              acdbFail(L"\nThis drawing can not hold a layer's transparency.");
                      });
}

// The materials of the drawing, by their names.
AcDbObjectId material_named(const std::wstring& name) {
    const AcDbDictionaryPointer root(database()->namedObjectsDictionaryId());
    AcDbObjectId id;
    if (root.openStatus() != Acad::eOk || root->getAt(L"ACAD_MATERIAL", id) != Acad::eOk)
        return {};
    const AcDbDictionaryPointer materials(id);
    AcDbObjectId found;
    if (materials.openStatus() == Acad::eOk)
        materials->getAt(name.c_str(), found);
    return found;
}

bool material() {
    std::wstring name = L"Global";
    AcDbObjectId chosen = material_named(name);
    const int answered =
        ask_name(L"\nEnter material name <Global>: ", name, [&](const std::wstring& given) -> std::wstring {
            chosen = material_named(given);
            return chosen.isNull() ? L"Material \"" + given + L"\" not found." : L"";
        });
    if (answered == RTCAN)
        return false;
    if (chosen.isNull()) {
        acutPrintf(L"\nThis drawing has no materials.");
        return true;
    }
    const std::string handle = db::handle_text(chosen.handle());
    return for_layers(L"\nEnter name list of layer(s) for material \"" + name + L"\" <" + current_name() +
                          L">: ",
                      true, [&](AcDbLayerTableRecord& layer) {
                          constexpr int material_code = 347;
                          layer.imp().edit().set_text(db::layer_place, material_code, handle);
                      });
}

// Options of the editor that are not there yet.
bool not_supported() {
    acdbFail(L"\nThis option of -LAYER is not supported yet.");
    return false;
}

bool plot() {
    acedInitGet(0, L"Plot No");
    ACHAR word[8] = L"Plot";
    if (acedGetKword(L"\nEnter a plotting preference [Plot/No plot] <Plot>: ", word, 8) == RTCAN)
        return false;
    const bool plots = std::wstring_view(word) == L"Plot";
    return for_layers(L"\nEnter layer name(s) for this plot preference <" + current_name() + L">: ", true,
                      [&](AcDbLayerTableRecord& layer) {
                          if (layer.setIsPlottable(plots) != Acad::eOk)
                              acdbFail(L"\nThe plot preference of a layer can not be set.");
                      });
}

bool description() {
    std::wstring text;
    if (ask_value(L"\nEnter description: ", {}, answer_rule::line, [&](const answer& given) -> std::wstring {
            text = given.text;
            return {};
        }) == RTCAN)
        return false;
    return for_layers(L"\nEnter name list of layer(s) for description <" + current_name() + L">: ", true,
                      [&](AcDbLayerTableRecord& layer) {
                          if (layer.setDescription(text.c_str()) != Acad::eOk)
                              acdbFail(L"\nThis drawing can not hold a layer's description.");
                      });
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
    {L"Color", color},
    {L"Ltype", linetype},
    {L"LWeight", lineweight},
    {L"TRansparency", transparency},
    {L"MATerial", material},
    {L"Plot", plot},
    {L"Freeze", freeze},
    {L"Thaw", thaw},
    {L"LOck", lock},
    {L"Unlock", unlock},
    {L"stAte", layer_state_option},
    {L"Description", description},
    {L"rEconcile", not_supported},
    {L"Xref", not_supported},
};

} // namespace

void layer_command() {
    if (database() == nullptr)
        return;
    std::wstring keywords;
    std::wstring shown;
    for (const option& option : options) {
        keywords += std::wstring(option.keyword) + L" ";
        shown += (shown.empty() ? L"" : L"/") + std::wstring(option.keyword);
    }
    if (!editor::instance().input.next_is_silent())
        acutPrintf(L"\nCurrent layer:  \"%ls\"", current_name().c_str());
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
