// The Nodes fed by the network and process sources, through the tick, on
// sources whose readings the test sets.
#include "monitor_fixture.h"

#include <QDir>

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
        sources().processes = std::make_unique<ProcessTable>(QStringLiteral(ORM_FIXTURES "/proc/tree"));

        // One Graph of six Nodes, stored as a user left it.
        const int types[] = {DownloadNodeType, UploadType, UpDownType, DownErrType, ProcessesType, DownloadNodeType};
        store.writeValue(QStringLiteral("Settings"), QStringLiteral("FirstRun"), QStringLiteral("False"));
        store.writeValue(QStringLiteral("Settings"), QStringLiteral("Sensors"), QStringLiteral("1"));
        const QString g = QStringLiteral("Settings/Sensor1");
        store.writeValue(g, QStringLiteral("SampleEverySeconds"), QStringLiteral("1"));
        store.writeValue(g, QStringLiteral("Nodes"), QStringLiteral("6"));
        for (int k = 0; k < 6; ++k) {
            const QString n = g + QStringLiteral("/Node%1").arg(k + 1);
            store.writeValue(n, QStringLiteral("NodeType"), QString::number(types[k]));
            store.writeValue(n, QStringLiteral("AdapterMonitoring"), QStringLiteral("7"));
        }
        // The last Node's adapter is gone: it falls back to the default adapter.
        store.writeValue(g + QStringLiteral("/Node6"), QStringLiteral("AdapterMonitoring"), QStringLiteral("99"));
    }

    double value(int node) { return view(0).GetNodeValue(node, 0); }

    FakeAdapters* fakeAdapters = nullptr;
};

TEST_F(SourceNodes, AdapterNodesMeasureRatesAndRawErrorCounts)
{
    const Graph& g = monitor->Sensors[0];
    ASSERT_EQ(g.Nodes.size(), 6u);
    EXPECT_EQ(g.Nodes[0].AdapterIndex, 1);  // stored index 7 is row 1
    EXPECT_EQ(g.Nodes[5].AdapterIndex, 1);  // index 99 is gone: the default adapter

    tick();
    EXPECT_EQ(value(0), 0);  // the first sample of a rate is 0
    EXPECT_EQ(value(3), 3);  // errors as they stand
    fakeAdapters->interfaces[1].InOctets += 4000;
    fakeAdapters->interfaces[1].OutOctets += 1000;
    tick(2000);
    EXPECT_EQ(value(0), 2000);
    EXPECT_EQ(value(2), 2500);
    EXPECT_EQ(value(5), 2000);

    // The adapter columns carry the deltas of the last read, errors as counts.
    const QStringList lines = logLines();
    const QStringList fields = lines[3].split(QLatin1Char(','));
    const QStringList last = lines.last().split(QLatin1Char(','));
    EXPECT_EQ(last.value(int(fields.indexOf(QStringLiteral("ADPT_DN_1")))), QStringLiteral("4000"));
    EXPECT_EQ(last.value(int(fields.indexOf(QStringLiteral("ADPT_ERR_UP_1")))), QStringLiteral("4"));

    // A row outside the table reads 0 and keeps its counter.
    Node& n = monitor->Sensors[0].Nodes[0];
    const double kept = n.LastRawValue;
    n.AdapterIndex = 5;
    fakeAdapters->interfaces[1].InOctets += 4000;
    tick();
    EXPECT_EQ(value(0), 0);
    EXPECT_EQ(n.LastRawValue, kept);
}

TEST_F(SourceNodes, ProcessesNodeReadsTheUpperBoundOfTheTable)
{
    tick();
    EXPECT_EQ(value(4), 5);  // six live processes in the tree (9999 has ended)
    const QStringList lines = logLines();
    EXPECT_TRUE(lines[3].endsWith(QStringLiteral(",PROCS")));
    EXPECT_TRUE(lines.last().endsWith(QStringLiteral(",5")));
}

}  // namespace
