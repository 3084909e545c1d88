// Where a network file name lands on this machine: GVfs shares, CIFS and NFS
// mounts from a mount table, and names that are on no mounted share.
#include "local_servers.h"
#include "sources/share_paths.h"

#include <QDir>
#include <QFile>
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

TEST(SharePaths, BothSpellingsSplitIntoHostShareAndPath)
{
    const std::optional<UncPath> a = parseUncPath(QStringLiteral("\\\\host\\share\\dir\\file.bin"));
    ASSERT_TRUE(a);
    EXPECT_EQ(a->host, QStringLiteral("host"));
    EXPECT_EQ(a->share, QStringLiteral("share"));
    EXPECT_EQ(a->rest, QStringLiteral("dir/file.bin"));
    const std::optional<UncPath> b = parseUncPath(QStringLiteral("//host/share/dir//file.bin"));
    ASSERT_TRUE(b);
    EXPECT_EQ(b->rest, QStringLiteral("dir/file.bin"));
    for (const char* bad : {"\\\\host", "\\\\", "C:\\file.bin", "/mnt/file", "\\\\host\\share\\..\\..\\etc\\passwd"})
        EXPECT_FALSE(parseUncPath(QString::fromLatin1(bad))) << bad;
}

TEST(SharePaths, MountTableSourcesLeadToTheirMountPoints)
{
    EXPECT_EQ(resolved(QStringLiteral("\\\\fileserver\\public\\a\\b.iso")), QStringLiteral("/mnt/public/a/b.iso"));
    EXPECT_EQ(resolved(QStringLiteral("\\\\FILESERVER\\Public\\b.iso")), QStringLiteral("/mnt/public/b.iso"))
        << "SMB names ignore letter case";
    EXPECT_EQ(resolved(QStringLiteral("\\\\fileserver\\home\\alice\\x")), QStringLiteral("/mnt/alice/x"))
        << "a mount of a folder inside the share";
    EXPECT_EQ(resolved(QStringLiteral("\\\\fileserver\\home\\bob\\x")), QString());
    EXPECT_EQ(resolved(QStringLiteral("\\\\nas\\media files\\clip.mp4")), QStringLiteral("/mnt/media files/clip.mp4"));
    EXPECT_EQ(resolved(QStringLiteral("\\\\nas\\export\\a.bin")), QStringLiteral("/mnt/export/a.bin"));
    EXPECT_EQ(resolved(QStringLiteral("\\\\nas\\export\\deep\\a.bin")), QStringLiteral("/mnt/deep/a.bin"))
        << "the mount that takes the longest part of the path wins";
    EXPECT_EQ(resolved(QStringLiteral("\\\\nas\\Export\\a.bin")), QString()) << "NFS paths keep their case";
    EXPECT_EQ(resolved(QStringLiteral("\\\\fd00::5\\data\\f")), QStringLiteral("/mnt/v6/f"));
    EXPECT_EQ(resolved(QStringLiteral("\\\\otherhost\\public\\b.iso")), QString());
}

TEST(SharePaths, AGvfsShareComesBeforeTheMountTable)
{
    const QStringList gvfs{QStringLiteral("sftp:host=nas"),
                           QStringLiteral("smb-share:domain=HOME,server=fileserver,share=public,user=alice")};
    EXPECT_EQ(resolved(QStringLiteral("\\\\FileServer\\PUBLIC\\b.iso"), gvfs),
              QStringLiteral("/run/user/1000/gvfs/smb-share:domain=HOME,server=fileserver,share=public,user=alice/b.iso"));
    EXPECT_EQ(resolved(QStringLiteral("\\\\nas\\export\\a.bin"), gvfs), QStringLiteral("/mnt/export/a.bin"));
}

TEST(SharePaths, TheReaderReadsItsTableAndFolderAtEachCall)
{
    QTemporaryDir root;
    const QString table = root.filePath(QStringLiteral("mounts"));
    const QString gvfs = root.filePath(QStringLiteral("gvfs"));
    ShareResolver shares(table, gvfs);
    EXPECT_EQ(shares.resolve(QStringLiteral("\\\\testhost\\share\\f")), QString()) << "no table, no gvfs folder";

    QFile f(table);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("//testhost/share /srv/t cifs rw 0 0\n");
    f.close();
    EXPECT_EQ(shares.resolve(QStringLiteral("\\\\testhost\\share\\f")), QStringLiteral("/srv/t/f"));

    ASSERT_TRUE(QDir().mkpath(gvfs + QStringLiteral("/smb-share:server=testhost,share=share")));
    EXPECT_EQ(shares.resolve(QStringLiteral("//testhost/share/f")),
              gvfs + QStringLiteral("/smb-share:server=testhost,share=share/f"));
    EXPECT_EQ(shares.resolve(QStringLiteral("http://testhost/share/f")), QString());
}

}  // namespace
