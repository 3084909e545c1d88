// A PanelHost that records what the panels asked of the windows: "<call>:<graph>"
// in `calls`, and the messages apart.
#pragma once

#include "shell/panel_host.h"

#include <QStringList>

namespace orm::test {

class RecordingHost final : public PanelHost {
public:
    DisplayedGraph* picture(int) override { return nullptr; }
    void nodesChanged(int g) override { record("nodes", g); }
    void redraw(int g) override { record("redraw", g); }
    void graphTypeChanged(int g) override { record("type", g); }
    void visibilityChanged(int g) override { record("visible", g); }
    void topMostChanged(int g) override { record("topmost", g); }
    void transparencyChanged(int g) override { record("trans", g); }
    void opacityChanged(int g) override { record("opacity", g); }
    void captionsChanged(int g) override { record("captions", g); }
    void showMessage(const QString& text) override { messages << text; }

    QStringList calls;
    QStringList messages;

private:
    void record(const char* what, int g) { calls << QStringLiteral("%1:%2").arg(QLatin1String(what)).arg(g); }
};

}  // namespace orm::test
