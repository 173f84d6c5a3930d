// What several layer commands ask for: names, and layers by their names.
#pragma once

#include "afx.h"
#include "dbid.h"

#include <functional>
#include <vector>

// A name, with blanks inside; empty when the user gives none. False for Escape.
bool AskName(const wchar_t* prompt, CString& name);

// A question for a keyword ("Y N"). The keyword; empty for Enter, and for Escape, when `isEnded` becomes
// true.
CString AskKeyword(const wchar_t* prompt, const wchar_t* keywords, bool& isEnded);
// Whether the user says yes to "[是(Y)/否(N)]<N>"; Enter and Escape say no.
bool AskYes(const wchar_t* prompt);

// Whether a name is the one that was typed, or fits it as a pattern; without case.
bool FitsName(const CString& name, const CString& typed);

// The layer of that very name, else those that a pattern fits.
std::vector<AcDbObjectId> LayersNamed(const CString& name);

// A question for layers, which the user answers with picks of what is on them, N for a name or D for a list.
struct LayerQuestion {
    std::function<const wchar_t*()> m_prompt;
    const wchar_t* m_namePrompt;
    const wchar_t* m_listTitle;
    const wchar_t* m_keywords = L"N D"; // with a third one, which calls this
    std::function<void()> m_other = nullptr;
};

// Each layer once, in the order of the picks; empty when the user ends it.
std::vector<AcDbObjectId> AskLayers(const LayerQuestion& question);
