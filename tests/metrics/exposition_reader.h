// Reading Prometheus text back in the tests: the samples with their labels
// unescaped, and promtool's verdict on a text.
#pragma once

#include <QByteArray>
#include <QProcess>
#include <QRegularExpression>
#include <QString>
#include <map>
#include <optional>
#include <vector>

namespace orm::test {

struct Sample {
    QString name;
    std::map<QString, QString> labels;
    double value = 0;
};

// Every sample line of the text, in order.
inline std::vector<Sample> readExposition(const QByteArray& text)
{
    static const QRegularExpression lineRe(QStringLiteral(R"(^([a-zA-Z_:][a-zA-Z0-9_:]*)(?:\{(.*)\})? (\S+)$)"));
    static const QRegularExpression labelRe(QStringLiteral(R"re(([a-zA-Z_]\w*)="((?:[^"\\]|\\.)*)",?)re"));
    std::vector<Sample> out;
    for (const QString& line : QString::fromUtf8(text).split(QLatin1Char('\n'))) {
        const QRegularExpressionMatch m = lineRe.match(line);
        if (!m.hasMatch())
            continue;
        Sample s{m.captured(1), {}, m.captured(3) == QLatin1String("+Inf") ? qInf() : m.captured(3).toDouble()};
        for (auto it = labelRe.globalMatch(m.captured(2)); it.hasNext();) {
            const QRegularExpressionMatch l = it.next();
            const QString escaped = l.captured(2);
            QString value;
            for (qsizetype i = 0; i < escaped.size(); ++i) {  // the pattern keeps each \ with its escaped char
                const bool pair = escaped[i] == QLatin1Char('\\');
                value += pair && escaped[++i] == QLatin1Char('n') ? QChar(u'\n') : escaped[i];
            }
            s.labels[l.captured(1)] = value;
        }
        out.push_back(s);
    }
    return out;
}

// The samples of one metric whose labels include `match`.
inline std::vector<Sample> samplesOf(const std::vector<Sample>& all, const QString& name,
                                     const std::map<QString, QString>& match = {})
{
    std::vector<Sample> out;
    for (const Sample& s : all) {
        bool ok = s.name == name;
        for (const auto& [k, v] : match)
            ok = ok && s.labels.count(k) && s.labels.at(k) == v;
        if (ok)
            out.push_back(s);
    }
    return out;
}

inline std::optional<double> valueOf(const std::vector<Sample>& all, const QString& name,
                                     const std::map<QString, QString>& match = {})
{
    const auto found = samplesOf(all, name, match);
    return found.size() == 1 ? std::optional<double>(found.front().value) : std::nullopt;
}

struct PromtoolVerdict {
    bool passed = false;
    QString output;
};

// `promtool check metrics` on the text: passed when it finds no fault at all.
inline PromtoolVerdict promtoolCheck(const QByteArray& text)
{
    QProcess p;
    p.setProcessChannelMode(QProcess::MergedChannels);
    p.start(QStringLiteral("promtool"), {QStringLiteral("check"), QStringLiteral("metrics")});
    if (!p.waitForStarted(10000))
        return {false, QStringLiteral("promtool did not start: ") + p.errorString()};
    p.write(text);
    p.closeWriteChannel();
    p.waitForFinished(30000);
    const QString output = QString::fromUtf8(p.readAll());
    return {p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0 && output.trimmed().isEmpty(), output};
}

}  // namespace orm::test
