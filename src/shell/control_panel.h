// frmMain: the control panel window. It shows the tree of Graphs and Nodes and
// the panel's labels; closing it with the window's button only hides it.
#pragma once

#include <QMainWindow>

class QLabel;
class QTreeWidget;

namespace orm {

class Monitor;

class ControlPanel : public QMainWindow {
    Q_OBJECT
public:
    explicit ControlPanel(Monitor& monitor, QWidget* parent = nullptr);

    // Fills the tree from the model; the first Graph is selected.
    void rebuildTree();
    // After a tick: the retrieval label and its red state.
    void afterTick();
    // The program is ending: the close event goes through.
    void allowClose() { closing_ = true; }
    QLabel* retrievalLabel() const { return lblDataRetrieval_; }
    QTreeWidget* tree() const { return tree_; }

signals:
    // The user closed the panel: it is hidden, and the tray says the program runs on.
    void hiddenToTray();

protected:
    void closeEvent(QCloseEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Monitor& monitor_;
    QTreeWidget* tree_ = nullptr;
    QLabel* lblDataRetrieval_ = nullptr;
    QLabel* lblSensorError_ = nullptr;
    bool closing_ = false;
};

// The tray message of a panel closed by its window button.
QString systrayIconNoticeTitle();
QString systrayIconNoticeText();

}  // namespace orm
