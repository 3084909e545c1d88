#include "shell/banner_menu.h"

#include "model/version.h"

#include <QLinearGradient>
#include <QPainter>

namespace orm {

BannerMenu::BannerMenu(QWidget* parent) : QMenu(parent)
{
    setContentsMargins(BandWidth, 0, 0, 0);
}

void BannerMenu::paintEvent(QPaintEvent* event)
{
    QMenu::paintEvent(event);
    QPainter p(this);
    const QRect band(0, 0, BandWidth, height());
    QLinearGradient shade(band.topLeft(), band.bottomLeft());
    shade.setColorAt(0, QColor(0x30, 0x50, 0x90));
    shade.setColorAt(1, QColor(0x10, 0x20, 0x48));
    p.fillRect(band, shade);
    // The name reads upwards from the bottom of the band.
    QFont f = font();
    f.setBold(true);
    p.setFont(f);
    p.setPen(Qt::white);
    p.translate(0, height());
    p.rotate(-90);
    p.drawText(QRect(6, 0, height() - 12, BandWidth), Qt::AlignLeft | Qt::AlignVCenter, QLatin1String(ProductName));
}

}  // namespace orm
