// The Alerts' sound in a run that may never play one: the sound module, and
// with it Qt Multimedia, is loaded when the first sound plays.
#pragma once

#include "model/module_library.h"
#include "shell/alert_sound.h"

#include <memory>
#include <optional>

namespace orm {

// The sound module's entry: a new AlertSound.
inline constexpr char NewSoundPlayerEntry[] = "ormivaneNewSoundPlayer";

class ModuleSound final : public SoundPlayer {
public:
    ~ModuleSound() override;
    void play(const QString& file, bool loop) override;
    void stop() override;

private:
    std::optional<ModuleLibrary> module_;
    std::unique_ptr<SoundPlayer> player_;
};

}  // namespace orm
