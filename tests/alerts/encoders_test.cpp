// Base64 for AUTH LOGIN and uuencoding for attachments; the uuencoded files
// are also read back by Python's own decoder.
#include "alerts/base64.h"
#include "alerts/uucode.h"
#include "../store/store_files.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orm;
using orm::test::readAll;

namespace {

QString writeFile(const QTemporaryDir& dir, const QString& name, const QByteArray& data)
{
    QFile f(dir.filePath(name));
    EXPECT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(data);
    return f.fileName();
}

// Python's binascii decodes the lines between "begin" and "end".
QByteArray pythonUudecode(const QString& path)
{
    QProcess p;
    p.start(QStringLiteral("/usr/bin/python3"),
            {QStringLiteral("-c"),
             QStringLiteral("import binascii,sys\n"
                            "lines=open(sys.argv[1],'rb').read().split(b'\\r\\n')\n"
                            "i=next(k for k,l in enumerate(lines) if l.startswith(b'begin 600 '))\n"
                            "out=b''\n"
                            "for l in lines[i+1:]:\n"
                            "    if l in (b'`', b'end'): break\n"
                            "    out+=binascii.a2b_uu(l)\n"
                            "sys.stdout.buffer.write(out)\n"),
             path});
    p.waitForFinished(10000);
    return p.readAllStandardOutput();
}

}  // namespace

TEST(Base64, PaddingTheWholeAlphabetAndLineBreaksInsideTheText)
{
    EXPECT_EQ(Base64Encode(QString(), 0), "");
    EXPECT_EQ(Base64Encode(QStringLiteral("a"), 0), "YQ==");
    EXPECT_EQ(Base64Encode(QStringLiteral("ab"), 0), "YWI=");
    EXPECT_EQ(Base64Encode(QByteArray("\xfb\xff\xbf", 3), 0), "+/+/");
    EXPECT_EQ(Base64Encode(QStringLiteral("\u00e4"), 0), "w6Q=");  // UTF-8

    const QString plain = Base64Encode(QString(100, QLatin1Char('x')), 0);
    ASSERT_EQ(plain.size(), 136);
    EXPECT_EQ(Base64Encode(QString(100, QLatin1Char('x')), 76), plain.left(76) + "\r\n" + plain.mid(76));
    // 57 bytes encode to exactly 76 characters: nothing follows, no line end.
    EXPECT_FALSE(Base64Encode(QString(57, QLatin1Char('y')), 76).contains("\r\n"));
}

TEST(UUEncode, GroupsOfThreeWithNulPaddingAndBackquoteForZero)
{
    QByteArray cat("Cat");
    EXPECT_EQ(UUEncode(cat), "0V%T");
    QByteArray one("A");
    EXPECT_EQ(UUEncode(one), "00``");
    EXPECT_EQ(one, QByteArray("A\0\0", 3));  // the caller's buffer is padded
    QByteArray empty;
    EXPECT_EQ(UUEncode(empty), "");
}

TEST(UUEncodeFile, EmptyFilesAppendingAndWhatPythonDecodes)
{
    QTemporaryDir dir;
    const QString empty = writeFile(dir, QStringLiteral("empty.dat"), {});
    const QString out = dir.filePath(QStringLiteral("out.txt"));
    EXPECT_EQ(UUEncodeFile(empty, out, false), 0);
    EXPECT_EQ(readAll(out), "begin 600 empty.dat\r\n \r\n`\r\nend\r\n");
    // Appending puts one empty line first and keeps what was there.
    EXPECT_EQ(UUEncodeFile(empty, out, true), 0);
    EXPECT_EQ(readAll(out), "begin 600 empty.dat\r\n \r\n`\r\nend\r\n\r\nbegin 600 empty.dat\r\n \r\n`\r\nend\r\n");

    QByteArray data;
    for (int i = 0; i < 1000; ++i)
        data.append(char((i * 37 + 11) % 256));
    for (int size : {1, 44, 45, 46, 1000}) {
        const QString source = writeFile(dir, QStringLiteral("data%1.bin").arg(size), data.left(size));
        const QString uu = dir.filePath(QStringLiteral("data%1.uu").arg(size));
        ASSERT_EQ(UUEncodeFile(source, uu, true), 0);
        EXPECT_EQ(pythonUudecode(uu), data.left(size)) << size;
    }
}

TEST(UUEncodeFile, NameComesFromBehindTheLastSlashAndErrorsAreNumbers)
{
    QTemporaryDir dir;
    const QString out = dir.filePath(QStringLiteral("out.txt"));
    const QString source = writeFile(dir, QStringLiteral("notes.txt"), "hi");
    // A path without a slash gives no name (the file is found in the working folder).
    const QString cwd = QDir::currentPath();
    QDir::setCurrent(dir.path());
    ASSERT_EQ(UUEncodeFile(QStringLiteral("notes.txt"), out, false), 0);
    QDir::setCurrent(cwd);
    EXPECT_TRUE(readAll(out).startsWith("begin 600 \r\n"));

    EXPECT_EQ(UUEncodeFile(dir.filePath(QStringLiteral("missing")), out, false), UUFileNotFound);
    EXPECT_EQ(UUEncodeFile(source, dir.filePath(QStringLiteral("no/such/folder/out.txt")), false), UUFileAccessError);
}
