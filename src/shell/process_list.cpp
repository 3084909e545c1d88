#include "shell/process_list.h"

#include "monitor/monitor.h"
#include "sources/processes.h"

#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QToolButton>
#include <QTreeWidget>

namespace orm {

namespace {
const QString TestingText = QStringLiteral("Testing....");
constexpr int RowRole = Qt::UserRole;
}  // namespace

ProcessList::ProcessList(Monitor& monitor, QWidget* parent) : QWidget(parent), monitor_(monitor)
{
    setObjectName(QStringLiteral("pctProcesses"));
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    list_ = new QTreeWidget(this);
    list_->setObjectName(QStringLiteral("LstVwProcesses"));
    list_->setHeaderLabels({QStringLiteral("Process"), QStringLiteral("ID")});
    list_->setRootIsDecorated(false);
    list_->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    list_->setMinimumHeight(140);
    grid->addWidget(list_, 0, 0, 1, 2);
    refresh_ = new QToolButton(this);
    refresh_->setObjectName(QStringLiteral("imgRefreshProcesses"));
    refresh_->setText(QStringLiteral("Refresh"));
    grid->addWidget(refresh_, 1, 0);
    status_ = new QLabel(this);
    status_->setObjectName(QStringLiteral("lblProcessStatus"));
    grid->addWidget(status_, 1, 1);

    connect(list_, &QTreeWidget::itemChanged, this, &ProcessList::itemChanged);
    connect(refresh_, &QToolButton::clicked, this, &ProcessList::refresh);
}

void ProcessList::load(int graph, int node)
{
    graph_ = graph;
    node_ = node;
    fill();
}

void ProcessList::fill()
{
    loading_ = true;
    list_->clear();
    const ProcessTable* table = monitor_.sources().processes.get();
    const Node* n = nullptr;
    if (graph_ >= 0 && size_t(graph_) < monitor_.Sensors.size() && node_ >= 0 &&
        size_t(node_) < monitor_.Sensors[size_t(graph_)].Nodes.size())
        n = &monitor_.Sensors[size_t(graph_)].Nodes[size_t(node_)];
    if (table) {
        const auto& rows = table->rows();
        // The Node's own row when it still names its process, else the last row
        // of that name, as ProcessIndexes would link it.
        int checked = -1;
        if (n && !n->ProcessMonitoring.isEmpty()) {
            if (n->ProcessIndex >= 0 && size_t(n->ProcessIndex) < rows.size() &&
                rows[size_t(n->ProcessIndex)].szExeFile == n->ProcessMonitoring)
                checked = n->ProcessIndex;
            else
                for (size_t r = 0; r < rows.size(); ++r)
                    if (rows[r].szExeFile == n->ProcessMonitoring)
                        checked = int(r);
        }
        for (size_t r = 0; r < rows.size(); ++r) {
            auto* item = new QTreeWidgetItem(list_);
            item->setText(0, rows[r].szExeFile);
            item->setText(1, QString::number(rows[r].th32ProcessID));
            item->setData(0, RowRole, int(r));
            item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
            item->setCheckState(0, int(r) == checked ? Qt::Checked : Qt::Unchecked);
        }
        if (checked >= 0)
            list_->scrollToItem(list_->topLevelItem(checked));
    }
    loading_ = false;
}

void ProcessList::itemChanged(QTreeWidgetItem* item, int column)
{
    if (loading_ || column != 0 || graph_ < 0 || size_t(graph_) >= monitor_.Sensors.size())
        return;
    Graph& g = monitor_.Sensors[size_t(graph_)];
    if (node_ < 0 || size_t(node_) >= g.Nodes.size())
        return;
    Node& n = g.Nodes[size_t(node_)];
    if (item->checkState(0) == Qt::Checked) {
        n.ProcessMonitoring = item->text(0);
        n.ProcessIndex = qint16(item->data(0, RowRole).toInt());
        // Only one process is watched: the others lose their checks.
        loading_ = true;
        for (int r = 0; r < list_->topLevelItemCount(); ++r) {
            QTreeWidgetItem* other = list_->topLevelItem(r);
            if (other != item && other->checkState(0) != Qt::Unchecked)
                other->setCheckState(0, Qt::Unchecked);
        }
        loading_ = false;
    } else {
        n.ProcessIndex = 0;
    }
    monitor_.SaveSettings();
}

void ProcessList::refresh()
{
    ProcessTable* table = monitor_.sources().processes.get();
    if (!table)
        return;
    status_->setText(TestingText);
    status_->repaint();
    table->RefreshProcessList(true);  // the names as they stand now
    ProcessIndexes(monitor_.Sensors, *table);
    fill();
    status_->clear();
}

}  // namespace orm
