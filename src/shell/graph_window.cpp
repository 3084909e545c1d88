#include "shell/graph_window.h"

#include "monitor/monitor.h"
#include "display/bar_graph.h"
#include "display/colors.h"
#include "display/displayed_graph.h"
#include "shell/graph_menu.h"

#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QToolTip>
#include <QPainter>
#include <QWindow>

namespace orm {

namespace {

constexpr int SaveDelayMs = 300;

bool shownType(int type)
{
    return type == LineGraph || type == BarGraph;
}

}  // namespace

// ---- the window ----

GraphWindow::GraphWindow(Monitor& monitor, int graphIndex, DisplayedGraph* picture, QWidget* parent)
    : QWidget(parent, Qt::Window | Qt::FramelessWindowHint | Qt::Tool), monitor_(monitor), index_(graphIndex),
      picture_(picture)
{
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    lblGraphName_ = new QLabel(this);
    lblGraphName_->setObjectName(QStringLiteral("lblGraphName"));
    lblGraphDescription_ = new QLabel(this);
    lblGraphDescription_->setObjectName(QStringLiteral("lblGraphDescription"));
    lblCrossHairData_ = new QLabel(this);
    lblCrossHairName_ = new QLabel(this);
    lblCrossHairGridColor_ = new QLabel(this);
    lblCrossHairData_->setAlignment(Qt::AlignRight | Qt::AlignTop);
    lblCrossHairName_->setAlignment(Qt::AlignRight | Qt::AlignTop);
    lblCrossHairGridColor_->setAutoFillBackground(true);
    for (QLabel* l : {lblGraphName_, lblGraphDescription_, lblCrossHairData_, lblCrossHairName_,
                      lblCrossHairGridColor_}) {
        l->setMouseTracking(true);
        l->installEventFilter(this);  // presses on a label move the window too
    }

    // Below the minimum only in debug mode, as the original's size hook was off then.
    if (!monitor_.commandLineHas(QStringLiteral("VDDebugMode")))
        setMinimumSize(GraphPicture::MinWidth, GraphPicture::MinHeight);
    if (Graph* g = graph()) {
        if (picture_)
            resize(picture_->windowWidth(), picture_->windowHeight());
        fade_.setOpacity(g->Opacity);
        fade_.set(g->Opacity);
    }
    setCaptions();
    placeLabels();

    tmrHotFade_.setInterval(10);
    tmrOpenFade_.setInterval(10);
    saveTimer_.setSingleShot(true);
    saveTimer_.setInterval(SaveDelayMs);
    connect(&tmrHotFade_, &QTimer::timeout, this, &GraphWindow::hotFadeTick);
    connect(&tmrOpenFade_, &QTimer::timeout, this, &GraphWindow::openingFadeTick);
    connect(&saveTimer_, &QTimer::timeout, this, [this] {
        if (save_)
            save_();
    });
}

GraphWindow::~GraphWindow() = default;

Graph* GraphWindow::graph()
{
    if (index_ < 0 || size_t(index_) >= monitor_.Sensors.size())
        return nullptr;
    return &monitor_.Sensors[size_t(index_)];
}

void GraphWindow::setCaptions()
{
    Graph* g = graph();
    if (!g)
        return;
    lblGraphName_->setText(g->Name);
    lblGraphDescription_->setText(g->Description);
    QPalette pal = lblGraphName_->palette();
    pal.setColor(QPalette::WindowText, fromBgr(g->GraphNameColor));
    lblGraphName_->setPalette(pal);
    // Only the name is in the name's colour; the description is a label like the scale's.
    QPalette data = lblCrossHairData_->palette();
    data.setColor(QPalette::WindowText, fromBgr(g->GraphGridLabelColor));
    lblGraphDescription_->setPalette(data);
    lblCrossHairData_->setPalette(data);
    lblCrossHairName_->setPalette(data);
    QPalette swatch = lblCrossHairGridColor_->palette();
    swatch.setColor(QPalette::Window, fromBgr(g->GraphBackColor));
    lblCrossHairGridColor_->setPalette(swatch);
}

void GraphWindow::captionsChanged()
{
    setWindowTitle(graph() ? graph()->Name : QString());
    setCaptions();
    placeLabels();
    update();
}

void GraphWindow::opacityChanged()
{
    Graph* g = graph();
    if (!g)
        return;
    fade_.setOpacity(g->Opacity);
    fade_.set(g->Opacity);
    applyAlpha();
}

void GraphWindow::placeLabels()
{
    const PlotGeometry geo = picture_ ? picture_->geometry() : PlotGeometry::fromClient(width(), height());
    const int w = std::max(geo.pWidth, 1);
    QFont bold = lblGraphName_->font();
    bold.setBold(true);
    lblGraphName_->setFont(bold);
    lblGraphName_->setGeometry(55, 1, w, 16);
    lblGraphDescription_->setGeometry(55, 17, w, 16);
    // The cross-hair's value and Node on the right of the caption lines.
    const int half = std::max(w / 2, 1);
    lblCrossHairGridColor_->setGeometry(55 + w - 8, 4, 8, 8);
    lblCrossHairData_->setGeometry(55 + w - 12 - half, 1, half, 16);
    lblCrossHairName_->setGeometry(55 + w - 12 - half, 17, half, 16);
}

void GraphWindow::OpenGraph(int step)
{
    Graph* g = graph();
    if (!g || !picture_ || !g->Visible)
        return;
    opening_ = true;
    picture_->OpenGraph(step);
    if (step <= 1) {
        move(g->LocX, g->LocY);
        resize(picture_->windowWidth(), picture_->windowHeight());
    }
    setCaptions();
    placeLabels();
    showCrossHairLabels(g->GraphType == LineGraph);
    fade_.setOpacity(g->Opacity);
    fade_.set(255);
    applyAlpha();
    if (shownType(g->GraphType))
        show();
    else
        hide();
    if (g->Transparent)
        MakeClear();
    if (shownType(g->GraphType))
        startOpeningFade();
    opening_ = false;
    update();
}

void GraphWindow::ChangeGraphType()
{
    Graph* g = graph();
    if (!g || !picture_)
        return;
    switch (g->GraphType) {
    case LineGraph:
    case BarGraph: {
        const bool line = g->GraphType == LineGraph;
        fade_.set(255);
        applyAlpha();
        if (!isVisible())
            show();
        lblGraphName_->setVisible(true);
        lblGraphDescription_->setVisible(true);
        showCrossHairLabels(line);
        picture_->SetUpNodes(false);
        picture_->InitDraw();
        if (line) {
            UnMakeClear(true);
            picture_->RedrawGraph();
        } else {
            MakeClear();
        }
        startOpeningFade();
        break;
    }
    default:  // tray icons, text and gadget feed have no window of their own
        picture_->SetUpNodes(false);
        hide();
        break;
    }
    update();
}

void GraphWindow::refresh()
{
    Graph* g = graph();
    // The tick's picture covers the cross-hair; its labels stay until the next move.
    crossHairShown_ = false;
    if (g && g->GraphType == BarGraph && g->Transparent && !resizing_)
        MakeClear();
    update();
}

void GraphWindow::showCrossHairLabels(bool visible)
{
    lblCrossHairData_->setVisible(visible);
    lblCrossHairName_->setVisible(visible);
    lblCrossHairGridColor_->setVisible(visible);
}

void GraphWindow::eraseCrossHair()
{
    if (!crossHairShown_)
        return;
    if (Graph* g = graph()) {
        QPalette swatch = lblCrossHairGridColor_->palette();
        swatch.setColor(QPalette::Window, fromBgr(g->GraphBackColor));
        lblCrossHairGridColor_->setPalette(swatch);
    }
    lblCrossHairData_->clear();
    lblCrossHairName_->clear();
    crossHairShown_ = false;
    crossHair_ = CrossHairPoint{};
    update();
}

void GraphWindow::forgetCrossHair()
{
    crossHairShown_ = true;  // whatever a tick painted over, the labels go
    eraseCrossHair();
}

void GraphWindow::crossHairMove(int x, int y)
{
    lastX_ = x;
    lastY_ = y;
    if (!resizing_ && !dragging_) {
        if (inSizingCorner(x, y, width(), height()))
            setCursor(Qt::SizeFDiagCursor);
        else if (QGuiApplication::mouseButtons() == Qt::NoButton)
            unsetCursor();
    }
    eraseCrossHair();
    if (!picture_)
        return;
    const CrossHairPoint p = crossHairAt(monitor_.Sensors, index_, *picture_, x, y);
    if (!p.shown)
        return;
    crossHair_ = p;
    lblCrossHairData_->setText(p.dataText.trimmed());
    lblCrossHairName_->setText(p.nameText);
    QPalette swatch = lblCrossHairGridColor_->palette();
    swatch.setColor(QPalette::Window, fromBgr(p.swatchColor));
    lblCrossHairGridColor_->setPalette(swatch);
    crossHairShown_ = true;
    update();
}

void GraphWindow::showEvent(QShowEvent* event)
{
    if (picture_)
        picture_->setShown(true);
    QWidget::showEvent(event);
}

void GraphWindow::hideEvent(QHideEvent* event)
{
    if (picture_)
        picture_->setShown(false);
    QWidget::hideEvent(event);
}

void GraphWindow::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    Graph* g = graph();
    if (!g) {
        p.fillRect(rect(), Qt::black);
        return;
    }
    p.fillRect(rect(), fromBgr(g->GraphBackColor));
    if (!picture_ || !shownType(g->GraphType))
        return;
    picture_->paintWindowPicture(p);
    if (shaped_) {
        // The kept parts of a see-through Bar Graph in their own colours.
        p.setClipRegion(gridRegion_);
        p.fillRect(rect(), fromBgr(g->GraphInteriorGridColor));
        p.setClipRegion(frameRegion_);
        p.fillRect(rect(), fromBgr(g->GraphExteriorGridColor));
        p.setClipping(false);
    }
    if (crossHairShown_) {
        const PlotGeometry& geo = picture_->geometry();
        drawCrossHair(p, *g, crossHair_, geo.pWidth, geo.pHeight);
    }
    drawResizeGrip(p, size(), *g);
}

