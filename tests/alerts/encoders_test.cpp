// Base64 for AUTH LOGIN and uuencoding for attachments; the uuencoded files
// are also read back by Python's own decoder.
#include "alerts/base64.h"
#include "alerts/uucode.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orm;

namespace {

QByteArray readAll(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

void writeFile(const QString& path, const QByteArray& data)
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(data);
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

TEST(Base64, PaddingAndTheCharactersOfAPassword)
{
    EXPECT_EQ(Base64Encode(QString(), 0), "");
    EXPECT_EQ(Base64Encode(QStringLiteral("a"), 0), "YQ==");
    EXPECT_EQ(Base64Encode(QStringLiteral("ab"), 0), "YWI=");
    EXPECT_EQ(Base64Encode(QStringLiteral("abc"), 0), "YWJj");
    EXPECT_EQ(Base64Encode(QStringLiteral("user@example.org"), 0), "dXNlckBleGFtcGxlLm9yZw==");
    // Bytes above 127 use the whole alphabet, "+" and "/" included.
    EXPECT_EQ(Base64Encode(QByteArray("\xfb\xff\xbf", 3), 0), "+/+/");
    EXPECT_EQ(Base64Encode(QStringLiteral("\u00e4"), 0), "w6Q=");  // UTF-8
}

TEST(Base64, LineLengthBreaksInsideTheTextButNeverAtItsEnd)
{
    const QString hundred(100, QLatin1Char('x'));
    const QString wrapped = Base64Encode(hundred, 76);
    const QString plain = Base64Encode(hundred, 0);
    ASSERT_EQ(plain.size(), 136);
    EXPECT_EQ(wrapped, plain.left(76) + "\r\n" + plain.mid(76));

    // 57 bytes encode to exactly 76 characters: nothing follows, no line end.
    EXPECT_FALSE(Base64Encode(QString(57, QLatin1Char('y')), 76).contains("\r\n"));
    // Several lines: each break after lineLength characters of text.
    const QString many = Base64Encode(QString(30, QLatin1Char('z')), 10);
    EXPECT_EQ(many.split("\r\n"), QStringList({"enp6enp6en", "p6enp6enp6", "enp6enp6en", "p6enp6enp6"}));
}

TEST(UUEncode, GroupsOfThreeWithNulPaddingAndBackquoteForZero)
{
    QByteArray cat("Cat");
    EXPECT_EQ(UUEncode(cat), "0V%T");
    QByteArray one("A");
    EXPECT_EQ(UUEncode(one), "00``");
    EXPECT_EQ(one, QByteArray("A\0\0", 3));  // the caller's buffer is padded
    QByteArray zeros(3, '\0');
    EXPECT_EQ(UUEncode(zeros), "````");
    QByteArray empty;
    EXPECT_EQ(UUEncode(empty), "");
}

TEST(UUEncodeFile, BlockShapesForEmptyExactAndLongFiles)
{
    QTemporaryDir dir;
    const QString empty = dir.filePath(QStringLiteral("empty.dat"));
    writeFile(empty, QByteArray());
    const QString out = dir.filePath(QStringLiteral("out.txt"));
    EXPECT_EQ(UUEncodeFile(empty, out, false), 0);
    EXPECT_EQ(readAll(out), "begin 600 empty.dat\r\n \r\n`\r\nend\r\n");

    const QString exact = dir.filePath(QStringLiteral("exact.dat"));
    writeFile(exact, QByteArray(45, 'q'));
    EXPECT_EQ(UUEncodeFile(exact, out, false), 0);
    const QList<QByteArray> lines = readAll(out).split('\n');
    ASSERT_EQ(lines.size(), 6);
    EXPECT_TRUE(lines[1].startsWith('M'));
    EXPECT_EQ(lines[1].size(), 1 + 60 + 1);
    EXPECT_EQ(lines[2], " \r");
    EXPECT_EQ(lines[3], "`\r");
    EXPECT_EQ(lines[4], "end\r");

    // Appending puts one empty line first and keeps what was there.
    EXPECT_EQ(UUEncodeFile(empty, out, true), 0);
    EXPECT_TRUE(readAll(out).endsWith("end\r\n\r\nbegin 600 empty.dat\r\n \r\n`\r\nend\r\n"));
}

TEST(UUEncodeFile, PythonDecodesWhatWasWritten)
{
    QTemporaryDir dir;
    QByteArray data;
    for (int i = 0; i < 1000; ++i)
        data.append(char((i * 37 + 11) % 256));
    for (int size : {1, 44, 46, 90, 1000}) {
        const QString source = dir.filePath(QStringLiteral("data%1.bin").arg(size));
        writeFile(source, data.left(size));
        const QString out = dir.filePath(QStringLiteral("data%1.uu").arg(size));
        ASSERT_EQ(UUEncodeFile(source, out, true), 0);
        EXPECT_EQ(pythonUudecode(out), data.left(size)) << size;
    }
}

TEST(UUEncodeFile, NameComesFromBehindTheLastSlashAndErrorsAreNumbers)
{
    QTemporaryDir dir;
    const QString out = dir.filePath(QStringLiteral("out.txt"));
    const QString source = dir.filePath(QStringLiteral("notes.txt"));
    writeFile(source, "hi");
    ASSERT_EQ(UUEncodeFile(source, out, false), 0);
    EXPECT_TRUE(readAll(out).startsWith("begin 600 notes.txt\r\n"));

    // A path without a slash gives no name (the file is found in the working folder).
    const QString cwd = QDir::currentPath();
    QDir::setCurrent(dir.path());
    ASSERT_EQ(UUEncodeFile(QStringLiteral("notes.txt"), out, false), 0);
    QDir::setCurrent(cwd);
    EXPECT_TRUE(readAll(out).startsWith("begin 600 \r\n"));

    EXPECT_EQ(UUEncodeFile(dir.filePath(QStringLiteral("missing")), out, false), UUFileNotFound);
    EXPECT_EQ(UUEncodeFile(source, dir.filePath(QStringLiteral("no/such/folder/out.txt")), false), UUFileAccessError);
}
