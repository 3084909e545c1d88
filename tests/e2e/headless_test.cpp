// The headless monitor as a user runs it: first start, a second start on the
// same folders, the stop signals, a second instance, a log that cannot be written.
#include <QDate>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSettings>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <csignal>

namespace {

int processorCount()
{
    QFile f(QStringLiteral("/proc/stat"));
    if (!f.open(QIODevice::ReadOnly))
        return 0;
    int n = 0;
    for (const QByteArray& line : f.readAll().split('\n'))
        if (line.startsWith("cpu") && line.size() > 3 && std::isdigit(static_cast<unsigned char>(line[3])))
            ++n;
    return n;
}

class Headless : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        dataDir = dir.filePath(QStringLiteral("data"));
        config = dir.filePath(QStringLiteral("ormivane.conf"));
    }

    QProcess* start(const QStringList& extra = {})
    {
        auto* p = new QProcess;
        processes.emplace_back(p);
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), dir.filePath(QStringLiteral("xdg")));
        p->setProcessEnvironment(env);
        p->start(QStringLiteral(ORM_BINARY),
                 QStringList{QStringLiteral("--headless"), QStringLiteral("--data-dir"), dataDir,
                             QStringLiteral("--config"), config} + extra);
        EXPECT_TRUE(p->waitForStarted(5000));
        return p;
    }

    int run(const QStringList& extra, QString* err = nullptr)
    {
        QProcess* p = start(extra);
        EXPECT_TRUE(p->waitForFinished(30000));
        if (err)
            *err = QString::fromLocal8Bit(p->readAllStandardError());
        return p->exitStatus() == QProcess::NormalExit ? p->exitCode() : -1;
    }

    QStringList logLines()
    {
        QFile f(dataDir + QStringLiteral("/Logs/ex") + QDate::currentDate().toString(QStringLiteral("yyyyMMdd")) +
                QStringLiteral(".log"));
        if (!f.open(QIODevice::ReadOnly))
            return {};
        return QString::fromLocal8Bit(f.readAll()).split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
    }

    std::map<QString, QString> settingsValues()
    {
        QSettings s(config, QSettings::IniFormat);
        std::map<QString, QString> m;
        for (const QString& k : s.allKeys())
            m[k] = s.value(k).toString();
        return m;
    }

    // Waits for the process to end, at most `ms`; the time it took, or -1.
    qint64 waitEnd(QProcess* p, int ms)
    {
        QElapsedTimer t;
        t.start();
        if (!p->waitForFinished(ms))
            return -1;
        return t.elapsed();
    }

    QTemporaryDir dir;
    QString dataDir, config;
    std::vector<std::unique_ptr<QProcess>> processes;
};

TEST_F(Headless, FirstStartMakesOneGraphAndLogsEachTick)
{
    QString err;
    ASSERT_EQ(run({QStringLiteral("--ticks"), QStringLiteral("5")}, &err), 0) << err.toStdString();

    auto values = settingsValues();
    EXPECT_EQ(values[QStringLiteral("Settings/FirstRun")], QStringLiteral("False"));
    EXPECT_EQ(values[QStringLiteral("Settings/Sensors")], QStringLiteral("1"));
    EXPECT_EQ(values[QStringLiteral("Settings/Sensor1/Name")], QStringLiteral("New Graph 1"));
    EXPECT_EQ(values[QStringLiteral("Settings/Sensor1/Nodes")], QStringLiteral("1"));
    EXPECT_EQ(values[QStringLiteral("Settings/Sensor1/Node1/Name")], QStringLiteral("New Node 1"));
    EXPECT_EQ(values[QStringLiteral("Settings/Sensor1/Node1/NodeType")], QStringLiteral("5"));
    EXPECT_EQ(QFile::permissions(config) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());

    const QStringList lines = logLines();
    ASSERT_EQ(lines.size(), 9);
    EXPECT_EQ(lines[0], QStringLiteral("#Software: Vendrake - Ormivane"));
    EXPECT_TRUE(lines[1].startsWith(QStringLiteral("#Version: ")));
    EXPECT_TRUE(lines[2].startsWith(QStringLiteral("#Date: ")));
    const int cpus = processorCount();
    QString fields = QStringLiteral("#Fields: DATE,TIME,SAMPLE_LENGTH_MILLI_S,SYS_TMR");
    for (int c = 0; c < cpus; ++c)
        fields += QStringLiteral(",CPU%1").arg(c);
    EXPECT_EQ(lines[3], fields);
    for (int l = 4; l < 9; ++l) {
        const QStringList cols = lines[l].split(QLatin1Char(','));
        ASSERT_EQ(cols.size(), 4 + cpus) << lines[l].toStdString();
        for (int c = 4; c < cols.size(); ++c) {
            bool ok = false;
            const int v = cols[c].toInt(&ok);
            EXPECT_TRUE(ok && v >= 0 && v <= 100) << cols[c].toStdString();
        }
    }
    EXPECT_EQ(lines[4].split(QLatin1Char(','))[2], QStringLiteral("1000"));
}

