#include "host/db/custom/memory_filer.h"

#include <algorithm>
#include <cstring>

namespace db {

Acad::ErrorStatus memory_filer::readBytes(void* bytes, Adesk::UIntPtr count) {
    if (status_ == Acad::eOk && count > bytes_.size() - at_)
        status_ = Acad::eEndOfFile;
    if (status_ == Acad::eOk && count != 0) {
        std::memcpy(bytes, bytes_.data() + at_, count);
        at_ += count;
    }
    return status_;
}

Acad::ErrorStatus memory_filer::writeBytes(const void* bytes, Adesk::UIntPtr count) {
    if (status_ != Acad::eOk || count == 0)
        return status_;
    bytes_.replace(at_, std::min<std::size_t>(count, bytes_.size() - at_), static_cast<const char*>(bytes),
                   count);
    at_ += count;
    return status_;
}

Acad::ErrorStatus memory_filer::seek(Adesk::Int64 offset, int method) {
    const auto size = static_cast<Adesk::Int64>(bytes_.size());
    const Adesk::Int64 from = method == 0 ? 0 : method == 1 ? tell() : size;
    if (from + offset < 0 || from + offset > size)
        return Acad::eOutOfRange;
    at_ = static_cast<std::size_t>(from + offset);
    return Acad::eOk;
}

} // namespace db
