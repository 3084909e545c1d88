// The process list of a Process Node (LstVwProcesses): one checkable row per
// row of the process table; the checked row is the process the Node watches.
// imgRefreshProcesses takes a new snapshot and links every Node to it again.
#pragma once

#include <QWidget>

class QLabel;
class QToolButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace orm {

class Monitor;

class ProcessList : public QWidget {
    Q_OBJECT
public:
    explicit ProcessList(Monitor& monitor, QWidget* parent = nullptr);

    // Lists the process table as it stands and checks the Node's process; writes nothing.
    void load(int graph, int node);
    // imgRefreshProcesses: a new snapshot, the rows again, ProcessIndexes.
    void refresh();

private:
    void fill();
    void itemChanged(QTreeWidgetItem* item, int column);

    Monitor& monitor_;
    int graph_ = -1;
    int node_ = -1;
    bool loading_ = false;
    QTreeWidget* list_ = nullptr;
    QToolButton* refresh_ = nullptr;
    QLabel* status_ = nullptr;
};

}  // namespace orm
