// The graph window's frame: its alpha (the opening and hover fades), the shape
// of a see-through Bar Graph, and moving and resizing with the rectangle kept.
#include "shell/graph_window.h"

#include "display/bar_graph.h"
#include "display/colors.h"
#include "display/displayed_graph.h"
#include "display/window_shape.h"

#include <QCursor>

namespace orm {

namespace {

constexpr int FadeStep = 10;

}  // namespace

// ---- the alpha ----

void WindowFade::beginOpening(int opacity)
{
    setOpacity(opacity);
    openingTarget_ = opacity_;
    alpha_ = 0;
}

bool WindowFade::openingStep()
{
    if (alpha_ + FadeStep < openingTarget_) {
        alpha_ += FadeStep;
        return true;
    }
    alpha_ = openingTarget_;
    return false;
}

bool WindowFade::mouseFocus(bool inside, bool hotFadeRunning)
{
    if (opacity_ >= 255)
        return false;
    if (inside) {
        mouseOver_ = true;
        if (hotFadeRunning)
            return false;
        upward_ = true;
        alpha_ = std::min(255, alpha_ + FadeStep);
        return true;
    }
    if (!mouseOver_)
        return false;
    mouseOver_ = false;
    upward_ = false;
    return true;
}

bool WindowFade::hotFadeStep()
{
    if (upward_) {
        if (alpha_ >= 255)
            return false;
        alpha_ = std::min(255, alpha_ + FadeStep);
    } else {
        if (alpha_ <= opacity_)
            return false;
        alpha_ = std::max(opacity_, alpha_ - FadeStep);
    }
    return true;
}

// ---- the shape ----

void GraphWindow::applyAlpha()
{
    setWindowOpacity(fade_.alpha() / 255.0);
}

void GraphWindow::startOpeningFade()
{
    Graph* g = graph();
    if (!g)
        return;
    fade_.beginOpening(g->Opacity);
    applyAlpha();
    tmrOpenFade_.start();
}

void GraphWindow::openingFadeTick()
{
    if (!fade_.openingStep()) {
        tmrOpenFade_.stop();
        // A pointer that came in while the window opened is seen now.
        if (underMouse())
            mouseFocusTick(QCursor::pos());
    }
    applyAlpha();
}

void GraphWindow::mouseFocusTick(QPoint cursor)
{
    Graph* g = graph();
    if (!g || tmrOpenFade_.isActive())
        return;
    fade_.setOpacity(g->Opacity);
    const QRect r = frameGeometry();
    // Strictly inside the window's left, top, right, bottom.
    const bool inside = cursor.x() > r.left() && cursor.x() < r.left() + r.width() && cursor.y() > r.top() &&
                        cursor.y() < r.top() + r.height();
    if (fade_.mouseFocus(inside, tmrHotFade_.isActive())) {
        applyAlpha();
        tmrHotFade_.start();
    }
}

void GraphWindow::hotFadeTick()
{
    if (!fade_.hotFadeStep())
        tmrHotFade_.stop();
    applyAlpha();
}

void GraphWindow::MakeClear()
{
    Graph* g = graph();
    if (!g || !picture_ || g->GraphType != BarGraph)
        return;
    if (!g->Transparent) {
        UnMakeClear(true);
        picture_->InitDraw();
        update();
        return;
    }
    const PlotGeometry& geo = picture_->geometry();
    const QImage image = picture_->picture();
    frameRegion_ = g->TransGrid ? barFrameRegion(*g, geo) : QRegion();
    gridRegion_ = g->TransGrid ? barGridRegion(*g, geo) : QRegion();
    const QRegion shape = barWindowShape(*g, geo, image, barRegion(picture_->bars(), *g, geo.pHeight));
    if (shape.isEmpty())
        return;  // an empty shape is never set: the window keeps what it had
    setMask(shape);
    shaped_ = true;
    update();
}

void GraphWindow::UnMakeClear(bool force)
{
    Graph* g = graph();
    if (!g || g->GraphType != BarGraph)
        return;
    if (!force && g->Transparent)
        return;
    clearMask();
    shaped_ = false;
    if (!force && picture_)
        picture_->InitDraw();
    update();
}

void GraphWindow::storeRectangle()
{
    Graph* g = graph();
    if (!g || opening_)
        return;
    g->LocX = x();
    g->LocY = y();
    g->LocWidth = width();
    g->LocHeight = height();
    saveTimer_.start();
}

void GraphWindow::saveNow()
{
    if (!saveTimer_.isActive())
        return;
    saveTimer_.stop();
    if (save_)
        save_();
}

void GraphWindow::gripReleased(int w, int h)
{
    resizing_ = false;
    if (!picture_ || !graph())
        return;
    resize(w, h);  // the minimum size holds the window to 180 x 100
    picture_->resizeWindow(width(), height());
    placeLabels();
    if (graph()->Transparent)
        MakeClear();
    storeRectangle();
    update();
}

void GraphWindow::moveEvent(QMoveEvent* event)
{
    QWidget::moveEvent(event);
    if (isVisible() && !resizing_)
        storeRectangle();
}

void GraphWindow::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    placeLabels();
    // A size that came from the window system (not the grip): rebuild the picture for it and keep it.
    if (isVisible() && !resizing_ && !opening_ && picture_ &&
        (width() != picture_->windowWidth() || height() != picture_->windowHeight())) {
        picture_->resizeWindow(width(), height());
        if (graph() && graph()->Transparent)
            MakeClear();
        storeRectangle();
        update();
    }
}

}  // namespace orm
