// The table "userlayer.dbf" of the add-on: which layers belong to the architecture drawing and which to water
// supply and drainage.
//
// Its columns are PRODUCT (1 or 8), NAME (a layer's name; with * or ? in it a pattern of names) and SYSTEM. A
// row with a SYSTEM is not the user's: a layer got it when it was marked for that system.
#pragma once

#include "afx.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

enum UserLayerProduct {
    kNoUserLayer = 0,
    kArchitectureLayer = 1,
    kDrainageLayer = 8,
};

struct UserLayerRow {
    int m_product = kNoUserLayer;
    CString m_name;
    CString m_system; // empty for the user's own

    friend bool operator==(const UserLayerRow&, const UserLayerRow&) = default;
};

class CUserLayers {
public:
    // The table as the file has it now; empty when there is none, or with a fault.
    static CUserLayers Load();

    // What is wrong with the file, for the user to read; empty for nothing. Then Save does not write.
    const CString& GetFault() const { return m_fault; }

    // Those of the products above, in the order of the file.
    const std::vector<UserLayerRow>& GetRows() const { return m_rows; }
    // What a layer is; a row of exactly its name, without case, before the patterns, and of several the
    // first. Where they say nothing of a layer of an external reference, what they say of its name there.
    int GetProduct(const CString& layerName) const;

    // Whether a row can have that name: the file's code page is GBK, its column has 254 bytes.
    static bool CanHold(const CString& name);
    // Puts other rows in the place of all those of the products above.
    void SetRows(std::vector<UserLayerRow> rows);
    // Writes the file when it differs; other rows, and columns that this does not know, stay as they are. A
    // table without the column SYSTEM gets one when a row needs it. False when that fails: GetFault says why.
    bool Save();

private:
    int GetProductOf(std::wstring_view layerName) const;
    void Index();

    CString m_path;
    CString m_fault;
    std::vector<UserLayerRow> m_rows;
    std::unordered_map<std::wstring, int> m_byName; // folded
    std::vector<std::size_t> m_patterns;            // numbers of rows
};
