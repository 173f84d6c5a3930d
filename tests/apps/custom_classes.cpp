// An application that brings classes of its own, in the manner of tutorials.
#include "tests/custom_classes.h"

#include "acgi.h"
#include "arxHeaders.h"
#include "dbfiler.h"

#include <stdexcept>

ACRX_DXF_DEFINE_MEMBERS(TestPipe, AcDbEntity, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 1, TESTPIPE,
                        "CustomClasses|a test")
ACRX_DXF_DEFINE_MEMBERS(TestNotedLine, AcDbLine, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, TESTNOTEDLINE,
                        CUSTOMCLASSES)
ACRX_DXF_DEFINE_MEMBERS(TestCounter, AcDbObject, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, TESTCOUNTER,
                        CUSTOMCLASSES)
ACRX_DXF_DEFINE_MEMBERS(TestNames, AcDbObject, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, TESTNAMES,
                        CUSTOMCLASSES)

namespace {
constexpr Adesk::Int16 pipe_version = 1;
}

TestPipe::TestPipe() {
    setColorIndex(3);
}

AcGePoint3d TestPipe::start() const {
    assertReadEnabled();
    return m_start;
}

AcGePoint3d TestPipe::end() const {
    assertReadEnabled();
    return m_end;
}

void TestPipe::setEnds(const AcGePoint3d& start, const AcGePoint3d& end) {
    assertWriteEnabled();
    m_start = start;
    m_end = end;
}

double TestPipe::bore() const {
    assertReadEnabled();
    return m_bore;
}

void TestPipe::setBore(double bore) {
    assertWriteEnabled();
    m_bore = bore;
}

std::wstring TestPipe::medium() const {
    assertReadEnabled();
    return m_medium;
}

void TestPipe::setMedium(const std::wstring& medium) {
    assertWriteEnabled();
    m_medium = medium;
}

AcDbObjectId TestPipe::feed() const {
    assertReadEnabled();
    return m_feed;
}

void TestPipe::setFeed(AcDbObjectId feed) {
    assertWriteEnabled();
    m_feed = feed;
}

Acad::ErrorStatus TestPipe::dwgInFields(AcDbDwgFiler* filer) {
    assertWriteEnabled();
    Acad::ErrorStatus status = AcDbEntity::dwgInFields(filer);
    if (status != Acad::eOk)
        return status;
    Adesk::Int16 version = 0;
    filer->readItem(&version);
    if (version > pipe_version)
        return Acad::eMakeMeProxy;
    filer->readItem(&m_start);
    filer->readItem(&m_end);
    filer->readItem(&m_bore);
    AcString medium;
    filer->readItem(medium);
    m_medium = medium.kwszPtr();
    AcDbSoftPointerId feed;
    filer->readItem(&feed);
    m_feed = feed;
    return filer->filerStatus();
}

Acad::ErrorStatus TestPipe::dwgOutFields(AcDbDwgFiler* filer) const {
    assertReadEnabled();
    const Acad::ErrorStatus status = AcDbEntity::dwgOutFields(filer);
    if (status != Acad::eOk)
        return status;
    filer->writeItem(pipe_version);
    filer->writeItem(m_start);
    filer->writeItem(m_end);
    filer->writeItem(m_bore);
    filer->writeItem(m_medium.c_str());
    filer->writeItem(AcDbSoftPointerId(m_feed));
    return filer->filerStatus();
}

Acad::ErrorStatus TestPipe::dxfInFields(AcDbDxfFiler* filer) {
    assertWriteEnabled();
    Acad::ErrorStatus status = AcDbEntity::dxfInFields(filer);
    if (status != Acad::eOk || !filer->atSubclassData(_T("TestPipe")))
        return filer->filerStatus();
    resbuf value;
    while (status == Acad::eOk && (status = filer->readResBuf(&value)) == Acad::eOk) {
        switch (value.restype) {
        case AcDb::kDxfInt16:
            if (value.resval.rint > pipe_version)
                status = Acad::eMakeMeProxy;
            break;
        case AcDb::kDxfXCoord:
            m_start = AcGePoint3d(value.resval.rpoint[0], value.resval.rpoint[1], value.resval.rpoint[2]);
            break;
        case AcDb::kDxfXCoord + 1:
            m_end = AcGePoint3d(value.resval.rpoint[0], value.resval.rpoint[1], value.resval.rpoint[2]);
            break;
        case AcDb::kDxfReal:
            m_bore = value.resval.rreal;
            break;
        case AcDb::kDxfText:
            m_medium = value.resval.rstring;
            break;
        case AcDb::kDxfSoftPointerId:
            m_feed.setFromOldId(value.resval.rlname[0]);
            break;
        default:
            filer->pushBackItem();
            status = Acad::eEndOfFile;
            break;
        }
    }
    return status == Acad::eEndOfFile ? filer->filerStatus() : status;
}

