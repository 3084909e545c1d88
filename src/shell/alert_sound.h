// The sound of an Alert: a WAV through QSoundEffect, anything else (MP3) through
// QMediaPlayer, in a loop until stopped.
#pragma once

#include <QObject>
#include <QString>
#include <memory>

class QAudioOutput;
class QMediaPlayer;
class QSoundEffect;

namespace orm {

class SoundPlayer {
public:
    virtual ~SoundPlayer() = default;
    // Starts the file, from its beginning, again and again when `loop`. A file
    // that does not exist is passed over in silence.
    virtual void play(const QString& file, bool loop) = 0;
    virtual void stop() = 0;
};

class AlertSound final : public QObject, public SoundPlayer {
public:
    AlertSound();
    ~AlertSound() override;
    void play(const QString& file, bool loop) override;
    void stop() override;
    bool playing() const;

private:
    std::unique_ptr<QSoundEffect> effect_;
    std::unique_ptr<QAudioOutput> output_;
    std::unique_ptr<QMediaPlayer> player_;
};

}  // namespace orm
