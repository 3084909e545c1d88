#include "metrics_setup.h"

#include "console_line.h"
#include "endpoint/listen_address.h"
#include "model/settings_store.h"
#include "model/version.h"
#include "monitor/metrics_feed.h"
#include "monitor/monitor.h"

namespace orm {

MetricsPlan planMetrics(const KeyValueStore& store, const ListenAddress* option)
{
    MetricsPlan plan;
    plan.token = store.readValue(SettingsKey, QStringLiteral("MetricsToken"), QString()).trimmed().toUtf8();

    QString address = store.readValue(SettingsKey, QStringLiteral("MetricsAddress"), QString()).trimmed();
    if (address.startsWith(QLatin1Char('[')) && address.endsWith(QLatin1Char(']')))
        address = address.mid(1, address.size() - 2);
    if (option && !option->address.isNull()) {
        plan.address = option->address;
    } else if (address.isEmpty()) {
        plan.address = QHostAddress(QHostAddress::LocalHost);
    } else if (!plan.address.setAddress(address)) {
        plan.problem = QStringLiteral("MetricsAddress \"%1\" is not an IP address; the metrics endpoint stays off.")
                           .arg(address);
        return plan;
    }

    if (option) {
        plan.port = option->port;
        plan.on = true;
        return plan;
    }
    const QString portText = store.readValue(SettingsKey, QStringLiteral("MetricsPort"), QString()).trimmed();
    bool ok = true;
    const uint port = portText.isEmpty() ? 0 : portText.toUInt(&ok);
    if (!ok || port > 65535) {
        plan.problem = QStringLiteral("MetricsPort \"%1\" is not a port number from 0 to 65535; the metrics endpoint "
                                      "stays off.")
                           .arg(portText);
        return plan;
    }
    plan.port = quint16(port);
    plan.on = port != 0;
    return plan;
}

std::unique_ptr<MetricsEndpoint> openMetrics(Monitor& monitor, const MetricsPlan& plan, QString& failure)
{
    failure.clear();
    if (!plan.problem.isEmpty()) {
        failure = plan.problem;
        printLine(stderr, QLatin1String(ProductName) + QStringLiteral(": ") + failure);
        return nullptr;
    }
    if (!plan.on)
        return nullptr;
    auto endpoint = std::make_unique<MetricsEndpoint>(
        [&monitor](QByteArray& out) { writeMetrics(monitor, out); }, plan.token);
    if (!endpoint->listenOn(plan.address, plan.port)) {
        failure = QStringLiteral("The metrics endpoint cannot listen on %1 port %2: %3. %4 runs on without it.")
                      .arg(urlHostText(plan.address))
                      .arg(plan.port)
                      .arg(endpoint->errorString(), QLatin1String(ProductName));
        printLine(stderr, QLatin1String(ProductName) + QStringLiteral(": ") + failure);
        return nullptr;
    }
    monitor.recordHealth();
    printLine(stdout, QStringLiteral("Metrics on http://%1:%2/metrics%3")
                          .arg(urlHostText(plan.address))
                          .arg(endpoint->port())
                          .arg(plan.token.isEmpty() ? QString() : QStringLiteral(" (bearer token required)")));
    return endpoint;
}

}  // namespace orm
