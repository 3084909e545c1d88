// Where a network file name lands on this machine: GVfs shares, CIFS and NFS
// mounts from a mount table, and names that are on no mounted share.
#include "local_servers.h"
#include "sources/share_paths.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orm;

namespace {

const QByteArray Table = "/dev/nvme0n1p2 / ext4 rw,relatime 0 0\n"
                         "proc /proc proc rw 0 0\n"
                         "//fileserver/public /mnt/public cifs rw,vers=3.0 0 0\n"
                         "//fileserver/home/alice /mnt/alice cifs rw 0 0\n"
                         "//nas/media\\040files /mnt/media\\040files smb3 rw 0 0\n"
                         "nas:/export /mnt/export nfs4 rw 0 0\n"
                         "nas:/export/deep /mnt/deep nfs rw 0 0\n"
                         "[fd00::5]:/data /mnt/v6 nfs4 rw 0 0\n";

QString resolved(const QString& name, const QStringList& gvfs = {})
{
    const std::optional<UncPath> unc = parseUncPath(name);
    return unc ? resolveShare(*unc, parseMounts(Table), QStringLiteral("/run/user/1000/gvfs"), gvfs) : QString();
}

TEST(SharePaths, NamesLeadToTheMountOfTheirHostAndShare)
{
    const QStringList gvfs{QStringLiteral("sftp:host=nas"),
                           QStringLiteral("smb-share:domain=HOME,server=fileserver,share=public,user=alice")};
    const struct {
        const char* name;
        const char* path;
        const char* why;
    } cases[] = {
        {"//FILESERVER/Public/dir//b.iso", "/mnt/public/dir/b.iso", "SMB names ignore letter case"},
        {"\\\\fileserver\\home\\alice\\x", "/mnt/alice/x", "a mount of a folder inside the share"},
        {"\\\\fileserver\\home\\bob\\x", "", ""},
        {"\\\\nas\\media files\\clip.mp4", "/mnt/media files/clip.mp4", "an escaped space in the table"},
        {"\\\\nas\\export\\deep\\a.bin", "/mnt/deep/a.bin", "the mount that takes the longest part of the path wins"},
        {"\\\\nas\\Export\\a.bin", "", "NFS paths keep their case"},
        {"\\\\fd00::5\\data\\f", "/mnt/v6/f", ""},
        {"\\\\host\\share\\..\\..\\etc\\passwd", "", "no way out of the share"},
        {"C:\\file.bin", "", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(resolved(QString::fromLatin1(c.name)), QString::fromLatin1(c.path)) << c.name << " " << c.why;
    EXPECT_EQ(resolved(QStringLiteral("\\\\FileServer\\PUBLIC\\b.iso"), gvfs),
              QStringLiteral("/run/user/1000/gvfs/smb-share:domain=HOME,server=fileserver,share=public,user=alice/b.iso"))
        << "a GVfs share comes before the mount table";
}

TEST(SharePaths, TheReaderFindsGvfsSharesInItsFolder)
{
    QTemporaryDir root;
    const QString gvfs = root.filePath(QStringLiteral("gvfs"));
    ShareResolver shares(root.filePath(QStringLiteral("mounts")), gvfs);
    EXPECT_EQ(shares.resolve(QStringLiteral("\\\\testhost\\share\\f")), QString()) << "no table, no gvfs folder";
    ASSERT_TRUE(QDir().mkpath(gvfs + QStringLiteral("/smb-share:server=testhost,share=share")));
    EXPECT_EQ(shares.resolve(QStringLiteral("//testhost/share/f")), gvfs + QStringLiteral("/smb-share:server=testhost,share=share/f"));
}

}  // namespace
