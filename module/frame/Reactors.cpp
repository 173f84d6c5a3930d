#include "module/frame/Reactors.h"

#include "dbobjptr.h"
#include "dbsymtb.h"
#include "module/frame/DrawingDefaults.h"
#include "module/frame/PerDocData.h"
#include "module/layertools/DocumentLock.h"
#include "module/layertools/LayerControlBar.h"
#include "module/standard/LayerGrouping.h"
#include "module/standard/Names.h"
#include "siblings/zef_kernal/TDocData.h"

#include <algorithm>
#include <memory>

namespace {

std::unique_ptr<TCmdReactor> g_cmdReactor;

// What these change is not theirs to sort: they bring whole drawings in, or change nothing of their own.
constexpr const wchar_t* passedOver[] = {L"INSERT", L"QSAVE", L"PREVIEW", L"PLOT", L"SAVE", L"SAVEAS"};

// These take back or give again what was sorted already.
constexpr const wchar_t* undoing[] = {L"U", L"UNDO", L"REDO", L"MREDO"};

bool Is(const ACHAR* command, const wchar_t* name) {
    return command != nullptr && IsSameName(std::wstring_view(command), std::wstring_view(name));
}

void EnableBar(bool enable) {
    if (CLayerControlBar* const bar = CLayerControlBar::Get();
        bar != nullptr && acDocManager->documentCount() == 1)
        bar->EnableWindow(enable);
}

void Note(const AcDbObject* object) {
    TPipePerDocData* const data = TPipeAppDocGlobals::CurrentData();
    if (data != nullptr && object != nullptr && !object->isUndoing() &&
        object->isKindOf(AcDbLayerTableRecord::desc()))
        data->NoteLayer(object->objectId());
}

// The layer control bar shows what a command, which was cancelled or failed perhaps, has done to layers.
void RefreshBar(const ACHAR* command) {
    CLayerControlBar* const bar = CLayerControlBar::Get();
    if (bar == nullptr)
        return;
    TPipePerDocData* const data = TPipeAppDocGlobals::CurrentData();
    const auto isNamed = [&](const wchar_t* name) { return Is(command, name); };
    if ((data != nullptr && data->Layers().GetCount() != 0) || isNamed(L"SETDOLMOLAYTAG") ||
        std::ranges::any_of(undoing, isNamed))
        bar->Refresh();
}

void GroupLayers(TLayerList& layers) {
    CLayerGrouping grouping;
    AcDbObjectId id;
    for (layers.GoToFirst(); g_bLayerAutoGroup && layers.Next(id);) {
        const AcDbObjectPointer<AcDbLayerTableRecord> layer(id, AcDb::kForRead);
        if (layer.openStatus() == Acad::eOk)
            grouping.Add(*layer);
    }
    if (grouping.IsEmpty())
        return;
    const CDocumentLock lock; // commands of the session have none
    grouping.Write();
}

} // namespace

void TPipeDocReactor::documentCreated(AcApDocument* document) {
    m_globals.Add(document);
    EnableBar(true);
}

void TPipeDocReactor::documentToBeDestroyed(AcApDocument* document) {
    m_globals.Remove(document);
    EnableBar(false);
}

void TPipeDocReactor::documentActivated(AcApDocument* document) {
    m_globals.Add(document);
}

void TPipeDbReactor::objectAppended(const AcDbDatabase*, const AcDbObject* object) {
    Note(object);
}

void TPipeDbReactor::objectModified(const AcDbDatabase*, const AcDbObject* object) {
    Note(object);
}

void TCmdReactor::Create() {
    if (g_cmdReactor != nullptr)
        return;
    g_cmdReactor = std::make_unique<TCmdReactor>();
    acedEditor->addReactor(g_cmdReactor.get());
}

void TCmdReactor::Release() {
    if (g_cmdReactor == nullptr)
        return;
    acedEditor->removeReactor(g_cmdReactor.get());
    g_cmdReactor.reset();
}

void TCmdReactor::commandWillStart(const ACHAR*) {
}

void TCmdReactor::commandEnded(const ACHAR* command) {
    RefreshBar(command);
    TPipePerDocData* const data = TPipeAppDocGlobals::CurrentData();
    const auto isNamed = [&](const wchar_t* name) { return Is(command, name); };
    const bool isPassedOver = std::ranges::any_of(passedOver, isNamed);
    const TDocData* const kernalData = GetCurDocData();
    if (!isPassedOver && kernalData != nullptr && kernalData->m_isUsed) {
        if (data != nullptr && std::ranges::none_of(undoing, isNamed))
            GroupLayers(data->Layers());
    }
    if (data != nullptr)
        data->Layers().Clear();
}

void TCmdReactor::commandCancelled(const ACHAR* command) {
    RefreshBar(command);
}

void TCmdReactor::commandFailed(const ACHAR* command) {
    RefreshBar(command);
}

TBanReactor::TBanReactor() {
    if (TPipePerDocData* const data = TPipeAppDocGlobals::CurrentData()) {
        m_saved = data->GetReactionsEnabled();
        data->SetReactionsEnabled(0);
    }
}

TBanReactor::~TBanReactor() {
    if (TPipePerDocData* const data = TPipeAppDocGlobals::CurrentData())
        data->SetReactionsEnabled(m_saved);
}
