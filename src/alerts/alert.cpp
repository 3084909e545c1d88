#include "alerts/alert.h"

namespace orm {

Alert newAlert(int rowCount)
{
    Alert a;
    a.rName = QStringLiteral("New Alert ") + QString::number(rowCount + 1);
    return a;
}

}  // namespace orm
