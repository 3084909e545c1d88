#include "shell/program_alert_host.h"

#include <QDesktopServices>
#include <QUrl>

namespace orm {

bool startFile(const QString& file)
{
    return startFile(file, [](const QUrl& url) { return QDesktopServices::openUrl(url); });
}

}  // namespace orm
