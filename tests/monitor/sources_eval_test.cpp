// The adapter Nodes through the tick, on an adapter table whose readings the
// test sets.
#include "monitor_fixture.h"

using namespace orm;
using namespace orm::test;

namespace {

class FakeAdapters final : public AdapterPlatform {
public:
    AdapterReadError interfaceRows(std::vector<InterfaceRow>& rows) override
    {
        rows = interfaces;
        return {};
    }
    AdapterReadError addressRows(std::vector<AddressRow>& rows) override
    {
        rows = {{1, {127, 0, 0, 1}, {255, 0, 0, 0}, {127, 255, 255, 255}},
                {7, {10, 0, 0, 5}, {255, 255, 255, 0}, {10, 0, 0, 255}}};
        return {};
    }
    qint32 bestInterfaceIndex() override { return 7; }

    std::vector<InterfaceRow> interfaces = {
        {1, QStringLiteral("lo"), QStringLiteral("lo"), 1000, 1000, 0, 0, 0, 24, 5, 0},
        {7, QStringLiteral("eth0"), QStringLiteral("eth0"), 50000, 9000, 3, 4, 0, 6, 5, 1000000000}};
};

class SourceNodes : public MonitorFixture {
protected:
    void configure() override
    {
        auto adapters = std::make_unique<FakeAdapters>();
        fakeAdapters = adapters.get();
        sources().adapterPlatform = std::move(adapters);
        sources().adapters = std::make_unique<Adapters>(*sources().adapterPlatform);
        sources().adapterRows = std::make_unique<AdapterRows>(*sources().adapters);

        // One Graph of five Nodes, stored as a user left it.
        const int types[] = {DownloadNodeType, UploadType, UpDownType, DownErrType, DownloadNodeType};
        store.writeValue(QStringLiteral("Settings"), QStringLiteral("FirstRun"), QStringLiteral("False"));
        store.writeValue(QStringLiteral("Settings"), QStringLiteral("Sensors"), QStringLiteral("1"));
        const QString g = QStringLiteral("Settings/Sensor1");
        store.writeValue(g, QStringLiteral("SampleEverySeconds"), QStringLiteral("1"));
        store.writeValue(g, QStringLiteral("Nodes"), QStringLiteral("5"));
        for (int k = 0; k < 5; ++k) {
            const QString n = g + QStringLiteral("/Node%1").arg(k + 1);
            store.writeValue(n, QStringLiteral("NodeType"), QString::number(types[k]));
            store.writeValue(n, QStringLiteral("AdapterMonitoring"), QStringLiteral("7"));
        }
        // The last Node's adapter is gone: it falls back to the default adapter.
        store.writeValue(g + QStringLiteral("/Node5"), QStringLiteral("AdapterMonitoring"), QStringLiteral("99"));
    }

    double value(int node) { return view(0).GetNodeValue(node, 0); }

    FakeAdapters* fakeAdapters = nullptr;
};

TEST_F(SourceNodes, AdapterNodesMeasureRatesAndRawErrorCounts)
{
    const Graph& g = monitor->Sensors[0];
    ASSERT_EQ(g.Nodes.size(), 5u);
    EXPECT_EQ(g.Nodes[0].AdapterIndex, 1);  // stored index 7 is row 1
    EXPECT_EQ(g.Nodes[4].AdapterIndex, 1);  // index 99 is gone: the default adapter

    tick();
    EXPECT_EQ(value(0), 0);  // the first sample of a rate is 0
    EXPECT_EQ(value(3), 3);  // errors as they stand
    fakeAdapters->interfaces[1].InOctets += 4000;
    fakeAdapters->interfaces[1].OutOctets += 1000;
    tick(2000);
    EXPECT_EQ(value(0), 2000);
    EXPECT_EQ(value(2), 2500);

    // A row outside the table reads 0 and keeps its counter.
    Node& n = monitor->Sensors[0].Nodes[0];
    const double kept = n.LastRawValue;
    n.AdapterIndex = 5;
    fakeAdapters->interfaces[1].InOctets += 4000;
    tick();
    EXPECT_EQ(value(0), 0);
    EXPECT_EQ(n.LastRawValue, kept);
}

}  // namespace
