// A set of entities that the user picks, or that are found by what they are.
#pragma once

#include "acadstrc.h"
#include "adscodes.h"
#include "afx.h"
#include "gepnt3d.h"
#include "siblings/zef_kernal/TEntitySet.h"

struct resbuf;

// Each selection takes the place of what the set held; one that fails leaves it empty.
class ZEF_KERNAL_PORT TPickEntSet : public TEntitySet {
public:
    // Ask for one entity, or for any number. RTNORM; RTCAN for Escape; RTERROR when nothing was picked.
    int SelectEntity(LPCTSTR prompt);
    int SelectEntities(LPCTSTR prompt);
    // What was picked before the command; false when there is nothing, or the command does not use it.
    bool SelectPickedFirst();
    // Where SelectEntity was answered, in the user's coordinates.
    const AcGePoint3d& GetPickPoint() const { return m_point; }

    // All entities of the drawing that fit a filter, as acedSSGet has it, or that are on a layer: in model
    // space and on sheets, seen or not. False when there are none.
    bool SelectDrawing(const resbuf* filter);
    bool SelectLayer(LPCTSTR layerName);

    // Of one of them, from 0 to GetCount() - 1: its layer's name, and its type as drawing files name it.
    // Empty when it cannot be opened.
    CString GetLayerName(int index) const;
    CString GetTypeName(int index) const;

    // Erases them. Those that cannot be opened for writing, on locked layers for instance, stay; of each the
    // reason is given.
    std::vector<Acad::ErrorStatus> Erase() const;

private:
    bool Select(LPCTSTR mode, const resbuf* filter);

    AcGePoint3d m_point;
};
