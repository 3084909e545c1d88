// The colour dialog as the panels use it: an empty result is a cancel.
#pragma once

#include <QColor>
#include <QColorDialog>
#include <optional>

namespace orm {

inline std::optional<QColor> askColour(const QColor& initial, QWidget* parent)
{
    const QColor c = QColorDialog::getColor(initial, parent);
    if (!c.isValid())
        return std::nullopt;
    return c;
}

}  // namespace orm
