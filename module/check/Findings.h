// What a check has found: one list, in which each finding knows how it is mended.
#pragma once

#include "afx.h"
#include "dbmain.h"
#include "gepnt3d.h"
#include "module/check/CheckRules.h"

#include <functional>
#include <map>
#include <tuple>

struct Finding {
    int m_kind = 0;          // its place among the kinds
    AcDbObjectId m_object;   // an entity, a layer or a text style
    AcDbObjectId m_other;    // the one that it collides with; null for none
    bool m_hasPlace = false; // whether the rule says where; else it is where the object is
    AcGePoint3d m_place;
    AcGePoint3d m_goal; // of an end that is to be moved, where it goes
};

// Mends one finding. eNotApplicable when something else was mended that changes it: the next check tells.
using Mend = std::function<Acad::ErrorStatus(const Finding& finding)>;

// Findings of one rule with the same words.
struct FindingKind {
    CheckRule m_rule = CheckRule::LayerNear;
    CString m_text;
    Mend m_mend;
    CString m_newName; // of layers that are to be called, or merged into one that is called, so
    std::vector<std::size_t> m_findings;

    bool CanMend() const { return m_mend != nullptr || !m_newName.IsEmpty(); }
};

class CFindings {
public:
    // The kind of a rule and a text; `mend` counts for a new one. Those that can be mended and those that can
    // not are two kinds.
    int GetKind(CheckRule rule, const CString& text, const Mend& mend = nullptr);
    // Of layers that get another name.
    int GetRenaming(CheckRule rule, const CString& text, const CString& newName);
    void Add(const Finding& finding);
    void Add(int kind, AcDbObjectId object) { Add({kind, object, {}, false, {}, {}}); }

    bool IsEmpty() const { return m_findings.empty(); }
    const std::vector<Finding>& All() const { return m_findings; }
    const std::vector<FindingKind>& Kinds() const { return m_kinds; }
    const FindingKind& KindOf(const Finding& finding) const {
        return m_kinds[static_cast<std::size_t>(finding.m_kind)];
    }

private:
    using Key = std::tuple<CheckRule, bool, CString>; // the second: whether it can be mended
    int Kind(Key key, FindingKind made);

    std::vector<Finding> m_findings;
    std::vector<FindingKind> m_kinds;
    std::map<Key, int> m_places;
};
