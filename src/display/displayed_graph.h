// A Graph's picture as the windows and the headless snapshot show it: the line
// picture, the bars drawn over it, or the tray icons of this tick.
#pragma once

#include "model/graph_view.h"
#include "display/bar_graph.h"
#include "display/graph_picture.h"
#include "display/tray_icons.h"

#include <QImage>
#include <functional>
#include <memory>
#include <vector>

class QPainter;

namespace orm {

// When a Graph's pictures are drawn.
enum class Pictures {
    Always,     // every tick
    WhenSeen,   // while the Graph's window is shown; tray icons every tick
    OnRequest,  // only when a snapshot or a print asks for the picture
};

class DisplayedGraph : public GraphPicture {
public:
    DisplayedGraph(std::vector<Graph>& sensors, int index, QString commandLine, QString dataDir,
                   Pictures pictures = Pictures::Always);

    void WriteGraph(const std::vector<double>& values, const QString& label, int gridSeconds,
                    int labelEvery) override;
    using GraphPicture::WriteGraph;
    // The window was shown or hidden: with Pictures::WhenSeen a shown window's
    // picture is rebuilt from the history and drawn from then on.
    void setShown(bool shown);
    // The picture as it would stand had it been drawn all along: rebuilt from
    // the history when drawing was off (a snapshot, a print).
    void makePicture();

    // What the window shows now: the line picture, or the frame with its bars.
    QImage windowPicture() const;
    // Paints the same at 0, 0 without copying the whole picture: the bars are
    // drawn on a copy of only the part they cover.
    void paintWindowPicture(QPainter& painter) const;
    const std::vector<TrayIconPicture>& trayIcons() const { return icons_; }
    const BarGraphState& bars() const { return bars_; }

    // Graph<n>.png for a Line or Bar Graph, Graph<n>-icon<k>.ico for a tray Graph.
    bool saveSnapshot(const QString& folder, int graphNumber);

private:
    void setUpNodeBars(bool clearAllData);
    void barTick(const std::vector<double>& displayValues);
    void trayTick(const std::vector<double>& displayValues);
    void followWhoSees();

    std::vector<Graph>& sensors_;
    QString dataDir_;
    Pictures pictures_;
    bool shown_ = false;
    BarGraphState bars_;
    std::vector<TrayIconPicture> icons_;
};

// Makes a DisplayedGraph for each Graph and keeps them in reach for snapshots.
class DisplayedGraphFactory final : public GraphViewFactory {
public:
    DisplayedGraphFactory(QString commandLine, QString dataDir, Pictures pictures = Pictures::Always)
        : commandLine_(std::move(commandLine)), dataDir_(std::move(dataDir)), pictures_(pictures) {}
    // The model whose Graphs the views show; set before the first view is made.
    void bind(std::vector<Graph>& sensors) { sensors_ = &sensors; }
    std::unique_ptr<GraphView> make(int graphIndex) override;
    // Where every picture, made before or after, shows what it is busy with.
    void setStatus(std::function<void(const QString&)> show) { *status_ = std::move(show); }

private:
    std::vector<Graph>* sensors_ = nullptr;
    std::shared_ptr<std::function<void(const QString&)>> status_ =
        std::make_shared<std::function<void(const QString&)>>();
    QString commandLine_;
    QString dataDir_;
    Pictures pictures_;
};

// Saves the picture of every Graph whose view is a DisplayedGraph; false when one could not be written.
bool saveSnapshots(const std::vector<std::unique_ptr<GraphView>>& views, const QString& folder);

}  // namespace orm
