#include "shell/progress_bar.h"

#include <QLinearGradient>
#include <QMessageBox>
#include <QPainter>
#include <QTimer>
#include <algorithm>

namespace orm {

namespace {
constexpr int Border = 2;
constexpr int BlockWidth = 6;
constexpr int BlockGap = 2;
constexpr int AutoBlocks = 3;  // the moving block is three segments wide
}  // namespace

QString progressMinError(int newMin, int max)
{
    if (newMin > max)
        return QLatin1String(MinAboveMaxError);
    if (newMin < 0)
        return QLatin1String(MinBelowZeroError);
    return {};
}

QString progressMaxError(int newMax, int min)
{
    if (newMax < min)
        return QLatin1String(MaxBelowMinError);
    return {};
}

int progressFillWidth(int min, int max, int value, int innerWidth)
{
    if (max <= min || innerWidth <= 0)
        return 0;
    const int v = std::clamp(value, min, max);
    return int(qint64(v - min) * innerWidth / (max - min));
}

ProgressBar::ProgressBar(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("Xp_ProgressBar"));
    timer1_ = new QTimer(this);
    timer1_->setInterval(interval_);
    connect(timer1_, &QTimer::timeout, this, &ProgressBar::Timer1_Timer);
    setMinimumSize(2 * Border + 1, 2 * Border + 1);
}

void ProgressBar::refuse(const QString& text)
{
    if (onError_)
        onError_(text);
    else
        QMessageBox::critical(this, QStringLiteral("Error"), text);
}

bool ProgressBar::setMin(int v)
{
    const QString err = progressMinError(v, max_);
    if (!err.isEmpty()) {
        refuse(err);
        return false;
    }
    min_ = v;
    update();
    return true;
}

bool ProgressBar::setMax(int v)
{
    const QString err = progressMaxError(v, min_);
    if (!err.isEmpty()) {
        refuse(err);
        return false;
    }
    max_ = v;
    update();
    return true;
}

void ProgressBar::setValue(int v)
{
    value_ = v;
    repaint();
}

void ProgressBar::setStyle(int s)
{
    style_ = s;
    repaint();
}

void ProgressBar::setProgressLook(int look)
{
    look_ = look;
    update();
}

void ProgressBar::setInterval(int ms)
{
    interval_ = std::max(1, ms);
    timer1_->setInterval(interval_);
}

void ProgressBar::setAuto(bool on)
{
    auto_ = on;
    if (on) {
        restartAnimation();
        timer1_->start();
    } else {
        timer1_->stop();
    }
    update();
}

int ProgressBar::innerWidth() const
{
    return std::max(0, width() - 2 * Border);
}

void ProgressBar::restartAnimation()
{
    animPos_ = 0;
    update();
}

void ProgressBar::Timer1_Timer()
{
    if (!auto_)
        return;
    animPos_ += 5 * ProgressAutoStep;
    if (animPos_ < width())
        update();
    else
        restartAnimation();  // the resize path starts it over
}

void ProgressBar::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    restartAnimation();
}

void ProgressBar::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    const QRect outer = rect();
    const QRect inner = outer.adjusted(Border, Border, -Border, -Border);
    const bool xp = look_ == LookXp;

    p.fillRect(outer, xp ? QColor(0xBE, 0xBE, 0xBE) : palette().color(QPalette::Mid));
    p.fillRect(inner, xp ? QColor(0xFF, 0xFF, 0xFF) : palette().color(QPalette::Base));
    if (inner.width() <= 0 || inner.height() <= 0)
        return;

    int from = 0;
    int to = fillWidth();
    if (auto_) {
        from = animPos_;
        to = animPos_ + AutoBlocks * (BlockWidth + BlockGap);
    }
    to = std::min(to, inner.width());
    if (to <= from)
        return;

    QBrush brush;
    if (xp) {
        // The green of the XP bar, lighter in the middle.
        QLinearGradient g(0, inner.top(), 0, inner.bottom());
        g.setColorAt(0.0, QColor(0x2C, 0xAE, 0x2C));
        g.setColorAt(0.45, QColor(0xB8, 0xF0, 0xB8));
        g.setColorAt(1.0, QColor(0x2C, 0xAE, 0x2C));
        brush = QBrush(g);
    } else {
        brush = QBrush(QColor(0x00, 0x00, 0x80));
    }
    p.setClipRect(inner);
    if (style_ == Blocks) {
        for (int x = from; x < to; x += BlockWidth + BlockGap)
            p.fillRect(QRect(inner.left() + x, inner.top(), std::min(BlockWidth, to - x), inner.height()), brush);
    } else {
        p.fillRect(QRect(inner.left() + from, inner.top(), to - from, inner.height()), brush);
    }
}

}  // namespace orm
