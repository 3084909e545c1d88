// A CUPS daemon of the test's own: its configuration, spool and socket in one
// folder, and cups-pdf queues that write what they print as PDF files. The
// processes that name its socket in CUPS_SERVER see its queues and no other.
#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QString>
#include <QThread>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orm::test {

class CupsDaemon {
public:
    static constexpr const char* Ppd = "/usr/share/ppd/cups-pdf/CUPS-PDF_noopt.ppd";

    // `folder` is the daemon's alone and emptied at start; the folders above it must be open to
    // all, as the queue's filters run as another user.
    explicit CupsDaemon(QString folder) : folder_(std::move(folder)) {}
    ~CupsDaemon() { stop(); }

    QString socket() const { return folder_ + QStringLiteral("/cups.sock"); }

    // Why no daemon can print to PDF here; empty when one can.
    static QString unavailable()
    {
        if (!QFileInfo::exists(QStringLiteral("/usr/sbin/cupsd")))
            return QStringLiteral("cupsd is not installed (Debian's cups)");
        if (!QFileInfo::exists(QStringLiteral("/usr/lib/cups/backend/cups-pdf")) || !QFileInfo::exists(Ppd))
            return QStringLiteral("cups-pdf is not installed (Debian's printer-driver-cups-pdf)");
        if (geteuid() != 0)
            return QStringLiteral("cups-pdf writes its files only for a CUPS daemon that runs as root");
        return {};
    }

    // Starts it with no queue; false with `error` when it did not come up.
    bool start(QString& error)
    {
        stop();
        QDir(folder_).removeRecursively();
        for (const char* sub : {"spool", "cache", "state", "log", "ppd", "tmp"})
            QDir().mkpath(folder_ + QLatin1Char('/') + QLatin1String(sub));
        // The filters run as the lp user: they must reach the spool and write their scratch files.
        ::chmod(QFile::encodeName(folder_).constData(), 0755);
        ::chmod(QFile::encodeName(folder_ + QStringLiteral("/tmp")).constData(), 01777);
        write(QStringLiteral("cupsd.conf"), QStringLiteral("Listen %1\nLogLevel warn\nBrowsing Off\nDefaultAuthType None\n"
                                                           "<Location />\nOrder allow,deny\nAllow all\n</Location>\n"
                                                           "<Policy default>\n<Limit All>\nOrder deny,allow\n</Limit>\n</Policy>\n")
                                                .arg(socket()));
        write(QStringLiteral("cups-files.conf"),
              QStringLiteral("ServerRoot %1\nRequestRoot %1/spool\nCacheDir %1/cache\nStateDir %1/state\nTempDir %1/tmp\n"
                             "ErrorLog %1/log/error_log\nAccessLog %1/log/access_log\nPageLog %1/log/page_log\n"
                             "ServerBin /usr/lib/cups\nDataDir /usr/share/cups\n")
                  .arg(folder_));
        daemon_.setProcessChannelMode(QProcess::MergedChannels);
        daemon_.start(QStringLiteral("/usr/sbin/cupsd"),
                      {QStringLiteral("-f"), QStringLiteral("-c"), folder_ + QStringLiteral("/cupsd.conf"),
                       QStringLiteral("-s"), folder_ + QStringLiteral("/cups-files.conf")});
        // Bounded: the daemon is up once its socket answers lpstat.
        for (int i = 0; i < 100; ++i) {
            if (daemon_.state() == QProcess::NotRunning)
                break;
            if (QFileInfo::exists(socket()) && run(QStringLiteral("lpstat"), {QStringLiteral("-r")}, error))
                return true;
            QThread::msleep(100);
        }
        error = QStringLiteral("cupsd did not start: ") + QString::fromLocal8Bit(daemon_.readAll()) + error;
        return false;
    }

    void stop()
    {
        if (daemon_.state() == QProcess::NotRunning)
            return;
        daemon_.terminate();
        if (!daemon_.waitForFinished(10000)) {
            daemon_.kill();
            daemon_.waitForFinished(5000);
        }
    }

    // A cups-pdf queue that takes jobs, made the default when asked.
    bool addPdfQueue(const QString& name, bool makeDefault, QString& error)
    {
        if (!run(QStringLiteral("lpadmin"), {QStringLiteral("-p"), name, QStringLiteral("-E"), QStringLiteral("-v"),
                                             QStringLiteral("cups-pdf:/"), QStringLiteral("-P"), QLatin1String(Ppd)},
                 error))
            return false;
        return !makeDefault || run(QStringLiteral("lpadmin"), {QStringLiteral("-d"), name}, error);
    }

    // A CUPS client tool against this daemon; false with its output in `error`.
    bool run(const QString& tool, const QStringList& args, QString& error, QString* output = nullptr) const
    {
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("CUPS_SERVER"), socket());
        p.setProcessEnvironment(env);
        p.setProcessChannelMode(QProcess::MergedChannels);
        p.start(tool, args);
        const bool ok = p.waitForFinished(30000) && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
        const QString out = QString::fromLocal8Bit(p.readAll());
        if (output)
            *output = out;
        if (!ok)
            error = tool + QLatin1Char(' ') + args.join(QLatin1Char(' ')) + QStringLiteral(": ") + out;
        return ok;
    }

    // Where cups-pdf puts the files of jobs from this user: its "Out" setting.
    static QString pdfOutputFolder()
    {
        QString out = QStringLiteral("${HOME}/PDF");
        QFile conf(QStringLiteral("/etc/cups/cups-pdf.conf"));
        if (conf.open(QIODevice::ReadOnly))
            for (const QString& line : QString::fromLocal8Bit(conf.readAll()).split(QLatin1Char('\n')))
                if (line.startsWith(QStringLiteral("Out ")))
                    out = line.mid(4).trimmed();
        const passwd* me = getpwuid(getuid());
        out.replace(QStringLiteral("${HOME}"), QString::fromLocal8Bit(me ? me->pw_dir : ""));
        out.replace(QStringLiteral("${USER}"), QString::fromLocal8Bit(me ? me->pw_name : ""));
        return out;
    }

private:
    void write(const QString& name, const QString& text) const
    {
        QFile f(folder_ + QLatin1Char('/') + name);
        if (f.open(QIODevice::WriteOnly))
            f.write(text.toLocal8Bit());
    }

    QString folder_;
    QProcess daemon_;
};

}  // namespace orm::test
