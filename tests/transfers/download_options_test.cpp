// The option list as the program reads it, and as the endpoint checks it.
#include "local_servers.h"
#include "sources/download_options.h"

#include <QStringList>
#include <gtest/gtest.h>

using namespace orm;

namespace {

QStringList texts(const QByteArray& list)
{
    QStringList out;
    const auto options = parseDownloadOptions(list);
    if (options)
        for (const DownloadOption& o : *options)
            out << o.text;
    return out;
}

TEST(DownloadOptions, TextsFollowTheSizeAndPeriodRules)
{
    EXPECT_EQ(downloadOptionText(500000, 30), QStringLiteral("500K   every 30 seconds"));
    EXPECT_EQ(downloadOptionText(1500, 10), QStringLiteral("1500K  every 10 seconds"))
        << "nothing to remove from 1500: kept so";
    EXPECT_EQ(downloadOptionText(999, 10), QStringLiteral("       every 10 seconds"));
    EXPECT_EQ(downloadOptionText(2000000, 120), QStringLiteral("2M     every 2 minutes"));
    EXPECT_EQ(downloadOptionText(2500000, 90), QStringLiteral("2.5M   every 1.5 minutes"));
    EXPECT_EQ(downloadOptionText(100000000, 5400), QStringLiteral("100M   every 1.5 hours"));
    EXPECT_EQ(downloadOptionText(10000, 59), QStringLiteral("10K    every 59 seconds"));
    EXPECT_EQ(downloadOptionText(100000, 3600), QStringLiteral("100K   every 1 hours"));
    EXPECT_EQ(downloadPeriodText(100), QStringLiteral("1.66666666666667 minutes"));
    EXPECT_EQ(downloadSizeLabel(1000), QStringLiteral("1K"));
    EXPECT_EQ(downloadSizeLabel(123456789), QStringLiteral("123.456789M"));
}

TEST(DownloadOptions, AListIsReadLineByLineAndBadFieldsReadZero)
{
    EXPECT_FALSE(parseDownloadOptions(QByteArray()));
    EXPECT_FALSE(parseDownloadOptions("500000 30\r\n")) << "no | anywhere: no list";
    EXPECT_EQ(texts("500000|30"), QStringList{QStringLiteral("500K   every 30 seconds")});
    EXPECT_EQ(texts("500000|30\r\n\r\n2000000|120\r\n"),
              QStringList({QStringLiteral("500K   every 30 seconds"), QStringLiteral("2M     every 2 minutes")}))
        << "an empty line is skipped";
    EXPECT_EQ(texts("500000|30\n1000|5\n").size(), 2) << "bare line feeds too";

    const auto odd = parseDownloadOptions("abc|def\r\n-5|-7\r\n1000\r\n 2000 | 60 \r\n");
    ASSERT_TRUE(odd);
    ASSERT_EQ(odd->size(), 4u) << "every line keeps its place, so that the positions match the server's";
    EXPECT_EQ((*odd)[0].size, 0);
    EXPECT_EQ((*odd)[0].seconds, 0);
    EXPECT_EQ((*odd)[1].size, 0);
    EXPECT_EQ((*odd)[1].seconds, 0);
    EXPECT_EQ((*odd)[2].size, 1000);
    EXPECT_EQ((*odd)[2].seconds, 0);
    EXPECT_EQ((*odd)[3].size, 2000);
    EXPECT_EQ((*odd)[3].seconds, 60);
}

TEST(DownloadOptions, OnlyTheFirst64KBOfAHugeListCount)
{
    QByteArray huge;
    while (huge.size() <= 200 * 1024)
        huge += "500000|30\r\n";
    const auto options = parseDownloadOptions(huge);
    ASSERT_TRUE(options);
    EXPECT_EQ(qint64(options->size()), DownloadOptionsCap / 11);
    for (const DownloadOption& o : *options)
        ASSERT_EQ(o.size, 500000) << "no option is made of a line cut by the cap";

    QByteArray noLineEnd(100 * 1024, '7');
    noLineEnd.prepend("1|1");
    EXPECT_FALSE(parseDownloadOptions(noLineEnd)) << "one endless line is no list";
}

TEST(DownloadOptions, TheEndpointRefusesAListWithAnyBadLine)
{
    const DownloadOptionsCheck good = checkDownloadOptions("500000|30\r\n\r\n100000000|600\r\n");
    EXPECT_TRUE(good.error.isEmpty());
    EXPECT_EQ(good.options.size(), 2u);
    for (const char* bad : {"", "\r\n", "500000", "500000|30|1", "abc|30", "500000|x", "-5|30", "0|30",
                            "500000|-1", "99999999999|30"}) {
        const DownloadOptionsCheck c = checkDownloadOptions(QByteArray("1000|1\r\n") + bad);
        if (QByteArray(bad).trimmed().isEmpty())
            continue;
        EXPECT_FALSE(c.error.isEmpty()) << bad;
        EXPECT_TRUE(c.error.contains(QStringLiteral("line 2"))) << c.error.toStdString();
        EXPECT_TRUE(c.options.empty());
    }
    EXPECT_FALSE(checkDownloadOptions("").error.isEmpty());
    EXPECT_FALSE(checkDownloadOptions(QByteArray(70 * 1024, '1')).error.isEmpty());
}

}  // namespace
