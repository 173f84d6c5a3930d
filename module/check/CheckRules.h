// The rules that drawings are checked by: how grave each is, and how far it goes.
//
// An office says so in a file beside its standard, "kol.check.xml" beside "kol.vrsl"; without one, and for
// what it does not mention, the values here count. In the file a Rule has the attributes Name (the key),
// Severity (错误, 警告, 提示 or 关) and Layers (a pattern of the layers that it looks at, for rules that look
// at entities), a Tolerance Name and Value, an Alias Layers (patterns), System and LayerType.
#pragma once

#include "afx.h"
#include "module/frame/ModulePort.h"

#include <array>
#include <vector>

enum class CheckRule : unsigned char {
    LayerNear,
    LayerAlias,
    LayerColor,
    LayerLinetype,
    LayerLineWeight,
    LayerPlot,
    LayerEmpty,
    OwnProperties,
    PipeSystem,
    PipeLayer,
    PipeMaterial,
    PipeDiameter,
    PipeZero,
    PipeOverlap,
    PipeGap,
    TextStyle,
    TextFont,
    Mark,
};
inline constexpr std::size_t checkRuleCount = 18;

enum class Severity : unsigned char { Off, Note, Warning, Error };

struct CheckRuleInfo {
    const wchar_t* m_key; // in files
    const wchar_t* m_title;
    Severity m_severity;
};
ZEF_PIPESYSTEM_PORT const CheckRuleInfo& GetRuleInfo(CheckRule rule);
ZEF_PIPESYSTEM_PORT const wchar_t* GetSeverityText(Severity severity);
// False for what is none.
ZEF_PIPESYSTEM_PORT bool ParseSeverity(const CString& text, Severity& severity);

// Layers of other offices that mean a system's layer: patterns, with commas between.
struct LayerAlias {
    CString m_patterns;
    CString m_system;
    CString m_layerType;
};

struct RuleSetting {
    Severity m_severity = Severity::Warning;
    CString m_layers; // a pattern; empty: the rule's own
};

// Millimetres of the model.
struct CheckTolerances {
    double m_same = 0.01;   // what lies nearer is at one place
    double m_overlap = 1.0; // what runs together longer overlaps
    double m_gap = 10.0;    // an end that lies nearer to a pipe was meant to meet it
};
struct ToleranceInfo {
    const wchar_t* m_key;
    const wchar_t* m_title;
    double CheckTolerances::*m_value;
};
ZEF_PIPESYSTEM_PORT const std::array<ToleranceInfo, 3>& GetToleranceInfos();

struct CheckRules {
    ZEF_PIPESYSTEM_PORT CheckRules();

    RuleSetting& operator[](CheckRule rule) { return m_settings[static_cast<std::size_t>(rule)]; }
    const RuleSetting& operator[](CheckRule rule) const { return m_settings[static_cast<std::size_t>(rule)]; }
    bool IsOn(CheckRule rule) const { return (*this)[rule].m_severity != Severity::Off; }

    std::array<RuleSetting, checkRuleCount> m_settings;
    CheckTolerances m_tolerances;
    std::vector<LayerAlias> m_aliases;
};

// The file beside the current standard; of the built-in one it lies in the system folder.
ZEF_PIPESYSTEM_PORT CString GetCheckRulesFile();
// Without a file the rules are those of the module. False, and the rules as they were, for a file that can
// not be read or says what is no rule, severity or number: `fault` is in words for the user, with the file.
ZEF_PIPESYSTEM_PORT bool ReadCheckRules(LPCTSTR path, CheckRules& rules, CString& fault);
// False when it can not be written.
ZEF_PIPESYSTEM_PORT bool WriteCheckRules(LPCTSTR path, const CheckRules& rules);
