// What is wrong with a file of markup, in words for who wrote it.
#pragma once

#include "module/frame/ModulePort.h"

#include "afx.h"

#include <optional>

class MarkupDoc;

struct MarkupFault {
    int line = 0; // counted from 1; 0 for the whole file
    CString what;

    // "第 3 行: ...", or the words alone.
    ZEF_PIPESYSTEM_PORT CString GetText() const;
};

// Of a document that was loaded: why it could not be read or is not well-formed, by the first place that is
// told; else the first place where its bytes are none of its encoding. None when all is well.
ZEF_PIPESYSTEM_PORT std::optional<MarkupFault> FindMarkupFault(MarkupDoc& document);
