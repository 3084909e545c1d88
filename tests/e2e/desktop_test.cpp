// The program with its windows, under a virtual X server with a window manager
// (and a tray host where one is installed): the first ticks draw, a second
// start is refused, CloseNow ends it.
#include "desktop_session.h"

using namespace orm::test;

namespace {

using Desktop = DesktopWalk;

TEST_F(Desktop, FirstStartDrawsAndCloseNowEndsIt)
{
    HeadlessRun r;
    start(r);
    WidgetMap map(mapPath(r));
    ASSERT_TRUE(waitFor([&] { return map.has(QStringLiteral("graph(0)")); }, 6000)) << "no graph window";
    EXPECT_FALSE(windowsNamed(QStringLiteral("New Graph 1")).isEmpty());
    EXPECT_FALSE(windowsNamed(QStringLiteral("Ormivane")).isEmpty()) << "no control panel";
    // Let a few ticks draw, then look at the graph window's pixels.
    pause(2500);
    const QImage shot = QGuiApplication::primaryScreen()->grabWindow(0).toImage();
    shot.save(QStringLiteral(ORM_BUILD_DIR "/desktop-first-start.png"));
    const QImage graph = shot.copy(map.rect(QStringLiteral("graph(0)")));
    ASSERT_FALSE(graph.isNull());
    // The first Node's pen is blue; its line stands in the newest columns of the plot.
    bool line = false;
    for (int x = graph.width() - 40; x < graph.width() - 5 && !line; ++x)
        for (int y = 30; y < graph.height() - 20 && !line; ++y)
            line = graph.pixelColor(x, y) == QColor(0, 0, 255);
    EXPECT_TRUE(line);

    // A second start is refused and leaves the first running.
    QProcess second;
    second.setProcessEnvironment(r.process.processEnvironment());
    second.start(QStringLiteral(ORM_BINARY), r.files());
    ASSERT_TRUE(second.waitForStarted(5000));
    waitFor([&] { return second.readAllStandardError().contains("is already running"); }, 5000);
    key(QStringLiteral("Return"));
    second.waitForFinished(5000);
    if (second.state() != QProcess::NotRunning)
        second.kill();
    EXPECT_NE(second.exitCode(), 0);
    EXPECT_EQ(r.process.state(), QProcess::Running);

    ASSERT_TRUE(stop(r));
    EXPECT_TRUE(windowsNamed(QStringLiteral("New Graph 1")).isEmpty());
}

}  // namespace

int main(int argc, char** argv)
{
    return orm::test::runOnVirtualDesktop(argc, argv);
}
