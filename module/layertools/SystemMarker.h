// Marks entities and layers for one pipe system, moves entities onto its layers, and takes its marks away.
// The current drawing is locked for writing; each act tells what it did.
#pragma once

#include "afx.h"
#include "siblings/zef_kernal/TPickEntSet.h"

class CSystemMarker {
public:
    explicit CSystemMarker(CString system) : m_system(std::move(system)) {}
    const CString& GetSystem() const { return m_system; }

    // Marks entities, those of another system too. What lies on a layer of any system is refused.
    void MarkEntities(const TPickEntSet& picked) const;
    // Marks the layers of entities, those of another system too, and turns them on or off as the system is.
    // Layers that the standard has are refused. A layer that was in no family gets a row in the table of
    // layers.
    void MarkLayers(const TPickEntSet& picked) const;
    // Asks for an entity on a layer of the system and puts those picked on that layer; their marks go. What
    // lies on a layer of any system is refused. False when the user has pressed Escape.
    bool ConvertEntities(const TPickEntSet& picked) const;

    // Takes the mark off the system's entities, and makes them visible.
    void ClearEntities() const;
    // Takes the mark off its layers, and their rows out of the table of layers.
    void ClearLayers() const;

private:
    CString m_system;
};
