#include "shell/default_printer.h"
#include "shell/graph_printer.h"

#include "model/version.h"

#include <QDir>
#include <QPrinter>
#include <QPrinterInfo>
#include <QStandardPaths>

namespace orm {

QString noPrinterText()
{
    return QStringLiteral("No printer is set up");
}

DefaultPrinterJob::DefaultPrinterJob(QObject* parent)
    : QObject(parent), file_(QDir::tempPath() + QStringLiteral("/ormivane-print-XXXXXX.pdf"))
{
    answerTimer_.setSingleShot(true);
    answerTimer_.setInterval(AnswerSeconds * 1000);
    connect(&answerTimer_, &QTimer::timeout, this, [this] {
        lp_.kill();
        end(QStringLiteral("The printer %1 did not answer within %2 seconds").arg(printer_).arg(AnswerSeconds));
    });
    connect(&lp_, &QProcess::finished, this, [this](int code, QProcess::ExitStatus how) {
        if (how == QProcess::NormalExit && code == 0) {
            end({});
            return;
        }
        QString why = QString::fromLocal8Bit(lp_.readAllStandardError()).trimmed();
        if (why.isEmpty())
            why = QStringLiteral("lp ended with status %1").arg(code);
        end(QStringLiteral("The printer %1 did not take the Graph: %2").arg(printer_, why));
    });
    connect(&lp_, &QProcess::errorOccurred, this, [this](QProcess::ProcessError e) {
        if (e == QProcess::FailedToStart)
            end(QStringLiteral("Cannot hand the Graph to the printer: %1").arg(lp_.errorString()));
    });
}

DefaultPrinterJob::~DefaultPrinterJob()
{
    closing_ = true;
    if (lp_.state() != QProcess::NotRunning)
        lp_.waitForFinished(10000);
}

QPagedPaintDevice* DefaultPrinterJob::begin(const QString& title, QString& error)
{
    QPrinterInfo info = QPrinterInfo::defaultPrinter();
    if (info.isNull()) {
        const QList<QPrinterInfo> all = QPrinterInfo::availablePrinters();
        if (all.isEmpty()) {
            error = noPrinterText();
            return nullptr;
        }
        info = all.first();
    }
    lpPath_ = QStandardPaths::findExecutable(QStringLiteral("lp"));
    if (lpPath_.isEmpty()) {
        error = QStringLiteral("Cannot print on %1: lp, the CUPS client, is not installed").arg(info.printerName());
        return nullptr;
    }
    if (!file_.open()) {
        error = QStringLiteral("Cannot print: no room for the page in %1").arg(QDir::tempPath());
        return nullptr;
    }
    file_.close();  // the printer writes it by name; it stays until the job is done

    title_ = title;
    printer_ = info.printerName();
    device_ = std::make_unique<QPrinter>(info, QPrinter::HighResolution);
    // The printer's paper and margins, kept over the switch to a PDF file.
    const QPageLayout layout = device_->pageLayout();
    device_->setOutputFormat(QPrinter::PdfFormat);
    device_->setOutputFileName(file_.fileName());
    device_->setPageLayout(layout);
    device_->setDocName(title);
    device_->setCreator(QLatin1String(ProductName));
    return device_.get();
}

void DefaultPrinterJob::finish(std::function<void(const QString& error)> done)
{
    done_ = std::move(done);
    device_.reset();
    answerTimer_.start();
    lp_.start(lpPath_, {QStringLiteral("-d"), printer_, QStringLiteral("-t"), title_, QStringLiteral("--"),
                        file_.fileName()});
}

void DefaultPrinterJob::end(const QString& error)
{
    answerTimer_.stop();
    if (!done_)
        return;
    auto done = std::move(done_);
    done_ = nullptr;
    done(error);
    if (!closing_)
        deleteLater();
}

PrintTarget* newDefaultPrinterJob(QObject* jobs)
{
    return new DefaultPrinterJob(jobs);
}

}  // namespace orm
