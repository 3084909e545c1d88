#include "shell/graph_window.h"

#include "monitor/monitor.h"
#include "display/bar_graph.h"
#include "display/colors.h"
#include "display/displayed_graph.h"
#include "shell/graph_menu.h"

#include <QBitmap>
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

constexpr int FadeStep = 10;
constexpr int SaveDelayMs = 300;

bool shownType(int type)
{
    return type == LineGraph || type == BarGraph;
}

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

QRegion barFrameRegion(const Graph& graph, const PlotGeometry& geo)
{
    const int right = barFrameWidth(graph) + 54;
    const int bottom = geo.pHeight + 35;
    QRegion r;
    r += QRect(QPoint(54, 34), QPoint(right, 34));
    r += QRect(QPoint(54, bottom), QPoint(right, bottom));
    r += QRect(QPoint(54, 34), QPoint(54, bottom));
    r += QRect(QPoint(right, 34), QPoint(right, bottom));
    return r;
}

QRegion barGridRegion(const Graph& graph, const PlotGeometry& geo)
{
    QRegion r;
    if (geo.GridStep <= 0)
        return r;
    const int right = barFrameWidth(graph) + 53;
    for (int y = geo.GridStep + 35; y <= geo.pHeight + 34; y += geo.GridStep)
        r += QRect(QPoint(55, y), QPoint(right, y));
    for (int x = geo.GridStep + 55; x <= right; x += geo.GridStep)
        r += QRect(QPoint(x, 35), QPoint(x, geo.pHeight + 35));
    return r;
}

QRegion legendRegion(const QImage& picture, const Graph& graph, const PlotGeometry& geo)
{
    if (picture.isNull())
        return {};
    const int w = std::min(54, picture.width());
    const int h = std::min(geo.gHeight, picture.height());
    if (w <= 0 || h <= 0)
        return {};
    // Whatever is not back colour left of the plot is label text.
    const QImage part = picture.copy(0, 0, w, h).convertToFormat(QImage::Format_RGB32);
    const QImage mask = part.createMaskFromColor(fromBgr(graph.GraphBackColor).rgb(), Qt::MaskOutColor);
    return QRegion(QBitmap::fromImage(mask));
}

QRegion barWindowShape(const Graph& graph, const PlotGeometry& geo, const QImage& picture, const QRegion& bars)
{
    QRegion r;
    if (graph.TransGrid)
        r += barGridRegion(graph, geo) + barFrameRegion(graph, geo);
    if (graph.TransLegend)
        r += legendRegion(picture, graph, geo);
    r += bars;
    return r;
}

// ---- the window ----

GraphWindow::GraphWindow(Monitor& monitor, int graphIndex, DisplayedGraph* picture, QWidget* parent)
    : QWidget(parent, Qt::Window | Qt::FramelessWindowHint | Qt::Tool), monitor_(monitor), index_(graphIndex),
      picture_(picture)
{
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    lblGraphName_ = new QLabel(this);
    lblGraphDescription_ = new QLabel(this);
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

    tmrMouseFocus_.setInterval(100);
    tmrHotFade_.setInterval(10);
    tmrOpenFade_.setInterval(10);
    saveTimer_.setSingleShot(true);
    saveTimer_.setInterval(SaveDelayMs);
    connect(&tmrMouseFocus_, &QTimer::timeout, this, [this] { mouseFocusTick(QCursor::pos()); });
    connect(&tmrHotFade_, &QTimer::timeout, this, &GraphWindow::hotFadeTick);
    connect(&tmrOpenFade_, &QTimer::timeout, this, &GraphWindow::openingFadeTick);
    connect(&saveTimer_, &QTimer::timeout, this, [this] {
        if (save_)
            save_();
    });
    tmrMouseFocus_.start();
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
    lblGraphDescription_->setPalette(pal);
    QPalette data = lblCrossHairData_->palette();
    data.setColor(QPalette::WindowText, fromBgr(g->GraphGridLabelColor));
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
    if (!fade_.openingStep())
        tmrOpenFade_.stop();
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
    p.drawImage(0, 0, picture_->windowPicture());
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

void GraphWindow::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint global = event->globalPosition().toPoint();
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
