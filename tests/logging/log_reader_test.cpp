// The log reader on real files: the order and range of the files, the record
// moments, the three passes over a crafted corpus, and what they skip.
#include "../store/print_qstring.h"
#include "log_corpus.h"
#include "logging/log_files.h"
#include "logging/log_passes.h"
#include "logging/nitro_sort.h"

#include <QTemporaryDir>
#include <algorithm>
#include <gtest/gtest.h>
#include <random>

using namespace orm;
using namespace orm::test;

namespace {

TEST(NitroSort, SortsLikeAnyOtherSortAndPumpsOnLongLists)
{
    std::mt19937 random(7);
    for (int size : {0, 1, 2, 3, 10, 257, 5000}) {
        std::vector<QString> items;
        for (int i = 0; i < size; ++i)  // many duplicates
            items.push_back(QStringLiteral("ex%1.log").arg(20260300 + int(random() % 40)));
        std::vector<QString> expected = items;
        std::sort(expected.begin(), expected.end());
        int pumps = 0;
        NitroSort(items, [&pumps] { ++pumps; });
        EXPECT_EQ(items, expected) << size;
        EXPECT_EQ(pumps > 0, size >= 1000) << size;
    }
    // A part of the list only, by its bounds; -1 stands for either end.
    std::vector<QString> items = {"d", "c", "b", "a"};
    int low = 1, high = -1;
    NitroSort(items, low, high);
    EXPECT_EQ(items, (std::vector<QString>{"d", "a", "b", "c"}));
    EXPECT_EQ(high, 3);
}

TEST(LogRecords, FieldsPickedOutOfLongAndShortRecords)
{
    // Fields past 64 and 128 bytes, a record exactly one field short, the walk behind date and time.
    std::string record = "2026-03-05,09:07:41";
    for (int c = 2; c < 60; ++c)
        record += "," + std::to_string(c * 7);
    record.append(64, '\0');
    const size_t n = record.size() - 64;
    std::vector<std::string_view> fields(60);
    const std::vector<size_t> wanted = {0, 1, 2, 17, 40, 59};
    ASSERT_TRUE(pickFields(record.data(), n, ',', wanted, fields.data()));
    EXPECT_EQ(fields[1], "09:07:41");
    EXPECT_EQ(fields[17], "119");
    EXPECT_EQ(fields[59], "413");
    fields.assign(61, {});
    EXPECT_TRUE(pickFields(record.data(), n, ',', {40, 59}, fields.data(), 0, 2, 20));
    EXPECT_EQ(fields[40], "280");
    EXPECT_FALSE(pickFields(record.data(), n, ',', {3, 60}, fields.data()));
    EXPECT_TRUE(pickFields("a b  c", 6, ' ', {2, 3}, fields.data()));
    EXPECT_EQ(fields[2], "");
    EXPECT_EQ(fields[3], "c");
}

TEST(LogFiles, NamesDaysAndRange)
{
    EXPECT_EQ(logFileDay("ex20260305.log"), 20260305);
    EXPECT_EQ(logFileDay("ex20260305.log1"), 20260305);
    EXPECT_EQ(logFileDay("notes.log"), -1);
    EXPECT_EQ(logFileDay("ex2026-03-05.log"), -1);
    EXPECT_EQ(momentDay(20260305090741.0), 20260305);
    EXPECT_EQ(momentDay(0), 0);
    // Both ends are included, by day.
    EXPECT_TRUE(logFileInRange("ex20260304.log", CorpusStart, CorpusEnd));
    EXPECT_TRUE(logFileInRange("ex20260306.log", CorpusStart, CorpusEnd));
    EXPECT_FALSE(logFileInRange("ex20260307.log", CorpusStart, CorpusEnd));
}

TEST(LogRecords, MomentsAndValues)
{
    const auto moment = [](const char* s) { return recordMoment(s, std::strlen(s)); };
    EXPECT_EQ(moment("2026-03-05,09:07:41,1000"), 20260305090741);
    EXPECT_EQ(moment("2026-03-05 09:07:41 1000"), 20260305090741);
    for (const char* bad : {"2026-03-05,09:07:4", "2026-13-05,09:07:41", "2026-02-29,00:00:00", "2026-04-31,00:00:00",
                            "2026-03-05,24:00:00", "2026-03-05;09:07:41", "x026-03-05,09:07:41", "0000-01-01,00:00:00"})
        EXPECT_EQ(moment(bad), -1) << bad;
    EXPECT_EQ(logValue("1E+15"), 1e15);
    EXPECT_EQ(logValue("12abc"), 12);
    for (const char* none : {"", "abc", "-", "inf", "nan", "."})
        EXPECT_EQ(logValue(none), 0) << none;
    // The fast reading of whole numbers agrees with the plain one, in a block with room behind it.
    for (const char* text : {"0", "7", "42", "99999999", "100000000", "1234567890123456", "12345678901234567",
                             "-5", "+5", "12a", "1.5", "1E+15", "", "-", "9x9"}) {
        std::string padded(text);
        padded.append(64, ',');
        EXPECT_EQ(recordValue(std::string_view(padded.data(), std::strlen(text))), logValue(text)) << text;
    }
    EXPECT_EQ(logPointLabel(20091231235900), "12/31/09 23:59");
}

class Corpus : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(writeCorpus(tmp.path()));
        range.logsFolder = tmp.path() + QStringLiteral("/Logs");
        range.logStart = CorpusStart;
        range.logEnd = CorpusEnd;
    }
    QString logs(const QString& name) const { return range.logsFolder + QLatin1Char('/') + name; }
    QStringList leftovers() const { return workingCopies(range.logsFolder); }

    // Collects the points of a graph pass.
    struct Points final : LogGraphPoints {
        std::vector<std::vector<double>> values;
        QStringList labels;
        std::function<void()> onPoint;
        void point(const std::vector<double>& v, Moment, const QString& label) override
        {
            values.push_back(v);
            labels << label;
            if (onPoint)
                onPoint();
        }
    };
    Points graph(const std::vector<QString>& views, double count, int width)
    {
        Points p;
        readLogGraph(range, views, count, width, p, pacer, skips);
        return p;
    }
    QStringList exportLines(const std::vector<QString>& views)
    {
        const QString csv = tmp.path() + QStringLiteral("/LogExport.csv");
        const LogExportResult r = exportLogCsv(range, views, csv, pacer, skips);
        EXPECT_TRUE(r.written) << r.error.toStdString();
        QFile f(csv);
        EXPECT_TRUE(f.open(QIODevice::ReadOnly));
        const QString text = QString::fromLocal8Bit(f.readAll());
        EXPECT_FALSE(text.endsWith('\n'));  // the last line has no line end
        EXPECT_EQ(text.count('\n'), text.count("\r\n"));
        return text.split(QStringLiteral("\r\n"));
    }

    QTemporaryDir tmp;
    LogReadRange range;
    LogPacer pacer;
    LogSkips skips;
};

