#include "monitor/monitor_loop.h"

#include "monitor/monitor.h"

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace orm {

namespace {
int signalPipe[2] = {-1, -1};

void onStopSignal(int)
{
    const char c = 1;
    [[maybe_unused]] auto n = ::write(signalPipe[1], &c, 1);
}
}  // namespace

MonitorLoop::MonitorLoop(Monitor& monitor, long maxTicks, QObject* parent)
    : QObject(parent), monitor_(monitor), maxTicks_(maxTicks)
{
    tmrData_.setInterval(1000);
    tmrData_.setTimerType(Qt::PreciseTimer);
    closeTimer_.setInterval(2000);
    connect(&tmrData_, &QTimer::timeout, this, &MonitorLoop::onTick);
    connect(&closeTimer_, &QTimer::timeout, this, &MonitorLoop::onCloseTimer);
}

MonitorLoop::~MonitorLoop() = default;

void MonitorLoop::start()
{
    closeTimer_.start();
    tmrData_.start();
}

void MonitorLoop::watchStopSignals()
{
    if (signalPipe[0] < 0) {
        if (::pipe2(signalPipe, O_CLOEXEC | O_NONBLOCK) != 0)
            return;
    }
    signalNotifier_ = std::make_unique<QSocketNotifier>(signalPipe[0], QSocketNotifier::Read);
    connect(signalNotifier_.get(), &QSocketNotifier::activated, this, [this] {
        char buf[16];
        while (::read(signalPipe[0], buf, sizeof buf) > 0) {
        }
        monitor_.Closing = true;
    });
    struct sigaction sa {};
    sa.sa_handler = onStopSignal;
    sigemptyset(&sa.sa_mask);
    sa.sa_flags = SA_RESTART;
    sigaction(SIGTERM, &sa, nullptr);
    sigaction(SIGINT, &sa, nullptr);
}

void MonitorLoop::onTick()
{
    if (!monitor_.tmrDataEnabled)
        return;
    monitor_.TimerData();
    ++ticks_;
    emit ticked();
    if (!monitor_.fatalError.isEmpty() || (maxTicks_ > 0 && ticks_ >= maxTicks_)) {
        monitor_.Closing = true;
        end();
    }
}

void MonitorLoop::onCloseTimer()
{
    if (monitor_.CloseTimer())
        end();
}

void MonitorLoop::end()
{
    if (ended_)
        return;
    ended_ = true;
    tmrData_.stop();
    closeTimer_.stop();
    monitor_.unload();
    emit finished(monitor_.fatalError.isEmpty() ? 0 : 1);
}

}  // namespace orm
