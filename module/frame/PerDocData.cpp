#include "module/frame/PerDocData.h"

#include "module/frame/Reactors.h"

#include <algorithm>
#include <cassert>

namespace {

std::unique_ptr<TPipeAppDocGlobals> g_globals;

} // namespace

void TLayerList::Add(AcDbObjectId layer) {
    if (m_known.insert(layer).second)
        m_layers.push_back(layer);
}

void TLayerList::Clear() {
    m_layers.clear();
    m_known.clear();
    m_next = 0;
}

bool TLayerList::Next(AcDbObjectId& layer) {
    if (m_next == m_layers.size())
        return false;
    layer = m_layers[m_next++];
    return true;
}

TPipePerDocData::TPipePerDocData(AcApDocument* document) : m_pDoc(document) {
    assert(m_pDoc != nullptr);
}

TPipePerDocData::~TPipePerDocData() {
    DocumentUnloaded();
}

void TPipePerDocData::DocumentLoaded() {
    if (m_pDbReactor != nullptr)
        return;
    AcDbDatabase* const pDb = m_pDoc->database();
    assert(pDb != nullptr);
    m_pDbReactor = std::make_unique<TPipeDbReactor>();
    pDb->addReactor(m_pDbReactor.get());
}

void TPipePerDocData::DocumentUnloaded() {
    if (m_pDbReactor == nullptr)
        return;
    m_pDoc->database()->removeReactor(m_pDbReactor.get());
    m_pDbReactor.reset();
}

void TPipePerDocData::NoteLayer(AcDbObjectId layer) {
    if (m_reactionsEnabled != 0 && layer.database() == m_pDoc->database())
        m_layers.Add(layer);
}

TPipeAppDocGlobals* TPipeAppDocGlobals::Get() {
    return g_globals.get();
}

void TPipeAppDocGlobals::Create() {
    if (g_globals == nullptr)
        g_globals.reset(new TPipeAppDocGlobals);
}

void TPipeAppDocGlobals::Release() {
    g_globals.reset();
}

TPipePerDocData* TPipeAppDocGlobals::CurrentData() {
    return g_globals != nullptr ? g_globals->Find(acDocManager->curDocument()) : nullptr;
}

TPipeAppDocGlobals::TPipeAppDocGlobals() : m_docReactor(std::make_unique<TPipeDocReactor>(*this)) {
    acDocManager->addReactor(m_docReactor.get());
    Add(acDocManager->curDocument());
}

TPipeAppDocGlobals::~TPipeAppDocGlobals() {
    acDocManager->removeReactor(m_docReactor.get());
}

TPipePerDocData* TPipeAppDocGlobals::Find(const AcApDocument* document) const {
    const auto found = std::ranges::find(m_records, document, &TPipePerDocData::GetDocument);
    return found != m_records.end() ? found->get() : nullptr;
}

void TPipeAppDocGlobals::Add(AcApDocument* document) {
    if (document != nullptr && Find(document) == nullptr)
        m_records.push_back(std::make_unique<TPipePerDocData>(document));
}

void TPipeAppDocGlobals::Remove(const AcApDocument* document) {
    std::erase_if(m_records, [&](const auto& record) { return record->GetDocument() == document; });
}
