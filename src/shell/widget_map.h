// The automation map that ORMIVANE_WIDGET_MAP asks for: one line per control
// on screen ("name", x, y, width, height, tab-separated) and one per shown
// text ("text:name", the text with its line ends written as \n).
#pragma once

#include <QRect>
#include <QString>
#include <QStringList>

namespace orm {

inline QString widgetMapLine(const QString& name, const QRect& r)
{
    return name + QStringLiteral("\t%1\t%2\t%3\t%4").arg(r.x()).arg(r.y()).arg(r.width()).arg(r.height());
}

inline QString widgetMapText(const QString& name, QString text)
{
    text.remove(QLatin1Char('\r')).replace(QLatin1Char('\n'), QStringLiteral("\\n")).replace(QLatin1Char('\t'), QLatin1Char(' '));
    return QStringLiteral("text:") + name + QLatin1Char('\t') + text;
}

// A window whose parts are not widgets of their own (rows, links) lists them itself.
class WidgetMapSource {
public:
    virtual ~WidgetMapSource() = default;
    virtual QStringList widgetMapLines() const = 0;
};

}  // namespace orm
