// The category tabs and type tiles of the Node panel: imgCategory(0..2) pick
// which tiles show, imgGraphType(code - 1) are the tiles. Clicking a category
// changes nothing in the model; clicking a tile asks for the type change.
#pragma once

#include "model/catalogue.h"

#include <QWidget>
#include <array>
#include <vector>

class QButtonGroup;
class QGridLayout;
class QToolButton;

namespace orm {

class NodeTypeTiles : public QWidget {
    Q_OBJECT
public:
    explicit NodeTypeTiles(QWidget* parent = nullptr);

    // Shows the category of `nodeType` with its tile checked.
    void setCurrent(int nodeType);
    // Shows a category's tiles; the current type's tile stays checked when it is among them.
    void showCategory(Category c);
    Category shownCategory() const { return shown_; }
    int current() const { return current_; }
    // Tiles that can be seen but not clicked (a Log Graph's Nodes).
    void setTilesEnabled(bool on);

signals:
    void tileClicked(int code);

private:
    std::array<QToolButton*, 3> categories_{};
    std::vector<QToolButton*> tiles_;  // index code - 1; null for codes that are not node types
    QButtonGroup* tileGroup_;
    QGridLayout* grid_;
    Category shown_ = Category::Internet;
    int current_ = 0;
};

}  // namespace orm
