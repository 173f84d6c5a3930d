#include "host/ed/layer_options.h"

#include "aced.h"
#include "base/case_fold.h"
#include "base/number_text.h"
#include "base/utf.h"
#include "dbobjptr.h"
#include "host/db/core/imp_database.h"
#include "host/db/core/imp_object.h"
#include "host/db/core/record_text.h"
#include "host/db/core/symbol_names.h"
#include "host/db/tables/properties.h"
#include "host/ed/color_text.h"
#include "host/ed/layer_list.h"
#include "host/ed/prompts.h"
#include "host/ed/questions.h"

#include <cmath>
#include <cstdlib>

namespace ed::layer_options {

namespace {

// The legal lineweight that is nearest to a width in millimetres.
AcDb::LineWeight nearest_weight(double millimetres) {
    int best = 0;
    for (int weight = 0; weight <= AcDb::kLnWt211; ++weight)
        if (db::is_line_weight(weight) &&
            std::abs(weight - millimetres * 100) < std::abs(best - millimetres * 100))
            best = weight;
    return static_cast<AcDb::LineWeight>(best);
}

// The materials of the drawing, by their names.
AcDbObjectId material_named(const std::wstring& name) {
    const AcDbDictionaryPointer root(current_drawing()->namedObjectsDictionaryId());
    AcDbObjectId id;
    if (root.openStatus() != Acad::eOk || root->getAt(L"ACAD_MATERIAL", id) != Acad::eOk)
        return {};
    const AcDbDictionaryPointer materials(id);
    AcDbObjectId found;
    if (materials.openStatus() == Acad::eOk)
        materials->getAt(name.c_str(), found);
    return found;
}

} // namespace

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
    return for_layers(L"\nEnter name list of layer(s) for color " + shown + L" <" + current_layer_name() +
                          L">: ",
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
    chosen =
        current_drawing()->imp().id(current_drawing()->imp().names().find(db::table_kind::linetype, name));
    return for_layers(L"\nEnter name list of layer(s) for linetype \"" + name + L"\" <" +
                          current_layer_name() + L">: ",
                      true, [&](AcDbLayerTableRecord& layer) { layer.setLinetypeObjectId(chosen); });
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
    return for_layers(L"\nEnter name list of layers(s) for lineweight " + shown + L" <" +
                          current_layer_name() + L">: ",
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
                          L" <" + current_layer_name() + L">: ",
                      true, [&](AcDbLayerTableRecord& layer) {
                          if (layer.setXData(data.get()) != Acad::eOk)
                              acdbFail(L"\nThis drawing can not hold a layer's transparency.");
                      });
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
    return for_layers(L"\nEnter name list of layer(s) for material \"" + name + L"\" <" +
                          current_layer_name() + L">: ",
                      true, [&](AcDbLayerTableRecord& layer) {
                          constexpr int material_code = 347;
                          layer.imp().edit().set_text(db::layer_place, material_code, handle);
                      });
}

bool plot() {
    acedInitGet(0, L"Plot No");
    ACHAR word[8] = L"Plot";
    if (acedGetKword(L"\nEnter a plotting preference [Plot/No plot] <Plot>: ", word, 8) == RTCAN)
        return false;
    const bool plots = std::wstring_view(word) == L"Plot";
    return for_layers(L"\nEnter layer name(s) for this plot preference <" + current_layer_name() + L">: ",
                      true, [&](AcDbLayerTableRecord& layer) {
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
    return for_layers(L"\nEnter name list of layer(s) for description <" + current_layer_name() + L">: ",
                      true, [&](AcDbLayerTableRecord& layer) {
                          if (layer.setDescription(text.c_str()) != Acad::eOk)
                              acdbFail(L"\nThis drawing can not hold a layer's description.");
                      });
}

} // namespace ed::layer_options
