#include "shell/program_alert_host.h"

#include "model/version.h"
#include "shell/alert_sound.h"
#include "shell/logind_power.h"

#include <QFileInfo>
#include <QProcess>
#include <QUrl>
#include <cstdio>

namespace orm {

bool startFile(const QString& file, const std::function<bool(const QUrl&)>& openUrl)
{
    const QFileInfo info(file);
    if (info.isFile() && info.isExecutable())
        return QProcess::startDetached(info.absoluteFilePath(), {}, info.absolutePath());
    if (!openUrl)
        return false;
    if (info.exists())
        return openUrl(QUrl::fromLocalFile(info.absoluteFilePath()));
    // Not a file: a web address or the like still opens.
    const QUrl url(file, QUrl::StrictMode);
    if (url.isValid() && url.scheme().size() > 1)
        return openUrl(url);
    return false;
}

ProgramAlertHost::ProgramAlertHost(ComputerPower& power, SoundPlayer& sound) : power_(power), sound_(sound)
{
    countdown_.setInterval(TimeOutInterval);
    connect(&countdown_, &QTimer::timeout, this, &ProgramAlertHost::countDown);
}

void ProgramAlertHost::setDialog(NoticeWindow* dialog)
{
    dialog_ = dialog;
    if (dialog_)
        dialog_->setStopSound([this] { sound_.stop(); });
}

void ProgramAlertHost::write(const QString& text)
{
    QString line = QLatin1String(ProductName) + QStringLiteral(" Notification Message: ") +
                   QString(text).replace(QStringLiteral("\r\n"), QStringLiteral(" ")).simplified();
    if (output_) {
        output_(line);
        return;
    }
    std::fputs(line.toLocal8Bit().constData(), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

void ProgramAlertHost::ShowMessage(const QString& text, bool timed, bool hold)
{
    if (dialog_) {
        dialog_->ShowMessage(text, timed, hold, false);
        return;
    }
    // Nobody can press Ok: a notice is printed and gone at once.
    if (!unseen_.show(text, timed, hold, false))
        return;
    write(text);
    if (timed)
        countdown_.start();
    else
        unseen_.ok();
}

void ProgramAlertHost::countDown()
{
    if (!unseen_.timeOutTick())
        return;
    countdown_.stop();
    write(QStringLiteral("No answer: taken as No."));
}

bool ProgramAlertHost::AwaitingAnswer() const
{
    return dialog_ ? dialog_->AwaitingAnswer() : unseen_.AwaitingAnswer;
}

int ProgramAlertHost::Answer() const
{
    return dialog_ ? dialog_->Answer() : unseen_.Answer;
}

void ProgramAlertHost::playSound(const QString& file)
{
    // Without a window to close, the sound plays once.
    sound_.play(file, dialog_ != nullptr);
}

void ProgramAlertHost::printGraph(int graphIndex)
{
    if (printer_)
        printer_(graphIndex);
}

void ProgramAlertHost::startApplication(const QString& file)
{
    startFile(file, openUrl_);
}

bool ProgramAlertHost::ExitComputer(int mode)
{
    return power_.ExitComputer(mode);
}

}  // namespace orm
