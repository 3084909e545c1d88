#include "shell/splash.h"

#include "model/version.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QLabel>
#include <QPainterPath>
#include <QRegion>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>

namespace orm {

int SplashFade::step()
{
    if (!running)
        return Opacity >= 255 ? 255 : Opacity;
    Opacity += FadeStep;
    if (Opacity >= 255) {
        running = false;
        return 255;
    }
    return Opacity;
}

QString splashCaption()
{
    return QLatin1String(ProductName) + QStringLiteral(" - Initialization");
}

SplashWindow::SplashWindow(QWidget* parent)
    : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint)
{
    setObjectName(QStringLiteral("frmSplash"));
    setWindowTitle(splashCaption());
    setFixedSize(420, 240);
    setAutoFillBackground(true);
    QPalette pal = palette();
    pal.setColor(QPalette::Window, QColor(0x1E, 0x3A, 0x5F));
    pal.setColor(QPalette::WindowText, Qt::white);
    setPalette(pal);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 24, 24, 18);
    auto* name = new QLabel(QLatin1String(ProductName), this);
    QFont big = name->font();
    big.setPointSize(26);
    big.setBold(true);
    name->setFont(big);
    name->setAlignment(Qt::AlignCenter);
    layout->addStretch(1);
    layout->addWidget(name);
    auto* version = new QLabel(QStringLiteral("Version ") + QLatin1String(ORMIVANE_VERSION), this);
    version->setAlignment(Qt::AlignCenter);
    layout->addWidget(version);
    layout->addStretch(1);
    lblStatus_ = new QLabel(this);
    lblStatus_->setObjectName(QStringLiteral("lblStatus"));
    layout->addWidget(lblStatus_);

    tmrFade_ = new QTimer(this);
    tmrFade_->setObjectName(QStringLiteral("tmrFade"));
    tmrFade_->setInterval(FadeInterval);
    connect(tmrFade_, &QTimer::timeout, this, &SplashWindow::tmrFade_Timer);
}

void SplashWindow::showSplash()
{
    if (QScreen* s = QGuiApplication::primaryScreen()) {
        QRect r(QPoint(0, 0), size());
        r.moveCenter(s->availableGeometry().center());
        move(r.topLeft());
    }
    QPainterPath round;
    round.addRoundedRect(QRectF(rect()), CornerRadius, CornerRadius);
    setMask(QRegion(round.toFillPolygon().toPolygon()));

    fade_.start();
    fadeClock_.start();
    applyOpacity(0);
    show();
    raise();
    tmrFade_->start();
    // Start-up keeps the event loop busy until its end: the window must be on
    // the screen now, or it stays an unpainted box until start-up is over.
    QElapsedTimer waited;
    waited.start();
    while (!isExposed() && waited.elapsed() < MaxExposeWaitMs)
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents, 10);
    paintNow();
}

bool SplashWindow::isExposed() const
{
    return windowHandle() && windowHandle()->isExposed();
}

void SplashWindow::paintNow()
{
    // The fade keeps to its pace of 4 every 10 ms, however seldom start-up lets it run.
    const qint64 due = fadeClock_.isValid() ? fadeClock_.elapsed() / FadeInterval : 0;
    int alpha = applied_;
    while (fade_.running && fade_.Opacity < due * FadeStep)
        alpha = fade_.step();
    if (alpha != applied_)
        applyOpacity(alpha);
    if (!fade_.running)
        tmrFade_->stop();
    repaint();
    // Start-up yields only here: the painting reaches the screen, nothing else runs.
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void SplashWindow::setStatus(const QString& text)
{
    lblStatus_->setText(text);
    if (isVisible())
        paintNow();
}

QString SplashWindow::status() const
{
    return lblStatus_->text();
}

void SplashWindow::liftToTop()
{
    raise();
}

void SplashWindow::tmrFade_Timer()
{
    applyOpacity(fade_.step());
    if (!fade_.running)
        tmrFade_->stop();
}

void SplashWindow::applyOpacity(int alpha)
{
    applied_ = alpha;
    setWindowOpacity(alpha / 255.0);
}

void SplashWindow::closeSplash()
{
    tmrFade_->stop();
    fade_.running = false;
    close();
}

}  // namespace orm
