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

inline QRect geometryOf(const QString& window)
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

// Starts build/ormivane on the virtual display with the run's files.
inline void startOnDisplay(HeadlessRun& r, const QProcessEnvironment& extra = {})
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("DISPLAY"), display);
    env.remove(QStringLiteral("QT_QPA_PLATFORM"));
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), r.dir.filePath(QStringLiteral("xdg")));
    for (const QString& k : extra.keys())
        env.insert(k, extra.value(k));
    r.process.setProcessEnvironment(env);
    r.process.start(QStringLiteral(ORM_BINARY), {QStringLiteral("--data-dir"), r.dataDir, QStringLiteral("--config"), r.config});
}

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