TEST_F(Corpus, HeaderPassCountsRecordsAndCollectsColumns)
{
    // The count and the columns themselves are checked through --log-headers, end to end.
    readLogHeaders(range, pacer, skips);
    EXPECT_EQ(skips.notDated, 1);
    EXPECT_EQ(skips.otherFiles, 1);  // notes.log

    // A range with no file: nothing.
    range.logStart = 20250101000000.0;
    range.logEnd = 20250102000000.0;
    const LogHeaders none = readLogHeaders(range, pacer, skips);
    EXPECT_EQ(none.recordCount, 0);
    EXPECT_TRUE(none.columns.empty());
}

TEST_F(Corpus, GraphPassOnePointPerRecordWhenThereAreFewerRecordsThanPixels)
{
    const Points p = graph({"CPU0", "PING_RTT_10.0.0.1"}, CorpusRecords, 600);
    const std::vector<std::vector<double>> expected = {
        {3, 0}, {4, 0}, {5, 7}, {6, 7}, {0, 9},           // "-" is the last value; "abc" reads 0
        {10, 11}, {20, 12}, {30, 0}, {40, 0}, {50, 13}, {60, 13},  // no ping column: empty cells
        {70, 14}};
    EXPECT_EQ(p.values, expected);
    EXPECT_EQ(p.labels.first(), "3/4/26 12:00");
    EXPECT_EQ(p.labels.last(), "3/6/26 11:59");
    EXPECT_EQ(skips.tooFewFields, 1);
    EXPECT_EQ(skips.notDated, 1);
}

TEST_F(Corpus, GraphPassBucketsOfBPlusOneRecords)
{
    // B = 13 / 5 = 2: each point stands for 3 records; the last 0 of 12 are left over.
    const Points p = graph({"CPU0", "SYS_TMR", "CPU0"}, CorpusRecords, 5);
    ASSERT_EQ(p.values.size(), 4u);
    EXPECT_EQ(p.values[0], (std::vector<double>{4, 103, 4}));
    EXPECT_EQ(p.values[1], (std::vector<double>{(6 + 0 + 10) / 3.0, (105 + 106 + 200) / 3.0, (6 + 0 + 10) / 3.0}));
    EXPECT_EQ(p.values[3], (std::vector<double>{(50 + 60 + 70) / 3.0, (204 + 205 + 300) / 3.0, (50 + 60 + 70) / 3.0}));
    EXPECT_EQ(p.labels[0], "3/4/26 12:00");
    EXPECT_EQ(p.labels[3], "3/6/26 11:59");
    // A Node whose column the log never had reads 0 throughout; a stale count gives more points.
    const Points missing = graph({"PROCS"}, 1, 600);
    EXPECT_EQ(missing.values.size(), 13u);  // the short record lacks nothing this Node reads
    EXPECT_EQ(missing.values.back(), std::vector<double>{0});
}

