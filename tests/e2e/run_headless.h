// Starting build/ormivane on a settings file the test writes, and reading
// back what it logged.
#pragma once

#include <QCoreApplication>
#include <QDate>
#include <QFile>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <map>

namespace orm::test {

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

    void start(int ticks, const QStringList& words = {QStringLiteral("txtDebug")})
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), dir.filePath(QStringLiteral("xdg")));
        env.insert(QStringLiteral("XDG_DATA_HOME"), dir.filePath(QStringLiteral("xdg-data")));
        process.setProcessEnvironment(env);
        process.start(QStringLiteral(ORM_BINARY), QStringList{QStringLiteral("--headless"),
                                                              QStringLiteral("--data-dir"), dataDir,
                                                              QStringLiteral("--config"), config,
                                                              QStringLiteral("--ticks"), QString::number(ticks)} +
                                                      words);
        process.waitForStarted(5000);
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
    QProcess process;
};

}  // namespace orm::test
