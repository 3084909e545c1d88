// A virtual X server of the test's own, with a window manager and a tray host
// where they are installed, and the xdotool calls the desktop tests use.
#pragma once

#include "run_headless.h"

#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QProcessEnvironment>
#include <QScreen>
#include <QSettings>
#include <QStandardPaths>
#include <QThread>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <unistd.h>

namespace orm::test {

inline QString display;
inline std::vector<std::unique_ptr<QProcess>> helpers;  // the X server, the window manager, the tray host

inline QString run(const QString& program, const QStringList& args)
{
    QProcess p;
    p.start(program, args);
    p.waitForFinished(5000);
    return QString::fromLocal8Bit(p.readAllStandardOutput()).trimmed();
}

// The X window ids whose name is `name`.
inline QStringList windowsNamed(const QString& name)
{
    return run(QStringLiteral("xdotool"), {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                           QStringLiteral("--name"), QStringLiteral("^") + name + QStringLiteral("$")})
        .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

inline bool waitFor(const std::function<bool()>& ready, int ms)
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

// Lets the program and the X server work for a while (events go on).
inline void pause(int ms) { waitFor([] { return false; }, ms); }

// The rectangles and texts the program lists in its widget map, by name.
class WidgetMap {
public:
    explicit WidgetMap(QString path) : path_(std::move(path)) {}
    bool read()
    {
        QFile f(path_);
        if (!f.open(QIODevice::ReadOnly))
            return false;
        rects_.clear();
        texts_.clear();
        for (const QString& line : QString::fromUtf8(f.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
            const QStringList p = line.split(QLatin1Char('\t'));
            if (p.size() == 5)
                rects_[p[0]] = QRect(p[1].toInt(), p[2].toInt(), p[3].toInt(), p[4].toInt());
            else if (p.size() == 2 && p[0].startsWith(QLatin1String("text:")))
                texts_[p[0].mid(5)] = QString(p[1]).replace(QLatin1String("\\n"), QLatin1String("\n"));
        }
        return true;
    }
    bool has(const QString& name) { return read() && rects_.count(name); }
    QRect rect(const QString& name) { return read() && rects_.count(name) ? rects_[name] : QRect(); }
    // A label's or a sentence's text as shown, line ends as "\n"; empty when not shown.
    QString text(const QString& name) { return read() && texts_.count(name) ? texts_[name] : QString(); }

private:
    QString path_;
    std::map<QString, QRect> rects_;
    std::map<QString, QString> texts_;
};

// A person's walk through the program's windows with xdotool, reading where
// each control stands from the widget map.
class DesktopWalk : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (display.isEmpty())
            GTEST_SKIP() << "no virtual X server could be started";
    }

    // Starts build/ormivane on the virtual display with the run's files.
    void start(HeadlessRun& r)
    {
        QProcessEnvironment env = r.environment();
        env.insert(QStringLiteral("DISPLAY"), display);
        env.remove(QStringLiteral("QT_QPA_PLATFORM"));
        env.insert(QStringLiteral("ORMIVANE_WIDGET_MAP"), mapPath(r));
        QFile::remove(mapPath(r));
        r.process.setProcessEnvironment(env);
        r.process.start(QStringLiteral(ORM_BINARY), r.files());
        ASSERT_TRUE(r.process.waitForStarted(5000));
    }
    // Starts it and waits for the control panel and the first start's balloon.
    bool startWithPanel(HeadlessRun& r, WidgetMap& map)
    {
        start(r);
        if (!waitFor([&] { return map.has(QStringLiteral("row(0)")); }, 6000))
            return false;
        dismissBalloon(map);
        return true;
    }
    static QString mapPath(HeadlessRun& r) { return r.dir.filePath(QStringLiteral("widgets.txt")); }

    // Called before each click: the window that holds the control comes to the front.
    virtual void bringToFront(const QString&) {}

    // Waits until the control shows, then clicks its middle (or `at` inside it), `times` over.
    bool click(WidgetMap& map, const QString& name, int button = 1, QPoint at = {-1, -1}, int times = 1)
    {
        if (!waitFor([&] { return map.has(name); }, 4000)) {
            ADD_FAILURE() << "not on screen: " << qPrintable(name);
            snapshot(failureShot);
            return false;
        }
        bringToFront(name);
        const QRect r = map.rect(name);
        const QPoint p = at.x() < 0 ? r.center() : r.topLeft() + at;
        xdo({QStringLiteral("mousemove"), QString::number(p.x()), QString::number(p.y())});
        xdo({QStringLiteral("click"), QStringLiteral("--repeat"), QString::number(times), QString::number(button)});
        pause(300);
        return true;
    }
    // Waits for a control or row to show; a picture of the screen is kept when it does not.
    bool shown(WidgetMap& map, const QString& name)
    {
        if (waitFor([&] { return map.has(name); }, 4000))
            return true;
        snapshot(failureShot);
        return false;
    }
    void type(const QString& text)
    {
        xdo({QStringLiteral("type"), QStringLiteral("--delay"), QStringLiteral("30"), QStringLiteral("--"), text});
    }
    void key(const QString& k)
    {
        xdo({QStringLiteral("key"), QStringLiteral("--clearmodifiers"), k});
        pause(300);
    }
    // The first start's tip stands in a balloon over the panel's corner and the
    // tray: a click puts it away.
    void dismissBalloon(WidgetMap& map)
    {
        if (!waitFor([&] { return map.has(QStringLiteral("QBalloonTip")); }, 4000))
            return;
        for (int tries = 0; tries < 3 && map.has(QStringLiteral("QBalloonTip")); ++tries) {
            click(map, QStringLiteral("QBalloonTip"));
            waitFor([&] { return !map.has(QStringLiteral("QBalloonTip")); }, 2500);
        }
    }
    // A notice of the program (the data type warning) is acknowledged with its button.
    void acknowledgeNotices(WidgetMap& map)
    {
        if (waitFor([&] { return map.has(QStringLiteral("cmdOk")); }, 1500))
            click(map, QStringLiteral("cmdOk"));
    }
    static void snapshot(const QString& file, const QRect& part = {})
    {
        const QImage shot = QGuiApplication::primaryScreen()->grabWindow(0).toImage();
        (part.isEmpty() ? shot : shot.copy(part)).save(QStringLiteral(ORM_BUILD_DIR "/") + file);
    }
    static void xdo(const QStringList& args) { run(QStringLiteral("xdotool"), args); }

    // Clicks a control and then the same again when `then` does not show: on a busy
    // machine a late balloon or notice may take the first click.
    bool clickFor(WidgetMap& map, const QString& name, const QString& then)
    {
        if (!click(map, name))
            return false;
        if (!waitFor([&] { return map.has(then); }, 2500) && !click(map, name))
            return false;
        return shown(map, then);
    }
    // Text typed over what a box holds, and Return.
    void retype(const QString& text)
    {
        key(QStringLiteral("ctrl+a"));
        type(text);
        key(QStringLiteral("Return"));
    }
    // Waits until the settings file holds `expected` for `key`.
    static bool settingBecomes(HeadlessRun& r, const QString& key, const QString& expected)
    {
        const bool ok = waitFor([&] { return r.setting(key) == expected; }, 3000);
        if (!ok)
            ADD_FAILURE() << qPrintable(key) << " is \"" << qPrintable(r.setting(key)) << '"';
        return ok;
    }
    static bool stop(HeadlessRun& r) { return r.appendCloseNow() && finished(r.process, 8000).status == 0; }

    QString failureShot = QStringLiteral("desktop-failure.png");
};

// The body of main(): the virtual desktop around the tests, which run in an
// App (a QApplication for tests that make widgets themselves).
template <class App = QGuiApplication>
int runOnVirtualDesktop(int argc, char** argv)
{
    // A virtual X server of our own, with a window manager and a tray host where they are installed.
    bool listing = false;
    for (int i = 1; i < argc; ++i)
        listing = listing || qstrcmp(argv[i], "--gtest_list_tests") == 0;
    const QString xvfb = QStandardPaths::findExecutable(QStringLiteral("Xvfb"));
    if (!listing && !xvfb.isEmpty() && !QStandardPaths::findExecutable(QStringLiteral("xdotool")).isEmpty()) {
        // A display number no other server holds (tests may run side by side): a
        // server that finds its number taken ends at once, and the next is tried.
        for (int n = 90 + getpid() % 100, tries = 0; display.isEmpty() && tries < 20; ++n, ++tries) {
            if (QFile::exists(QStringLiteral("/tmp/.X%1-lock").arg(n)))
                continue;
            const QString d = QStringLiteral(":%1").arg(n);
            auto x = std::make_unique<QProcess>();
            x->start(xvfb, {d, QStringLiteral("-screen"), QStringLiteral("0"), QStringLiteral("1280x800x24"), QStringLiteral("-nolisten"), QStringLiteral("tcp")});
            if (!x->waitForStarted(5000))
                break;
            for (int i = 0; i < 50 && x->state() == QProcess::Running &&
                            !QFile::exists(QStringLiteral("/tmp/.X11-unix/X") + d.mid(1));
                 ++i)
                QThread::msleep(100);
            QThread::msleep(300);
            if (x->state() != QProcess::Running)
                continue;
            qputenv("DISPLAY", d.toLocal8Bit());
            display = d;
            helpers.push_back(std::move(x));
        }
        if (!display.isEmpty()) {
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
        App app(argc, argv);
        ::testing::InitGoogleTest(&argc, argv);
        status = RUN_ALL_TESTS();
    }
    for (auto it = helpers.rbegin(); it != helpers.rend(); ++it) {
        (*it)->terminate();
        (*it)->waitForFinished(3000);
    }
    return status;
}

}  // namespace orm::test
