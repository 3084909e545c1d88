// What /proc tells about one process: its name and its resident size.
// The parsers take the file texts and give values; ProcPidReader reads the
// files under a root folder (/proc, or a fixture tree in tests).
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QtGlobal>
#include <optional>
#include <vector>

namespace orm {

// The name field of a process record holds 260 characters with its NUL.
inline constexpr int MaxProcessNameLength = 259;

// Resident pages, the second number of /proc/[pid]/statm; nothing when the
// text is not a statm line.
std::optional<qint64> parseStatmResidentPages(QByteArrayView statm);

// The base name of the target of /proc/[pid]/exe, without the " (deleted)"
// mark the kernel adds once the file is gone; empty for an empty target.
QString exeLinkName(const QByteArray& linkTarget);

// The base name of the first word of /proc/[pid]/cmdline (arguments end in
// NUL); empty when the command line is empty, as for kernel threads.
QString cmdlineName(const QByteArray& cmdline);

// /proc/[pid]/comm without its line end.
QString commName(const QByteArray& comm);

// The process's name: the executable's base name, else the first word of the
// command line, else comm; cut to MaxProcessNameLength.
QString processName(const QString& fromExe, const QString& fromCmdline, const QString& fromComm);

// One process folder of the root: its number, and the inode of its entry,
// which a process that later gets the same number does not have.
struct ProcFolder {
    quint32 pid = 0;
    quint64 inode = 0;
};

// Reads /proc/[pid] files under `procRoot`.
class ProcPidReader {
public:
    // A pageSize of 0 takes the machine's.
    explicit ProcPidReader(QString procRoot = QStringLiteral("/proc"), qint64 pageSize = 0);
    ~ProcPidReader();
    ProcPidReader(const ProcPidReader&) = delete;
    ProcPidReader& operator=(const ProcPidReader&) = delete;

    const QString& root() const { return root_; }
    qint64 pageSize() const { return pageSize_; }

    // The numeric folders of the root in ascending order, from one listing of
    // a folder kept open; false when the root can't be listed.
    bool scan(std::vector<ProcFolder>& folders);
    // The same, as process numbers alone; nothing when the root can't be listed.
    std::optional<std::vector<quint32>> pids();

    // The name as processName gives it; nothing when no file of the process
    // could be read (it has ended).
    std::optional<QString> name(quint32 pid) const;

    // Resident pages x page size; 0 when statm can't be read or parsed.
    qint64 residentBytes(quint32 pid) const;
    // The same from a statm text; 0 when there is none or it can't be parsed.
    qint64 residentBytes(const std::optional<QByteArrayView>& statm) const;

    // <root>/<pid>/<file>.
    QString pidPath(quint32 pid, const char* file) const;

private:
    QString root_;
    QByteArray nativeRoot_;
    qint64 pageSize_;
    int rootFd_ = -1;  // kept open: a listing starts again from its beginning
    std::vector<char> listing_;
};

}  // namespace orm
