#include "logging/error_file.h"

#include <QDir>
#include <QFile>

namespace orm {

QString errorFileLine(const QDateTime& now, const TransferErrorEntry& e)
{
    return now.toString(QStringLiteral("MM-dd-yyyy HH:mm:ss")) + QStringLiteral(" Graph") +
           QString::number(e.graph) + QStringLiteral(" Node") + QString::number(e.node) + QStringLiteral(" URL=") +
           e.url + QStringLiteral(" Error - ") + QString::number(e.number) + QLatin1Char('(') +
           QString::number(e.status) + QStringLiteral(") - ") + e.description;
}

QString errorFileName(const QString& dataDir, const QDate& day)
{
    return QDir(dataDir).filePath(QStringLiteral("Logs/ex") + day.toString(QStringLiteral("yyyyMMdd")) +
                                  QStringLiteral(".err"));
}

bool appendErrorFileLine(const QString& dataDir, const QDateTime& now, const TransferErrorEntry& e, QString* error)
{
    const QString path = errorFileName(dataDir, now.date());
    QDir().mkpath(QDir(dataDir).filePath(QStringLiteral("Logs")));
    QFile f(path);
    const QByteArray line = (errorFileLine(now, e) + QStringLiteral("\r\n")).toLocal8Bit();
    if (!f.open(QIODevice::WriteOnly | QIODevice::Append) || f.write(line) != line.size() || !f.flush()) {
        if (error)
            *error = QStringLiteral("Cannot write the error file %1: %2").arg(path, f.errorString());
        return false;
    }
    return true;
}

}  // namespace orm
