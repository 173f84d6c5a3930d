// The question for a selection: "Select objects:" and all that it can be answered with.
#pragma once

#include "gepnt2d.h"
#include "host/ed/prompts.h"
#include "host/ed/selection_filter.h"
#include "host/ed/selection_mode.h"
#include "host/ed/selection_set.h"

#include <string>
#include <vector>

namespace ed {

class selection_prompt {
public:
    // The filter may be null: it leaves nothing out. Both prompts are shown as they stand.
    selection_prompt(AcDbImpDatabase& database, const selection_filter* filter, const selection_mode& mode,
                     input_rules rules, std::wstring add_prompt, std::wstring remove_prompt)
        : database_(database), filter_(filter), mode_(mode), rules_(std::move(rules)),
          add_prompt_(std::move(add_prompt)), remove_prompt_(std::move(remove_prompt)), once_(mode.once) {}

    // Asks until Enter, or with mode.once for one answer. RTNORM with a set that may be empty, RTNONE for
    // Enter before anything was selected, RTCAN, RTKWORD.
    int run(selection_set& set);
    // Takes an answer that was given already, a pick, and asks for what it wants further. The reason when it
    // is refused.
    std::wstring take_first(selection_set& set, const answer& given);
    // Whether the last pick met nothing at all.
    bool hit_nothing() const { return hit_nothing_; }

private:
    struct step {
        bool removing;
        std::vector<AcDbObjectId> changed;
    };

    verdict take(const answer& given);
    verdict take_expression(const answer& given);
    verdict take_point_answer(const answer& given);
    verdict take_way(way chosen);
    int ask_further();
    int ask_region(way chosen, std::vector<AcGePoint2d> points);
    int ask_multiple();
    int ask_group();
    int call_back();
    void add(const std::vector<AcDbObjectId>& picked);
    void undo();

    AcDbImpDatabase& database_;
    const selection_filter* filter_;
    const selection_mode& mode_;
    input_rules rules_;
    std::wstring add_prompt_;
    std::wstring remove_prompt_;
    selection_set* set_ = nullptr;
    std::vector<step> steps_; // for Undo
    bool once_;               // one answer is all
    bool removing_ = false;
    bool automatic_ = false; // AUto: a point that hits nothing begins a box
    bool hit_nothing_ = false;
    way further_ = way::ask;          // what was chosen last, when it wants further answers
    std::vector<AcGePoint2d> corner_; // of a box that began with a pick
};

// The function that ":K" calls with a keyword of acedInitGet; null when there is none.
using keyword_callback = resbuf* (*)(const ACHAR*);
keyword_callback& selection_keyword_callback();

} // namespace ed