TEST_F(Corpus, ExportCellByCellOrWhyNot)
{
    // The corpus's own export is checked through --export-log, end to end.
    // A missing column shifts the line; two Nodes on one column give it twice.
    const QStringList shifted = exportLines({"PING_RTT_10.0.0.1", "CPU0", "CPU0"});
    EXPECT_EQ(shifted[0], "DATE,TIME,PING_RTT_10.0.0.1,CPU0,CPU0");
    EXPECT_EQ(shifted[1], "2026-03-04,12:00:01,,3,3");
    EXPECT_EQ(shifted[8], "2026-03-05,00:00:02,30,30");
    // The blank separator block comes out comma-separated.
    EXPECT_EQ(shifted[10], "2026-03-05,00:00:04,13,50,50");
    // A range with no records: the first line only.
    range.logStart = range.logEnd = CorpusStart;
    EXPECT_EQ(exportLines({"CPU0"}), QStringList{"DATE,TIME,CPU0"});
}

TEST_F(Corpus, StopsWhenTold)
{
    int pumps = 0;
    bool stop = false;
    LogPacer stopping([&pumps] { ++pumps; }, [&stop] { return stop; }, 0);
    Points p;
    p.onPoint = [&stop] { stop = true; };
    readLogGraph(range, {"CPU0"}, 0, 600, p, stopping, skips);
    EXPECT_EQ(p.values.size(), 5u);  // the rest of the block, then no more file
    EXPECT_GT(pumps, 0);
    EXPECT_TRUE(stopping.stopped());
    EXPECT_TRUE(leftovers().isEmpty());
}

TEST_F(Corpus, TodayIsReadFromItsWorkingCopyWhichThenGoes)
{
    range.todayName = QStringLiteral("ex20260305.log");
    bool copySeen = false;
    Points p;
    p.onPoint = [&] { copySeen = copySeen || QFile::exists(logs("ex20260305.log1")); };
    readLogGraph(range, {"CPU0"}, CorpusRecords, 600, p, pacer, skips);
    EXPECT_TRUE(copySeen);
    EXPECT_EQ(p.values.size(), 12u);
    EXPECT_TRUE(leftovers().isEmpty());
    // A line still being written (no line end yet) waits for the next read.
    QFile today(logs("ex20260305.log"));
    ASSERT_TRUE(today.open(QIODevice::Append));
    today.write("2026-03-05,00:00:06,1000,206,6");
    today.close();
    EXPECT_EQ(readLogHeaders(range, pacer, skips).recordCount, CorpusRecords);
    range.todayName = QStringLiteral("ex20260306.log");
    EXPECT_EQ(readLogHeaders(range, pacer, skips).recordCount, CorpusRecords + 1);
    EXPECT_TRUE(leftovers().isEmpty());
}

TEST_F(Corpus, FilesThatVanishLinesTooLongAndFilesWithoutFields)
{
    // A file deleted after the listing is skipped; one deleted while read is read to its end.
    Points p;
    p.onPoint = [&] {
        QFile::remove(logs("ex20260304.log"));
        QFile::remove(logs("ex20260306.log"));
    };
    readLogGraph(range, {"CPU0"}, CorpusRecords, 600, p, pacer, skips);
    EXPECT_EQ(p.values.size(), 11u);
    EXPECT_EQ(skips.unreadable, 1);

    // A line longer than a read block is dropped up to its end; a file without
    // "#Fields:" has no records; LF alone, and a last line without a line end, read as CR LF.
    QByteArray huge(int(LogScanner::BlockSize) * 2 + 17, 'x');
    huge.prepend("2026-03-05,00:00:09,");
    ASSERT_TRUE(writeLog(logs("ex20260305.log"),
                         logHeader("2026-03-05 00:00:00", "DATE,TIME,CPU0") +
                             QStringList{"2026-03-05,00:00:07,1", QString::fromLatin1(huge), "2026-03-05,00:00:08,2"},
                         "\n"));
    QFile f(logs("ex20260305.log"));
    ASSERT_TRUE(f.open(QIODevice::Append));
    f.write("2026-03-05,00:00:10,3");
    f.close();
    ASSERT_TRUE(writeLog(logs("ex20260306.log"), {"2026-03-06,00:00:00,1000,1"}));
    skips = {};
    const Points after = graph({"CPU0"}, 0, 600);
    EXPECT_EQ(after.values, (std::vector<std::vector<double>>{{1}, {2}, {3}}));
    EXPECT_EQ(skips.hugeLines, 1);
    EXPECT_EQ(skips.beforeFields, 1);
}

}  // namespace
