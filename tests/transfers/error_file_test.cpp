// The error file beside the day's log, and the failure mapping that feeds it.
#include "local_servers.h"
#include "logging/error_file.h"
#include "sources/transfer_errors.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orm;

namespace {

TEST(ErrorFile, OneLineAFailureInTheDaysFile)
{
    QTemporaryDir dir;
    const QDateTime at(QDate(2026, 3, 5), QTime(9, 7, 41));
    TransferErrorEntry e{2, 1, QStringLiteral("http://127.0.0.1:8080/nosuchfile"), 6, 404,
                         QStringLiteral("System Error &H80070006 (-2147024890).  HTTP 404 Not Found")};
    ASSERT_TRUE(appendErrorFileLine(dir.path(), at, e));
    e.node = 3;
    ASSERT_TRUE(appendErrorFileLine(dir.path(), at.addSecs(5), e));
    QFile f(dir.filePath(QStringLiteral("Logs/ex20260305.err")));
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(),
              "03-05-2026 09:07:41 Graph2 Node1 URL=http://127.0.0.1:8080/nosuchfile Error - 6(404) - System Error "
              "&H80070006 (-2147024890).  HTTP 404 Not Found\r\n"
              "03-05-2026 09:07:46 Graph2 Node3 URL=http://127.0.0.1:8080/nosuchfile Error - 6(404) - System Error "
              "&H80070006 (-2147024890).  HTTP 404 Not Found\r\n");
}

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

TEST(FailureMapping, TheLastNumberFoundWinsAndA500GetsItsOwnText)
{
    EXPECT_EQ(mapTransferFailure(transferFailure(TransferError::CannotConnect, QString()).description).status, 0);
    EXPECT_EQ(mapTransferFailure(transferFailure(TransferError::ServiceUnavailable, QString()).description).status, 503);
    EXPECT_EQ(mapTransferFailure(transferFailure(TransferError::NotFound, QString()).description).status, 404);
    const MappedFailure internal = mapTransferFailure(transferFailure(TransferError::InternalError, QString()).description);
    EXPECT_EQ(internal.status, 500);
    EXPECT_EQ(internal.description, QStringLiteral("System Error &H80070008 (-2147024888).   Internal server error"));
    EXPECT_EQ(mapTransferFailure(QStringLiteral("-2147024888 then -2147024890")).status, 500)
        << "the order of the table decides, not the order in the text";
    EXPECT_EQ(mapTransferFailure(QStringLiteral("-2147024890 -2147012867")).status, 404);
    const MappedFailure other = mapTransferFailure(QStringLiteral("something else"));
    EXPECT_EQ(other.status, 0);
    EXPECT_EQ(other.description, QStringLiteral("something else"));
}

TEST(FailureMapping, EventNumbersAreTheLow16BitsAndTheTextCarriesTheWholeNumber)
{
    const TransferFailure f = transferFailure(TransferError::CannotConnect, QStringLiteral("Cannot connect"));
    EXPECT_EQ(f.number, 12029);
    EXPECT_EQ(f.description, QStringLiteral("System Error &H80072EFD (-2147012867).  Cannot connect"));
    EXPECT_EQ(replyFailure(QNetworkReply::ContentNotFoundError, 404, QStringLiteral("Not Found"), false).number, 6);
    EXPECT_EQ(replyFailure(QNetworkReply::ServiceUnavailableError, 503, QString(), false).number, 12);
    EXPECT_EQ(replyFailure(QNetworkReply::ContentAccessDenied, 403, QStringLiteral("Forbidden"), false).description,
              QStringLiteral("System Error &H80190193 (-2145844845).  HTTP 403 Forbidden"));
    EXPECT_TRUE(replyFailure(QNetworkReply::OperationCanceledError, 0, QString(), true)
                    .description.contains(QStringLiteral("-2147012867")));
    EXPECT_EQ(replyFailure(QNetworkReply::HostNotFoundError, 0, QString(), false).number,
              qint16(TransferError::NameNotResolved & 0xFFFF));
}

}  // namespace
