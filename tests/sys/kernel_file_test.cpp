// A kernel file read again and again: the kernel's own files stay open and
// give fresh text each time; other files are opened anew, so that one replaced
// or removed meanwhile is seen as it is now.
#include "sources/kernel_file.h"
#include "temp_tree.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orm;
using namespace orm::test;

namespace {

// The "rchar" count of /proc/self/io: bytes this process has read so far.
quint64 readChars(QByteArrayView io)
{
    const QByteArray text = io.toByteArray();
    const qsizetype at = text.indexOf("rchar: ");
    return at < 0 ? 0 : text.mid(at + 7, text.indexOf('\n', at) - at - 7).toULongLong();
}

TEST(KernelFile, KeptOpenProcFileGivesFreshWholeTextEachRead)
{
    KernelFile io(QStringLiteral("/proc/self/io"));
    const quint64 before = readChars(io.read().value_or(QByteArray()));
    ASSERT_GT(before, 0u);
    // /proc/self/maps comes a page at a time; reading it moves rchar on.
    KernelFile maps(QStringLiteral("/proc/self/maps"));
    const auto text = maps.read();
    const QByteArray direct = readAll(QStringLiteral("/proc/self/maps"));
    ASSERT_TRUE(text.has_value() && direct.size() > 4096);
    EXPECT_NEAR(double(text->size()), double(direct.size()), direct.size() * 0.1);
    EXPECT_GT(readChars(io.read().value_or(QByteArray())), before);
}

TEST(KernelFile, OtherFilesAreSeenAsTheyAreNow)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("stat"));
    KernelFile file(path);
    EXPECT_FALSE(file.read().has_value());  // not there yet
    ASSERT_TRUE(writeFile(path, "one\n"));
    EXPECT_EQ(file.read().value(), "one\n");
    // Replaced by a new file under the same name, as an atomic writer does.
    ASSERT_TRUE(writeFile(path + QStringLiteral(".new"), "two, longer\n"));
    ASSERT_TRUE(QFile::remove(path));
    ASSERT_TRUE(QFile::rename(path + QStringLiteral(".new"), path));
    EXPECT_EQ(file.read().value(), "two, longer\n");
}

}  // namespace
