// The metrics endpoint as the settings (MetricsPort, MetricsAddress,
// MetricsToken) and --metrics ask for it.
#pragma once

#include "endpoint/metrics_endpoint.h"

#include <QHostAddress>
#include <QString>
#include <memory>

namespace orm {

class KeyValueStore;
class Monitor;
struct ListenAddress;

struct MetricsPlan {
    bool on = false;
    QHostAddress address;
    quint16 port = 0;
    QByteArray token;
    // A setting that cannot be used: the endpoint stays off, and this says why.
    QString problem;
};

// MetricsPort "0" (the default) keeps the endpoint off. `option`, --metrics
// when it was given, wins over MetricsPort and, when it names an address, over
// MetricsAddress; its port 0 takes a free port.
MetricsPlan planMetrics(const KeyValueStore& store, const ListenAddress* option);

// Once the monitor has started: listens as the plan says and turns on the
// tick's recording. Says on stdout where it listens and on stderr why it
// cannot; null when off or when it cannot, `failure` then holding the reason.
std::unique_ptr<MetricsEndpoint> openMetrics(Monitor& monitor, const MetricsPlan& plan, QString& failure);

}  // namespace orm
