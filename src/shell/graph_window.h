// frmGraph: the borderless window of one Graph. It shows the picture that the
// Graph's DisplayedGraph keeps, moves on a left press, resizes by the
// bottom-right corner, draws the cross-hair over the picture, fades and takes
// the shape of a transparent Bar Graph.
#pragma once

#include "display/cross_hair.h"
#include "display/line_painter.h"

#include <QEnterEvent>
#include <QImage>
#include <QRegion>
#include <QTimer>
#include <QWidget>
#include <algorithm>
#include <functional>
#include <memory>

class QLabel;
class QMenu;

namespace orm {

class DisplayedGraph;
class GraphMenuActions;
class Monitor;

// The window's alpha: the fade-in on opening and the hover fade, as numbers.
class WindowFade {
public:
    int alpha() const { return alpha_; }
    bool mouseOver() const { return mouseOver_; }
    // Straight to a value (alpha 255 = solid).
    void set(int alpha) { alpha_ = std::clamp(alpha, 0, 255); }

    // Opening: from 0 up to `opacity` by 10, then exactly `opacity`.
    void beginOpening(int opacity);
    // One step; false once `opacity` has been reached.
    bool openingStep();

    // The pointer came inside the window or left it. True when
    // the hover fade is to be started now. Nothing happens at opacity 255.
    bool mouseFocus(bool inside, bool hotFadeRunning);
    // tmrHotFade: one step of 10 towards 255 or back to `opacity`; false when
    // there is nothing more to do and the timer stops.
    bool hotFadeStep();
    bool upward() const { return upward_; }

    void setOpacity(int opacity) { opacity_ = std::clamp(opacity, 0, 255); }

private:
    int alpha_ = 255;
    int opacity_ = 255;
    int openingTarget_ = 255;
    bool mouseOver_ = false;
    bool upward_ = true;
};

class GraphWindow : public QWidget {
    Q_OBJECT
public:
    // `picture` belongs to Monitor::GraphForms and outlives the window.
    GraphWindow(Monitor& monitor, int graphIndex, DisplayedGraph* picture, QWidget* parent = nullptr);
    ~GraphWindow() override;

    int graphIndex() const { return index_; }
    void setGraphIndex(int index) { index_ = index; }
    // The picture is about to go (its Graph was deleted): the window shows nothing more.
    void detachPicture() { picture_ = nullptr; }
    DisplayedGraph* picture() const { return picture_; }

    // Rebuilds from stage `step` (1 to 6) on and shows the window as its type says.
    void OpenGraph(int step = 1);
    // A changed GraphType of a running window.
    void ChangeGraphType();
    // Name, description or colours changed: the labels follow.
    void captionsChanged();
    // Opacity changed: the window takes it at once.
    void opacityChanged();
    // After a tick's WriteGraph: repaint from the picture, which also wipes the cross-hair.
    void refresh();
    // Called after the window was moved or resized, once its rectangle is in the Graph.
    void setSaveCallback(std::function<void()> save) { save_ = std::move(save); }
    void setMenuActions(GraphMenuActions* actions) { actions_ = actions; }

    // Cross-hair for the pointer at (x, y) in window pixels (pctGraph_MouseMove).
    void crossHairMove(int x, int y);
    // The Nodes changed: the cross-hair no longer names what it named.
    void forgetCrossHair();
    const CrossHairPoint& crossHair() const { return crossHair_; }
    bool crossHairShown() const { return crossHairShown_; }

    // The window's rectangle into LocX, LocY, LocWidth, LocHeight; the save follows shortly.
    void storeRectangle();
    // Runs a pending save at once.
    void saveNow();
    // The grip let go at this size: the picture is rebuilt for it and the rectangle stored.
    void gripReleased(int width, int height);

    // Opacity: the timers' bodies, public so they can be stepped directly.
    const WindowFade& fade() const { return fade_; }
    void openingFadeTick();
    // The pointer at `cursor` (screen pixels): entered, moved or left.
    void mouseFocusTick(QPoint cursor);
    void hotFadeTick();
    QTimer& hotFadeTimer() { return tmrHotFade_; }
    QTimer& openingFadeTimer() { return tmrOpenFade_; }

    // Shape of a Bar Graph.
    void MakeClear();
    void UnMakeClear(bool force);
    bool shaped() const { return shaped_; }

    QLabel* lblGraphName() const { return lblGraphName_; }
    QLabel* lblGraphDescription() const { return lblGraphDescription_; }
    QLabel* lblCrossHairData() const { return lblCrossHairData_; }
    QLabel* lblCrossHairName() const { return lblCrossHairName_; }
    QLabel* lblCrossHairGridColor() const { return lblCrossHairGridColor_; }
    QMenu* graphMenu();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    // The hover fade follows the pointer in and out, without polling it.
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    // The picture is drawn only while the window is on screen.
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Graph* graph();
    void applyAlpha();
    void startOpeningFade();
    void placeLabels();
    void setCaptions();
    void eraseCrossHair();
    void showCrossHairLabels(bool visible);
    void showMenu(QPoint global);
    // The hovered bar's tool-tip: the Node, its type and its value.
    void showBarTip(QPoint local, QPoint global);

    Monitor& monitor_;
    int index_;
    DisplayedGraph* picture_;
    std::function<void()> save_;
    GraphMenuActions* actions_ = nullptr;
    QMenu* menu_ = nullptr;

    QLabel* lblGraphName_;
    QLabel* lblGraphDescription_;
    QLabel* lblCrossHairData_;
    QLabel* lblCrossHairName_;
    QLabel* lblCrossHairGridColor_;

    CrossHairPoint crossHair_;
    bool crossHairShown_ = false;
    int lastX_ = 0;
    int lastY_ = 0;

    bool opening_ = false;
    bool resizing_ = false;
    bool dragging_ = false;
    QPoint dragOffset_;
    bool shaped_ = false;
    QRegion frameRegion_, gridRegion_, legendRegion_;

    WindowFade fade_;
    QTimer tmrHotFade_;
    QTimer tmrOpenFade_;
    QTimer saveTimer_;
};

}  // namespace orm
