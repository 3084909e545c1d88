#include "shell/tray_graphs.h"

#include "display/displayed_graph.h"
#include "display/tray_icons.h"

#include <QPixmap>

namespace orm {

TrayGraphs::TrayGraphs(std::vector<Graph>& sensors, std::vector<std::unique_ptr<GraphView>>& forms, QMenu* menu,
                       QIcon firstIcon, QObject* parent)
    : QObject(parent), sensors_(sensors), forms_(forms), menu_(menu), firstIcon_(std::move(firstIcon))
{
}

TrayGraphs::~TrayGraphs() = default;

void TrayGraphs::clear()
{
    graphs_.clear();
}

void TrayGraphs::setUp(Shown& shown, const GraphView* view, int count)
{
    shown.icons.clear();
    shown.pictures.assign(size_t(count), QByteArray());
    shown.view = view;
    for (int k = 0; k < count; ++k) {
        auto icon = std::make_unique<QSystemTrayIcon>(firstIcon_);
        icon->setToolTip(notifyTip(firstIconTip()));
        // Only the right button does something here: it opens the menu.
        if (menu_)
            icon->setContextMenu(menu_);
        icon->show();
        shown.icons.push_back(std::move(icon));
    }
}

void TrayGraphs::update()
{
    graphs_.resize(sensors_.size());
    for (size_t g = 0; g < sensors_.size(); ++g) {
        Shown& shown = graphs_[g];
        const Graph& graph = sensors_[g];
        if (graph.GraphType != SystrayIcon || !graph.Visible) {
            shown = Shown();
            continue;
        }
        const GraphView* view = g < forms_.size() ? forms_[g].get() : nullptr;
        const int count = orm::iconCount(graph);
        if (view != shown.view || count != int(shown.icons.size()))
            setUp(shown, view, count);

        const auto* pictures = dynamic_cast<const DisplayedGraph*>(view);
        if (!pictures)
            continue;
        for (const TrayIconPicture& p : pictures->trayIcons()) {
            // Pictures of a tick before the Nodes changed may name icons that are gone.
            if (p.icon < 0 || p.icon >= count)
                continue;
            QSystemTrayIcon& icon = *shown.icons[size_t(p.icon)];
            if (shown.pictures[size_t(p.icon)] != p.picture) {
                const QImage image = icoPicture(p.picture);
                if (!image.isNull()) {
                    icon.setIcon(QIcon(QPixmap::fromImage(image)));
                    shown.pictures[size_t(p.icon)] = p.picture;
                }
            }
            const QString tip = notifyTip(p.tip);
            if (icon.toolTip() != tip)
                icon.setToolTip(tip);
        }
    }
}

int TrayGraphs::iconCount(int graph) const
{
    if (graph < 0 || size_t(graph) >= graphs_.size())
        return 0;
    return int(graphs_[size_t(graph)].icons.size());
}

QSystemTrayIcon* TrayGraphs::icon(int graph, int k) const
{
    if (k < 0 || k >= iconCount(graph))
        return nullptr;
    return graphs_[size_t(graph)].icons[size_t(k)].get();
}

}  // namespace orm
