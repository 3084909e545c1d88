#include "shell/program_alert_host.h"

#include <QDesktopServices>
#include <QUrl>

namespace orm {

bool openWithDesktop(const QUrl& url)
{
    return QDesktopServices::openUrl(url);
}

bool startFile(const QString& file)
{
    return startFile(file, openWithDesktop);
}

}  // namespace orm
