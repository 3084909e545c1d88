// The program's pop-up menus carry each entry's id as the action's data, so
// commands and check marks find their entry by id.
#pragma once

#include <QAction>
#include <QMenu>

namespace orm {

// A separator for id 0, else an entry with its id.
inline void addMenuEntry(QMenu& menu, int id, const QString& text, bool enabled, bool checkable = false)
{
    if (id == 0) {
        menu.addSeparator();
        return;
    }
    QAction* a = menu.addAction(text);
    a->setData(id);
    a->setEnabled(enabled);
    a->setCheckable(checkable);
}

// The entry of the given id; null when the menu has none.
inline QAction* menuActionWithId(const QMenu& menu, int id)
{
    for (QAction* a : menu.actions())
        if (!a->isSeparator() && a->data().toInt() == id)
            return a;
    return nullptr;
}

}  // namespace orm
