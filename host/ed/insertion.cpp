#include "host/ed/insertion.h"

#include "acedads.h"
#include "acutmem.h"
#include "base/number_text.h"
#include "base/utf.h"
#include "dbents.h"
#include "dbobjptr.h"
#include "host/ed/editor.h"
#include "host/ed/prompts.h"
#include "host/ed/questions.h"
#include "host/ed/system_variables.h"

#include <optional>

namespace ed {

namespace {

struct placing {
    AcGePoint3d position;
    std::optional<AcGeScale3d> scale; // asked for later unless it was given in front
    std::optional<double> rotation;
};

constexpr const wchar_t* nonzero = L"Value must be nonzero.";

// A scale factor: any number but nought, or what a point makes with the base. RTNONE leaves it as it is.
int ask_factor(const std::wstring& prompt, double& factor, const wchar_t* keywords = L"") {
    acedInitGet(0, keywords);
    return ask_value(prompt.c_str(), take_input_rules(), answer_rule::word,
                     [&](const answer& given) -> std::wstring {
                         const auto value = base::parse_real(base::narrow(given.text));
                         if (!value)
                             return L"Requires numeric value.";
                         if (*value == 0.0)
                             return nonzero;
                         factor = *value;
                         return {};
                     });
}

// One of the options in front of the insertion point. False when the user ended it.
bool take_option(const std::wstring& word, placing& given) {
    if (word == L"Rotate") {
        double angle = 0.0;
        if (ask_angle(L"\nSpecify rotation angle <0>: ", angle) == RTCAN)
            return false;
        given.rotation = angle;
        return true;
    }
    double factor = 1.0;
    const std::wstring axis = word == L"Scale" ? L"XYZ axes" : word;
    if (ask_factor(L"\nSpecify scale factor for " + axis + L" <1>: ", factor) == RTCAN)
        return false;
    AcGeScale3d scale = given.scale.value_or(AcGeScale3d(1.0, 1.0, 1.0));
    if (word != L"Y" && word != L"Z")
        scale.sx = factor;
    if (word != L"X" && word != L"Z")
        scale.sy = factor;
    if (word != L"X" && word != L"Y")
        scale.sz = factor;
    given.scale = scale;
    return true;
}

bool ask_scale(AcGeScale3d& scale) {
    double x = 1.0;
    int answered = ask_factor(L"\nEnter X scale factor or [XYZ] <1>: ", x, L"XYZ");
    const bool each = answered == RTKWORD;
    if (each)
        answered = ask_factor(L"\nSpecify X scale factor <1>: ", x);
    if (answered == RTCAN)
        return false;
    double y = x;
    if (ask_factor(L"\nEnter Y scale factor <use X scale factor>: ", y) == RTCAN)
        return false;
    double z = x;
    if (each && ask_factor(L"\nSpecify Z scale factor <use X scale factor>: ", z) == RTCAN)
        return false;
    scale = AcGeScale3d(x, y, z);
    return true;
}

bool ask_placing(placing& given) {
    for (;;) {
        const int answered = ask_point(L"\nSpecify insertion point or [Scale/X/Y/Z/Rotate]: ", given.position,
                                       nullptr, L"Scale X Y Z Rotate", RSG_NONULL);
        if (answered == RTNORM)
            break;
        if (answered != RTKWORD || !take_option(taken_keyword(), given))
            return false;
    }
    if (!given.scale) {
        given.scale.emplace();
        if (!ask_scale(*given.scale))
            return false;
    }
    if (given.rotation)
        return true;
    double angle = 0.0;
    const bool answered = ask_angle(L"\nSpecify rotation angle <0>: ", angle, &given.position) != RTCAN;
    given.rotation = angle;
    return answered;
}

std::wstring text_of(ACHAR* text) {
    std::wstring taken = text != nullptr ? text : L"";
    acutDelString(text);
    return taken;
}

// Gives a new reference the attributes that its block defines, with the values that the user wants. False
// when he ended it.
bool add_attributes(AcDbBlockReference& reference, AcDbObjectId block) {
    const AcDbObjectPointer<AcDbBlockTableRecord> record(block);
    if (record.openStatus() != Acad::eOk)
        return true;
    variable_value asks = 1;
    get_variable(L"ATTREQ", asks);
    AcDbBlockTableRecordIterator* made = nullptr;
    record->newIterator(made);
    const std::unique_ptr<AcDbBlockTableRecordIterator> at(made);
    bool told = false;
    for (; !at->done(); at->step()) {
        AcDbObjectId id;
        at->getEntityId(id);
        const AcDbObjectPointer<AcDbAttributeDefinition> definition(id);
        if (definition.openStatus() != Acad::eOk || definition->isConstant())
            continue;
        std::wstring value = text_of(definition->textString());
        std::wstring question = text_of(definition->prompt());
        if (question.empty())
            question = text_of(definition->tag());
        if (!definition->isPreset() && asks != variable_value(0)) {
            if (!told)
                acutPrintf(L"\nEnter attribute values");
            told = true;
            if (ask_line(L"\n" + question + (value.empty() ? L"" : L" <" + value + L">") + L": ", value) ==
                RTCAN)
                return false;
        }
        auto attribute = std::make_unique<AcDbAttribute>();
        attribute->setAttributeFromBlock(definition.object(), reference.blockTransform());
        attribute->setTextString(value.c_str());
        if (reference.appendAttribute(attribute.get()) == Acad::eOk)
            static_cast<void>(attribute.release()); // the reference's now
    }
    return true;
}

} // namespace

bool insert_block(AcDbObjectId block, bool exploded) {
    placing given;
    if (!ask_placing(given))
        return false;
    auto reference = std::make_unique<AcDbBlockReference>(given.position, block);
    reference->setDatabaseDefaults(current_drawing());
    if (reference->setScaleFactors(*given.scale) != Acad::eOk)
        return false;
    reference->setRotation(*given.rotation);
    if (!exploded)
        return add_attributes(*reference, block) && add_to_current_space(std::move(reference));
    AcDbVoidPtrArray parts;
    const Acad::ErrorStatus status = reference->explode(parts);
    bool added = status == Acad::eOk;
    for (int i = 0; i < parts.length(); ++i)
        added =
            add_to_current_space(std::unique_ptr<AcDbEntity>(static_cast<AcDbEntity*>(parts[i]))) && added;
    if (status != Acad::eOk)
        acdbFail(L"\nThe block can not be exploded.");
    return added;
}

} // namespace ed
