// Where a network file named as \\host\share\path (or //host/share/path) is
// found on this machine: in a share that GVfs has mounted for the user, else
// in a CIFS/SMB or NFS mount whose source is that host and share.
#pragma once

#include "sources/mounts.h"

#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

namespace orm {

struct UncPath {
    QString host;
    QString share;
    QString rest;  // the path inside the share, "/"-separated, without a leading "/"
};

// The parts of "\\host\share\rest" or "//host/share/rest"; nothing when the
// text has no host and share.
std::optional<UncPath> parseUncPath(const QString& text);

// The local path of `unc`, given the mount table and the names in the GVfs
// folder; empty when no mount holds that share. GVfs wins over the mount table,
// and among mounts the one that takes the longest part of the path.
QString resolveShare(const UncPath& unc, const std::vector<MountEntry>& mounts, const QString& gvfsFolder,
                     const QStringList& gvfsEntries);

// The reader: the mount table and the GVfs folder are read at each call, so a
// share mounted while the program runs is found.
class ShareResolver {
public:
    // The machine's own places: /proc/self/mounts and /run/user/<uid>/gvfs.
    ShareResolver();
    ShareResolver(QString mountTable, QString gvfsFolder);

    // The local path of a network file name, or empty when its share is not mounted.
    QString resolve(const QString& text) const;

private:
    QString mountTable_;
    QString gvfsFolder_;
};

}  // namespace orm
