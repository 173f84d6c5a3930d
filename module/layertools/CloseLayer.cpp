// The command that turns layers off by pointing at what is on them, in external references, too.
#include "aced.h"
#include "dbents.h"
#include "dbmtext.h"
#include "dbobjptr.h"
#include "module/layertools/DocumentLock.h"
#include "module/layertools/ExternalBlock.h"
#include "module/layertools/LayerDisplay.h"
#include "module/layertools/LayerToolBar.h"
#include "module/standard/PipeSystemTool.h"
#include "rxmfcapi.h"
#include "siblings/zef_kernal/TPickEntSet.h"
#include "siblings/zef_kernal/ZefExport.h"

#include <memory>

namespace {

bool g_clicked = false;

// Notes presses of the left button: they tell a click into empty space from the end of the command.
BOOL NoteClicks(MSG* message) {
    constexpr UINT leftButtonDown = 513;
    if (message->message == leftButtonDown)
        g_clicked = true;
    return FALSE;
}

class CClickWatch {
public:
    CClickWatch() { acedRegisterFilterWinMsg(NoteClicks); }
    ~CClickWatch() { acedRemoveFilterWinMsg(NoteClicks); }
    CClickWatch(const CClickWatch&) = delete;
    CClickWatch& operator=(const CClickWatch&) = delete;
};

// Switches object snap off for the time of a scope.
class CNoObjectSnap {
public:
    CNoObjectSnap() {
        resbuf value{};
        if (acedGetVar(L"OSMODE", &value) == RTNORM && value.restype == RTSHORT)
            m_saved = value.resval.rint;
        Set(0);
    }
    ~CNoObjectSnap() { Set(m_saved); }
    CNoObjectSnap(const CNoObjectSnap&) = delete;
    CNoObjectSnap& operator=(const CNoObjectSnap&) = delete;

private:
    static void Set(short mode) {
        resbuf value{};
        value.restype = RTSHORT;
        value.resval.rint = mode;
        acedSetVar(L"OSMODE", &value);
    }

    short m_saved = 80;
};

void TurnOff(const CString& layer) {
    ZefExport::SetLayerOnOff(layer, false);
}

CString GetLayer(const AcDbEntity& entity) {
    AcString name;
    entity.layer(name);
    return name.kACharPtr();
}

// The layer that decides whether an entity in an external reference is seen. What is on layer 0 of a block is
// on the layer of the reference to the block.
CString GetLayerInReference(AcDbObjectId externalReference, const AcDbEntity& nested,
                            const AcGePoint3d& pickPoint) {
    const CString layer = GetLayer(nested);
    if (layer != L"0")
        return layer;
    const AcDbObjectPointer<AcDbBlockTableRecord> owner(nested.ownerId(), AcDb::kForRead);
    AcString block;
    if (owner.openStatus() != Acad::eOk || owner->getName(block) != Acad::eOk)
        return layer;
    if (CString(block.kACharPtr()).MakeUpper().Find(L"MODEL_SPACE") >= 0)
        return layer;
    return KolTool::GetLayerOfInsertion(externalReference, nested.ownerId(), pickPoint);
}

// Turns off the layers of the texts that an entity is made of.
void CloseTextLayers(const AcDbEntity& entity) {
    AcDbVoidPtrArray pieces;
    entity.explode(pieces);
    for (int i = 0; i < pieces.length(); ++i) {
        const std::unique_ptr<AcDbEntity> piece(static_cast<AcDbEntity*>(pieces[i]));
        if (piece->isKindOf(AcDbText::desc()) || piece->isKindOf(AcDbMText::desc()))
            TurnOff(GetLayer(*piece));
    }
}

void CloseInReference(AcDbObjectId externalReference) {
    AcDbObjectId id;
    AcGePoint3d point;
    AcGeMatrix3d toWorld;
    if (KolTool::SelectEntityFromExternalBlock(L"\n外部参照！请继续选择外部参照上要关闭的图元<退出>: ", id,
                                               point, toWorld, true) != RTNORM) {
        acedUsrBrk(); // Escape leaves this pick, not the command
        return;
    }
    const AcDbEntityPointer nested(id, AcDb::kForRead);
    if (nested.openStatus() != Acad::eOk)
        return;
    TurnOff(GetLayerInReference(externalReference, *nested.object(), point));
    CloseTextLayers(*nested.object());
}

// Turns off a layer, and with the pipe layer of a system that of its diameter texts.
void CloseWithDiameters(const CString& layer) {
    TurnOff(layer);
    constexpr int noPipeLayer = -1;
    int type = noPipeLayer;
    PipeSystemTool::IsPipeLayer(layer, &type); // the type alone tells
    if (type == noPipeLayer)
        return;
    const CString system = PipeSystemTool::GetPipeSystemNameByPipeLayer(layer);
    const CString diameters = PipeSystemTool::GetLayerName(system, L"管径文字");
    if (!diameters.IsEmpty())
        TurnOff(diameters);
}

} // namespace

void CLayerToolBar::CloseSelLayer() {
    const CDocumentLock lock;
    acedSSSetFirst(nullptr, nullptr);
    const CClickWatch watch;
    TPickEntSet picked;
    for (;;) {
        g_clicked = false;
        if (picked.SelectEntity(L"\n请选择关闭层上的图元或外部参照上的图元<退出>:") != RTNORM) {
            if (!g_clicked)
                return;
            continue;
        }
        const CNoObjectSnap noSnap;
        if (KolTool::IsExternalBlock(picked.GetAt(0)))
            CloseInReference(picked.GetAt(0));
        else
            CloseWithDiameters(picked.GetLayerName(0));
        RegenerateDisplay();
    }
}
