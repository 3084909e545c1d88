#include "shell/alert_sound.h"

#include <QAudioOutput>
#include <QFileInfo>
#include <QMediaPlayer>
#include <QSoundEffect>
#include <QUrl>

namespace orm {

AlertSound::AlertSound() = default;
AlertSound::~AlertSound() = default;

void AlertSound::play(const QString& file, bool loop)
{
    stop();
    const QFileInfo info(file);
    if (file.isEmpty() || !info.isFile())
        return;
    const QUrl url = QUrl::fromLocalFile(info.absoluteFilePath());
    if (info.suffix().compare(QLatin1String("wav"), Qt::CaseInsensitive) == 0) {
        if (!effect_)
            effect_ = std::make_unique<QSoundEffect>();
        effect_->setSource(url);
        effect_->setLoopCount(loop ? QSoundEffect::Infinite : 1);
        effect_->play();
        return;
    }
    if (!player_) {
        output_ = std::make_unique<QAudioOutput>();
        player_ = std::make_unique<QMediaPlayer>();
        player_->setAudioOutput(output_.get());
    }
    player_->setSource(url);
    player_->setLoops(loop ? QMediaPlayer::Infinite : 1);
    player_->play();
}

void AlertSound::stop()
{
    if (effect_)
        effect_->stop();
    if (player_)
        player_->stop();
}

bool AlertSound::playing() const
{
    return (effect_ && effect_->isPlaying()) || (player_ && player_->playbackState() == QMediaPlayer::PlayingState);
}

}  // namespace orm
