#include "alerts/alert_tester.h"

#include "model/clock.h"
#include "model/debug_log.h"
#include "model/number_text.h"
#include "model/version.h"

#include <QLocale>
#include <algorithm>

namespace orm {

namespace {

const QString LineEnd = QStringLiteral("\r\n");

// samplesBack is a 16-bit count: a window longer than that reads no further.
constexpr double MostSamplesBack = 32768;

bool conditionHolds(const Alert& a, double v, double low, double high)
{
    switch (a.rCondition) {
    case ExceedsLimit:
        return v > a.cLimit;
    case DropsBelowLimit:
        return v < a.cLimit;
    case OutsideRange:
        return v < low || v > high;
    case InsideRange:
        return v > low && v < high;
    case EqualsNumber:
        return v == a.cNumber;
    default:
        return false;
    }
}

}  // namespace

QString defaultDateTimeText(const QDateTime& t)
{
    return QLocale().toString(t.date(), QLocale::ShortFormat) + QLatin1Char(' ') +
           t.time().toString(QStringLiteral("HH:mm:ss"));
}

QString momentText(double moment)
{
    const QString d = numberText(moment).rightJustified(14, QLatin1Char('0'));
    return d.mid(4, 2) + QLatin1Char('/') + d.mid(6, 2) + QLatin1Char('/') + d.mid(0, 4) + QLatin1Char(' ') +
           d.mid(8, 2) + QLatin1Char(':') + d.mid(10, 2) + QLatin1Char(':') + d.mid(12, 2);
}

AlertTester::AlertTester(AlertModel model, const Clock& clock)
    : VDSMTPRelay1(clock), model_(model), clock_(clock)
{
    VDSMTPRelay1.closing = [this] { return model_.Closing; };
}

double AlertTester::presentMoment()
{
    // Read once a pass: the clock's text form is dear, and one tick is one moment.
    if (!passMoment_)
        passMoment_ = momentNumber(clock_.now());
    return *passMoment_;
}

const GraphView* AlertTester::view(int graph) const
{
    if (graph < 0 || size_t(graph) >= model_.Sensors.size() || size_t(graph) >= model_.GraphForms.size())
        return nullptr;
    return model_.GraphForms[size_t(graph)].get();
}

Node* AlertTester::node(int graph, int nodeIndex) const
{
    if (graph < 0 || size_t(graph) >= model_.Sensors.size())
        return nullptr;
    auto& nodes = model_.Sensors[size_t(graph)].Nodes;
    if (nodeIndex < 0 || size_t(nodeIndex) >= nodes.size())
        return nullptr;
    return &nodes[size_t(nodeIndex)];
}

void AlertTester::TestAlerts()
{
    debugLog().enter(QStringLiteral("TestAlerts"));
    passMoment_.reset();
    // The size is read again at each step: an action may run the event loop,
    // and the wizard may change the list meanwhile.
    for (size_t i = 0; i < Alerts.size(); ++i) {
        if (model_.Closing)
            break;
        if (testAlert(int(i)) == Outcome::Fires) {
            if (onAlertFired)
                onAlertFired(int(i));
            DoAlertAction(int(i));
        }
        if (model_.Closing)
            break;
    }
    debugLog().leave(QStringLiteral("TestAlerts"));
}

AlertTester::Outcome AlertTester::testAlert(int index)
{
    const Alert& a = Alerts[size_t(index)];
    if (!a.rEnabled || a.rCondition < ExceedsLimit || a.rCondition > AtMoment)
        return Outcome::Quiet;
    // A moment is all there is to that condition: neither the Node nor the
    // exception plays a part, so neither can make the rule stale.
    if (a.rCondition == AtMoment) {
        if (presentMoment() != a.cDateValue)
            return Outcome::Quiet;
        composeNotice(a);
        return Outcome::Fires;
    }

    double SampleCount = 1;
    bool AllSamples = false;
    switch (a.rException) {
    case WithinLastSamples:
        SampleCount = a.eNumber;
        AllSamples = true;
        break;
    case ForLengthOfTime: {
        if (a.cSensor < 0 || size_t(a.cSensor) >= model_.Sensors.size())
            return Outcome::Stale;
        const qint32 every = model_.Sensors[size_t(a.cSensor)].SampleEverySeconds;
        if (every == 0)
            return Outcome::Stale;
        SampleCount = a.eTimeLengthSeconds / every;  // not rounded
        AllSamples = true;
        break;
    }
    case WithinTimeFrame: {
        const double now = presentMoment();
        SampleCount = (now > a.eTimeFrameStart && now < a.eTimeFrameEnd) ? 1 : 0;
        AllSamples = false;
        break;
    }
    default:
        break;
    }

    const GraphView* graph = view(a.cSensor);
    if (!graph || !node(a.cSensor, a.cNode))
        return Outcome::Stale;
    // The user may enter a range either way round.
    const double low = std::min(a.cRangeStart, a.cRangeEnd);
    const double high = std::max(a.cRangeStart, a.cRangeEnd);

    // A window that never opens (a count below 1) leaves Failed false: the rule fires.
    bool Failed = false;
    const double last = std::min(SampleCount, MostSamplesBack);
    for (int j = 1; j <= last; ++j) {
        const double v = graph->GetNodeValue(a.cNode, j - 1);
        if (!conditionHolds(a, v, low, high)) {
            Failed = true;
            continue;
        }
        bool passed = false;
        if (!TestAlertException(index, passed))
            return Outcome::Stale;
        if (!passed) {
            Failed = true;
            continue;
        }
        if (!AllSamples) {
            Failed = false;
            break;
        }
    }
    if (Failed)
        return Outcome::Quiet;
    composeNotice(a);
    return Outcome::Fires;
}

bool AlertTester::TestAlertException(int alertIndex, bool& passed) const
{
    if (alertIndex < 0 || size_t(alertIndex) >= Alerts.size())
        return false;
    const Alert& a = Alerts[size_t(alertIndex)];
    if (!a.rEnabled) {
        passed = false;
        return true;
    }
    switch (a.rException) {
    case WithinLastSamples:
    case ForLengthOfTime:
    case WithinTimeFrame:
        // So a rule with one of these fires only while its window is empty.
        passed = false;
        return true;
    case OtherExceeds:
    case OtherDropsBelow:
    case OtherOutsideRange:
    case OtherInsideRange:
    case OtherEqualsNumber:
        break;
    default:  // "[NONE]" and unset
        passed = true;
        return true;
    }

    const GraphView* other = view(a.eSensor);
    if (!other || !node(a.eSensor, a.eNode))
        return false;
    const double o = other->GetNodeValue(a.eNode, 0);
    const double s = a.eRangeStart, e = a.eRangeEnd;
    switch (a.rException) {
    case OtherExceeds:
        passed = o > a.eLimit;
        break;
    case OtherDropsBelow:
        passed = o < a.eLimit;
        break;
    case OtherOutsideRange:
        passed = s <= e ? (o < s || o > e) : (o > s || o < e);
        break;
    case OtherInsideRange:
        // Entered low to high this holds for nearly every value: its second
        // form joins the comparisons with "or", and is meant so.
        passed = s > e ? (o < s && o > e) : (o > s || o < e);
        break;
    default:
        passed = o == a.eNumber;
        break;
    }
    return true;
}

void AlertTester::composeNotice(const Alert& a)
{
    const QString Intro = QStringLiteral("This is an automated email from ") + QLatin1String(ProductName) +
                          LineEnd + LineEnd;
    if (a.rCondition == AtMoment) {
        const QString When = momentText(a.cDateValue);
        AlertMailSubject = QStringLiteral("The time and date has reached ") + When;
        AlertMailBody = Intro + QStringLiteral("The time and date has reached you value of ") + When + LineEnd +
                        LineEnd + QStringLiteral("The current time and date is ") +
                        defaultDateTimeText(clock_.now());
        return;
    }
    const QString NodeName = QString(node(a.cSensor, a.cNode)->Name).remove(QChar(u'\0'));
    const QString Current = numberText(view(a.cSensor)->GetNodeValue(a.cNode, 0));
    const QString currentLine = LineEnd + LineEnd + NodeName + QStringLiteral(" has a current value of ") + Current;
    const QString limit = numberText(a.cLimit);
    const QString start = numberText(a.cRangeStart);
    const QString end = numberText(a.cRangeEnd);
    switch (a.rCondition) {
    case ExceedsLimit:
        AlertMailSubject = NodeName + QStringLiteral(" has exceeded ") + limit;
        AlertMailBody = Intro + NodeName + QStringLiteral(" has exceeded your limit of ") + limit + currentLine;
        break;
    case DropsBelowLimit:
        AlertMailSubject = NodeName + QStringLiteral(" has dropped below ") + limit;
        AlertMailBody = Intro + NodeName + QStringLiteral(" has dropped below your limit of ") + limit + currentLine;
        break;
    case OutsideRange:
        AlertMailSubject = NodeName + QStringLiteral(" has fallen outside of ") + start + QStringLiteral(" and ") + end;
        AlertMailBody = Intro + NodeName + QStringLiteral(" has fallen outside of the range of ") + start +
                        QStringLiteral(" to ") + end + currentLine;
        break;
    case InsideRange:
        AlertMailSubject = NodeName + QStringLiteral(" has fallen inside of ") + start + QStringLiteral(" to ") + end;
        AlertMailBody = Intro + NodeName + QStringLiteral(" has fallen inside of your range of ") + start +
                        QStringLiteral(" to ") + end + currentLine;
        break;
    default:
        AlertMailSubject = NodeName + QStringLiteral(" has reached ") + numberText(a.cNumber);
        AlertMailBody = Intro + NodeName + QStringLiteral(" has reached ") + numberText(a.cNumber) + currentLine;
        break;
    }
}

}  // namespace orm
