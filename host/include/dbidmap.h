// What became of objects that were copied: each original and its copy.
#pragma once

#include "dbid.h"

#include <map>

class AcDbDatabase;

// An original and its copy.
class AcDbIdPair {
public:
    AcDbIdPair() = default;
    AcDbIdPair(AcDbObjectId key, AcDbObjectId value, bool isCloned, bool isPrimary = false)
        : m_key(key), m_value(value), m_isCloned(isCloned), m_isPrimary(isPrimary) {}

    AcDbObjectId key() const { return m_key; }
    AcDbObjectId value() const { return m_value; }
    // Whether it was copied; else the drawing had something of that name.
    bool isCloned() const { return m_isCloned; }
    // Whether it was asked for, and not only needed.
    bool isPrimary() const { return m_isPrimary; }
    void setKey(AcDbObjectId key) { m_key = key; }

private:
    AcDbObjectId m_key;
    AcDbObjectId m_value;
    bool m_isCloned = false;
    bool m_isPrimary = false;
};

// The pairs of one copying, by their originals.
class AcDbIdMapping {
public:
    // Adds a pair, in the place of one with the same key.
    void assign(const AcDbIdPair& pair) { m_pairs[pair.key()] = pair; }
    // Fills in the pair of a key. False when there is none.
    bool compute(AcDbIdPair& pair) const {
        const auto found = m_pairs.find(pair.key());
        if (found == m_pairs.end())
            return false;
        pair = found->second;
        return true;
    }

private:
    std::map<AcDbObjectId, AcDbIdPair> m_pairs;
};
