// Jigs: an entity that follows the user's answers while they are given.
//
//     class LineJig : public AcEdJig { ... };
//     LineJig jig(start);
//     jig.setDispPrompt(_T("\nTo point:"));
//     if (jig.drag() == AcEdJig::kNormal)
//         jig.append();
//
// There is no cursor here that samples between two answers: sampler() runs once for each answer, and update()
// once behind it, so that entity() is what the answer makes of it. A point that a jig asks for is typed or
// picked like any other, relative to the base point of the rubber band ("@100,0", or a distance alone).
#pragma once

#include "dbmain.h"

class ACCORE_PORT AcEdJig : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcEdJig);

    // Controls of the input. Those that only a screen could tell apart change nothing.
    enum UserInputControls {
        kGovernedByOrthoMode = 0x0001,
        kNullResponseAccepted = 0x0002,
        kDontEchoCancelForCtrlC = 0x0004,
        kDontUpdateLastPoint = 0x0008,
        kNoDwgLimitsChecking = 0x0010,
        kNoZeroResponseAccepted = 0x0020,
        kNoNegativeResponseAccepted = 0x0040,
        kAccept3dCoordinates = 0x0080,
        kAcceptMouseUpAsPoint = 0x0100,
        kAnyBlankTerminatesInput = 0x0200,
        kInitialBlankTerminatesInput = 0x0400,
    };

    // What came of an answer: a value, Enter, Escape, or a keyword by its place in the list.
    enum DragStatus {
        kNoChange = -6,
        kCancel = -4,
        kOther = -3,
        kNull = -1,
        kNormal = 0,
        kKW1,
        kKW2,
        kKW3,
        kKW4,
        kKW5,
        kKW6,
        kKW7,
        kKW8,
        kKW9,
    };

    AcEdJig();
    ~AcEdJig() override;
    AcEdJig(const AcEdJig&) = delete;
    AcEdJig& operator=(const AcEdJig&) = delete;

    // Asks through sampler() and updates the entity by its answer; a status that sampler() gives back.
    DragStatus drag();
    // Acquires one answer by the functions below and keeps it. kNoChange: ask again.
    virtual DragStatus sampler();
    // Brings the entity in line with the answer. False: it is as it was.
    virtual Adesk::Boolean update();
    // Puts the entity into the current space, which owns it from then on. Null when that fails.
    AcDbObjectId append();

    // What the next drag() asks, and the keywords that it takes ("Undo Width").
    const ACHAR* dispPrompt();
    void setDispPrompt(const ACHAR* prompt);
    const ACHAR* keywordList();
    void setKeywordList(const ACHAR* keywords);
    UserInputControls userInputControls();
    void setUserInputControls(UserInputControls controls);

    // A point of the world; with a base point a rubber band goes from there. The point stays as it was
    // unless the answer is kNormal.
    DragStatus acquirePoint(AcGePoint3d& point);
    DragStatus acquirePoint(AcGePoint3d& point, const AcGePoint3d& base);

    // What follows the answers.
    virtual AcDbEntity* entity() const;

private:
    DragStatus acquire(AcGePoint3d& point, const AcGePoint3d* base);

    AcString m_prompt;
    AcString m_keywords;
    UserInputControls m_controls = static_cast<UserInputControls>(0);
};
