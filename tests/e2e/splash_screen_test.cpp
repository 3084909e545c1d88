// The splash on a real X server: start-up holds the event loop from the
// splash's showing to its closing, and each step's text must reach the screen
// all the same.
#include "desktop_session.h"
#include "shell/splash.h"

#include <QApplication>
#include <QLabel>

using namespace orm;
using namespace orm::test;

namespace {

// What the X server shows of the splash's status line, read back from its framebuffer.
QImage statusOnScreen(const SplashWindow& s)
{
    const QLabel* label = s.findChild<QLabel*>(QStringLiteral("lblStatus"));
    const QRect r(label->mapToGlobal(QPoint(0, 0)), label->size());
    return QGuiApplication::primaryScreen()->grabWindow(0, r.x(), r.y(), r.width(), r.height()).toImage();
}

int textPixels(const QImage& image, const QColor& back)
{
    int n = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            n += image.pixelColor(x, y) != back;
    return n;
}

TEST(SplashOnScreen, EachStepIsPaintedWhileStartUpHoldsTheLoop)
{
    if (display.isEmpty())
        GTEST_SKIP() << "no virtual X server";
    const QColor back(0x1E, 0x3A, 0x5F);
    SplashWindow s;
    s.showSplash();  // no event loop runs from here on, as during start-up
    QImage last;
    for (const char* step : {"Initializing....", "Adaptor info....", "Gathering processes...."}) {
        s.setStatus(QString::fromLatin1(step));
        const QImage shown = statusOnScreen(s);
        ASSERT_FALSE(shown.isNull());
        EXPECT_EQ(shown.pixelColor(0, 0), back) << step;  // the splash itself, not a black box
        EXPECT_GT(textPixels(shown, back), 20) << step;   // with its text
        EXPECT_NE(shown, last) << step;                    // the new one
        last = shown;
    }
    s.closeSplash();
}

}  // namespace

int main(int argc, char** argv)
{
    return runOnVirtualDesktop<QApplication>(argc, argv);
}
