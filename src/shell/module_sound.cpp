#include "shell/module_sound.h"

namespace orm {

ModuleSound::~ModuleSound()
{
    player_.reset();  // before its module goes
}

void ModuleSound::play(const QString& file, bool loop)
{
    if (!module_) {
        module_.emplace("ormivane_sound");
        player_.reset(module_->make<SoundPlayer>(NewSoundPlayerEntry, "no sound"));
    }
    // Without its module a sound is passed over, as a file that cannot be played is.
    if (player_)
        player_->play(file, loop);
}

void ModuleSound::stop()
{
    if (player_)
        player_->stop();
}

}  // namespace orm
