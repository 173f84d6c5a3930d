// Values of an object as bytes in memory: what it is copied by.
#pragma once

#include "dbfiler.h"

#include <string>

namespace db {

class memory_filer : public AcDbDwgFiler {
public:
    Acad::ErrorStatus filerStatus() const override { return status_; }
    AcDb::FilerType filerType() const override { return AcDb::kCopyFiler; }
    void setFilerStatus(Acad::ErrorStatus status) override { status_ = status; }
    void resetFilerStatus() override { status_ = Acad::eOk; }
    Acad::ErrorStatus readBytes(void* bytes, Adesk::UIntPtr count) override;
    Acad::ErrorStatus writeBytes(const void* bytes, Adesk::UIntPtr count) override;
    Acad::ErrorStatus seek(Adesk::Int64 offset, int method) override;
    Adesk::Int64 tell() const override { return static_cast<Adesk::Int64>(at_); }

private:
    std::string bytes_;
    std::size_t at_ = 0;
    Acad::ErrorStatus status_ = Acad::eOk;
};

} // namespace db
