// A kernel text file (/proc, /sys) read once a tick with plain system calls
// into a buffer that is kept from one read to the next. On procfs and sysfs
// the file stays open and each read starts again at offset 0, which makes the
// kernel write the text anew; any other file (a fixture tree in tests) is
// opened and closed for each read, so that a file written meanwhile is seen.
#pragma once

#include <QByteArrayView>
#include <QString>
#include <optional>
#include <memory>
#include <string>

namespace orm {

class KernelFile {
public:
    explicit KernelFile(const QString& path);
    explicit KernelFile(std::string path);
    ~KernelFile();
    KernelFile(KernelFile&& other) noexcept;
    KernelFile& operator=(KernelFile&& other) noexcept;
    KernelFile(const KernelFile&) = delete;
    KernelFile& operator=(const KernelFile&) = delete;

    // The whole text as it stands now; nothing when the file can't be opened
    // or read (a process that has ended, a link that is gone). The view holds
    // until the next read.
    std::optional<QByteArrayView> read();

    const std::string& path() const { return path_; }

private:
    bool open();
    void close();
    void grow(size_t capacity, size_t keep);

    std::string path_;
    int fd_ = -1;
    bool keepOpen_ = false;
    bool sysfs_ = false;  // an attribute comes whole in the first read
    std::unique_ptr<char[]> buffer_;  // grown, never shrunk; not cleared between reads
    size_t capacity_ = 0;
};

}  // namespace orm
