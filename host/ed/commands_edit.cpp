// SETVAR, REGEN, REGENALL, REDRAW.
#include "aced.h"
#include "base/case_fold.h"
#include "base/wildcard.h"
#include "host/ed/editor.h"
#include "host/ed/host_commands.h"
#include "host/ed/prompts.h"
#include "host/ed/system_variables.h"

namespace ed {

namespace {

void list_variables(const std::wstring& pattern) {
    for (const std::wstring& name : variable_names()) {
        variable_value value;
        if (base::wildcard_match(name, pattern, true) && get_variable(name, value) == variable_status::well)
            acutPrintf(L"\n%-12ls %ls", name.c_str(), shown_value(value).c_str());
    }
    acutPrintf(L"\n");
}

// Takes a new value from what was typed; the reason when it is refused.
std::wstring change(const std::wstring& name, const variable_value& old, const std::wstring& typed) {
    variable_value value;
    if (!read_value(typed, old, value))
        return std::holds_alternative<int>(old)           ? L"Requires an integer value."
               : std::holds_alternative<AcGePoint3d>(old) ? L"Requires a point."
                                                          : L"Requires numeric value.";
    switch (set_variable(name, value)) {
    case variable_status::well:
        return {};
    case variable_status::out_of_range:
        return L"Cannot set " + name + L" to that value.";
    default:
        return L"Cannot set " + name + L".";
    }
}

} // namespace

void setvar_command() {
    std::wstring name;
    variable_value value;
    const auto take_name = [&](const answer& given) -> std::wstring {
        name = base::folded(given.text);
        return given.text == L"?" || get_variable(name, value) == variable_status::well
                   ? L""
                   : L"Unknown variable name. Type SETVAR ? for a list.";
    };
    if (ask_value(L"\nEnter variable name or [?]: ", {}, answer_rule::word, take_name) != RTNORM)
        return;
    if (name == L"?") {
        ACHAR pattern[133];
        if (acedGetString(0, L"\nEnter variable(s) to list <*>: ", pattern, 133) == RTNORM)
            list_variables(*pattern != 0 ? pattern : L"*");
        return;
    }
    change_variable(name);
}

void change_variable(const std::wstring& typed) {
    variable_value value;
    get_variable(typed, value);
    std::wstring name = typed;
    for (const std::wstring& known : variable_names())
        if (base::equal_no_case(known, name))
            name = known;
    if (is_read_only(name)) {
        acutPrintf(L"\n%ls = %ls (read only)\n", name.c_str(), shown_value(value).c_str());
        return;
    }
    const bool is_text = std::holds_alternative<std::wstring>(value);
    const std::wstring prompt = L"\nEnter new value for " + name + (is_text ? L", or . for none <" : L" <") +
                                shown_value(value) + L">: ";
    ask_value(prompt.c_str(), {}, is_text ? answer_rule::line : answer_rule::word, [&](const answer& given) {
        return change(name, value, is_text && given.text == L"." ? L"" : given.text);
    });
}

void regen_command() {
    acutPrintf(L"\nRegenerating model.\n");
    acedUpdateDisplay();
}

void regenall_command() {
    regen_command();
}

void redraw_command() {
    acedUpdateDisplay();
}

} // namespace ed

// There is no screen: whoever looks at the drawing asks it anew.
void acedUpdateDisplay() {
}