Acad::ErrorStatus TestPipe::dxfOutFields(AcDbDxfFiler* filer) const {
    assertReadEnabled();
    const Acad::ErrorStatus status = AcDbEntity::dxfOutFields(filer);
    if (status != Acad::eOk)
        return status;
    filer->writeItem(AcDb::kDxfSubclass, _T("TestPipe"));
    filer->writeItem(AcDb::kDxfInt16, pipe_version);
    filer->writeItem(AcDb::kDxfXCoord, m_start);
    filer->writeItem(static_cast<AcDb::DxfCode>(AcDb::kDxfXCoord + 1), m_end);
    filer->writeItem(AcDb::kDxfReal, m_bore);
    filer->writeItem(AcDb::kDxfText, m_medium.c_str());
    if (!m_feed.isNull())
        filer->writeItem(AcDb::kDxfSoftPointerId, m_feed);
    return filer->filerStatus();
}

Adesk::Boolean TestPipe::subWorldDraw(AcGiWorldDraw* draw) {
    const AcGePoint3d ends[] = {m_start, m_end};
    draw->geometry().polyline(2, ends);
    return true;
}

Acad::ErrorStatus TestPipe::subTransformBy(const AcGeMatrix3d& matrix) {
    setEnds(matrix * m_start, matrix * m_end);
    return Acad::eOk;
}

std::wstring TestNotedLine::note() const {
    assertReadEnabled();
    return m_note;
}

void TestNotedLine::setNote(const std::wstring& note) {
    assertWriteEnabled();
    m_note = note;
}

Acad::ErrorStatus TestNotedLine::dxfInFields(AcDbDxfFiler* filer) {
    assertWriteEnabled();
    if (AcDbLine::dxfInFields(filer) != Acad::eOk || !filer->atSubclassData(_T("TestNotedLine")))
        return filer->filerStatus();
    resbuf value;
    while (filer->readResBuf(&value) == Acad::eOk && value.restype == AcDb::kDxfText)
        m_note = value.resval.rstring;
    return filer->filerStatus();
}

Acad::ErrorStatus TestNotedLine::dxfOutFields(AcDbDxfFiler* filer) const {
    assertReadEnabled();
    AcDbLine::dxfOutFields(filer);
    filer->writeString(AcDb::kDxfSubclass, _T("TestNotedLine"));
    filer->writeString(AcDb::kDxfText, m_note.c_str());
    return filer->filerStatus();
}

int TestCounter::count() const {
    assertReadEnabled();
    return m_count;
}

void TestCounter::setCount(int count) {
    assertWriteEnabled();
    m_count = count;
}

Acad::ErrorStatus TestCounter::dwgInFields(AcDbDwgFiler* filer) {
    AcDbObject::dwgInFields(filer);
    Adesk::Int32 count = 0;
    if (filer->readInt32(&count) == Acad::eOk)
        m_count = count;
    return filer->filerStatus();
}

Acad::ErrorStatus TestCounter::dwgOutFields(AcDbDwgFiler* filer) const {
    AcDbObject::dwgOutFields(filer);
    filer->writeInt32(m_count);
    return filer->filerStatus();
}

const std::vector<std::wstring>& TestNames::names() const {
    assertReadEnabled();
    return m_names;
}

void TestNames::setNames(const std::vector<std::wstring>& names) {
    assertWriteEnabled();
    m_names = names;
}

Acad::ErrorStatus TestNames::dxfInFields(AcDbDxfFiler* filer) {
    assertWriteEnabled();
    if (AcDbObject::dxfInFields(filer) != Acad::eOk || !filer->atSubclassData(_T("TestNames")))
        return filer->filerStatus();
    resbuf value;
    while (filer->readResBuf(&value) == Acad::eOk && value.restype == AcDb::kDxfXTextString)
        m_names.emplace_back(value.resval.rstring);
    return filer->filerStatus();
}

Acad::ErrorStatus TestNames::dxfOutFields(AcDbDxfFiler* filer) const {
    assertReadEnabled();
    AcDbObject::dxfOutFields(filer);
    filer->writeItem(AcDb::kDxfSubclass, _T("TestNames"));
    for (const std::wstring& name : m_names) {
        if (name == L"throw")
            throw std::runtime_error("a name that throws");
        if (name == L"bad")
            return filer->setError(Acad::eInvalidInput, _T("the name %s is bad"), name.c_str());
        filer->writeItem(AcDb::kDxfXTextString, name.c_str());
    }
    return filer->filerStatus();
}

extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) {
    if (message == AcRx::kInitAppMsg) {
        acrxUnlockApplication(packet);
        acrxRegisterAppMDIAware(packet);
        TestPipe::rxInit();
        TestNotedLine::rxInit();
        TestCounter::rxInit();
        TestNames::rxInit();
        acrxBuildClassHierarchy();
    }
    if (message == AcRx::kUnloadAppMsg) {
        deleteAcRxClass(TestPipe::desc());
        deleteAcRxClass(TestNotedLine::desc());
        deleteAcRxClass(TestCounter::desc());
        deleteAcRxClass(TestNames::desc());
    }
    return AcRx::kRetOK;
}
