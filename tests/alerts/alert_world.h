// A small program around the Alerts for the tests: Graphs with real sample
// histories, the loop's flags, a clock that stands still, and a host that
// records what the actions asked for.
#pragma once

#include "alerts/alert_tester.h"
#include "model/clock.h"
#include "model/graph_view.h"
#include "model/model.h"

#include <QStringList>
#include <QTimer>
#include <memory>
#include <vector>

namespace orm::test {

// The index-th rule, armed, on Node 0 of Graph 0 with the given codes.
inline Alert armedAlert(int index, qint16 action, qint16 condition, qint16 exception = NoException)
{
    Alert a = newAlert(index);
    a.rEnabled = true;
    a.rAction = action;
    a.rCondition = condition;
    a.rException = exception;
    a.cSensor = 0;
    a.cNode = 0;
    return a;
}

class RecordingHost final : public AlertActionHost {
public:
    // The answer a question gets; 0 leaves it waiting until answerLater() fires.
    int answerWith = AlertAnswerYes;
    bool exitAccepted = true;
    QStringList calls;

    void ShowMessage(const QString& text, bool timed, bool hold) override
    {
        calls << (timed ? QStringLiteral("question:") : QStringLiteral("message:")) + text;
        if (timed && hold) {
            awaiting_ = answerWith == 0;
            answer_ = answerWith;
        }
    }
    bool AwaitingAnswer() const override { return awaiting_; }
    int Answer() const override { return answer_; }
    void playSound(const QString& file) override { calls << QStringLiteral("sound:") + file; }
    void printGraph(int graphIndex) override { calls << QStringLiteral("print:") + QString::number(graphIndex); }
    void startApplication(const QString& file) override { calls << QStringLiteral("app:") + file; }
    bool ExitComputer(int mode) override
    {
        calls << QStringLiteral("exit:") + QString::number(mode);
        return exitAccepted;
    }
    // The user answers a waiting question after `ms`, while the event loop runs.
    void answerLater(int answer, int ms)
    {
        QTimer::singleShot(ms, [this, answer] { answer_ = answer, awaiting_ = false; });
    }

private:
    bool awaiting_ = false;
    int answer_ = 0;
};

struct AlertWorld {
    std::vector<Graph> Sensors;
    std::vector<std::unique_ptr<GraphView>> GraphForms;
    bool Closing = false;
    double TickCount = 500;
    ManualClock clock{QDateTime(QDate(2026, 3, 5), QTime(9, 7, 41))};
    AlertTester tester{AlertModel{Sensors, GraphForms, Closing, TickCount}, clock};
    RecordingHost host;
    int saves = 0;

    // `graphs` Graphs of `nodes` Nodes each, named "G<g>N<n>", sampling every second.
    explicit AlertWorld(int graphs = 2, int nodes = 2)
    {
        for (int g = 0; g < graphs; ++g) {
            Graph graph = newGraph(g, false, {}, clock.now());
            graph.SampleEverySeconds = 1;
            graph.Nodes.clear();
            for (int n = 0; n < nodes; ++n) {
                graph.Nodes.push_back(newNode(n));
                graph.Nodes.back().Name = QStringLiteral("G%1N%2").arg(g).arg(n);
            }
            Sensors.push_back(graph);
            GraphForms.push_back(std::make_unique<SampleHistoryView>());
        }
        tester.setHost(&host);
        tester.saveSettings = [this] { ++saves; };
    }

    // One stored column of a Graph: a value for each Node.
    void store(int graph, std::vector<double> values)
    {
        GraphForms[size_t(graph)]->WriteGraph(values, QStringLiteral("09:07:41"), 0, 0);
    }
    // An armed rule on Node 0 of Graph 0 with the given codes.
    Alert& add(qint16 action, qint16 condition, qint16 exception = NoException)
    {
        tester.Alerts.push_back(armedAlert(int(tester.Alerts.size()), action, condition, exception));
        return tester.Alerts.back();
    }
    // How many times a pass fires each Alert.
    std::vector<int> fired()
    {
        std::vector<int> counts(tester.Alerts.size(), 0);
        tester.onAlertFired = [&](int i) { ++counts[size_t(i)]; };
        tester.TestAlerts();
        tester.onAlertFired = nullptr;
        return counts;
    }
    bool firesOnce() { return fired() == std::vector<int>{1}; }
};

}  // namespace orm::test
