// What a check has found, for the user to read: on the command line, and as a file.
#pragma once

#include "base/result.h"
#include "module/check/Findings.h"

#include <filesystem>
#include <set>
#include <string>
#include <vector>

struct PictureMark;

class CCheckReport {
public:
    CCheckReport(const CFindings& findings, const CheckRules& rules);

    // A table: the gravest first, a line for each kind with the first handles and places. Of a rule with many
    // kinds those with most findings, then how many there are besides.
    void PrintTable() const;
    // Every finding; or those that can be mended of some rules. Escape ends it.
    void PrintAll() const;
    void PrintAll(const std::set<CheckRule>& mendable) const;

    // Writes a file by the end of its name: ".json" with every finding, ".html" for a browser, in one file,
    // with a picture of model space and with the first thousands of each kind. Fails for other names and when
    // it can not be written.
    base::result<void> Write(const std::filesystem::path& file) const;

private:
    Severity SeverityOf(const FindingKind& kind) const { return m_rules[kind.m_rule].m_severity; }
    bool PrintEach(const FindingKind& kind) const;
    std::string Json() const;
    std::string Html() const;
    std::vector<PictureMark> Marks() const;
    CString Sum() const;

    const CFindings& m_findings;
    const CheckRules& m_rules;
    std::vector<const FindingKind*> m_kinds; // with findings, in the order of the table
};

// Shows which of the kinds a mending is about, with their numbers.
void PrintKinds(const std::vector<const FindingKind*>& kinds);
