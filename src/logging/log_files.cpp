#include "logging/log_files.h"

#include "model/number_text.h"
#include "logging/nitro_sort.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orm {

namespace {

QString systemError(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

QByteArray native(const QString& path)
{
    return QFile::encodeName(path);
}

}  // namespace

std::vector<QString> listLogFiles(const QString& logsFolder, const std::function<void()>& pump)
{
    const QDir dir(logsFolder);
    const QStringList found = dir.entryList({QStringLiteral("*.log")}, QDir::Files | QDir::Hidden | QDir::System,
                                            QDir::Unsorted);
    std::vector<QString> names(found.begin(), found.end());
    NitroSort(names, pump);
    return names;
}

qint64 logFileDay(const QString& fileName)
{
    QString rest = fileName;
    rest.remove(QStringLiteral("ex")).remove(QStringLiteral(".log1")).remove(QStringLiteral(".log"));
    if (rest.isEmpty() || rest.size() > 18)
        return -1;
    qint64 day = 0;
    for (const QChar c : rest) {
        if (c < QLatin1Char('0') || c > QLatin1Char('9'))
            return -1;
        day = day * 10 + (c.unicode() - '0');
    }
    return day;
}

qint64 momentDay(double moment)
{
    return qint64(leadingNumber(numberText(moment).left(8)));
}

bool logFileInRange(const QString& fileName, double logStart, double logEnd)
{
    const qint64 day = logFileDay(fileName);
    return day >= 0 && day >= momentDay(logStart) && day <= momentDay(logEnd);
}

OpenedLog::OpenedLog(const QString& path, bool workingCopy)
{
    if (workingCopy) {
        if (!copyToWorkingFile(path))
            close();
        return;
    }
    readPath_ = path;
    do
        fd_ = ::open(native(path).constData(), O_RDONLY | O_CLOEXEC);
    while (fd_ < 0 && errno == EINTR);
    if (fd_ < 0) {
        error_ = systemError(errno);
        return;
    }
    struct stat st {};
    if (::fstat(fd_, &st) == 0 && !S_ISREG(st.st_mode)) {
        error_ = QStringLiteral("not a regular file");
        close();
        return;
    }
    ::posix_fadvise(fd_, 0, 0, POSIX_FADV_SEQUENTIAL);
}

// The copy is made under a name of this process's own and then renamed to
// "<name>.log1": another reader (the command line beside a running monitor)
// may be reading its own copy of the same day, and keeps reading it from its
// open descriptor whatever happens to the name.
bool OpenedLog::copyToWorkingFile(const QString& path)
{
    readPath_ = path + QLatin1Char('1');
    int source = -1;
    do
        source = ::open(native(path).constData(), O_RDONLY | O_CLOEXEC);
    while (source < 0 && errno == EINTR);
    if (source < 0) {
        error_ = systemError(errno);
        return false;
    }
    static int serial = 0;
    const QString scratch = path.chopped(4) + QStringLiteral(".%1-%2.log1").arg(::getpid()).arg(++serial);
    fd_ = ::open(native(scratch).constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (fd_ < 0) {
        error_ = systemError(errno);
        ::close(source);
        return false;
    }
    bool ok = true;
    for (;;) {
        const ssize_t n = ::copy_file_range(source, nullptr, fd_, nullptr, 1 << 24, 0);
        if (n > 0)
            continue;
        if (n == 0)
            break;
        if (errno == EINTR)
            continue;
        // Some file systems cannot copy in the kernel: copy by hand.
        if (errno == EXDEV || errno == ENOSYS || errno == EOPNOTSUPP || errno == EINVAL) {
            char block[1 << 16];
            ssize_t got;
            while ((got = ::read(source, block, sizeof block)) != 0) {
                if (got < 0 && errno == EINTR)
                    continue;
                if (got < 0 || ::write(fd_, block, size_t(got)) != got) {
                    ok = false;
                    break;
                }
            }
            break;
        }
        ok = false;
        break;
    }
    const int copyError = errno;
    ::close(source);
    if (!ok || ::rename(native(scratch).constData(), native(readPath_).constData()) != 0) {
        error_ = systemError(ok ? errno : copyError);
        ::unlink(native(scratch).constData());
        return false;
    }
    ownsCopy_ = true;
    struct stat st {};
    if (::fstat(fd_, &st) == 0) {
        copyDevice_ = quint64(st.st_dev);
        copyInode_ = quint64(st.st_ino);
    }
    ::lseek(fd_, 0, SEEK_SET);
    ::posix_fadvise(fd_, 0, 0, POSIX_FADV_SEQUENTIAL);
    return true;
}

void OpenedLog::close()
{
    if (ownsCopy_) {
        // Only our own copy goes: another reader's copy under the name is theirs to remove.
        struct stat st {};
        if (::stat(native(readPath_).constData(), &st) == 0 && quint64(st.st_dev) == copyDevice_ &&
            quint64(st.st_ino) == copyInode_)
            ::unlink(native(readPath_).constData());
        ownsCopy_ = false;
    }
    if (fd_ >= 0)
        ::close(fd_);
    fd_ = -1;
}

OpenedLog::~OpenedLog()
{
    close();
}

}  // namespace orm
