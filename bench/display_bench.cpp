// The cost of drawing: one WriteGraph frame of a 568 x 159 Line Graph with 10
// Nodes and the auto range on (its scan included), a RedrawGraph over a full
// history, and one Bar Graph frame. Prints figures; asserts nothing.
#include "display/displayed_graph.h"

#include <QGuiApplication>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <functional>

using namespace orm;

namespace {

Graph benchGraph(int type)
{
    Graph g = newGraph(0, false, {0, 0}, QDateTime::currentDateTime());
    g.GraphType = type;
    g.DataType = QStringLiteral("bps");
    g.DataMagnitude = 3;
    g.LegendUnits = QStringLiteral("Kbps");
    g.AutoRange = true;
    g.Nodes.clear();
    for (int n = 0; n < 10; ++n)
        g.Nodes.push_back(newNode(n));
    return g;
}

std::vector<double> samples(int t)
{
    std::vector<double> v(10);
    for (int n = 0; n < 10; ++n)
        v[size_t(n)] = 50000 + 40000 * std::sin(0.05 * t + n);
    return v;
}

void report(const char* what, std::vector<double>& micros)
{
    std::sort(micros.begin(), micros.end());
    std::printf("  %-38s median %9.1f us   99th pct %9.1f us\n", what, micros[micros.size() / 2],
                micros[size_t(double(micros.size()) * 0.99)]);
}

double timeIt(const std::function<void()>& f)
{
    const auto start = std::chrono::steady_clock::now();
    f();
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    std::printf("display benchmark: 568 x 159 window, 10 Nodes, auto range on\n");

    std::vector<Graph> sensors{benchGraph(LineGraph)};
    DisplayedGraph line(sensors, 0, {}, {});
    line.OpenGraph();
    std::vector<double> frames;
    for (int t = 0; t < 2000; ++t) {
        const auto v = samples(t);
        const double us = timeIt([&] { line.WriteGraph(v, QStringLiteral("12:00:00"), 60, 5); });
        if (t >= 1000)  // the history is full from here on
            frames.push_back(us);
    }
    report("Line Graph WriteGraph frame", frames);

    std::vector<double> redraws;
    for (int r = 0; r < 20; ++r)
        redraws.push_back(timeIt([&] { line.RedrawGraph(); }));
    report("RedrawGraph over a full history", redraws);

    std::vector<Graph> barSensors{benchGraph(BarGraph)};
    DisplayedGraph bars(barSensors, 0, {}, {});
    bars.OpenGraph();
    std::vector<double> barFrames;
    for (int t = 0; t < 1000; ++t) {
        const auto v = samples(t);
        barFrames.push_back(timeIt([&] {
            bars.WriteGraph(v, QStringLiteral("12:00:00"), 60, 5);
            (void)bars.windowPicture();
        }));
    }
    report("Bar Graph frame (tick and picture)", barFrames);
    return 0;
}
