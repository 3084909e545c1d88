#include "shell/module_sound.h"

#include <cstdio>

namespace orm {

ModuleSound::~ModuleSound()
{
    player_.reset();  // before its module goes
}

void ModuleSound::play(const QString& file, bool loop)
{
    if (!module_) {
        module_.emplace("ormivane_sound");
        if (auto* make = module_->function<NewSoundPlayer>(NewSoundPlayerEntry))
            player_.reset(make());
        else
            std::fprintf(stderr, "ormivane: no sound: %s\n", qPrintable(module_->error()));
        std::fflush(stderr);
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
