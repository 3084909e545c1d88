#include "display/scale.h"

#include "model/number_text.h"
#include "display/averaging.h"

#include <algorithm>
#include <cmath>

namespace orm {

namespace {

struct Rung {
    double magnitude;
    const char* units;
};

const Rung BpsRungs[] = {{0, "bps"}, {3, "Kbps"}, {6, "Mbps"}, {9, "Gbps"}, {12, "Tbps"}};
const Rung BytesRungs[] = {{0, "bytes"}, {10, "Kbytes"}, {20, "Mbytes"}, {30, "Gbytes"},
                           {40, "Tbytes"}, {-1, "0-100%"}};

// The time ladder, smallest unit first; each rung names its own thresholds.
struct TimeRung {
    double magnitude;
    const char* units;
    double climbAbove;  // 0: no rung above
    double fallBelow;   // 0: no rung below
};
const TimeRung SecondsRungs[] = {
    {0.001, "mSeconds", 1000, 0},  {0, "Seconds", 60.1, 1.001},   {60, "Minutes", 60.1, 1.001},
    {3600, "Hours", 24.1, 1.001},  {86400, "Days", 31.1, 1.001}, {2592000, "Months", 12.1, 1.001},
    {31536000, "Years", 0, 1.001},
};
constexpr int SecondsRungCount = int(sizeof SecondsRungs / sizeof SecondsRungs[0]);

int secondsRung(double magnitude)
{
    for (int i = 0; i < SecondsRungCount; ++i)
        if (SecondsRungs[i].magnitude == magnitude)
            return i;
    return -1;
}

}  // namespace

void DecideLegendUnits(Graph& graph)
{
    const double m = graph.DataMagnitude;
    if (graph.DataType == QLatin1String("bps")) {
        for (const Rung& r : BpsRungs)
            if (r.magnitude == m)
                graph.LegendUnits = QString::fromLatin1(r.units);
    } else if (graph.DataType == QLatin1String("bytes")) {
        for (const Rung& r : BytesRungs)
            if (r.magnitude == m)
                graph.LegendUnits = QString::fromLatin1(r.units);
    } else if (graph.DataType == QLatin1String("seconds")) {
        const int i = secondsRung(m);
        if (i >= 0)
            graph.LegendUnits = QString::fromLatin1(SecondsRungs[i].units);
    }
}

LadderResult runUnitLadder(Graph& graph, double realValue, double oldMax)
{
    LadderResult r;
    const bool bps = graph.DataType == QLatin1String("bps");
    const bool bytes = graph.DataType == QLatin1String("bytes");
    const bool seconds = graph.DataType == QLatin1String("seconds");
    if (!bps && !bytes && !seconds)
        return r;
    r.ran = true;
    r.mult = bps && !graph.DisplayAsBytesPerSecond ? 8 : 1;

    auto unitSize = [&] {
        const double m = graph.DataMagnitude;
        if (m == 0)
            return 1.0;
        if (bps)
            return std::pow(10.0, m);
        if (bytes)
            return std::pow(2.0, m);
        return m;
    };

    double m = unitSize();
    r.raw = m * realValue;
    r.oldMax = m * oldMax / r.mult;
    if (seconds) {
        r.raw *= 1000;
        r.oldMax *= 1000;
    }

    for (r.passes = 1; r.passes <= 10; ++r.passes) {
        bool changed = false;
        m = unitSize();
        const double x = seconds ? r.raw / 1000 / m : r.raw / m;
        double& dm = graph.DataMagnitude;
        if (bps || bytes) {
            // The climb and the fall test the same x, from before the step.
            const double step = bps ? 3 : 10;
            const double top = bps ? 12 : 40;
            if (x > 1100 && dm < top) {
                dm += step;
                changed = true;
            }
            if (x < 1.001 && dm > 0) {
                dm -= step;
                changed = true;
            }
        } else {
            const int i = secondsRung(dm);
            if (i >= 0) {
                const TimeRung& rung = SecondsRungs[i];
                if (rung.climbAbove > 0 && x > rung.climbAbove) {
                    dm = SecondsRungs[i + 1].magnitude;
                    changed = true;
                } else if (rung.fallBelow > 0 && x < rung.fallBelow) {
                    dm = SecondsRungs[i - 1].magnitude;
                    changed = true;
                }
            }
        }
        if (!changed) {
            r.settled = true;
            return r;
        }
    }
    r.passes = 10;
    return r;
}

double autoRangeMaximum(const Graph& graph, const NodeHistory& history, const std::vector<double>& values,
                        double& realValue)
{
    const UnitFactors unit = unitFactors(graph);
    const int nodes = std::min({history.sampleListCount(), int(values.size()), int(graph.Nodes.size())});
    double big = 0;
    for (int i = 0; i < nodes; ++i) {
        const Node& node = graph.Nodes[size_t(i)];
        const SampleList& list = history.samples(i + 1);
        const double incoming = values[size_t(i)];
        if (node.NodeType == PingType && node.PingTranslate) {
            // A round trip becomes a speed: the shortest one gives the most.
            const int count = list.count();
            for (int column = 1; column <= count; ++column)
                big = std::max(big, GetAvg(unit, node, list, column, 0, true, false, true));
            big = std::max(big, GetAvg(unit, node, list, -1, incoming, true, false, true));
            continue;
        }
        // Otherwise the current value never falls as the sample rises, so the
        // largest sample gives the largest value, read as the column after the last.
        const double largest = incoming > list.largest() ? incoming : list.largest();
        big = std::max(big, GetAvg(unit, node, list, -1, largest, true, false, true));
    }
    realValue = big;
    big = roundTenth(big);
    if (big < 1)
        big = 1;
    return big;
}

QString scaleLabelText(double maxValue, int i)
{
    return screenNumberText((maxValue / 4) * i);
}

}  // namespace orm
