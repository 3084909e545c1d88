// The program's pop-up menus: a vertical band with the product's name runs
// down their left side, and the entries stand to its right.
#pragma once

#include <QMenu>

namespace orm {

class BannerMenu : public QMenu {
public:
    static constexpr int BandWidth = 22;

    explicit BannerMenu(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace orm
