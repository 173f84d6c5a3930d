// Writes what is on some layers of the current drawing to a drawing file of its own.
#pragma once

#include "acadstrc.h"
#include "afx.h"
#include "dbid.h"
#include "dbidar.h"

#include <memory>
#include <vector>

class AcDbDatabase;

// A version that drawing files can be written in, newest first.
struct FileVersion {
    const wchar_t* m_name;
    Acad::ErrorStatus (*m_write)(AcDbDatabase* drawing, const ACHAR* fileName, int precision);
};
const std::vector<FileVersion>& GetFileVersions();

class CLayerExport {
public:
    // With the entities of model space and sheets that are on these layers, parts and all.
    explicit CLayerExport(const std::vector<AcDbObjectId>& layers);
    ~CLayerExport();

    int GetCount() const { return m_entities.length(); }
    // Those of the layers on which there is nothing.
    const std::vector<AcDbObjectId>& GetEmptyLayers() const { return m_emptyLayers; }

    // Makes the new drawing in memory; where asked, the add-on's entities in it are taken apart. The current
    // drawing stays as it is.
    Acad::ErrorStatus Make(bool takesApart);
    // Writes it whole or not at all; no version means that of the current drawing.
    Acad::ErrorStatus Write(const CString& fileName, const FileVersion* version);

    // After Make: how many entities came along since others hold on to them, and how many of the add-on's
    // entities were taken apart, and could not be.
    int GetFollowed() const { return m_followed; }
    int GetTakenApart() const { return m_takenApart; }
    int GetKept() const { return m_kept; }

private:
    AcDbObjectIdArray m_entities;
    std::vector<AcDbObjectId> m_emptyLayers;
    std::unique_ptr<AcDbDatabase> m_drawing;
    int m_followed = 0;
    int m_takenApart = 0;
    int m_kept = 0;
};
