// Starting build/ormivane on a settings file the test writes, and reading
// back what it logged.
#pragma once

#include <QCoreApplication>
#include <QDate>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSettings>
#include <QTemporaryDir>
#include <map>

namespace orm::test {

// How a run of the program ended: its exit status (-1 when it crashed or hung) and what it wrote.
struct Outcome {
    int status = -1;
    QString out, err;
    // The program's own lines on stderr; Qt may add its warnings about the environment.
    QStringList said() const { return err.split(QLatin1Char('\n')).filter(QRegularExpression(QStringLiteral("^ormivane: "))); }
};

inline Outcome finished(QProcess& p, int ms = 60000)
{
    Outcome o;
    if (!p.waitForFinished(ms))
        return o;
    o.status = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    o.out = QString::fromLocal8Bit(p.readAllStandardOutput());
    o.err = QString::fromLocal8Bit(p.readAllStandardError());
    return o;
}

class HeadlessRun {
public:
    HeadlessRun() : dataDir(dir.filePath(QStringLiteral("data"))), config(dir.filePath(QStringLiteral("o.conf"))) {}

    // Values under [Settings], such as {"Sensor1/Node1/NodeType", "12"}; FirstRun is False.
    void writeSettings(const std::map<QString, QString>& values)
    {
        QSettings s(config, QSettings::IniFormat);
        s.setValue(QStringLiteral("Settings/FirstRun"), QStringLiteral("False"));
        for (const auto& [k, v] : values)
            s.setValue(QStringLiteral("Settings/") + k, v);
        s.sync();
    }

    // The program's environment: its own XDG folders, and `extra` over them.
    QProcessEnvironment environment() const
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), dir.filePath(QStringLiteral("xdg")));
        env.insert(QStringLiteral("XDG_DATA_HOME"), dir.filePath(QStringLiteral("xdg-data")));
        env.insert(extra);
        return env;
    }
    QStringList files() const { return {QStringLiteral("--data-dir"), dataDir, QStringLiteral("--config"), config}; }

    void start(int ticks, const QStringList& words = {QStringLiteral("txtDebug")})
    {
        process.setProcessEnvironment(environment());
        process.start(QStringLiteral(ORM_BINARY), QStringList{QStringLiteral("--headless")} + files() +
                                                      QStringList{QStringLiteral("--ticks"), QString::number(ticks)} + words);
        process.waitForStarted(5000);
    }

    // A run of `ticks` ticks to its end.
    Outcome runToEnd(int ticks, const QStringList& words = {})
    {
        start(ticks, words);
        return finished(process, 30000);
    }

    // A second headless program on the same files that runs no ticks (--log-headers, --export-log).
    Outcome command(const QStringList& args) const
    {
        QProcess p;
        p.setProcessEnvironment(environment());
        p.start(QStringLiteral(ORM_BINARY), QStringList{QStringLiteral("--headless")} + files() + args);
        return finished(p);
    }

    // What the program's own stopper writes into the settings file.
    bool appendCloseNow() const
    {
        QFile f(config);
        return f.open(QIODevice::Append) && f.write("CloseNow=True\n") > 0;
    }

    QString setting(const QString& key) const
    {
        QSettings s(config, QSettings::IniFormat);
        return s.value(QStringLiteral("Settings/") + key).toString();
    }

    // No working copy of a log (*.log1) is left behind.
    bool noWorkingCopies() const
    {
        return QDir(dataDir + QStringLiteral("/Logs")).entryList({QStringLiteral("*.log1")}, QDir::Files).isEmpty();
    }

    // Runs the event loop until the log holds `lines` value lines or the run ends.
    bool waitForValueLines(int lines, int ms = 20000)
    {
        for (int waited = 0; waited < ms; waited += 50) {
            if (valueLines().size() >= lines)
                return true;
            if (process.state() == QProcess::NotRunning)
                return false;
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
            process.waitForFinished(40);
        }
        return false;
    }

    bool finish(int ms = 30000) { return process.waitForFinished(ms) && process.exitCode() == 0; }

    QStringList lines() const
    {
        QFile f(dataDir + QStringLiteral("/Logs/ex") + QDate::currentDate().toString(QStringLiteral("yyyyMMdd")) +
                QStringLiteral(".log"));
        if (!f.open(QIODevice::ReadOnly))
            return {};
        return QString::fromLocal8Bit(f.readAll()).split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
    }

    QStringList valueLines() const
    {
        QStringList out;
        for (const QString& l : lines())
            if (!l.startsWith(QLatin1Char('#')))
                out << l;
        return out;
    }

    // The last "#Fields:" line, as column names.
    QStringList fields() const
    {
        QStringList f;
        for (const QString& l : lines())
            if (l.startsWith(QStringLiteral("#Fields: ")))
                f = l.mid(9).split(QLatin1Char(','));
        return f;
    }

    // The values of one column over all value lines.
    QStringList column(const QString& name) const
    {
        const int c = int(fields().indexOf(name));
        QStringList out;
        if (c < 0)
            return out;
        for (const QString& l : valueLines())
            out << l.split(QLatin1Char(',')).value(c);
        return out;
    }

    // The ms of each tick, from the trace's closing tag of the tick.
    std::vector<int> tickTimes() const
    {
        QFile f(dataDir + QStringLiteral("/Ormivane.txt"));
        std::vector<int> out;
        if (!f.open(QIODevice::ReadOnly))
            return out;
        const QString marker = QStringLiteral("TimerData 2.0 (");
        for (const QString& l : QString::fromLocal8Bit(f.readAll()).split(QLatin1Char('\n'))) {
            const int at = int(l.indexOf(marker));
            if (at >= 0)
                out.push_back(l.mid(at + marker.size()).chopped(1).toInt());
        }
        return out;
    }

    QTemporaryDir dir;
    QString dataDir, config;
    QProcessEnvironment extra;
    QProcess process;
};

}  // namespace orm::test
