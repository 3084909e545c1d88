// The About box of the tray and graph menus.
#pragma once

#include <memory>

class QMessageBox;
class QWidget;

namespace orm {

// "About Ormivane", with the version and the company; wide enough that the
// window manager never cuts its title, whatever its buttons take.
std::unique_ptr<QMessageBox> makeAboutBox(QWidget* parent);
void showAbout(QWidget* parent);

}  // namespace orm
