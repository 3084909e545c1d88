#include "display/averaging.h"

#include <bit>
#include <cmath>
#include <cstdint>

namespace orm {

namespace {

// The start of a lull search, as the original's constant stands in memory.
const double LullStart = std::bit_cast<double>(std::uint64_t(0x43F000000000000CULL));

}  // namespace

UnitFactors unitFactors(const Graph& graph)
{
    UnitFactors u;
    const QString& type = graph.DataType;
    if (type == QLatin1String("bps")) {
        u.mag = std::pow(10.0, graph.DataMagnitude);
        if (!graph.DisplayAsBytesPerSecond)
            u.mult = 8;
    } else if (type == QLatin1String("bytes")) {
        u.mag = std::pow(2.0, graph.DataMagnitude);
    } else if (type == QLatin1String("percent") || type == QLatin1String("number")) {
        u.mag = 1;
    } else if (type == QLatin1String("seconds")) {
        u.mag = graph.DataMagnitude == 0 ? 1 : graph.DataMagnitude;
        u.seconds = true;
    }
    return u;
}

double roundTenth(double value)
{
    if (!std::isfinite(value) || std::fabs(value) >= 1e15)
        return value;
    return std::nearbyint(value * 10) / 10;
}

double GetAvg(const Graph& graph, const NodeHistory& history, int nodeFrom1, int useThisIndex,
              double useThisValue, bool onlyCurrent, bool round, bool pingTranslation)
{
    if (nodeFrom1 < 1 || size_t(nodeFrom1) > graph.Nodes.size())
        return 0.0;
    return GetAvg(unitFactors(graph), graph.Nodes[size_t(nodeFrom1) - 1], history.samples(nodeFrom1),
                  useThisIndex, useThisValue, onlyCurrent, round, pingTranslation);
}

double GetAvg(const UnitFactors& unit, const Node& node, const SampleList& list, int useThisIndex,
              double useThisValue, bool onlyCurrent, bool round, bool pingTranslation)
{
    const int count = list.count();
    int start = useThisIndex > 0 ? useThisIndex : count;
    if (useThisIndex == -1)
        start = count + 1;
    int stop = start - (node.AveragingSamples - 1);
    if (stop < 1)
        stop = 1;

    // The original stops with a run-time error on these; the value is then 0.
    bool fault = false;
    auto divide = [&fault](double a, double b) {
        if (b == 0) {
            fault = true;
            return 0.0;
        }
        return a / b;
    };

    const bool translated = pingTranslation && node.NodeType == PingType && node.PingTranslate;
    const int mode = onlyCurrent ? RealTime : node.Averaging;
    double factor = 1;
    double cur = 0;
    double acc = mode == LullCapture ? LullStart : 0;

    auto read = [&](int column) {
        double val;
        if (column == start && useThisIndex == -1) {
            val = useThisValue;
        } else if (list.holds(column)) {
            val = list.at(column);
        } else {
            fault = true;
            val = 0;
        }
        if (unit.seconds && val > -1) {
            val /= 1000;
            factor = 1000;
        }
        if (translated) {
            if (val > 0)
                cur = divide((1000 / val) * (double(node.PingPacketSize) * 2), unit.mag);
            else if (mode == LullCapture)
                cur = 0;
        }
        return val;
    };

    switch (mode) {
    case PeakCapture:
        for (int column = start; column >= stop && !fault; --column) {
            const double val = read(column);
            if (translated) {
                if (cur > acc)
                    acc = cur;
            } else if (val * factor > acc) {
                // Compares the unscaled sample with the scaled peak; kept.
                acc = divide(val, unit.mag);
            }
        }
        break;
    case Average:
        for (int column = start; column >= stop && !fault; --column) {
            const double val = read(column);
            if (translated)
                acc += cur;
            else if (val * factor > -1)
                acc += divide(val, unit.mag);
            else
                acc += divide(acc, start - stop);  // a gap counts as the running share
        }
        acc = divide(acc, (start - stop) + 1);
        break;
    case LullCapture:
        for (int column = start; column >= stop && !fault; --column) {
            const double val = read(column);
            if (translated) {
                if (cur < acc)
                    acc = cur;
            } else if (val * factor < acc && val > -1) {
                acc = divide(val, unit.mag);
            }
        }
        if (acc == LullStart)
            acc = 0;
        break;
    case RealTime: {
        const double val = read(start);
        if (translated)
            acc = cur;
        else if (val * factor > -1)
            acc = divide(val, unit.mag);
        else
            acc = val;
        break;
    }
    default:
        break;
    }

    if (fault)
        return 0.0;
    if (acc < 0)
        acc = 0;
    acc *= unit.mult;
    if (round)
        acc = roundTenth(acc);
    return acc;
}

}  // namespace orm
