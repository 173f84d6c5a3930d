// A small application as a reader of tutorials writes one: an entity of its own, layers, selections,
// dictionaries, reactors and keywords, with nothing but the headers that applications include.
#include "AcApDMgr.h"
#include "aced.h"
#include "acgi.h"
#include "arxEntryPoint.h"
#include "dbents.h"
#include "dbfiler.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "dbxrecrd.h"

#include <memory>

// ---- an entity: two triangles, point to point

class Valve : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(Valve);

    void setAt(const AcGePoint3d& at, double size) {
        assertWriteEnabled();
        m_at = at;
        m_size = size;
    }

    Acad::ErrorStatus dxfInFields(AcDbDxfFiler* filer) override {
        assertWriteEnabled();
        if (const Acad::ErrorStatus status = AcDbEntity::dxfInFields(filer); status != Acad::eOk)
            return status;
        if (!filer->atSubclassData(_T("Valve")))
            return filer->filerStatus();
        resbuf item{};
        while (filer->readResBuf(&item) == Acad::eOk) {
            if (item.restype == AcDb::kDxfXCoord) {
                m_at = asPnt3d(item.resval.rpoint);
            } else if (item.restype == AcDb::kDxfReal) {
                m_size = item.resval.rreal;
            } else {
                filer->pushBackItem();
                break;
            }
        }
        return filer->filerStatus();
    }
    Acad::ErrorStatus dxfOutFields(AcDbDxfFiler* filer) const override {
        assertReadEnabled();
        if (const Acad::ErrorStatus status = AcDbEntity::dxfOutFields(filer); status != Acad::eOk)
            return status;
        filer->writeItem(AcDb::kDxfSubclass, _T("Valve"));
        filer->writeItem(AcDb::kDxfXCoord, m_at);
        filer->writeItem(AcDb::kDxfReal, m_size);
        return filer->filerStatus();
    }

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override {
        assertReadEnabled();
        const double half = m_size / 2;
        const AcGePoint3d points[] = {
            m_at + AcGeVector3d(-m_size, -half, 0), m_at + AcGeVector3d(m_size, half, 0),
            m_at + AcGeVector3d(m_size, -half, 0), m_at + AcGeVector3d(-m_size, half, 0),
            m_at + AcGeVector3d(-m_size, -half, 0)};
        draw->geometry().polyline(5, points);
        return Adesk::kTrue;
    }
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override {
        assertWriteEnabled();
        m_at.transformBy(matrix);
        m_size *= matrix.scale();
        return Acad::eOk;
    }

private:
    AcGePoint3d m_at;
    double m_size = 1;
};

ACRX_DXF_DEFINE_MEMBERS(Valve, AcDbEntity, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, VALVE,
                        "VALVES|a test")

// ---- reactors, and data of each document

namespace {

class Counter : public AcDbDatabaseReactor {
public:
    void objectAppended(const AcDbDatabase*, const AcDbObject* object) override {
        m_valves += object->isKindOf(Valve::desc()) ? 1 : 0;
    }
    int m_valves = 0;
};

struct DocumentData {
    DocumentData() : database(acDocManager->curDocument()->database()) { database->addReactor(&counter); }
    ~DocumentData() { database->removeReactor(&counter); }
    DocumentData(const DocumentData&) = delete;
    DocumentData& operator=(const DocumentData&) = delete;

    AcDbDatabase* database;
    Counter counter;
};

std::unique_ptr<AcApDataManager<DocumentData>> g_documents;

AcDbDatabase* current() {
    return acdbHostApplicationServices()->workingDatabase();
}

// The layer of a name, made red when there is none.
AcDbObjectId layerOf(const ACHAR* name) {
    AcDbLayerTable* table = nullptr;
    AcDbObjectId id;
    if (current()->getLayerTable(table, AcDb::kForWrite) != Acad::eOk)
        return id;
    if (table->getAt(name, id) == Acad::eKeyNotFound) {
        auto layer = std::make_unique<AcDbLayerTableRecord>();
        layer->setName(name);
        AcCmColor red;
        red.setColorIndex(1);
        layer->setColor(red);
        if (table->add(id, layer.get()) == Acad::eOk)
            layer.release()->close();
    }
    table->close();
    return id;
}

// Puts a text under a key of a dictionary.
void remember(AcDbDictionary* dictionary, const ACHAR* key, const ACHAR* text) {
    auto record = std::make_unique<AcDbXrecord>();
    resbuf* const values = acutBuildList(AcDb::kDxfText, text, RTNONE);
    record->setFromRbChain(*values);
    acutRelRb(values);
    AcDbObjectId id;
    if (dictionary->setAt(key, record.get(), id) == Acad::eOk)
        record.release()->close();
}

} // namespace

