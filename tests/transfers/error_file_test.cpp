// The error file beside the day's log, and the failure mapping that feeds it.
#include "local_servers.h"
#include "logging/error_file.h"
#include "sources/transfer_errors.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orm;

namespace {

TEST(ErrorFile, AFolderThatCannotBeWrittenIsReportedNotFatal)
{
    QTemporaryDir dir;
    QFile blocker(dir.filePath(QStringLiteral("Logs")));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));  // a file where the folder should be
    blocker.close();
    QString error;
    EXPECT_FALSE(appendErrorFileLine(dir.path(), QDateTime::currentDateTime(), {}, &error));
    EXPECT_TRUE(error.contains(QStringLiteral(".err")));
}

TEST(FailureMapping, TheTablesOrderDecidesAndTheEventNumberIsTheLow16Bits)
{
    EXPECT_EQ(mapTransferFailure(QStringLiteral("-2147024888 then -2147024890")).status, 500)
        << "the order of the table decides, not the order in the text";
    EXPECT_EQ(mapTransferFailure(QStringLiteral("-2147024890 -2147012867")).status, 404);
    const MappedFailure other = mapTransferFailure(QStringLiteral("something else"));
    EXPECT_EQ(other.status, 0);
    EXPECT_EQ(other.description, QStringLiteral("something else"));

    const TransferFailure f = transferFailure(TransferError::CannotConnect, QStringLiteral("Cannot connect"));
    EXPECT_EQ(f.number, 12029);
    EXPECT_EQ(f.description, QStringLiteral("System Error &H80072EFD (-2147012867).  Cannot connect"));
    EXPECT_EQ(replyFailure(QNetworkReply::ContentAccessDenied, 403, QStringLiteral("Forbidden"), false).description,
              QStringLiteral("System Error &H80190193 (-2145844845).  HTTP 403 Forbidden"));
    EXPECT_EQ(replyFailure(QNetworkReply::HostNotFoundError, 0, QString(), false).number,
              qint16(TransferError::NameNotResolved & 0xFFFF));
}

}  // namespace
