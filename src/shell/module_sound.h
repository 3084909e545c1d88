// The Alerts' sound in a run that may never play one: the sound module, and
// with it Qt Multimedia, is loaded when the first sound plays.
#pragma once

#include "model/module_library.h"
#include "shell/alert_sound.h"

namespace orm {

// The sound module's entry: a new AlertSound.
inline constexpr char NewSoundPlayerEntry[] = "ormivaneNewSoundPlayer";

class ModuleSound final : public SoundPlayer {
public:
    // Without its module a sound is passed over, as a file that cannot be played is.
    void play(const QString& file, bool loop) override
    {
        if (SoundPlayer* player = player_.get())
            player->play(file, loop);
    }
    void stop() override
    {
        if (SoundPlayer* player = player_.made())
            player->stop();
    }

private:
    ModuleObject<SoundPlayer> player_{"ormivane_sound", NewSoundPlayerEntry, "no sound"};
};

}  // namespace orm
