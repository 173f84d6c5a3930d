// The dialog in which a colour is chosen.
#include "aced.h"
#include "base/case_fold.h"
#include "host/ed/color_text.h"
#include "ui/presenter.h"

namespace ed {

namespace {

constexpr std::wstring_view by_layer = L"ByLayer";
constexpr std::wstring_view by_block = L"ByBlock";

struct choice {
    bool meta = false;
    bool index = false;
    bool true_color = false;
};

std::wstring shown(const AcCmColor& color) {
    return std::wstring(color.isByLayer() ? by_layer : color.isByBlock() ? by_block : color_text(color));
}

std::optional<AcCmColor> chosen_color(const std::wstring& text, const choice& allowed) {
    AcCmColor color;
    if (allowed.meta && (base::equal_no_case(text, by_layer) || base::equal_no_case(text, by_block))) {
        color.setColorIndex(base::equal_no_case(text, by_layer) ? AcCmColor::kACIbyLayer
                                                                : AcCmColor::kACIbyBlock);
        return color;
    }
    const auto parsed = text.starts_with(L'-') ? std::nullopt : parse_color(text);
    return parsed && (parsed->isByColor() ? allowed.true_color : allowed.index) ? parsed : std::nullopt;
}

std::wstring expectation(const choice& allowed) {
    std::wstring text;
    const auto add = [&](std::wstring_view part) {
        text += (text.empty() ? L"Expects " : L", or ") + std::wstring(part);
    };
    if (allowed.index)
        add(L"a color number (1-255) or name");
    if (allowed.true_color)
        add(L"red,green,blue");
    if (allowed.meta)
        add(L"ByLayer or ByBlock");
    return text.empty() ? L"There are no colors to choose from." : text + L'.';
}

bool choose(AcCmColor& color, const choice& allowed) {
    const auto refusal = [&](const std::wstring& value) {
        return chosen_color(value, allowed) ? std::wstring() : expectation(allowed);
    };
    ui::dialog dialog{L"Select Color", {{L"Color", shown(color), refusal}}, {}};
    if (!ui::run(dialog))
        return false;
    // What the user left as it was need not be one that may be chosen.
    if (const auto chosen = chosen_color(dialog.fields[0].value, allowed);
        chosen && dialog.fields[0].value != shown(color))
        color = *chosen;
    return true;
}

} // namespace

} // namespace ed

bool acedSetColorDialogTrueColor(AcCmColor& color, Adesk::Boolean bAllowMetaColor,
                                 const AcCmColor& /*nCurLayerColor*/, AcCm::DialogTabs tabs) {
    return ed::choose(color,
                      {bAllowMetaColor, (tabs & AcCm::kACITab) != 0, (tabs & AcCm::kTrueColorTab) != 0});
}

Adesk::Boolean acedSetColorDialog(int& nColor, Adesk::Boolean bAllowMetaColor, int /*nCurLayerColor*/) {
    AcCmColor color;
    if (nColor < 0 || nColor > AcCmColor::kACIbyLayer)
        return false;
    color.setColorIndex(static_cast<Adesk::UInt16>(nColor));
    if (!ed::choose(color, {bAllowMetaColor, true, false}))
        return false;
    nColor = color.colorIndex();
    return true;
}
