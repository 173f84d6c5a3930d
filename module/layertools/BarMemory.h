// What the layer control bar keeps in the current drawing: the states of its buttons, and which entities it
// hid.
#pragma once

#include "afx.h"
#include "dbid.h"

#include <map>
#include <utility>
#include <vector>

// The bits of the toggle state word.
enum BarToggle : unsigned {
    kArchitectureEntities = 1, // shown
    kDrainageEntities = 2,
    kFreezeArchitecture = 4, // its layers frozen
    kFreezeDrainage = 8,
    kLockArchitecture = 16, // locked
    kLockDrainage = 32,
    kArchitectureLayers = 64, // on
    kDrainageLayers = 128,
    kOtherEntities = 256,
};

// The bits of a row's state.
enum BarRowBit : unsigned {
    kRowOn = 1,
    kRowFrozen = 2,
    kRowLocked = 4,
};

constexpr unsigned kEntityToggles = kArchitectureEntities | kDrainageEntities | kOtherEntities;
// Where nothing is stored: everything shown, nothing frozen or locked.
constexpr unsigned kAllShown = kEntityToggles | kArchitectureLayers | kDrainageLayers;

// The entry "管道系统图层" of the named-objects dictionary: pairs (1: name, 90: state), one for each row by
// its name and one for the toggle state word, "开关状态".
struct BarStates {
    unsigned m_toggles = kAllShown;
    std::vector<std::pair<CString, unsigned>> m_rows;
    bool m_isStored = false; // there is such an entry

    // A row's; kRowOn where there is none of that name.
    unsigned GetRow(const CString& name) const;
};

BarStates LoadBarStates();
// False when the drawing cannot keep it.
bool SaveBarStates(const BarStates& states);
// Everything is on and visible now: what is stored follows. Nothing is stored where nothing was.
void NoteAllShown();

// The entities that a toggle, or the rows, hid: an entry of its own beside the states for each kind of
// button, in it by names (1) the entities (330).
class CHiddenEntities {
public:
    // The one name of a toggle.
    static constexpr const wchar_t* kOfToggle = L"图元";

    // Of the toggle of one kind of entities; of all rows. The current drawing's, as it is now.
    explicit CHiddenEntities(BarToggle toggle);
    static CHiddenEntities OfRows();

    // What is remembered under a name (of a toggle there is but one): empty when that is nothing.
    const std::vector<AcDbObjectId>& Get(const CString& name = kOfToggle) const;
    void Set(std::vector<AcDbObjectId> entities, const CString& name = kOfToggle);
    // Forgets, in the drawing too, what is visible by now.
    void ForgetVisible();
    // False when the drawing cannot keep it.
    bool Save() const;

private:
    explicit CHiddenEntities(const wchar_t* key);

    const wchar_t* m_key;
    std::map<CString, std::vector<AcDbObjectId>> m_byName; // none of them empty
};
