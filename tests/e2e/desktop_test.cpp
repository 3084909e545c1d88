// The program with its windows, under a virtual X server with a window manager
// (and a tray host where one is installed): the first ticks draw, the settings
// keep a moved window, a second start is refused, CloseNow ends it.
#include "run_headless.h"

#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <QStandardPaths>
#include <QThread>
#include <gtest/gtest.h>

using namespace orm::test;

namespace {

QString display;
std::vector<std::unique_ptr<QProcess>> helpers;  // the X server, the window manager, the tray host

QString run(const QString& program, const QStringList& args)
{
    QProcess p;
    p.start(program, args);
    p.waitForFinished(5000);
    return QString::fromLocal8Bit(p.readAllStandardOutput()).trimmed();
}

// The X window ids whose name is `name`.
QStringList windowsNamed(const QString& name)
{
    return run(QStringLiteral("xdotool"), {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                           QStringLiteral("--name"), QStringLiteral("^") + name + QStringLiteral("$")})
        .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QRect geometryOf(const QString& window)
{
    const QString out = run(QStringLiteral("xdotool"), {QStringLiteral("getwindowgeometry"), QStringLiteral("--shell"), window});
    std::map<QString, int> v;
    for (const QString& line : out.split(QLatin1Char('\n'))) {
        const auto kv = line.split(QLatin1Char('='));
        if (kv.size() == 2)
            v[kv[0]] = kv[1].toInt();
    }
    return QRect(v[QStringLiteral("X")], v[QStringLiteral("Y")], v[QStringLiteral("WIDTH")], v[QStringLiteral("HEIGHT")]);
}

bool waitFor(const std::function<bool()>& ready, int ms)
{
    QElapsedTimer t;
    t.start();
    while (t.elapsed() < ms) {
        if (ready())
            return true;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
        QThread::msleep(50);
    }
    return ready();
}

class Desktop : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (display.isEmpty())
            GTEST_SKIP() << "no virtual X server could be started";
    }
    void startDesktop(HeadlessRun& r)
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("DISPLAY"), display);
        env.remove(QStringLiteral("QT_QPA_PLATFORM"));
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), r.dir.filePath(QStringLiteral("xdg")));
        r.process.setProcessEnvironment(env);
        r.process.start(QStringLiteral(ORM_BINARY), {QStringLiteral("--data-dir"), r.dataDir, QStringLiteral("--config"), r.config});
        ASSERT_TRUE(r.process.waitForStarted(5000));
    }
};

