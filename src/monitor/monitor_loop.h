// The timers that drive a started Monitor on the Qt event loop: tmrData runs
// the tick, CloseTimer turns a stop request into the unload.
#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>
#include <memory>

namespace orm {

class Monitor;

class MonitorLoop : public QObject {
    Q_OBJECT
public:
    // maxTicks 0 runs until a stop request.
    MonitorLoop(Monitor& monitor, long maxTicks, QObject* parent = nullptr);
    ~MonitorLoop() override;

    void start();
    // SIGTERM and SIGINT set Closing, through a pipe the handler may write to.
    void watchStopSignals();

signals:
    // A tick has run: the windows repaint from their pictures.
    void ticked();
    // The Monitor has unloaded; the status is what the process should exit with.
    void finished(int status);

private:
    void onTick();
    void onCloseTimer();
    void end();

    Monitor& monitor_;
    long maxTicks_;
    long ticks_ = 0;
    QTimer tmrData_;
    QTimer closeTimer_;
    std::unique_ptr<QSocketNotifier> signalNotifier_;
    bool ended_ = false;
};

}  // namespace orm
