#include "monitor/instance_lock.h"

#include <QByteArray>
#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace orm {

InstanceLock::~InstanceLock()
{
    release();
}

void InstanceLock::release()
{
    if (fd_ >= 0)
        ::close(fd_);  // drops the lock
    fd_ = -1;
}

InstanceLock::Result InstanceLock::take(const QString& file)
{
    release();
    const int fd = ::open(QFile::encodeName(file).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0) {
        error_ = QStringLiteral("The data folder cannot be written (%1: %2).")
                     .arg(file, QString::fromLocal8Bit(std::strerror(errno)));
        return Unusable;
    }
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        const int err = errno;
        ::close(fd);
        if (err == EWOULDBLOCK)
            return HeldByAnother;
        error_ = QStringLiteral("The lock %1 cannot be taken: %2").arg(file, QString::fromLocal8Bit(std::strerror(err)));
        return Unusable;
    }
    // The holder's process id, for a person who looks; the lock itself is the kernel's.
    const QByteArray pid = QByteArray::number(qint64(::getpid())) + '\n';
    if (::ftruncate(fd, 0) != 0 || ::write(fd, pid.constData(), size_t(pid.size())) != pid.size()) {
        error_ = QStringLiteral("The data folder cannot be written (%1: %2).")
                     .arg(file, QString::fromLocal8Bit(std::strerror(errno)));
        ::close(fd);
        return Unusable;
    }
    fd_ = fd;
    error_.clear();
    return Taken;
}

}  // namespace orm
