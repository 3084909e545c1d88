// The hover help of each control of the control panel, keyed by the control's
// objectName. The retrieval label and the tree have empty texts: the panel sets
// theirs as they change.
#pragma once

#include <QHash>
#include <QString>

namespace orm {

const QHash<QString, QString>& panelHelpTexts();

}  // namespace orm
