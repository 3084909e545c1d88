// picClock: the start and the end of a Log Graph's range as two small clock
// faces side by side, their rims and hands drawn with the smooth line drawer.
#pragma once

#include <QImage>
#include <QPoint>
#include <QTime>
#include <QtGlobal>

namespace orm {

struct ClockLook {
    int radius = 22;
    qint32 back = 0xFFFFFF;     // colours as 0x00BBGGRR
    qint32 rim = 0x808080;
    qint32 hourHand = 0x000000;
    qint32 minuteHand = 0x800000;
};

// Both clocks on one picture: the start on the left, the end on the right. A
// time that is not valid shows a face without hands.
QImage drawLogClocks(const QTime& start, const QTime& end, const ClockLook& look = {});

// The centre of clock 0 (start) or 1 (end) on that picture.
QPoint clockCentre(int clock, const ClockLook& look = {});

}  // namespace orm
