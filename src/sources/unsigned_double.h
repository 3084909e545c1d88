// Platform fields that are unsigned, widened to doubles the way the readings
// have always been widened, so the figures stay right above 2 GiB.
#pragma once

#include <QtGlobal>

namespace orm {

// A 32-bit unsigned field read as signed: a negative value gets 2^31 added
// twice, which gives back the unsigned figure.
inline double UnsignedToDouble(qint32 field)
{
    double value = field;
    if (field < 0) {
        value += 2147483648.0;
        value += 2147483648.0;
    }
    return value;
}

// A 64-bit figure from its two halves: 2^32 times the high part plus the low
// part, and 2^32 more when the low part reads negative.
inline double LargeIntegerToDouble(qint32 lowPart, qint32 highPart)
{
    double value = 4294967296.0 * highPart + lowPart;
    if (lowPart < 0)
        value += 4294967296.0;
    return value;
}

inline double LargeIntegerToDouble(quint64 figure)
{
    return LargeIntegerToDouble(qint32(quint32(figure & 0xFFFFFFFFu)), qint32(quint32(figure >> 32)));
}

}  // namespace orm
