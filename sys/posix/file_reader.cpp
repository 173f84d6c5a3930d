#include "sys/file_reader.h"

#include "sys/posix/reason.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace sys {

base::result<file_reader> file_reader::open(const std::filesystem::path& path) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return cannot(L"read", path, errno);
    file_reader reader(file, 0, path);
    struct stat about = {};
    if (::fstat(file, &about) != 0)
        return cannot(L"read", path, errno);
    if (S_ISDIR(about.st_mode))
        return cannot(L"read", path, EISDIR);
    ::posix_fadvise(file, 0, 0, POSIX_FADV_SEQUENTIAL);
    reader.size_ = static_cast<std::uint64_t>(about.st_size);
    return reader;
}

file_reader::file_reader(file_reader&& other) noexcept
    : file_(std::exchange(other.file_, -1)), size_(other.size_), path_(std::move(other.path_)) {
}

file_reader::~file_reader() {
    if (file_ >= 0)
        ::close(file_);
}

base::result<std::size_t> file_reader::read(char* out, std::size_t size) {
    std::size_t done = 0;
    while (done < size) {
        const ssize_t count = ::read(file_, out + done, size - done);
        if (count == 0)
            break;
        if (count > 0)
            done += static_cast<std::size_t>(count);
        else if (errno != EINTR)
            return cannot(L"read", path_, errno);
    }
    return done;
}

base::result<void> file_reader::rewind() {
    if (::lseek(file_, 0, SEEK_SET) != 0)
        return cannot(L"read", path_, errno);
    return {};
}

} // namespace sys