// ---- the application and its commands

class Valves : public AcRxArxApp {
public:
    AcRx::AppRetCode On_kInitAppMsg(void* packet) override {
        const AcRx::AppRetCode answer = AcRxArxApp::On_kInitAppMsg(packet);
        g_documents = std::make_unique<AcApDataManager<DocumentData>>();
        return answer;
    }
    AcRx::AppRetCode On_kUnloadAppMsg(void* packet) override {
        g_documents.reset();
        return AcRxArxApp::On_kUnloadAppMsg(packet);
    }
    void RegisterServerComponents() override {}

    // Asks for a place and a kind; the valve goes to a layer of its own and remembers its kind.
    static void VALVES_ADDVALVE() {
        g_documents->docData();
        ads_point at;
        if (acedGetPoint(nullptr, _T("\nPlace of the valve: "), at) != RTNORM)
            return;
        ACHAR kind[32] = _T("Gate");
        acedInitGet(0, _T("Gate Ball Check"));
        const int answer = acedGetKword(_T("\nKind [Gate/Ball/Check] <Gate>: "), kind);
        if (answer != RTNORM && answer != RTNONE)
            return;
        auto valve = std::make_unique<Valve>();
        valve->setAt(asPnt3d(at), 200);
        valve->setLayer(layerOf(_T("VALVES")));
        AcDbBlockTableRecordPointer space(current()->currentSpaceId(), AcDb::kForWrite);
        AcDbObjectId id;
        if (space.openStatus() != Acad::eOk || space->appendAcDbEntity(id, valve.get()) != Acad::eOk)
            return;
        Valve* const added = valve.release();
        if (added->createExtensionDictionary() == Acad::eOk) {
            AcDbObjectPointer<AcDbDictionary> own(added->extensionDictionary(), AcDb::kForWrite);
            if (own.openStatus() == Acad::eOk)
                remember(own.object(), _T("KIND"), kind);
        }
        added->close();
        AcDbDictionary* named = nullptr;
        if (current()->getNamedObjectsDictionary(named, AcDb::kForWrite) == Acad::eOk) {
            remember(named, _T("VALVES_LAST"), kind);
            named->close();
        }
    }

    // Counts the valves of the layer by a filter, and tells their kinds.
    static void VALVES_COUNTVALVES() {
        resbuf* const filter = acutBuildList(RTDXF0, _T("VALVE"), 8, _T("VALVES"), RTNONE);
        ads_name set;
        Adesk::Int32 length = 0;
        if (acedSSGet(_T("X"), nullptr, nullptr, filter, set) == RTNORM) {
            acedSSLength(set, &length);
            for (Adesk::Int32 i = 0; i < length; ++i) {
                ads_name name;
                acedSSName(set, i, name);
                tell(name);
            }
            acedSSFree(set);
        }
        acutRelRb(filter);
        acutPrintf(_T("\n%d valves, %d of them since the program began.\n"), length,
                   g_documents->docData().counter.m_valves);
    }

private:
    static void tell(ads_name name) {
        AcDbObjectId id;
        if (acdbGetObjectId(id, name) != Acad::eOk)
            return;
        AcDbObjectPointer<Valve> valve(id, AcDb::kForRead);
        if (valve.openStatus() != Acad::eOk)
            return;
        AcDbObjectPointer<AcDbDictionary> own(valve->extensionDictionary(), AcDb::kForRead);
        AcDbXrecord* record = nullptr;
        if (own.openStatus() != Acad::eOk || own->getAt(_T("KIND"), record, AcDb::kForRead) != Acad::eOk)
            return;
        resbuf* values = nullptr;
        if (record->rbChain(&values) == Acad::eOk && values != nullptr)
            acutPrintf(_T("\na %s valve"), values->resval.rstring);
        acutRelRb(values);
        record->close();
    }
};

IMPLEMENT_ARX_ENTRYPOINT(Valves)
ACDB_REGISTER_OBJECT_ENTRY_AUTO(Valve)
ACED_ARXCOMMAND_ENTRY_AUTO(Valves, VALVES, _ADDVALVE, ADDVALVE, ACRX_CMD_MODAL, NULL)
ACED_ARXCOMMAND_ENTRY_AUTO(Valves, VALVES, _COUNTVALVES, COUNTVALVES, ACRX_CMD_MODAL, NULL)
