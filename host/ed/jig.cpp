#include "dbjig.h"

#include "acedads.h"
#include "dbapserv.h"
#include "dbobjptr.h"
#include "dbsymtb.h"
#include "geassign.h"
#include "host/ed/coordinates.h"

#include <sstream>
#include <string>

ACRX_NO_CONS_DEFINE_MEMBERS(AcEdJig, AcRxObject)

AcEdJig::AcEdJig() = default;
AcEdJig::~AcEdJig() = default;

AcEdJig::DragStatus AcEdJig::drag() {
    DragStatus status = kNoChange;
    while (status == kNoChange)
        status = sampler();
    if (status == kNormal)
        update();
    return status;
}

AcEdJig::DragStatus AcEdJig::sampler() {
    return kCancel;
}

Adesk::Boolean AcEdJig::update() {
    return false;
}

AcDbEntity* AcEdJig::entity() const {
    return nullptr;
}

AcDbObjectId AcEdJig::append() {
    AcDbObjectId id;
    AcDbEntity* const made = entity();
    AcDbDatabase* const database = acdbHostApplicationServices()->workingDatabase();
    if (made == nullptr || database == nullptr)
        return id;
    const AcDbObjectPointer<AcDbBlockTableRecord> space(database->currentSpaceId(), AcDb::kForWrite);
    if (space.openStatus() == Acad::eOk && space->appendAcDbEntity(id, made) == Acad::eOk)
        made->close();
    return id;
}

const ACHAR* AcEdJig::dispPrompt() {
    return m_prompt.kwszPtr();
}

void AcEdJig::setDispPrompt(const ACHAR* prompt) {
    m_prompt = prompt;
}

const ACHAR* AcEdJig::keywordList() {
    return m_keywords.kwszPtr();
}

void AcEdJig::setKeywordList(const ACHAR* keywords) {
    m_keywords = keywords;
}

AcEdJig::UserInputControls AcEdJig::userInputControls() {
    return m_controls;
}

void AcEdJig::setUserInputControls(UserInputControls controls) {
    m_controls = controls;
}

AcEdJig::DragStatus AcEdJig::acquirePoint(AcGePoint3d& point) {
    return acquire(point, nullptr);
}

AcEdJig::DragStatus AcEdJig::acquirePoint(AcGePoint3d& point, const AcGePoint3d& base) {
    return acquire(point, &base);
}

namespace {

// The place of a keyword in a list, from 1 on; 0 when it is not there.
int place_of(const std::wstring& word, const AcString& keywords) {
    std::wistringstream in(std::wstring(keywords.kwszPtr()));
    int place = 0;
    for (std::wstring one; in >> one;) {
        ++place;
        if (one.substr(0, one.find(L',')) == word)
            return place;
    }
    return 0;
}

} // namespace

AcEdJig::DragStatus AcEdJig::acquire(AcGePoint3d& point, const AcGePoint3d* base) {
    const AcGePoint3d from = base != nullptr ? ed::to_user(*base) : AcGePoint3d();
    AcGePoint3d given;
    acedInitGet((m_controls & kNullResponseAccepted) != 0 ? 0 : RSG_NONULL, m_keywords.kwszPtr());
    const int answer =
        acedGetPoint(base != nullptr ? asDblArray(from) : nullptr, m_prompt.kwszPtr(), asDblArray(given));
    switch (answer) {
    case RTNORM:
        point = ed::to_world(given);
        return kNormal;
    case RTNONE:
        return kNull;
    case RTKWORD: {
        AcString word;
        acedGetInput(word);
        const int place = place_of(word.kwszPtr(), m_keywords);
        return place == 0 ? kOther : static_cast<DragStatus>(place);
    }
    default:
        return kCancel;
    }
}
