// The program's side of the actions: headless lines and the unanswered
// question, the window's closing that stops the sound, starting a real
// script, and a real WAV where the machine has an audio output.
#include "pump_until.h"
#include "shell/alert_sound.h"
#include "shell/logind_power.h"
#include "shell/message_dialog.h"
#include "shell/program_alert_host.h"

#include <QAudioDevice>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QElapsedTimer>
#include <QFile>
#include <QMediaDevices>
#include <QPushButton>
#include <QTemporaryDir>
#include <QUrl>
#include <QtEndian>
#include <cmath>
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

class RecordingPower final : public ComputerPower {
public:
    bool ExitComputer(int mode) override
    {
        modes.push_back(mode);
        return true;
    }
    std::vector<int> modes;
};

// Stands in as the desktop's handler of file URLs.
class OpenedUrls : public QObject {
    Q_OBJECT
public:
    QList<QUrl> urls;
public slots:
    void open(const QUrl& u) { urls << u; }
};

struct Headless {
    RecordingPower power;
    RecordingSound sound;
    ProgramAlertHost host{power, sound};
    QStringList lines;
    Headless()
    {
        host.setOutput([this](const QString& l) { lines << l; });
    }
};

// One second of a 440 Hz tone, 16-bit mono PCM.
QByteArray toneWav()
{
    const int rate = 8000, samples = rate;
    QByteArray pcm(samples * 2, '\0');
    for (int i = 0; i < samples; ++i)
        qToLittleEndian<qint16>(qint16(8000 * std::sin(2 * M_PI * 440 * i / rate)), pcm.data() + 2 * i);
    QByteArray wav("RIFF");
    auto u32 = [&](quint32 v) {
        char b[4];
        qToLittleEndian(v, b);
        wav.append(b, 4);
    };
    auto u16 = [&](quint16 v) {
        char b[2];
        qToLittleEndian(v, b);
        wav.append(b, 2);
    };
    u32(36 + pcm.size());
    wav += "WAVEfmt ";
    u32(16);
    u16(1);
    u16(1);
    u32(rate);
    u32(rate * 2);
    u16(2);
    u16(16);
    wav += "data";
    u32(pcm.size());
    return wav + pcm;
}

}  // namespace

TEST(HeadlessAlertHost, NoticesArePrintedWithTheTitleAndASoundPlaysOnce)
{
    Headless h;
    h.host.playSound(QStringLiteral("/tmp/x.wav"));
    h.host.ShowMessage(QStringLiteral("CPU has exceeded 90"), false, false);
    h.host.ShowMessage(QStringLiteral("Second\r\nline"), false, false);
    EXPECT_EQ(h.lines, QStringList({"Ormivane Notification Message: CPU has exceeded 90",
                                    "Ormivane Notification Message: Second line"}));
    EXPECT_EQ(h.sound.calls, QStringList({"once:/tmp/x.wav"}));
    EXPECT_FALSE(h.host.AwaitingAnswer());
}

TEST(HeadlessAlertHost, QuestionCountsDownUnansweredToNoAndDropsNoticesMeanwhile)
{
    Headless h;
    h.host.setQuestionStep(2);
    h.host.ShowMessage(QStringLiteral("\r\nRestart?\r\n"), true, true);
    EXPECT_TRUE(h.host.AwaitingAnswer());
    h.host.ShowMessage(QStringLiteral("lost"), false, false);
    ASSERT_TRUE(pumpUntil([&] { return !h.host.AwaitingAnswer(); }));
    EXPECT_EQ(h.host.Answer(), AlertAnswerNo);
    EXPECT_EQ(h.lines, QStringList({"Ormivane Notification Message: Restart?",
                                    "Ormivane Notification Message: No answer: taken as No."}));
    // The next notice shows again.
    h.host.ShowMessage(QStringLiteral("back"), false, false);
    EXPECT_EQ(h.lines.size(), 3);
}

TEST(DesktopAlertHost, TheSoundLoopsUntilTheNoticeIsClosed)
{
    RecordingPower power;
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
    EXPECT_TRUE(host.ExitComputer(2));
    EXPECT_EQ(power.modes, std::vector<int>{2});
}

TEST(StartFile, ScriptRunsDocumentsGoToTheDesktopAndMissingFilesDoNothing)
{
    QTemporaryDir dir;
    const QString script = dir.filePath(QStringLiteral("on alert.sh"));
    {
        QFile f(script);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("#!/bin/sh\necho \"ran in $(pwd)\" > started.txt\n");
        f.close();
        f.setPermissions(f.permissions() | QFileDevice::ExeOwner);
    }
    ASSERT_TRUE(startFile(script));
    const QString marker = dir.filePath(QStringLiteral("started.txt"));
    ASSERT_TRUE(pumpUntil([&] { return QFile::exists(marker) && QFileInfo(marker).size() > 0; }));
    QFile out(marker);
    ASSERT_TRUE(out.open(QIODevice::ReadOnly));
    EXPECT_EQ(out.readAll().trimmed(), "ran in " + dir.path().toUtf8());

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

TEST(AlertSound, RealWavPlaysInALoopUntilStopped)
{
    if (QMediaDevices::audioOutputs().isEmpty())
        GTEST_SKIP() << "this machine has no audio output: the WAV is not played";
    QTemporaryDir dir;
    const QString wav = dir.filePath(QStringLiteral("tone.wav"));
    QFile f(wav);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(toneWav());
    f.close();
    AlertSound sound;
    sound.play(wav, true);
    EXPECT_TRUE(pumpUntil([&] { return sound.playing(); }, 5000));
    sound.stop();
    EXPECT_FALSE(sound.playing());
}

TEST(AlertSound, MissingFileIsPassedOverInSilence)
{
    AlertSound sound;
    sound.play(QStringLiteral("/nonexistent/alarm.wav"), true);
    sound.play(QString(), true);
    EXPECT_FALSE(sound.playing());
    sound.stop();
}

#include "alert_host_test.moc"
