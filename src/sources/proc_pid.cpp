#include "sources/proc_pid.h"
#include "sources/kernel_text.h"
#include "sources/platform_file.h"

#include <QFile>
#include <algorithm>
#include <climits>
#include <limits>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orm {

namespace {

QString baseName(const QString& path)
{
    const qsizetype slash = path.lastIndexOf(QLatin1Char('/'));
    return slash < 0 ? path : path.mid(slash + 1);
}

}  // namespace

std::optional<qint64> parseStatmResidentPages(QByteArrayView statm)
{
    // size resident shared text lib data dt
    std::string_view text = kernel_text::view(statm), word;
    quint64 pages = 0;
    if (!kernel_text::nextWord(text, word) || !kernel_text::nextNumber(text, pages) ||
        pages > quint64(std::numeric_limits<qint64>::max()))
        return std::nullopt;
    return qint64(pages);
}

QString exeLinkName(const QByteArray& linkTarget)
{
    QString path = QFile::decodeName(linkTarget);
    static const QString deleted = QStringLiteral(" (deleted)");
    if (path.endsWith(deleted))
        path.chop(deleted.size());
    return baseName(path);
}

QString cmdlineName(const QByteArray& cmdline)
{
    // Programs that rewrite their title ("sshd: user@pts/0") leave one
    // string with blanks, so the word ends at a blank as well as a NUL.
    qsizetype end = 0;
    while (end < cmdline.size() && cmdline[end] != '\0' && cmdline[end] != ' ')
        ++end;
    QString word = baseName(QFile::decodeName(cmdline.left(end)));
    if (word.endsWith(QLatin1Char(':')))
        word.chop(1);
    return word;
}

QString commName(const QByteArray& comm)
{
    QByteArray text = comm;
    while (text.endsWith('\n') || text.endsWith('\0'))
        text.chop(1);
    return QString::fromUtf8(text);
}

QString processName(const QString& fromExe, const QString& fromCmdline, const QString& fromComm)
{
    const QString& name = !fromExe.isEmpty() ? fromExe : !fromCmdline.isEmpty() ? fromCmdline : fromComm;
    return name.left(MaxProcessNameLength);
}

ProcPidReader::ProcPidReader(QString procRoot, qint64 pageSize)
    : root_(std::move(procRoot)), nativeRoot_(QFile::encodeName(root_)),
      pageSize_(pageSize > 0 ? pageSize : qint64(sysconf(_SC_PAGESIZE)))
{
    if (pageSize_ <= 0)
        pageSize_ = 4096;
}

ProcPidReader::~ProcPidReader()
{
    if (rootFd_ >= 0)
        ::close(rootFd_);
}

QString ProcPidReader::pidPath(quint32 pid, const char* file) const
{
    return root_ + QLatin1Char('/') + QString::number(pid) + QLatin1Char('/') + QLatin1String(file);
}

bool ProcPidReader::scan(std::vector<ProcFolder>& folders)
{
    folders.clear();
    if (rootFd_ < 0)
        rootFd_ = ::open(nativeRoot_.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (rootFd_ < 0 || ::lseek(rootFd_, 0, SEEK_SET) != 0) {
        if (rootFd_ >= 0)
            ::close(rootFd_);
        rootFd_ = -1;  // tried again on the next listing
        return false;
    }
    if (listing_.empty())
        listing_.resize(32 * 1024);
    for (;;) {
        const ssize_t n = ::getdents64(rootFd_, listing_.data(), listing_.size());
        if (n < 0)
            return false;
        if (n == 0)
            break;
        for (ssize_t at = 0; at < n;) {
            const auto* entry = reinterpret_cast<const dirent64*>(listing_.data() + at);
            at += entry->d_reclen;
            quint64 pid = 0;
            const std::string_view name(entry->d_name);
            if (!kernel_text::toNumber(name, pid) || pid == 0 || pid > 0xFFFFFFFFu)
                continue;
            // Folders only ("self" is a link, and not a number either).
            struct stat st {};
            if (entry->d_type != DT_DIR &&
                !(entry->d_type == DT_UNKNOWN && ::fstatat(rootFd_, entry->d_name, &st, 0) == 0 && S_ISDIR(st.st_mode)))
                continue;
            folders.push_back({quint32(pid), quint64(entry->d_ino)});
        }
    }
    std::sort(folders.begin(), folders.end(), [](const ProcFolder& a, const ProcFolder& b) { return a.pid < b.pid; });
    return true;
}

std::optional<std::vector<quint32>> ProcPidReader::pids()
{
    std::vector<ProcFolder> folders;
    if (!scan(folders))
        return std::nullopt;
    std::vector<quint32> out;
    out.reserve(folders.size());
    for (const ProcFolder& f : folders)
        out.push_back(f.pid);
    return out;
}

std::optional<QString> ProcPidReader::name(quint32 pid) const
{
    bool readAny = false;
    QString fromExe;
    const QByteArray link = QFile::encodeName(pidPath(pid, "exe"));
    char target[PATH_MAX];
    const ssize_t n = ::readlink(link.constData(), target, sizeof target);
    if (n > 0) {
        readAny = true;
        fromExe = exeLinkName(QByteArray(target, int(n)));
    }
    QString fromCmdline;
    if (fromExe.isEmpty()) {
        if (const auto cmdline = readPlatformFile(pidPath(pid, "cmdline"))) {
            readAny = true;
            fromCmdline = cmdlineName(*cmdline);
        }
    }
    QString fromComm;
    if (fromExe.isEmpty() && fromCmdline.isEmpty()) {
        if (const auto comm = readPlatformFile(pidPath(pid, "comm"))) {
            readAny = true;
            fromComm = commName(*comm);
        }
    }
    if (!readAny)
        return std::nullopt;
    return processName(fromExe, fromCmdline, fromComm);
}

qint64 ProcPidReader::residentBytes(quint32 pid) const
{
    const auto statm = readPlatformFile(pidPath(pid, "statm"));
    return statm ? residentBytes(QByteArrayView(*statm)) : 0;
}

qint64 ProcPidReader::residentBytes(const std::optional<QByteArrayView>& statm) const
{
    if (!statm)
        return 0;
    const auto pages = parseStatmResidentPages(*statm);
    if (!pages || *pages > std::numeric_limits<qint64>::max() / pageSize_)
        return 0;
    return *pages * pageSize_;
}

}  // namespace orm
