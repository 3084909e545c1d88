// Colours as the model stores them: 0x00BBGGRR, red in the lowest byte. A value
// with the top bit set names a system colour by its index in the low byte.
#pragma once

#include <QColor>
#include <QtGlobal>

namespace orm {

// The usual desktop values of the system colours the program uses; any other
// index is the button face.
inline QColor systemColor(int index)
{
    switch (index) {
    case 5:   // window
        return QColor(255, 255, 255);
    case 8:   // window text
    case 18:  // button text
        return QColor(0, 0, 0);
    case 16:  // button shadow
        return QColor(160, 160, 160);
    default:  // 15, button face
        return QColor(240, 240, 240);
    }
}

inline QColor fromBgr(qint32 c)
{
    const quint32 u = quint32(c);
    if (u & 0x80000000u)
        return systemColor(int(u & 0xFFu));
    return QColor(int(u & 0xFFu), int((u >> 8) & 0xFFu), int((u >> 16) & 0xFFu));
}

inline qint32 toBgr(const QColor& c)
{
    return qint32(quint32(c.red()) | (quint32(c.green()) << 8) | (quint32(c.blue()) << 16));
}

}  // namespace orm