QMenu* GraphWindow::graphMenu()
{
    if (!menu_) {
        menu_ = makeGraphMenu(this);
        connect(menu_, &QMenu::triggered, this, [this](QAction* a) {
            if (actions_)
                actOnGraphMenu(a->data().toInt(), index_, *actions_);
        });
    }
    if (Graph* g = graph())
        refreshGraphMenu(*menu_, *g);
    return menu_;
}

void GraphWindow::showMenu(QPoint global)
{
    graphMenu()->popup(global);
}

void GraphWindow::mousePressEvent(QMouseEvent* event)
{
    const QPoint local = event->position().toPoint();
    if (event->button() == Qt::RightButton) {
        showMenu(event->globalPosition().toPoint());
        return;
    }
    if (event->button() != Qt::LeftButton)
        return;
    if (inSizingCorner(local.x(), local.y(), width(), height())) {
        resizing_ = true;
        if (Graph* g = graph(); g && g->GraphType == BarGraph && g->Transparent)
            UnMakeClear(true);  // a full rectangle while the corner is dragged
        return;
    }
    // The window system moves the window where it can; elsewhere it follows the mouse.
    if (windowHandle() && windowHandle()->startSystemMove())
        return;
    dragging_ = true;
    dragOffset_ = event->globalPosition().toPoint() - pos();
}

