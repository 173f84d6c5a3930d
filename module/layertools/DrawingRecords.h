// What the module keeps in the current drawing: xrecords below keys of its named-objects dictionary.
#pragma once

#include "acutmem.h"
#include "afx.h"
#include "dbid.h"

#include <memory>

struct FreeChain {
    void operator()(resbuf* chain) const { acutRelRb(chain); }
};
using Chain = std::unique_ptr<resbuf, FreeChain>;

// A chain that is being made.
class CChainMaker {
public:
    void Add(int code, int value);
    void Add(int code, const CString& value);
    void Add(int code, AcDbObjectId value);
    // Null when nothing was added.
    const resbuf* Get() const { return m_chain.get(); }

private:
    void Append(resbuf* node);

    Chain m_chain;
    resbuf* m_last = nullptr;
};

namespace DrawingRecords {

// The data of an entry; null when there is none, or it is empty.
Chain Read(const wchar_t* key);
// Puts an entry in the place of that which is there. False when the drawing cannot keep it, as those of R12
// and before: they have no dictionaries.
bool Write(const wchar_t* key, const resbuf& chain);
void Remove(const wchar_t* key);

} // namespace DrawingRecords
