// The sound module: the Alerts' sound with Qt Multimedia, loaded when the first
// sound plays.
#include "shell/alert_sound.h"
#include "shell/module_sound.h"

extern "C" Q_DECL_EXPORT orm::SoundPlayer* ormivaneNewSoundPlayer()
{
    return new orm::AlertSound;
}
