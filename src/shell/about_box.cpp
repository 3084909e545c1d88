#include "shell/about_box.h"

#include "model/version.h"

#include <QApplication>
#include <QFontMetrics>
#include <QGridLayout>
#include <QMessageBox>
#include <QSpacerItem>

namespace orm {

namespace {

// Room beside the title for the frame's icon and buttons.
constexpr int TitleBarExtras = 160;

}  // namespace

std::unique_ptr<QMessageBox> makeAboutBox(QWidget* parent)
{
    const QString title = QStringLiteral("About ") + QLatin1String(ProductName);
    auto box = std::make_unique<QMessageBox>(QMessageBox::Information, title,
                                             QLatin1String(ProductName) + QStringLiteral(" ") +
                                                 QStringLiteral(ORMIVANE_VERSION) + QStringLiteral("\n") +
                                                 QLatin1String(CompanyName),
                                             QMessageBox::Ok, parent);
    // A message box sizes itself by its text alone; a short text leaves the
    // title too narrow a frame. The title bar's font is at least the box's, bold.
    QFont titleFont = QApplication::font("QMdiSubWindowTitleBar");
    titleFont.setBold(true);
    const int titleWidth = std::max(QFontMetrics(titleFont).horizontalAdvance(title),
                                    QFontMetrics(box->font()).horizontalAdvance(title));
    if (auto* grid = qobject_cast<QGridLayout*>(box->layout()))
        grid->addItem(new QSpacerItem(titleWidth + TitleBarExtras, 0, QSizePolicy::Minimum, QSizePolicy::Fixed),
                      grid->rowCount(), 0, 1, grid->columnCount());
    return box;
}

void showAbout(QWidget* parent)
{
    makeAboutBox(parent)->exec();
}

}  // namespace orm
