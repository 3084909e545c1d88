// The icons of Systray Icon Graphs: one tray icon per picture that the Graph's
// view builds each tick, with the picture's tip.
#pragma once

#include "model/graph_view.h"
#include "model/model.h"

#include <QByteArray>
#include <QIcon>
#include <QObject>
#include <QSystemTrayIcon>
#include <memory>
#include <vector>

class QMenu;

namespace orm {

class TrayGraphs : public QObject {
    Q_OBJECT
public:
    // `menu` (may be null) opens on a right click on any of the icons;
    // `firstIcon` is what a new icon shows until its first picture.
    TrayGraphs(std::vector<Graph>& sensors, std::vector<std::unique_ptr<GraphView>>& forms, QMenu* menu,
               QIcon firstIcon, QObject* parent = nullptr);
    ~TrayGraphs() override;

    // After each tick and after any edit of the Graphs: a visible Systray Icon
    // Graph gets its icons (re-made when its view or icon count changed) and
    // this tick's pictures and tips; every other Graph loses its icons.
    void update();
    // Removes every icon (the program is ending).
    void clear();

    int iconCount(int graph) const;
    // Null when the Graph has no such icon.
    QSystemTrayIcon* icon(int graph, int k) const;

private:
    struct Shown {
        const GraphView* view = nullptr;
        std::vector<std::unique_ptr<QSystemTrayIcon>> icons;
        std::vector<QByteArray> pictures;  // the picture each icon shows, to skip repeats
    };
    void setUp(Shown& shown, const GraphView* view, int count);

    std::vector<Graph>& sensors_;
    std::vector<std::unique_ptr<GraphView>>& forms_;
    QMenu* menu_;
    QIcon firstIcon_;
    std::vector<Shown> graphs_;  // parallel to Sensors
};

}  // namespace orm