void GraphWindow::enterEvent(QEnterEvent* event)
{
    mouseFocusTick(event->globalPosition().toPoint());
    QWidget::enterEvent(event);
}

void GraphWindow::leaveEvent(QEvent* event)
{
    mouseFocusTick(QCursor::pos());
    QWidget::leaveEvent(event);
}

void GraphWindow::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint global = event->globalPosition().toPoint();
    mouseFocusTick(global);
    if (resizing_) {
        resize(std::max(global.x() - x(), minimumWidth()), std::max(global.y() - y(), minimumHeight()));
        return;
    }
    if (dragging_) {
        move(global - dragOffset_);
        return;
    }
    const QPoint local = event->position().toPoint();
    crossHairMove(local.x(), local.y());
    showBarTip(local, global);
}

void GraphWindow::showBarTip(QPoint local, QPoint global)
{
    Graph* g = graph();
    if (!g || !picture_ || g->GraphType != BarGraph)
        return;
    const int bar = barAt(*g, picture_->geometry().pHeight, local);
    const QStringList tips = barToolTips(picture_->bars());
    if (bar >= 0 && bar < tips.size())
        QToolTip::showText(global, tips[bar], this, {}, BarTipShowMs);
    else
        QToolTip::hideText();
}

void GraphWindow::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    if (resizing_) {
        const QPoint global = event->globalPosition().toPoint();
        gripReleased(global.x() - x(), global.y() - y());
        return;
    }
    if (dragging_) {
        dragging_ = false;
        storeRectangle();
    }
}

void GraphWindow::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_F5:
        if (picture_) {
            QGuiApplication::setOverrideCursor(Qt::WaitCursor);
            picture_->InitDraw();
            picture_->RedrawGraph();
            QGuiApplication::restoreOverrideCursor();
            refresh();
        }
        break;
    case Qt::Key_Right:
        crossHairMove(lastX_ + 1, lastY_);
        break;
    case Qt::Key_Left:
        crossHairMove(lastX_ - 1, lastY_);
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

bool GraphWindow::eventFilter(QObject* watched, QEvent* event)
{
    auto* label = qobject_cast<QLabel*>(watched);
    if (!label || label->parentWidget() != this)
        return QWidget::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease: {
        // The labels pass the mouse on, in window pixels.
        auto* me = static_cast<QMouseEvent*>(event);
        QMouseEvent mapped(me->type(), label->mapToParent(me->position().toPoint()), me->globalPosition(),
                           me->button(), me->buttons(), me->modifiers());
        if (event->type() == QEvent::MouseButtonPress)
            mousePressEvent(&mapped);
        else if (event->type() == QEvent::MouseMove)
            mouseMoveEvent(&mapped);
        else
            mouseReleaseEvent(&mapped);
        return true;
    }
    default:
        return QWidget::eventFilter(watched, event);
    }
}

}  // namespace orm
