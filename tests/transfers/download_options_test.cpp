// The option list as the program reads it, and as the endpoint checks it.
#include "local_servers.h"
#include "sources/download_options.h"

#include <QStringList>
#include <gtest/gtest.h>

using namespace orm;

namespace {

TEST(DownloadOptions, ALineGivesItsTextAndBadFieldsReadZeroInTheirPlace)
{
    EXPECT_FALSE(parseDownloadOptions(QByteArray()));
    EXPECT_FALSE(parseDownloadOptions("500000 30\r\n")) << "no | anywhere: no list";
    // The size keeps what is left when the zeros come off ("1500K"), or nothing
    // under 1000; the period goes to minutes and hours with all their digits.
    const auto options = parseDownloadOptions("500000|30\r\n\r\n1500|10\n999|100\n2500000|90\n100000|3600\r\n");
    ASSERT_TRUE(options);
    QStringList texts;
    for (const DownloadOption& o : *options)
        texts << o.text;
    EXPECT_EQ(texts,
              QStringList({QStringLiteral("500K   every 30 seconds"), QStringLiteral("1500K  every 10 seconds"),
                           QStringLiteral("       every 1.66666666666667 minutes"),
                           QStringLiteral("2.5M   every 1.5 minutes"), QStringLiteral("100K   every 1 hours")}))
        << "empty lines are skipped, bare line feeds end lines too";

    const auto odd = parseDownloadOptions("abc|def\r\n-5|-7\r\n1000\r\n 2000 | 60 \r\n");
    ASSERT_TRUE(odd);
    ASSERT_EQ(odd->size(), 4u) << "every line keeps its place, so that the positions match the server's";
    std::vector<std::pair<qint64, qint64>> fields;
    for (const DownloadOption& o : *odd)
        fields.emplace_back(o.size, o.seconds);
    EXPECT_EQ(fields, (std::vector<std::pair<qint64, qint64>>{{0, 0}, {0, 0}, {1000, 0}, {2000, 60}}));
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
    for (const char* bad : {"500000", "500000|30|1", "abc|30", "-5|30", "0|30", "500000|-1", "99999999999|30"}) {
        const DownloadOptionsCheck c = checkDownloadOptions(QByteArray("1000|1\r\n") + bad);
        EXPECT_FALSE(c.error.isEmpty()) << bad;
        EXPECT_TRUE(c.error.contains(QStringLiteral("line 2"))) << c.error.toStdString();
        EXPECT_TRUE(c.options.empty());
    }
    EXPECT_FALSE(checkDownloadOptions("").error.isEmpty());
    EXPECT_FALSE(checkDownloadOptions(QByteArray(70 * 1024, '1')).error.isEmpty());
}

}  // namespace
