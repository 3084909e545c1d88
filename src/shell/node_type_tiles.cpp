#include "shell/node_type_tiles.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QToolButton>
#include <QVBoxLayout>

namespace orm {

namespace {
constexpr int TileColumns = 6;
const char* const CategoryTexts[] = {"Internet", "Hardware", "System"};
}  // namespace

NodeTypeTiles::NodeTypeTiles(QWidget* parent) : QWidget(parent), tileGroup_(new QButtonGroup(this))
{
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    auto* tabs = new QHBoxLayout;
    auto* categoryGroup = new QButtonGroup(this);
    for (int k = 0; k < 3; ++k) {
        auto* b = new QToolButton(this);
        b->setObjectName(QStringLiteral("imgCategory(%1)").arg(k));
        b->setText(QString::fromLatin1(CategoryTexts[k]));
        b->setCheckable(true);
        categoryGroup->addButton(b);
        tabs->addWidget(b);
        categories_[size_t(k)] = b;
        connect(b, &QToolButton::clicked, this, [this, k] { showCategory(Category(k)); });
    }
    tabs->addStretch();
    outer->addLayout(tabs);

    grid_ = new QGridLayout;
    grid_->setSpacing(2);
    outer->addLayout(grid_);

    tiles_.assign(size_t(NoType), nullptr);
    for (int c = 0; c < 3; ++c) {
        for (const Tile& t : categoryTiles(Category(c))) {
            if (t.code < 1 || t.code > int(tiles_.size()))
                continue;
            auto* b = new QToolButton(this);
            b->setObjectName(QStringLiteral("imgGraphType(%1)").arg(t.code - 1));
            b->setText(t.text);
            b->setCheckable(true);
            b->setMinimumWidth(80);
            b->setVisible(false);
            tileGroup_->addButton(b);
            tiles_[size_t(t.code - 1)] = b;
            const int code = t.code;
            connect(b, &QToolButton::clicked, this, [this, code] {
                // The tile stays as it was until the change is done; a reload checks it.
                showCategory(shown_);
                emit tileClicked(code);
            });
        }
    }
    showCategory(Category::Internet);
}

void NodeTypeTiles::setCurrent(int nodeType)
{
    current_ = nodeType;
    showCategory(categoryOf(nodeType));
}

void NodeTypeTiles::showCategory(Category c)
{
    shown_ = c;
    for (int k = 0; k < 3; ++k)
        categories_[size_t(k)]->setChecked(k == int(c));
    for (QToolButton* b : tiles_)
        if (b) {
            grid_->removeWidget(b);
            b->setVisible(false);
        }
    // An exclusive group cannot clear its last checked button, so clear by hand.
    tileGroup_->setExclusive(false);
    int i = 0;
    for (const Tile& t : categoryTiles(c)) {
        QToolButton* b = t.code >= 1 && t.code <= int(tiles_.size()) ? tiles_[size_t(t.code - 1)] : nullptr;
        if (!b)
            continue;
        grid_->addWidget(b, i / TileColumns, i % TileColumns);
        b->setVisible(true);
        ++i;
    }
    for (size_t k = 0; k < tiles_.size(); ++k)
        if (tiles_[k])
            tiles_[k]->setChecked(int(k) + 1 == current_);
    tileGroup_->setExclusive(true);
}

void NodeTypeTiles::setTilesEnabled(bool on)
{
    for (QToolButton* b : tiles_)
        if (b)
            b->setEnabled(on);
}

}  // namespace orm
