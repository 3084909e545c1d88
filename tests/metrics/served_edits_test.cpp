// The endpoint serving a running Monitor while its Graphs and Nodes are
// edited: one listener and one kept-alive connection for the whole run, each
// scrape showing the model as the last edit left it.
#include "exposition_reader.h"
#include "http_client.h"
#include "monitor_fixture.h"

#include "endpoint/metrics_endpoint.h"
#include "monitor/editing.h"
#include "monitor/metrics_feed.h"

#include <set>

using namespace orm;
using namespace orm::test;

namespace {

class AlwaysYes final : public EditPrompts {
public:
    bool askYesNo(const QString&, const QString&) override { return true; }
    void stop(const QString&, const QString&) override {}
};

class ServedMonitor : public MonitorFixture {
protected:
    void SetUp() override
    {
        MonitorFixture::SetUp();
        monitor->recordHealth();
        endpoint = std::make_unique<MetricsEndpoint>([this](QByteArray& out) { writeMetrics(*monitor, out); },
                                                     QByteArray());
        ASSERT_TRUE(endpoint->listenOn(QHostAddress::LocalHost, 0));
        client = std::make_unique<Client>(endpoint->port());
    }

    // One more scrape on the same connection: its samples, or none when it did not come.
    std::vector<Sample> scrape()
    {
        client->send(get("/metrics"));
        const auto replies = client->await(++asked);
        if (replies.size() != asked || replies.back().status != 200)
            return {};
        EXPECT_TRUE(promtoolCheck(replies.back().body).passed);
        return readExposition(replies.back().body);
    }

    static std::set<QString> nodesIn(const std::vector<Sample>& samples)
    {
        std::set<QString> names;
        for (const Sample& s : samplesOf(samples, QStringLiteral("ormivane_node_value")))
            names.insert(s.labels.at(QStringLiteral("graph")) + QLatin1Char('/') + s.labels.at(QStringLiteral("node")));
        return names;
    }

    std::unique_ptr<MetricsEndpoint> endpoint;
    std::unique_ptr<Client> client;
    size_t asked = 0;
};

TEST_F(ServedMonitor, GraphAndNodeEditsKeepTheListenerAndItsConnections)
{
    const quint16 port = endpoint->port();
    tick();
    const auto first = scrape();
    ASSERT_FALSE(first.empty());
    const QString graph = monitor->Sensors[0].Name;
    const QString node = monitor->Sensors[0].Nodes[0].Name;
    EXPECT_EQ(nodesIn(first), (std::set<QString>{graph + QLatin1Char('/') + node}));

    // A new Graph with a second Node, a renamed Node: they are series at the next tick.
    AlwaysYes yes;
    monitor->AddSensor(false);
    ASSERT_EQ(AddNode(*monitor, 1), 1);
    monitor->Sensors[1].Name = QStringLiteral("Added");
    monitor->Sensors[1].Nodes[1].Name = QStringLiteral("Second");
    monitor->Sensors[0].Nodes[0].Name = QStringLiteral("Renamed");
    monitor->SaveSettings();
    tick();
    const auto grown = scrape();
    const QString added0 = QStringLiteral("Added/") + monitor->Sensors[1].Nodes[0].Name;
    EXPECT_EQ(nodesIn(grown), (std::set<QString>{graph + QStringLiteral("/Renamed"), added0, QStringLiteral("Added/Second")}));

    // A deleted Node and then its whole first Graph leave with their series.
    ASSERT_EQ(DeleteNode(*monitor, store, yes, 1, 1), EditResult::Done);
    ASSERT_EQ(DeleteGraph(*monitor, store, yes, 0), EditResult::Done);
    const auto shrunk = scrape();
    EXPECT_EQ(nodesIn(shrunk), (std::set<QString>{added0}));
    tick();

    // Served all along by the one endpoint, on its one port and connection.
    const auto last = scrape();
    EXPECT_EQ(valueOf(last, QStringLiteral("ormivane_ticks_total")), 3);
    EXPECT_EQ(endpoint->port(), port);
    EXPECT_EQ(endpoint->scrapes(), 4u);
    EXPECT_FALSE(client->closed);
}

}  // namespace
