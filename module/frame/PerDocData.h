// What the module keeps for each open document: the layers that were touched since a command ended last.
#pragma once

#include "AcApDMgr.h"
#include "dbid.h"
#include "module/frame/ModulePort.h"

#include <cstddef>
#include <memory>
#include <set>
#include <vector>

class TPipeDbReactor;
class TPipeDocReactor;

// Layers without doubles, in the order in which they were seen first.
class ZEF_PIPESYSTEM_PORT TLayerList {
public:
    void Add(AcDbObjectId layer);
    void Clear();
    int GetCount() const { return static_cast<int>(m_layers.size()); }

    // A walk through the list: each layer once, also those that are added meanwhile. False at the end.
    void GoToFirst() { m_next = 0; }
    bool Next(AcDbObjectId& layer);

private:
    std::vector<AcDbObjectId> m_layers;
    std::set<AcDbObjectId> m_known;
    std::size_t m_next = 0;
};

class ZEF_PIPESYSTEM_PORT TPipePerDocData {
public:
    // The document is never null.
    explicit TPipePerDocData(AcApDocument* document);
    TPipePerDocData(const TPipePerDocData&) = delete;
    TPipePerDocData& operator=(const TPipePerDocData&) = delete;
    // Stops listening to the drawing.
    ~TPipePerDocData();

    AcApDocument* GetDocument() const { return m_pDoc; }

    // Begins and ends to listen to the document's drawing. Doing either twice does nothing more.
    void DocumentLoaded();
    void DocumentUnloaded();
    bool IsListening() const { return m_pDbReactor != nullptr; }

    // Adds a layer of the document's own drawing to the list, while reactions are enabled. Others are passed
    // over.
    void NoteLayer(AcDbObjectId layer);
    TLayerList& Layers() { return m_layers; }

    int GetReactionsEnabled() const { return m_reactionsEnabled; }
    void SetReactionsEnabled(int enabled) { m_reactionsEnabled = enabled; }

private:
    AcApDocument* m_pDoc;
    std::unique_ptr<TPipeDbReactor> m_pDbReactor; // null until the document is loaded
    TLayerList m_layers;
    int m_reactionsEnabled = 1;
};

// All of them, with the reactor that makes and deletes them: one for the loaded module.
class ZEF_PIPESYSTEM_PORT TPipeAppDocGlobals {
public:
    // The one, null before Create and after Release. Create begins with the current document.
    static TPipeAppDocGlobals* Get();
    static void Create();
    static void Release();
    // The data of the current document; null when there are none.
    static TPipePerDocData* CurrentData();

    TPipeAppDocGlobals(const TPipeAppDocGlobals&) = delete;
    TPipeAppDocGlobals& operator=(const TPipeAppDocGlobals&) = delete;
    ~TPipeAppDocGlobals();

    // Null when there are none.
    TPipePerDocData* Find(const AcApDocument* document) const;
    // Makes them unless they are there. Null is passed over.
    void Add(AcApDocument* document);
    void Remove(const AcApDocument* document);
    int GetCount() const { return static_cast<int>(m_records.size()); }

private:
    TPipeAppDocGlobals();

    std::vector<std::unique_ptr<TPipePerDocData>> m_records;
    std::unique_ptr<TPipeDocReactor> m_docReactor;
};
