// The documents that are open, behind the document manager of the interface.
#pragma once

#include "acdocman.h"
#include "base/result.h"

#include <memory>
#include <string>
#include <vector>

namespace ap {

class document;

class ACCORE_PORT documents {
public:
    // The one that the process has.
    static documents& instance();

    documents(const documents&) = delete;
    documents& operator=(const documents&) = delete;

    // Opens a drawing file, or with an empty path a new drawing, and makes it current. The applications are
    // told.
    base::result<void> open(const std::wstring& path, bool read_only);
    // Closes all documents, the applications told of each.
    void close_all();

    document* current() const { return current_; }
    // The database of the current document; null when none is open.
    AcDbDatabase* current_database() const;
    std::vector<AcDbDatabase*> databases() const;
    const std::vector<std::unique_ptr<document>>& all() const { return all_; }
    void make_current(document* wanted);

    // Saves the current document's drawing; an empty path means its own file.
    base::result<void> save(const std::wstring& path);

private:
    documents();
    ~documents();

    std::vector<std::unique_ptr<document>> all_;
    document* current_ = nullptr;
};

} // namespace ap
