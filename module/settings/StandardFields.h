// The values of the standard's records as texts, by the names under which users know them. One list serves
// the settings' dialogs, assignments on the command line and the comparison of two standards.
#pragma once

#include "module/standard/PipeStandard.h"

#include <span>

template<class Record>
struct StandardField {
    const wchar_t* name;
    CString (*get)(const Record& record);
    // Takes a text. Why it can not be taken, in words for the user, and the record as it was; "" when it was
    // taken.
    CString (*set)(Record& record, const CString& text);
};

// In the order in which they are shown. For PipeBasicNode, LayerNode, TextStyleNode, LayerNameRule,
// CreateSystemRule and ObjectColor; keys (the names by which records are asked for) are not among them.
template<class Record>
std::span<const StandardField<Record>> FieldsOf();

// The field of that name without case; null when there is none.
template<class Record>
const StandardField<Record>* FindField(const CString& name) {
    for (const StandardField<Record>& field : FieldsOf<Record>())
        if (IsSameName(CString(field.name), name))
            return &field;
    return nullptr;
}

// Names in one text, with commas between; and back: blanks around them and empty ones go, each stays once.
CString ListText(const std::vector<CString>& names);
std::vector<CString> NamesIn(const CString& text);

// A number as the settings show it; and back, nothing for what is no number from 0 on.
CString SizeText(double size);
bool ReadSize(const CString& text, double& size);

// Why no layer can be called so; "" when one can.
CString WhyNoLayerName(const CString& name);
