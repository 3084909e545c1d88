// The program with its windows, under a virtual X server with a window manager
// (and a tray host where one is installed): the first ticks draw, the settings
// keep a moved window, a second start is refused, CloseNow ends it.
#include "desktop_session.h"

using namespace orm::test;

namespace {

class Desktop : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (display.isEmpty())
            GTEST_SKIP() << "no virtual X server could be started";
    }
    void startDesktop(HeadlessRun& r)
    {
        startOnDisplay(r);
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
    return orm::test::runOnVirtualDesktop(argc, argv);
}
