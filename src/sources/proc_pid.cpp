#include "sources/proc_pid.h"
#include "sources/platform_file.h"

#include <QDir>
#include <QFile>
#include <algorithm>
#include <climits>
#include <limits>
#include <unistd.h>

namespace orm {

namespace {

QString baseName(const QString& path)
{
    const qsizetype slash = path.lastIndexOf(QLatin1Char('/'));
    return slash < 0 ? path : path.mid(slash + 1);
}

}  // namespace

std::optional<qint64> parseStatmResidentPages(const QByteArray& statm)
{
    const QList<QByteArray> fields = statm.simplified().split(' ');
    if (fields.size() < 2)
        return std::nullopt;
    bool ok = false;
    const qint64 pages = fields[1].toLongLong(&ok);
    if (!ok || pages < 0)
        return std::nullopt;
    return pages;
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
    : root_(std::move(procRoot)), pageSize_(pageSize > 0 ? pageSize : qint64(sysconf(_SC_PAGESIZE)))
{
    if (pageSize_ <= 0)
        pageSize_ = 4096;
}

QString ProcPidReader::pidPath(quint32 pid, const char* file) const
{
    return root_ + QLatin1Char('/') + QString::number(pid) + QLatin1Char('/') + QLatin1String(file);
}

std::optional<std::vector<quint32>> ProcPidReader::pids() const
{
    QDir dir(root_);
    if (!dir.exists() || !dir.isReadable())
        return std::nullopt;
    std::vector<quint32> out;
    const QStringList names = dir.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& n : names) {
        bool ok = false;
        const quint32 pid = n.toUInt(&ok, 10);
        if (ok && pid > 0)
            out.push_back(pid);
    }
    std::sort(out.begin(), out.end());
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
    if (!statm)
        return 0;
    const auto pages = parseStatmResidentPages(*statm);
    if (!pages || *pages > std::numeric_limits<qint64>::max() / pageSize_)
        return 0;
    return *pages * pageSize_;
}

}  // namespace orm
