// The default printer as a place for a printed page. The page is laid out for
// that printer's paper and margins, written as PDF, and handed to the CUPS
// queue by lp, whose answer says whether the queue took the job: a queue that
// refuses it is reported, not lost in silence. lp runs beside the program and
// reports by a signal, so nothing waits for the printer.
#pragma once

#include "display/print_graph.h"

#include <QObject>
#include <QProcess>
#include <QTemporaryFile>
#include <QTimer>
#include <memory>

class QPrinter;

namespace orm {

// What the panel says where the system has no printer at all.
QString noPrinterText();

// One document for the default printer; it deletes itself once the queue has
// answered. It has no meta-object of its own: the folder's shared one would
// link the print support into every binary that holds any window.
class DefaultPrinterJob final : public QObject, public PrintTarget {
public:
    // How long lp may take before the job counts as failed.
    static constexpr int AnswerSeconds = 60;

    explicit DefaultPrinterJob(QObject* parent = nullptr);
    // A job still with the queue is given a moment to get there.
    ~DefaultPrinterJob() override;

    // The default printer, else the only or first one there is.
    QPagedPaintDevice* begin(const QString& title, QString& error) override;
    void finish(std::function<void(const QString& error)> done) override;

    QString printerName() const { return printer_; }

private:
    void end(const QString& error);

    QString title_;
    QString printer_;
    QString lpPath_;
    QTemporaryFile file_;
    std::unique_ptr<QPrinter> device_;
    QProcess lp_;
    QTimer answerTimer_;
    std::function<void(const QString&)> done_;
    bool closing_ = false;
};

}  // namespace orm
