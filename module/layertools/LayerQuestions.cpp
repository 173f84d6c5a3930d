#include "module/layertools/LayerQuestions.h"

#include "acedads.h"
#include "acutads.h"
#include "base/wildcard.h"
#include "dbobjptr.h"
#include "module/layertools/LayerDialogs.h"
#include "module/layertools/LayerStates.h"
#include "module/standard/Names.h"
#include "siblings/zef_kernal/TPickEntSet.h"
#include "siblings/zef_kernal/ZefExport.h"

#include <set>

bool AskName(const wchar_t* prompt, CString& name) {
    AcString answer;
    constexpr int withBlanks = 1;
    const int given = acedGetString(withBlanks, prompt, answer);
    name = given == RTNORM ? answer.kACharPtr() : L"";
    name.Trim();
    return given != RTCAN;
}

CString AskKeyword(const wchar_t* prompt, const wchar_t* keywords, bool& isEnded) {
    acedInitGet(0, keywords);
    ACHAR answer[32] = {};
    const int given = acedGetKword(prompt, answer);
    isEnded = given != RTNORM && given != RTNONE;
    return given == RTNORM ? answer : L"";
}

bool AskYes(const wchar_t* prompt) {
    bool isEnded = false;
    return AskKeyword(prompt, L"Y N", isEnded) == L"Y";
}

bool FitsName(const CString& name, const CString& typed) {
    return name.CompareNoCase(typed) == 0 || base::wildcard_match(ViewOf(name), ViewOf(typed), true);
}

std::vector<AcDbObjectId> LayersNamed(const CString& name) {
    if (const AcDbObjectId layer = ZefExport::GetLayerIdFromString(name); !layer.isNull())
        return {layer};
    std::vector<AcDbObjectId> layers = GetAllLayerIds();
    std::erase_if(layers, [&](AcDbObjectId layer) { return !FitsName(GetLayerName(layer), name); });
    return layers;
}

namespace {

// The layers of what was picked.
std::vector<AcDbObjectId> LayersOf(const TPickEntSet& picked) {
    std::vector<AcDbObjectId> layers;
    std::set<AcDbObjectId> known;
    for (const AcDbObjectId id : picked) {
        const AcDbEntityPointer entity(id, AcDb::kForRead);
        if (entity.openStatus() == Acad::eOk && known.insert(entity->layerId()).second)
            layers.push_back(entity->layerId());
    }
    return layers;
}

} // namespace

std::vector<AcDbObjectId> AskLayers(const LayerQuestion& question) {
    for (;;) {
        TPickEntSet picked;
        acedInitGet(0, question.m_keywords);
        const int answer = picked.SelectEntities(question.m_prompt());
        std::vector<AcDbObjectId> layers;
        if (answer == RTNORM) {
            layers = LayersOf(picked);
        } else if (answer == RTKWORD) {
            ACHAR keyword[8] = {};
            acedGetInput(keyword);
            if (keyword[0] == L'D') {
                CLayerFilterDlg dialog(GetAllLayerIds(), question.m_listTitle);
                if (dialog.DoModal())
                    layers = dialog.GetChosenLayers();
            } else if (keyword[0] == L'N') {
                CString name;
                if (!AskName(question.m_namePrompt, name))
                    return {};
                layers = LayersNamed(name);
                if (layers.empty())
                    acutPrintf(L"\n没有名称符合\"%s\"的图层！", name.GetString());
            } else if (question.m_other) {
                question.m_other();
            }
        } else {
            return {};
        }
        if (!layers.empty())
            return layers;
    }
}
