// Whom the module has told it of documents, drawings and commands.
#pragma once

#include "acdocman.h"
#include "aced.h"
#include "dbmain.h"
#include "module/frame/ModulePort.h"

class TPipeAppDocGlobals;

// Makes and deletes the data of documents, and keeps the layer control bar enabled while there is one.
class TPipeDocReactor : public AcApDocManagerReactor {
public:
    explicit TPipeDocReactor(TPipeAppDocGlobals& globals) : m_globals(globals) {}

    void documentCreated(AcApDocument* document) override;
    void documentToBeDestroyed(AcApDocument* document) override;
    void documentActivated(AcApDocument* document) override;

private:
    TPipeAppDocGlobals& m_globals;
};

// Notes the layers of the current document that join its drawing or change; what is undone or redone is no
// change.
class TPipeDbReactor : public AcDbDatabaseReactor {
public:
    void objectAppended(const AcDbDatabase* database, const AcDbObject* object) override;
    void objectModified(const AcDbDatabase* database, const AcDbObject* object) override;
};

// At the end of a command the layers that were noted are sorted into their groups, if the user wants that,
// and forgotten. Of one that did not end well they wait for the next one.
class TCmdReactor : public AcEditorReactor {
public:
    // The one that listens to the editor.
    static void Create();
    static void Release();

    void commandWillStart(const ACHAR* command) override;
    void commandEnded(const ACHAR* command) override;
    void commandCancelled(const ACHAR* command) override;
    void commandFailed(const ACHAR* command) override;
};

// As long as it lives, layers of the current document are not noted. What it finds in one document it writes
// into the one that is current when it goes.
class ZEF_PIPESYSTEM_PORT TBanReactor {
public:
    TBanReactor();
    TBanReactor(const TBanReactor&) = delete;
    TBanReactor& operator=(const TBanReactor&) = delete;
    ~TBanReactor();

private:
    int m_saved = 1;
};
