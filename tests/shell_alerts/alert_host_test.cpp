// The program's side of the actions: headless lines and the unanswered
// question, the window's closing that stops the sound, starting a real script.
#include "pump_until.h"
#include "shell/alert_sound.h"
#include "shell/logind_power.h"
#include "shell/message_dialog.h"
#include "shell/program_alert_host.h"

#include <QDesktopServices>
#include <QFile>
#include <QPushButton>
#include <QTemporaryDir>
#include <QUrl>
#include <gtest/gtest.h>

using namespace orm;
using namespace orm::test;

namespace {

class RecordingSound final : public SoundPlayer {
public:
    void play(const QString& file, bool loop) override { calls << (loop ? "loop:" : "once:") + file; }
    void stop() override { calls << QStringLiteral("stop"); }
    QStringList calls;
};

class NoPower final : public ComputerPower {
public:
    bool ExitComputer(int) override { return false; }
};

// Stands in as the desktop's handler of file URLs.
class OpenedUrls : public QObject {
    Q_OBJECT
public:
    QList<QUrl> urls;
public slots:
    void open(const QUrl& u) { urls << u; }
};

}  // namespace

TEST(HeadlessAlertHost, NoticesArePrintedAndAQuestionCountsDownUnansweredToNo)
{
    NoPower power;
    RecordingSound sound;
    ProgramAlertHost host(power, sound);
    QStringList lines;
    host.setOutput([&](const QString& l) { lines << l; });
    host.playSound(QStringLiteral("/tmp/x.wav"));
    host.ShowMessage(QStringLiteral("Second\r\nline"), false, false);
    EXPECT_EQ(sound.calls, QStringList({"once:/tmp/x.wav"}));

    host.setQuestionStep(2);
    host.ShowMessage(QStringLiteral("\r\nRestart?\r\n"), true, true);
    EXPECT_TRUE(host.AwaitingAnswer());
    host.ShowMessage(QStringLiteral("lost"), false, false);  // dropped while the question waits
    ASSERT_TRUE(pumpUntil([&] { return !host.AwaitingAnswer(); }));
    EXPECT_EQ(host.Answer(), AlertAnswerNo);
    host.ShowMessage(QStringLiteral("back"), false, false);
    EXPECT_EQ(lines, QStringList({"Ormivane Notification Message: Second line",
                                  "Ormivane Notification Message: Restart?",
                                  "Ormivane Notification Message: No answer: taken as No.",
                                  "Ormivane Notification Message: back"}));
}

TEST(DesktopAlertHost, TheSoundLoopsUntilTheNoticeIsClosed)
{
    NoPower power;
    RecordingSound sound;
    ProgramAlertHost host(power, sound);
    MessageDialog dialog;
    host.setDialog(&dialog);
    host.playSound(QStringLiteral("/tmp/alarm.mp3"));
    host.ShowMessage(QStringLiteral("Disk has exceeded 90"), false, false);
    host.ShowMessage(QStringLiteral("Disk has exceeded 90"), false, false);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(dialog.text(), "Disk has exceeded 90\r\nDisk has exceeded 90\r\n");
    EXPECT_EQ(sound.calls, QStringList({"loop:/tmp/alarm.mp3"}));
    dialog.okButton()->click();
    EXPECT_EQ(sound.calls, QStringList({"loop:/tmp/alarm.mp3", "stop"}));
    EXPECT_FALSE(dialog.isVisible());
}

TEST(StartFile, ScriptRunsDocumentsGoToTheDesktopAndMissingFilesDoNothing)
{
    QTemporaryDir dir;
    const QString script = dir.filePath(QStringLiteral("on alert.sh"));
    {
        QFile f(script);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("#!/bin/sh\necho \"ran in $(pwd)\" > started.txt\n");
        f.setPermissions(f.permissions() | QFileDevice::ExeOwner);
    }
    ASSERT_TRUE(startFile(script));
    QFile marker(dir.filePath(QStringLiteral("started.txt")));
    ASSERT_TRUE(pumpUntil([&] { return marker.size() > 0; }));
    ASSERT_TRUE(marker.open(QIODevice::ReadOnly));
    EXPECT_EQ(marker.readAll().trimmed(), "ran in " + dir.path().toUtf8());

    // A document opens with the desktop's handler for it.
    OpenedUrls opened;
    QDesktopServices::setUrlHandler(QStringLiteral("file"), &opened, "open");
    const QString document = dir.filePath(QStringLiteral("notes.txt"));
    QFile(document).open(QIODevice::WriteOnly);
    EXPECT_TRUE(startFile(document));
    EXPECT_FALSE(startFile(dir.filePath(QStringLiteral("missing.sh"))));
    EXPECT_FALSE(startFile(QString()));
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    EXPECT_EQ(opened.urls, QList<QUrl>({QUrl::fromLocalFile(document)}));
}

TEST(AlertSound, MissingFilesPassInSilence)
{
    AlertSound sound;
    sound.play(QStringLiteral("/nonexistent/alarm.wav"), true);
    sound.play(QString(), true);
    EXPECT_FALSE(sound.playing());
    sound.stop();
}

#include "alert_host_test.moc"
