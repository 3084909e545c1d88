// Reading Prometheus text back in the tests: the samples with their labels
// unescaped, and promtool's verdict on a text.
#pragma once

#include <QByteArray>
#include <QProcess>
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

// Every sample line of the text, in order; nothing for a line it cannot read.
inline std::vector<Sample> readExposition(const QByteArray& text)
{
    std::vector<Sample> out;
    for (const QByteArray& line : text.split('\n')) {
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        Sample s;
        qsizetype i = 0;
        while (i < line.size() && line[i] != '{' && line[i] != ' ')
            ++i;
        s.name = QString::fromUtf8(line.left(i));
        if (i < line.size() && line[i] == '{') {
            ++i;
            while (i < line.size() && line[i] != '}') {
                const qsizetype eq = line.indexOf('=', i);
                if (eq < 0 || eq + 1 >= line.size() || line[eq + 1] != '"')
                    return out;
                const QString key = QString::fromUtf8(line.mid(i, eq - i));
                QByteArray value;
                qsizetype j = eq + 2;
                for (; j < line.size() && line[j] != '"'; ++j) {
                    if (line[j] == '\\' && j + 1 < line.size()) {
                        ++j;
                        value.append(line[j] == 'n' ? '\n' : line[j]);
                    } else {
                        value.append(line[j]);
                    }
                }
                s.labels[key] = QString::fromUtf8(value);
                i = j + 1;
                if (i < line.size() && line[i] == ',')
                    ++i;
            }
            ++i;
        }
        const QByteArray value = line.mid(i).trimmed();
        bool ok = false;
        s.value = value == "NaN" ? qQNaN() : value == "+Inf" ? qInf() : value == "-Inf" ? -qInf() : value.toDouble(&ok);
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
        if (s.name != name)
            continue;
        bool ok = true;
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
    if (found.size() != 1)
        return std::nullopt;
    return found.front().value;
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
