// The current standard: one for the loaded module, not per drawing.
#pragma once

#include "module/standard/StandardIndex.h"

#include <optional>
#include <set>

class ZEF_PIPESYSTEM_PORT CStandardManager {
public:
    // The one manager, made when it is first asked for; null after Release until Create.
    static CStandardManager* Current();
    static CStandardManager& Create();
    // The one manager when it has a standard, else null.
    static CStandardManager* Loaded();
    static void Release();

    CStandardManager(const CStandardManager&) = delete;
    CStandardManager& operator=(const CStandardManager&) = delete;
    ~CStandardManager();

    // Chooses the standard file: that of the registry ("PipeSystemSetting", "StandardFile"; a name without a
    // backslash lies in the system folder) when there is such a file, else "kol.vrsl" of the system folder.
    void Choose();
    // Loads the chosen file, which is chosen first when none is; its full name goes to the registry. When it
    // can not be read the built-in standard counts, and one line tells the user why, as one tells of a file
    // whose bytes are none of the encoding that it declares: without a person at the terminal the run does
    // not end well then. Then writes the layer definition file and brings old system names up to date. Does
    // nothing when a standard is loaded already.
    void ChooseAndLoad();

    // Loads a standard file. False when it can not be read: then the standard stays as it was, and with
    // messages on the user is told.
    bool Load(LPCTSTR path, bool withMessages);
    // Loads the same file again, with messages.
    bool Reload();
    // Writes the standard to a file; the one that was loaded stays the one that is loaded again. False when
    // that fails.
    bool Save(LPCTSTR path) const;
    // Makes the file that was loaded last the user's choice from the next start on.
    void Remember() const;

    bool IsLoaded() const { return m_isLoaded; }
    // What was wrong with the file that Load tried last, with its name and its line; empty for nothing. A
    // file that was loaded has a fault when its bytes are none of the encoding that it declares.
    const CString& Fault() const { return m_fault; }
    // The full name of the file that was loaded last; empty for the built-in standard.
    const CString& FileName() const { return m_fileName; }
    // Whether the layer definition file is brought up to date instead of written anew.
    void SetKeepLayerDefinitions(bool keep) { m_keepLayerDefinitions = keep; }

    // To be read; who changes it holds a StandardEdit.
    const PipeStandard& Standard() const { return m_standard; }
    // Look-ups in the standard as it is now. What they find is good until it is changed or loaded anew.
    const StandardIndex& Index() const;

private:
    friend class StandardEdit;
    // What edits have given out since the index last followed.
    struct Changed {
        bool everything = false;
        std::set<const PipeGroupNode*> groups;
        std::set<const PipeNode*> systems;
        std::set<const OtherLayerNode*> otherLayers;
    };

    CStandardManager();
    void Replace(PipeStandard standard);
    void FollowChanges() const;

    PipeStandard m_standard;
    mutable std::optional<StandardIndex> m_index; // none until it is asked for
    mutable Changed m_changed;
    int m_edits = 0;
    CString m_chosen; // empty until Choose
    CString m_fileName;
    CString m_fault;
    bool m_isLoaded = false;
    bool m_keepLayerDefinitions = false;
};
