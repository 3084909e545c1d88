// The cost of TestAlerts per tick: 100 Alerts with exceptions 1 and 2, each
// over a 60-sample window, on 10 Graphs whose histories are full. Every sample
// passes its condition, so each Alert reads its whole window and asks the
// exception test each time: the most a pass of these rules can cost. The floor
// is the same 6000 reads of the histories without the rules. Prints figures;
// asserts nothing.
#include "alerts/alert_tester.h"
#include "model/clock.h"
#include "model/graph_view.h"
#include "model/model.h"

#include <QCoreApplication>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>

using namespace orm;

namespace {

constexpr int Graphs = 10;
constexpr int NodesPerGraph = 4;
constexpr int AlertCount = 100;
constexpr int Window = 60;
constexpr int HistoryWidth = 600;
constexpr int Passes = 3000;

struct Figures {
    double median = 0, p99 = 0;
};

Figures measure(const std::function<void()>& pass)
{
    std::vector<double> micros;
    micros.reserve(Passes);
    for (int i = 0; i < Passes; ++i) {
        const auto start = std::chrono::steady_clock::now();
        pass();
        const auto end = std::chrono::steady_clock::now();
        micros.push_back(std::chrono::duration<double, std::micro>(end - start).count());
    }
    std::sort(micros.begin(), micros.end());
    return {micros[micros.size() / 2], micros[size_t(double(micros.size()) * 0.99)]};
}

}  // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    std::vector<Graph> sensors;
    std::vector<std::unique_ptr<GraphView>> views;
    for (int g = 0; g < Graphs; ++g) {
        Graph graph = newGraph(g, false, {}, QDateTime::currentDateTime());
        graph.SampleEverySeconds = 1;
        graph.Nodes.clear();
        for (int n = 0; n < NodesPerGraph; ++n)
            graph.Nodes.push_back(newNode(n));
        sensors.push_back(graph);
        auto view = std::make_unique<SampleHistoryView>(HistoryWidth);
        for (int s = 0; s < HistoryWidth; ++s) {
            std::vector<double> column;
            for (int n = 0; n < NodesPerGraph; ++n)
                column.push_back(50 + (s * 7 + n * 13 + g) % 40);
            view->WriteGraph(column, QStringLiteral("12:00:00"), 0, 0);
        }
        views.push_back(std::move(view));
    }

    bool closing = false;
    double tickCount = 1000;
    SystemClock clock;
    AlertTester tester(AlertModel{sensors, views, closing, tickCount}, clock);
    for (int i = 0; i < AlertCount; ++i) {
        Alert a = newAlert(i);
        a.rEnabled = true;
        a.rAction = SendEmail;  // never reached: these rules do not fire
        a.rCondition = ExceedsLimit;
        a.cLimit = 10;  // every stored sample is above it
        a.cSensor = qint16(i % Graphs);
        a.cNode = qint16(i % NodesPerGraph);
        if (i % 2 == 0) {
            a.rException = WithinLastSamples;
            a.eNumber = Window;
        } else {
            a.rException = ForLengthOfTime;
            a.eTimeLengthSeconds = Window;
        }
        tester.Alerts.push_back(a);
    }
    int fired = 0;
    tester.onAlertFired = [&](int) { ++fired; };

    double sink = 0;
    const Figures floor = measure([&] {
        for (const Alert& a : tester.Alerts)
            for (int j = 0; j < Window; ++j)
                sink += views[size_t(a.cSensor)]->GetNodeValue(a.cNode, j);
    });
    const Figures pass = measure([&] { tester.TestAlerts(); });

    std::printf("TestAlerts: %d Alerts (exceptions 1 and 2, %d-sample windows) on %d Graphs, %d passes\n",
                AlertCount, Window, Graphs, Passes);
    std::printf("  median pass          %10.1f us\n", pass.median);
    std::printf("  99th pct pass        %10.1f us\n", pass.p99);
    std::printf("  floor: %d reads      %10.1f us (median)\n", AlertCount * Window, floor.median);
    std::printf("  ratio to the floor   %10.2f\n", floor.median > 0 ? pass.median / floor.median : 0.0);
    std::printf("  rules fired          %10d (none expected)\n", fired);
    return sink < 0 ? 1 : 0;
}
