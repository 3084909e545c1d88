#include "sources/kernel_file.h"
#include "sources/platform_file.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace orm {

namespace {

constexpr size_t FirstBufferSize = 4096;

}  // namespace

KernelFile::KernelFile(const QString& path) : KernelFile(QFile::encodeName(path).toStdString()) {}

KernelFile::KernelFile(std::string path) : path_(std::move(path)) {}

KernelFile::~KernelFile() { close(); }

KernelFile::KernelFile(KernelFile&& other) noexcept
    : path_(std::move(other.path_)), fd_(std::exchange(other.fd_, -1)), keepOpen_(other.keepOpen_),
      sysfs_(other.sysfs_), buffer_(std::move(other.buffer_)), capacity_(std::exchange(other.capacity_, 0))
{
}

KernelFile& KernelFile::operator=(KernelFile&& other) noexcept
{
    if (this != &other) {
        close();
        path_ = std::move(other.path_);
        fd_ = std::exchange(other.fd_, -1);
        keepOpen_ = other.keepOpen_;
        sysfs_ = other.sysfs_;
        buffer_ = std::move(other.buffer_);
        capacity_ = std::exchange(other.capacity_, 0);
    }
    return *this;
}

bool KernelFile::open()
{
    fd_ = ::open(path_.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd_ < 0)
        return false;
    struct statfs fs {};
    const bool known = ::fstatfs(fd_, &fs) == 0;
    sysfs_ = known && fs.f_type == SYSFS_MAGIC;
    keepOpen_ = sysfs_ || (known && fs.f_type == PROC_SUPER_MAGIC);
    return true;
}

void KernelFile::close()
{
    if (fd_ >= 0)
        ::close(fd_);
    fd_ = -1;
}

std::optional<QByteArrayView> KernelFile::read()
{
    if (fd_ < 0 && !open())
        return std::nullopt;
    if (!buffer_)
        grow(FirstBufferSize, 0);
    size_t length = 0;
    for (;;) {
        if (length == capacity_)
            grow(capacity_ * 2, length);
        const size_t wanted = capacity_ - length;
        const ssize_t n = ::pread(fd_, buffer_.get() + length, wanted, off_t(length));
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0) {
            // A process that ended, a link that went down: open afresh next time.
            close();
            return std::nullopt;
        }
        if (n == 0)
            break;
        length += size_t(n);
        // Text made of many records (/proc/net/dev) may come a page at a time
        // and ends with an empty read; a sysfs attribute never does.
        if (sysfs_ && size_t(n) < wanted)
            break;
    }
    if (!keepOpen_)
        close();
    return QByteArrayView(buffer_.get(), qsizetype(length));
}

void KernelFile::grow(size_t capacity, size_t keep)
{
    std::unique_ptr<char[]> larger(new char[capacity]);
    if (keep)
        std::memcpy(larger.get(), buffer_.get(), keep);
    buffer_ = std::move(larger);
    capacity_ = capacity;
}

std::optional<QByteArray> readPlatformFile(const QString& path)
{
    KernelFile file(path);
    const auto text = file.read();
    if (!text)
        return std::nullopt;
    return text->toByteArray();
}

}  // namespace orm