TEST_F(Desktop, FirstStartDrawsAndCloseNowEndsIt)
{
    HeadlessRun r;
    startDesktop(r);
    QElapsedTimer started;
    started.start();
    ASSERT_TRUE(waitFor([] { return !windowsNamed(QStringLiteral("New Graph 1")).isEmpty(); }, 3000))
        << "no graph window";
    EXPECT_FALSE(windowsNamed(QStringLiteral("Ormivane")).isEmpty()) << "no control panel";
    // Let a few ticks draw, then look at the graph window's pixels.
    waitFor([] { return false; }, 2500);
    const QString win = windowsNamed(QStringLiteral("New Graph 1")).value(0);
    const QRect rect = geometryOf(win);
    const QImage shot = QGuiApplication::primaryScreen()->grabWindow(0).toImage();
    shot.save(QStringLiteral(ORM_BUILD_DIR "/desktop-first-start.png"));
    const QImage graph = shot.copy(rect);
    ASSERT_FALSE(graph.isNull());
    // The first Node's pen is blue; its line stands in the newest columns of the plot.
    bool line = false;
    for (int x = graph.width() - 40; x < graph.width() - 5 && !line; ++x)
        for (int y = 30; y < graph.height() - 20 && !line; ++y)
            line = graph.pixelColor(x, y) == QColor(0, 0, 255);
    EXPECT_TRUE(line);

    // Moving and resizing the window stores its new rectangle in the settings file.
    run(QStringLiteral("xdotool"), {QStringLiteral("windowmove"), win, QStringLiteral("300"), QStringLiteral("420")});
    run(QStringLiteral("xdotool"), {QStringLiteral("windowsize"), win, QStringLiteral("600"), QStringLiteral("200")});
    EXPECT_TRUE(waitFor(
        [&] {
            QSettings s(r.config, QSettings::IniFormat);
            return s.value(QStringLiteral("Settings/Sensor1/LocX")).toInt() == 300 &&
                   s.value(QStringLiteral("Settings/Sensor1/LocY")).toInt() == 420 &&
                   s.value(QStringLiteral("Settings/Sensor1/LocWidth")).toInt() == 600 &&
                   s.value(QStringLiteral("Settings/Sensor1/LocHeight")).toInt() == 200;
        },
        3000));

    // A second start is refused and leaves the first running.
    QProcess second;
    QProcessEnvironment env = r.process.processEnvironment();
    second.setProcessEnvironment(env);
    second.start(QStringLiteral(ORM_BINARY), {QStringLiteral("--data-dir"), r.dataDir, QStringLiteral("--config"), r.config});
    ASSERT_TRUE(second.waitForStarted(5000));
    waitFor([&] { return second.readAllStandardError().contains("is already running"); }, 5000);
    run(QStringLiteral("xdotool"), {QStringLiteral("key"), QStringLiteral("--clearmodifiers"), QStringLiteral("Return")});
    second.waitForFinished(5000);
    if (second.state() != QProcess::NotRunning)
        second.kill();
    EXPECT_NE(second.exitCode(), 0);
    EXPECT_EQ(r.process.state(), QProcess::Running);

    {
        QFile f(r.config);
        ASSERT_TRUE(f.open(QIODevice::Append));
        f.write("CloseNow=True\n");
    }
    QElapsedTimer closing;
    closing.start();
    ASSERT_TRUE(r.process.waitForFinished(5000));
    EXPECT_LE(closing.elapsed(), 3000);
    EXPECT_EQ(r.process.exitCode(), 0);
    EXPECT_TRUE(windowsNamed(QStringLiteral("New Graph 1")).isEmpty());
}

}  // namespace

int main(int argc, char** argv)
{
    // A virtual X server of our own, with a window manager and a tray host where they are installed.
    bool listing = false;
    for (int i = 1; i < argc; ++i)
        listing = listing || qstrcmp(argv[i], "--gtest_list_tests") == 0;
    const QString xvfb = QStandardPaths::findExecutable(QStringLiteral("Xvfb"));
    if (!listing && !xvfb.isEmpty() && !QStandardPaths::findExecutable(QStringLiteral("xdotool")).isEmpty()) {
        const QString d = QStringLiteral(":%1").arg(90 + getpid() % 100);
        auto x = std::make_unique<QProcess>();
        x->start(xvfb, {d, QStringLiteral("-screen"), QStringLiteral("0"), QStringLiteral("1280x800x24"), QStringLiteral("-nolisten"), QStringLiteral("tcp")});
        if (x->waitForStarted(5000)) {
            qputenv("DISPLAY", d.toLocal8Bit());
            for (int i = 0; i < 50 && !QFile::exists(QStringLiteral("/tmp/.X11-unix/X") + d.mid(1)); ++i)
                QThread::msleep(100);
            display = d;
            helpers.push_back(std::move(x));
            for (const char* extra : {"openbox", "trayer"}) {
                const QString path = QStandardPaths::findExecutable(QString::fromLatin1(extra));
                if (path.isEmpty())
                    continue;
                auto p = std::make_unique<QProcess>();
                p->start(path, {});
                helpers.push_back(std::move(p));
            }
            QThread::msleep(500);
        }
    }
    int status = 0;
    {
        qputenv("QT_QPA_PLATFORM", display.isEmpty() ? "offscreen" : "xcb");
        QGuiApplication app(argc, argv);
        ::testing::InitGoogleTest(&argc, argv);
        status = RUN_ALL_TESTS();
    }
    for (auto it = helpers.rbegin(); it != helpers.rend(); ++it) {
        (*it)->terminate();
        (*it)->waitForFinished(3000);
    }
    return status;
}
