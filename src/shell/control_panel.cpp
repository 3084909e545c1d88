#include "shell/control_panel.h"

#include "core/catalogue.h"
#include "core/monitor.h"
#include "core/version.h"

#include <QCloseEvent>
#include <QMoveEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMouseEvent>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace orm {

QString systrayIconNoticeTitle()
{
    return QLatin1String(ProductName) + QStringLiteral(" Systray Icon");
}

QString systrayIconNoticeText()
{
    const QString p = QLatin1String(ProductName);
    return p + QStringLiteral(" is still running in the background when you see this icon in the Systray. To stop "
                              "running ") +
           p + QStringLiteral(", right-click on this icon and click Exit. To open the Control Panel again just "
                              "double-click on this icon.");
}

ControlPanel::ControlPanel(Monitor& monitor, QWidget* parent) : QMainWindow(parent), monitor_(monitor)
{
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(QLatin1String(ProductName));
    auto* central = new QWidget(this);
    auto* layout = new QHBoxLayout(central);
    tree_ = new QTreeWidget(central);
    tree_->setObjectName(QStringLiteral("VistaTree"));
    tree_->setHeaderHidden(true);
    tree_->setMinimumWidth(220);
    layout->addWidget(tree_);

    auto* right = new QVBoxLayout;
    lblSensorError_ = new QLabel(central);
    lblSensorError_->setObjectName(QStringLiteral("lblSensorError"));
    lblSensorError_->setWordWrap(true);
    right->addWidget(lblSensorError_);
    right->addStretch(1);
    lblDataRetrieval_ = new QLabel(central);
    lblDataRetrieval_->setObjectName(QStringLiteral("lblDataRetrieval"));
    lblDataRetrieval_->installEventFilter(this);
    right->addWidget(lblDataRetrieval_);
    layout->addLayout(right, 1);
    setCentralWidget(central);
    resize(640, 420);
    if (monitor_.Settings.XLoc > 0 || monitor_.Settings.YLoc > 0)
        move(monitor_.Settings.XLoc, monitor_.Settings.YLoc);
    rebuildTree();
}

void ControlPanel::rebuildTree()
{
    tree_->clear();
    for (size_t i = 0; i < monitor_.Sensors.size(); ++i) {
        const Graph& g = monitor_.Sensors[i];
        auto* graphItem = new QTreeWidgetItem(tree_, {g.Name});
        graphItem->setToolTip(0, g.LogGraph ? QStringLiteral("Log Graph") : nodeTypeName(g.GraphType));
        for (size_t j = 0; j < g.Nodes.size(); ++j) {
            auto* nodeItem = new QTreeWidgetItem(graphItem, {g.Nodes[j].Name});
            nodeItem->setToolTip(0, nodeTypeName(g.Nodes[j].NodeType, monitor_.Sensors, int(i), int(j)));
        }
        graphItem->setExpanded(!g.Collapsed);
    }
    if (tree_->topLevelItemCount() > 0)
        tree_->setCurrentItem(tree_->topLevelItem(0));
}

void ControlPanel::afterTick()
{
    lblDataRetrieval_->setText(monitor_.retrievalText);
    lblDataRetrieval_->setStyleSheet(monitor_.retrievalRed ? QStringLiteral("color: rgb(255, 0, 0);")
                                                           : QStringLiteral("color: rgb(0, 0, 0);"));
    if (monitor_.Settings.DisplayToolTips)
        lblDataRetrieval_->setToolTip(monitor_.retrievalToolTip());
}

bool ControlPanel::eventFilter(QObject* watched, QEvent* event)
{
    // A click on the rate label takes the red back.
    if (watched == lblDataRetrieval_ && event->type() == QEvent::MouseButtonPress) {
        monitor_.clearRetrievalRed();
        afterTick();
    }
    return QMainWindow::eventFilter(watched, event);
}

void ControlPanel::moveEvent(QMoveEvent* event)
{
    // Shut-down writes where the panel stood.
    monitor_.Settings.XLoc = x();
    monitor_.Settings.YLoc = y();
    QMainWindow::moveEvent(event);
}

void ControlPanel::closeEvent(QCloseEvent* event)
{
    if (closing_ || monitor_.Closing) {
        event->accept();
        return;
    }
    // The user's close only hides the panel; the program runs on in the tray.
    event->ignore();
    hide();
    emit hiddenToTray();
}

}  // namespace orm
