#include "module/layertools/DrawingRecords.h"

#include "acdbads.h"
#include "dbapserv.h"
#include "dbobjptr.h"

namespace {

AcDbObjectId GetDictionaryId() {
    return acdbHostApplicationServices()->workingDatabase()->namedObjectsDictionaryId();
}

} // namespace

void CChainMaker::Add(int code, int value) {
    Append(acutBuildList(code, value, 0));
}

void CChainMaker::Add(int code, const CString& value) {
    Append(acutBuildList(code, value.GetString(), 0));
}

void CChainMaker::Add(int code, AcDbObjectId value) {
    ads_name name;
    if (acdbGetAdsName(name, value) == Acad::eOk)
        Append(acutBuildList(code, name, 0));
}

void CChainMaker::Append(resbuf* node) {
    if (m_last == nullptr)
        m_chain.reset(node);
    else
        m_last->rbnext = node;
    m_last = node;
}

Chain DrawingRecords::Read(const wchar_t* key) {
    const AcDbDictionaryPointer dictionary(GetDictionaryId(), AcDb::kForRead);
    AcDbObjectId id;
    if (dictionary.openStatus() != Acad::eOk || dictionary->getAt(key, id) != Acad::eOk)
        return nullptr;
    const AcDbXrecordPointer record(id, AcDb::kForRead);
    resbuf* chain = nullptr;
    if (record.openStatus() == Acad::eOk)
        record->rbChain(&chain);
    return Chain(chain);
}

void DrawingRecords::Remove(const wchar_t* key) {
    const AcDbDictionaryPointer dictionary(GetDictionaryId(), AcDb::kForWrite);
    AcDbObjectId id;
    if (dictionary.openStatus() != Acad::eOk || dictionary->remove(key, id) != Acad::eOk)
        return;
    const AcDbObjectPointer<AcDbObject> record(id, AcDb::kForWrite);
    if (record.openStatus() == Acad::eOk)
        record->erase();
}

bool DrawingRecords::Write(const wchar_t* key, const resbuf& chain) {
    Remove(key);
    const AcDbDictionaryPointer dictionary(GetDictionaryId(), AcDb::kForWrite);
    AcDbXrecordPointer record;
    AcDbObjectId id;
    record.create();
    return dictionary.openStatus() == Acad::eOk && dictionary->setAt(key, record, id) == Acad::eOk &&
           record->setFromRbChain(chain) == Acad::eOk;
}
