// The LAN copy: a real file of known size, copied from a folder that an
// injected mount table presents as //testhost/share.
#include "local_servers.h"
#include "sources/file_copy.h"
#include "sources/share_paths.h"
#include "sources/transfer_errors.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>
#include <gtest/gtest.h>

using namespace orm;
using namespace orm::test;

namespace {

class RecordingHandlers final : public CopyHandlers {
public:
    bool copyClosing() const override { return closing; }
    void FileDownloadStart(const QString& name, qint64 total) override
    {
        calls << QStringLiteral("start %1 %2").arg(QDir(name).dirName()).arg(total);
    }
    void FileDownloadComplete(double size, const QString& name) override
    {
        calls << QStringLiteral("complete %1 %2").arg(QDir(name).dirName()).arg(qint64(size));
    }
    void FileDownloadError(const QString& name, const QString&, qint16 number, const QString&) override
    {
        calls << QStringLiteral("error %1 %2").arg(QDir(name).dirName()).arg(number);
    }
    void TestDownloadComplete(double size, const QString& name) override
    {
        calls << QStringLiteral("test complete %1 %2").arg(QDir(name).dirName()).arg(qint64(size));
    }
    void TestDownloadError(const QString& name, const QString&, qint16 number, const QString&) override
    {
        calls << QStringLiteral("test error %1 %2").arg(QDir(name).dirName()).arg(number);
    }
    QStringList calls;
    bool closing = false;
};

class FileCopyTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(QDir().mkpath(shareDir()));
        ASSERT_TRUE(QDir().mkpath(tempDir()));
        QFile table(root.filePath(QStringLiteral("mounts")));
        ASSERT_TRUE(table.open(QIODevice::WriteOnly));
        table.write("/dev/sda1 / ext4 rw 0 0\n//testhost/share " + shareDir().toUtf8() + " cifs rw 0 0\n");
    }
    QString shareDir() const { return root.filePath(QStringLiteral("mnt/share")); }
    QString tempDir() const { return root.filePath(QStringLiteral("data/Temp")); }
    void makeFile(const QString& name, qint64 size)
    {
        QFile f(shareDir() + QLatin1Char('/') + name);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        QByteArray block(1 << 16, Qt::Uninitialized);
        for (int k = 0; k < block.size(); ++k)
            block[k] = char(k * 7);
        for (qint64 left = size; left > 0; left -= block.size())
            f.write(block.constData(), std::min<qint64>(left, block.size()));
    }
    bool copy(const QString& source, const QString& dest)
    {
        return copier.StartAsyncCopy(source, tempDir() + QLatin1Char('/') + dest) &&
               waitUntil([&] { return !copier.running(); });
    }

    QTemporaryDir root;
    ShareResolver shares{root.filePath(QStringLiteral("mounts")), root.filePath(QStringLiteral("gvfs"))};
    RecordingHandlers handlers;
    AsyncFileCopy copier{shares, handlers};
};

TEST_F(FileCopyTest, AMeasuredCopyStartsThenCompletesWithTheSizeAndLeavesItsCopy)
{
    const qint64 size = 24 * 1024 * 1024 + 123;
    makeFile(QStringLiteral("big.bin"), size);
    int turns = 0;
    QTimer other;
    QObject::connect(&other, &QTimer::timeout, [&] { ++turns; });
    other.start(0);
    ASSERT_TRUE(copy(QStringLiteral("\\\\testhost\\share\\big.bin"), QStringLiteral("0-0")));
    other.stop();
    EXPECT_EQ(handlers.calls, QStringList({QStringLiteral("start 0-0 %1").arg(size),
                                           QStringLiteral("complete 0-0 %1").arg(size)}));
    EXPECT_EQ(QFileInfo(tempDir() + QStringLiteral("/0-0")).size(), size) << "the copy stays in Temp";
    EXPECT_GT(turns, 0) << "the event loop ran while the file was copied";

    // The next copy overwrites it, and the other spelling of the name works too.
    makeFile(QStringLiteral("small.bin"), 1000);
    handlers.calls.clear();
    ASSERT_TRUE(copy(QStringLiteral("//testhost/share/small.bin"), QStringLiteral("0-0")));
    EXPECT_EQ(handlers.calls.last(), QStringLiteral("complete 0-0 1000"));
    EXPECT_EQ(QFileInfo(tempDir() + QStringLiteral("/0-0")).size(), 1000);
}

TEST_F(FileCopyTest, ATestCopyReportsToTheTestHandlersOnly)
{
    makeFile(QStringLiteral("empty.bin"), 0);
    copier.AsyncCopyIsTest = true;
    ASSERT_TRUE(copy(QStringLiteral("\\\\TESTHOST\\Share\\empty.bin"), QStringLiteral("s0n0")));
    EXPECT_EQ(handlers.calls, QStringList({QStringLiteral("test complete s0n0 0")}));

    handlers.calls.clear();
    ASSERT_TRUE(copy(QStringLiteral("\\\\testhost\\share\\missing.bin"), QStringLiteral("s0n0")));
    EXPECT_EQ(handlers.calls, QStringList({QStringLiteral("test error s0n0 2")}));
}

TEST_F(FileCopyTest, MissingFilesUnmountedSharesAndUnwritableFoldersEndInTheErrorHandler)
{
    makeFile(QStringLiteral("a.bin"), 5000);
    ASSERT_TRUE(copy(QStringLiteral("\\\\testhost\\share\\nothere.bin"), QStringLiteral("0-0")));
    EXPECT_EQ(handlers.calls, QStringList({QStringLiteral("start 0-0 0"), QStringLiteral("error 0-0 2")}));

    handlers.calls.clear();
    ASSERT_TRUE(copy(QStringLiteral("\\\\otherhost\\share\\a.bin"), QStringLiteral("0-0")));
    EXPECT_EQ(handlers.calls.last(), QStringLiteral("error 0-0 %1").arg(TransferError::NetworkPathNotFound & 0xFFFF));

    handlers.calls.clear();
    ASSERT_TRUE(copy(QStringLiteral("\\\\testhost\\share\\a.bin"), QStringLiteral("nofolder/0-0")));
    EXPECT_EQ(handlers.calls.last(), QStringLiteral("error 0-0 5"));
    EXPECT_FALSE(handlers.calls.join(QLatin1Char(' ')).contains(QStringLiteral("complete")));
}

TEST_F(FileCopyTest, ClosingCancelsACopyAndOnlyOneCopyRunsAtATime)
{
    makeFile(QStringLiteral("big.bin"), 64 * 1024 * 1024);
    ASSERT_TRUE(copier.StartAsyncCopy(QStringLiteral("\\\\testhost\\share\\big.bin"), tempDir() + QStringLiteral("/0-0")));
    EXPECT_FALSE(copier.StartAsyncCopy(QStringLiteral("\\\\testhost\\share\\big.bin"), tempDir() + QStringLiteral("/s0n0")));
    handlers.closing = true;
    ASSERT_TRUE(waitUntil([&] { return !copier.running(); }));
    EXPECT_EQ(handlers.calls.size(), 2);
    EXPECT_EQ(handlers.calls.last(), QStringLiteral("error 0-0 %1").arg(TransferError::Cancelled & 0xFFFF));
    EXPECT_EQ(copier.AsyncCopyCancel, 1);
}

}  // namespace
