// What /proc tells about one process: its name and its resident size.
// The parsers take the file texts and give values; ProcPidReader reads the
// files under a root folder (/proc, or a fixture tree in tests).
#pragma once

#include <QByteArray>
#include <QString>
#include <QtGlobal>
#include <optional>
#include <vector>

namespace orm {

// The name field of a process record holds 260 characters with its NUL.
inline constexpr int MaxProcessNameLength = 259;

// Resident pages, the second number of /proc/[pid]/statm; nothing when the
// text is not a statm line.
std::optional<qint64> parseStatmResidentPages(const QByteArray& statm);

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

// Reads /proc/[pid] files under `procRoot`.
class ProcPidReader {
public:
    // A pageSize of 0 takes the machine's.
    explicit ProcPidReader(QString procRoot = QStringLiteral("/proc"), qint64 pageSize = 0);

    const QString& root() const { return root_; }
    qint64 pageSize() const { return pageSize_; }

    // The numeric folders of the root in ascending order; nothing when the
    // root can't be listed.
    std::optional<std::vector<quint32>> pids() const;

    // The name as processName gives it; nothing when no file of the process
    // could be read (it has ended).
    std::optional<QString> name(quint32 pid) const;

    // Resident pages x page size; 0 when statm can't be read or parsed.
    qint64 residentBytes(quint32 pid) const;

private:
    QString pidPath(quint32 pid, const char* file) const;
    QString root_;
    qint64 pageSize_;
};

}  // namespace orm