TEST_F(Headless, SecondStartAppendsAHeaderAndKeepsTheSettings)
{
    ASSERT_EQ(run({QStringLiteral("--ticks"), QStringLiteral("5")}), 0);
    const auto before = settingsValues();
    ASSERT_EQ(run({QStringLiteral("--ticks"), QStringLiteral("5")}), 0);
    EXPECT_EQ(settingsValues(), before);

    const QStringList lines = logLines();
    ASSERT_EQ(lines.size(), 18);
    EXPECT_EQ(lines[9], QStringLiteral("#Software: Vendrake - Ormivane"));
    EXPECT_EQ(lines[12], lines[3]);
}

TEST_F(Headless, CloseNowInTheSettingsFileEndsTheRun)
{
    QProcess* p = start();
    // Wait until start-up has written its settings.
    for (int i = 0; i < 100 && !QFile::exists(config); ++i)
        p->waitForFinished(50);
    p->waitForFinished(1200);
    ASSERT_EQ(p->state(), QProcess::Running);
    {
        QFile f(config);
        ASSERT_TRUE(f.open(QIODevice::Append));
        f.write("CloseNow=True\n");
    }
    const qint64 took = waitEnd(p, 5000);
    ASSERT_GE(took, 0);
    EXPECT_LE(took, 3000);
    EXPECT_EQ(p->exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(p->exitCode(), 0);
}

TEST_F(Headless, ACloseNowLeftFromEarlierDoesNotStopTheNextStart)
{
    ASSERT_EQ(run({QStringLiteral("--ticks"), QStringLiteral("1")}), 0);
    {
        QFile f(config);
        ASSERT_TRUE(f.open(QIODevice::Append));
        f.write("CloseNow=True\n");
    }
    ASSERT_EQ(run({QStringLiteral("--ticks"), QStringLiteral("3")}), 0);
    EXPECT_EQ(logLines().size(), 12);  // two header blocks, 1 + 3 lines
}

TEST_F(Headless, SigtermAndSigintEndTheRunCleanly)
{
    for (int sig : {SIGTERM, SIGINT}) {
        QProcess* p = start();
        p->waitForFinished(1500);
        ASSERT_EQ(p->state(), QProcess::Running);
        ::kill(pid_t(p->processId()), sig);
        const qint64 took = waitEnd(p, 5000);
        ASSERT_GE(took, 0);
        EXPECT_LE(took, 3000);
        EXPECT_EQ(p->exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(p->exitCode(), 0);
    }
    EXPECT_TRUE(QDir(dataDir + QStringLiteral("/Logs")).entryList({QStringLiteral("*.log1")}).isEmpty());
}

TEST_F(Headless, ASecondInstanceOnTheSameFolderIsRefused)
{
    QProcess* first = start();
    first->waitForFinished(1000);
    ASSERT_EQ(first->state(), QProcess::Running);
    QString err;
    const int status = run({QStringLiteral("--ticks"), QStringLiteral("1")}, &err);
    EXPECT_NE(status, 0);
    EXPECT_TRUE(err.contains(QStringLiteral("Ormivane is already running, please look for the icon in the Systray")))
        << err.toStdString();
    EXPECT_EQ(first->state(), QProcess::Running);
    first->terminate();
    EXPECT_GE(waitEnd(first, 5000), 0);
}

TEST_F(Headless, ALogFolderThatCannotBeMadeEndsTheProgramWithAMessage)
{
    ASSERT_TRUE(QDir().mkpath(dataDir));
    {
        QFile blocker(dataDir + QStringLiteral("/Logs"));  // a file where the folder belongs
        ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    }
    QString err;
    const int status = run({QStringLiteral("--ticks"), QStringLiteral("3")}, &err);
    EXPECT_NE(status, 0);
    EXPECT_TRUE(err.contains(QStringLiteral("Logs"))) << err.toStdString();
}

TEST_F(Headless, AConfigThatIsAFolderOrCannotBeMadeIsRefused)
{
    const QString folder = dir.filePath(QStringLiteral("settings-folder"));
    ASSERT_TRUE(QDir().mkpath(folder));
    ASSERT_TRUE(QFile::setPermissions(folder, QFile::Permissions(0x7755)));
    const QFile::Permissions before = QFile::permissions(folder);
    {
        QFile blocker(dir.filePath(QStringLiteral("plain-file")));  // a file where a folder would be made
        ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    }
    for (const QString& bad : {folder, dir.filePath(QStringLiteral("plain-file/sub/o.conf"))}) {
        SCOPED_TRACE(bad.toStdString());
        config = bad;
        QString err;
        EXPECT_EQ(run({QStringLiteral("--ticks"), QStringLiteral("1")}, &err), 2);
        EXPECT_TRUE(err.contains(bad)) << err.toStdString();
    }
    EXPECT_EQ(QFile::permissions(folder), before);
    EXPECT_FALSE(QFile::exists(dataDir + QStringLiteral("/Logs")));  // refused before anything ran
}

TEST_F(Headless, AWindowSizeNoScreenCanHoldIsCutDownAndTheProgramRuns)
{
    {
        QSettings s(config, QSettings::IniFormat);
        s.setValue(QStringLiteral("Settings/FirstRun"), QStringLiteral("False"));
        s.setValue(QStringLiteral("Settings/Sensors"), QStringLiteral("2"));
        s.setValue(QStringLiteral("Settings/Sensor1/LocWidth"), QStringLiteral("2147483647"));
        s.setValue(QStringLiteral("Settings/Sensor1/LocHeight"), QStringLiteral("2147483647"));
        s.setValue(QStringLiteral("Settings/Sensor2/GraphType"), QStringLiteral("2"));
        s.setValue(QStringLiteral("Settings/Sensor2/LocWidth"), QStringLiteral("900000"));
        s.setValue(QStringLiteral("Settings/Sensor2/Node1/NodeType"), QStringLiteral("5"));
    }
    QString err;
    ASSERT_EQ(run({QStringLiteral("--ticks"), QStringLiteral("2")}, &err), 0) << err.toStdString();
}

TEST_F(Headless, DebugWordWritesTheTrace)
{
    ASSERT_EQ(run({QStringLiteral("--ticks"), QStringLiteral("1"), QStringLiteral("txtDebug")}), 0);
    QFile f(dataDir + QStringLiteral("/Ormivane.txt"));
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QString text = QString::fromLocal8Bit(f.readAll());
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d OS=8  \\d+\\.\\d+\\.\\d+\\n"))
                    .match(text)
                    .hasMatch())
        << text.left(200).toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("0 - LoadMain 2.0\n")));
    EXPECT_TRUE(text.contains(QStringLiteral("0 - TimerData 1.0\n")));
    EXPECT_TRUE(text.contains(QStringLiteral("UnLoadMain 2.0\n")));
}

TEST_F(Headless, HelpAndVersionAnswerWithoutStarting)
{
    QProcess p;
    p.start(QStringLiteral(ORM_BINARY), {QStringLiteral("--version")});
    ASSERT_TRUE(p.waitForFinished(5000));
    EXPECT_EQ(p.exitCode(), 0);
    EXPECT_TRUE(QString::fromLocal8Bit(p.readAllStandardOutput()).startsWith(QStringLiteral("Ormivane ")));
    p.start(QStringLiteral(ORM_BINARY), {QStringLiteral("--help")});
    ASSERT_TRUE(p.waitForFinished(5000));
    EXPECT_TRUE(QString::fromLocal8Bit(p.readAllStandardOutput()).contains(QStringLiteral("--ticks")));
}

}  // namespace
