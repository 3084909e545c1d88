#include "alerts/alert_links.h"

#include "alerts/alert_tester.h"
#include "model/number_text.h"

#include <QRegularExpression>
#include <algorithm>

namespace orm {

namespace {

AlertLink settingLink(const char* word, char tag, qint16 kind, const char* prompt)
{
    return {QLatin1String(word), QLatin1Char(tag), kind, QLatin1String(prompt), LinkAction::Setting};
}

AlertLink plainLink(const char* word, char tag, LinkAction action)
{
    return {QLatin1String(word), QLatin1Char(tag), NoSettingKind, QString(), action};
}

QString noNul(QString text)
{
    return text.remove(QChar(u'\0'));
}

bool unset(double v)
{
    return v == -1;
}

// "Graph (name)" and, with a Node, ", Node (name)"; empty when either is gone.
QString graphAndNode(const std::vector<Graph>& sensors, int graph, int node, bool withNode)
{
    if (graph < 0 || size_t(graph) >= sensors.size())
        return QString();
    const Graph& g = sensors[size_t(graph)];
    QString text = QStringLiteral("Graph (") + noNul(g.Name) + QLatin1Char(')');
    if (!withNode)
        return text;
    if (node < 0 || size_t(node) >= g.Nodes.size())
        return QString();
    return text + QStringLiteral(", Node (") + noNul(g.Nodes[size_t(node)].Name) + QLatin1Char(')');
}

QString numberValue(double v)
{
    return unset(v) ? QString() : numberText(v);
}

QString twoNumbers(double a, double b, QString (*text)(double))
{
    if (unset(a) && unset(b))
        return QString();
    return text(a) + QStringLiteral(" to ") + text(b);
}

// The value a link shows, without its tag; empty while it has none.
QString linkValue(const QString& word, const Alert& a, const std::vector<Graph>& sensors)
{
    if (word == QLatin1String("Email Address"))
        return a.aEmailAddress;
    if (word == QLatin1String("Sound"))
        return a.aSound;
    if (word == QLatin1String("Message"))
        return a.aMessage;
    if (word == QLatin1String("Node1"))
        return graphAndNode(sensors, a.aSensor, a.aNode, true);
    if (word == QLatin1String("Graph"))
        return graphAndNode(sensors, a.aSensor, -1, false);
    if (word == QLatin1String("Application"))
        return a.aApplication;
    if (word == QLatin1String("Node2"))
        return graphAndNode(sensors, a.cSensor, a.cNode, true);
    if (word == QLatin1String("Limit1"))
        return numberValue(a.cLimit);
    if (word == QLatin1String("Range1"))
        return twoNumbers(a.cRangeStart, a.cRangeEnd, numberText);
    if (word == QLatin1String("Number1"))
        return numberValue(a.cNumber);
    if (word == QLatin1String("Time or Date"))
        return unset(a.cDateValue) ? QString() : momentText(a.cDateValue);
    if (word == QLatin1String("Node3"))
        return graphAndNode(sensors, a.eSensor, a.eNode, true);
    if (word == QLatin1String("Limit2"))
        return numberValue(a.eLimit);
    if (word == QLatin1String("Range2"))
        return twoNumbers(a.eRangeStart, a.eRangeEnd, numberText);
    if (word == QLatin1String("Number2"))
        return numberValue(a.eNumber);
    if (word == QLatin1String("Length of Time"))
        return unset(a.eTimeLengthSeconds) ? QString() : numberText(a.eTimeLengthSeconds) + QStringLiteral(" Seconds");
    if (word == QLatin1String("Time Frame"))
        return twoNumbers(a.eTimeFrameStart, a.eTimeFrameEnd, momentText);
    if (word == QLatin1String("Start"))
        return a.aStartLogging ? QStringLiteral("Start") : QStringLiteral("Stop");
    return QString();
}

qint16 indexOf(double v)
{
    return v >= -32768 && v <= 32767 ? qint16(v) : qint16(-1);
}

}  // namespace

const std::vector<AlertLink>& alertLinks()
{
    static const std::vector<AlertLink> links = {
        settingLink("Email Address", 'a', EmailAddressKind, "Please enter a valid email address"),
        plainLink("Sound", 'b', LinkAction::SoundFile),
        settingLink("Message", 'c', MessageKind, "Please enter a message to show"),
        settingLink("Node1", 'd', Node1Kind, "Please select an available Node"),
        settingLink("Graph", 'e', GraphKind, "Please select an available Graph"),
        plainLink("Application", 'f', LinkAction::ApplicationFile),
        settingLink("Node2", 'g', Node2Kind, "Please enter a value"),
        settingLink("Limit1", 'h', Limit1Kind, "Please enter a limit"),
        settingLink("Range1", 'i', Range1Kind, "Please enter a range of values"),
        settingLink("Number1", 'j', Number1Kind, "Please enter a number"),
        settingLink("Time or Date", 'k', TimeOrDateKind, "Please a Time and Date"),
        settingLink("Node3", 'l', Node3Kind, "Please enter a value"),
        settingLink("Limit2", 'm', Limit2Kind, "Please enter a limit"),
        settingLink("Range2", 'n', Range2Kind, "Please enter a range of values"),
        settingLink("Number2", 'o', Number2Kind, "Please enter a number"),
        settingLink("Length of Time", 'p', LengthOfTimeKind, "Please enter a a length of time"),
        settingLink("Time Frame", 'q', TimeFrameKind, "Please enter a value"),
        plainLink("Start", 'r', LinkAction::ToggleStart),
        settingLink("(Settings)", 's', SmtpSettingsKind, ""),
    };
    return links;
}

const AlertLink* findAlertLink(const QString& word)
{
    for (const AlertLink& l : alertLinks())
        if (l.word == word)
            return &l;
    return nullptr;
}

const AlertLink* alertLinkOfTag(QChar tag)
{
    for (const AlertLink& l : alertLinks())
        if (l.tag == tag)
            return &l;
    return nullptr;
}

bool isTextKind(qint16 kind)
{
    switch (kind) {
    case EmailAddressKind:
    case MessageKind:
    case PlainTextKind:
    case Limit1Kind:
    case Number1Kind:
    case Limit2Kind:
    case Number2Kind:
        return true;
    default:
        return false;
    }
}

AlertSetting currentSetting(qint16 kind, const Alert& a, const MailSettings& mail)
{
    AlertSetting s;
    s.Kind = kind;
    auto values = [&s](double v1, double v2) {
        s.Value1 = v1;
        s.Value2 = v2;
    };
    switch (kind) {
    case EmailAddressKind: s.Text = a.aEmailAddress; break;
    case MessageKind: s.Text = a.aMessage; break;
    case Limit1Kind: s.Text = numberText(a.cLimit); break;
    case Number1Kind: s.Text = numberText(a.cNumber); break;
    case Limit2Kind: s.Text = numberText(a.eLimit); break;
    case Number2Kind: s.Text = numberText(a.eNumber); break;
    case Node1Kind: values(a.aSensor, a.aNode); break;
    case GraphKind: values(a.aSensor, -1); break;
    case Range1Kind: values(a.cRangeStart, a.cRangeEnd); break;
    case TimeOrDateKind: values(a.cDateValue, -1); break;
    case LengthOfTimeKind: values(a.eTimeLengthSeconds, -1); break;
    case TimeFrameKind: values(a.eTimeFrameStart, a.eTimeFrameEnd); break;
    case Node2Kind: values(a.cSensor, a.cNode); break;
    case Node3Kind: values(a.eSensor, a.eNode); break;
    case Range2Kind: values(a.eRangeStart, a.eRangeEnd); break;
    case SmtpSettingsKind: s.smtp = mail; break;
    default: break;
    }
    return s;
}

void storeSetting(const AlertSetting& s, Alert& a, MailSettings& mail)
{
    const double number = leadingNumber(s.Text);
    switch (s.Kind) {
    case EmailAddressKind: a.aEmailAddress = s.Text; break;
    case MessageKind: a.aMessage = s.Text; break;
    case Limit1Kind: a.cLimit = number; break;
    case Number1Kind: a.cNumber = number; break;
    case Limit2Kind: a.eLimit = number; break;
    case Number2Kind: a.eNumber = number; break;
    case Node1Kind:
        a.aSensor = indexOf(s.Value1);
        a.aNode = indexOf(s.Value2);
        break;
    case GraphKind: a.aSensor = indexOf(s.Value1); break;
    case Range1Kind:
        a.cRangeStart = s.Value1;
        a.cRangeEnd = s.Value2;
        break;
    case TimeOrDateKind: a.cDateValue = s.Value1; break;
    case LengthOfTimeKind: a.eTimeLengthSeconds = s.Value1; break;
    case TimeFrameKind:
        a.eTimeFrameStart = s.Value1;
        a.eTimeFrameEnd = s.Value2;
        break;
    case Node2Kind:
        a.cSensor = indexOf(s.Value1);
        a.cNode = indexOf(s.Value2);
        break;
    case Node3Kind:
        a.eSensor = indexOf(s.Value1);
        a.eNode = indexOf(s.Value2);
        break;
    case Range2Kind:
        a.eRangeStart = s.Value1;
        a.eRangeEnd = s.Value2;
        break;
    case SmtpSettingsKind: mail = s.smtp; break;
    default: break;
    }
}

QString linkReplacement(const QString& word, const Alert& a, const std::vector<Graph>& sensors)
{
    const AlertLink* link = findAlertLink(word);
    if (!link || link->kind == SmtpSettingsKind)
        return word;
    const QString value = linkValue(word, a, sensors);
    return value.isEmpty() ? word : link->tag + value;
}

std::pair<int, int> pageRows(int page, const AlertOptionTable& table)
{
    if (page < 1 || page > AlertOptionPages)
        return {0, -1};
    const auto& range = table.AlertOptionRange[size_t(page - 1)];
    return {range[0].toInt(), range[1].toInt()};
}

std::array<int, 3> clauseRows(const Alert& a, const AlertOptionTable& table)
{
    const int codes[3] = {a.rAction, a.rCondition, a.rException};
    std::array<int, 3> rows{0, 0, 0};
    for (int page = 1; page <= 3; ++page) {
        const auto [first, last] = pageRows(page, table);
        const int code = codes[page - 1];
        // A stored code beyond its page's rows shows no clause, like an unset one.
        if (code > 0 && first + code - 1 <= last)
            rows[size_t(page - 1)] = first + code - 1;
    }
    return rows;
}

std::optional<int> optionListIndex(int page, const Alert& a)
{
    const int codes[3] = {a.rAction, a.rCondition, a.rException};
    if (page < 1 || page > 3 || codes[page - 1] < 0)
        return std::nullopt;
    return codes[page - 1] - 1;
}

QStringList pageOptions(int page, const AlertOptionTable& table)
{
    QStringList options;
    const auto [first, last] = pageRows(page, table);
    for (int row = first; row <= last && row < AlertOptionRows; ++row)
        options << table.AlertOptions[size_t(row)][OptionText];
    if (page == 3)
        options << NoneOption;
    return options;
}

void chooseOption(int page, int listIndex, const QString& entry, Alert& a)
{
    switch (page) {
    case 1: a.rAction = qint16(listIndex + 1); break;
    case 2: a.rCondition = qint16(listIndex + 1); break;
    case 3: a.rException = entry == NoneOption ? qint16(0) : qint16(listIndex + 1); break;
    default: break;
    }
}

TimeLength splitSeconds(double seconds)
{
    const qint64 total = qint64(seconds);
    TimeLength t;
    t.days = total / 86400;
    t.hours = total % 86400 / 3600;
    t.minutes = total % 3600 / 60;
    t.seconds = total % 60;
    return t;
}

double joinSeconds(const TimeLength& t)
{
    return double(t.days) * 86400 + double(t.hours) * 3600 + double(t.minutes) * 60 + double(t.seconds);
}

qint64 clampTimeLength(int box, qint64 value)
{
    switch (box) {
    case 0: return std::max<qint64>(value, 0);
    case 1: return std::min<qint64>(value, 23);
    case 2:
    case 3: return std::min<qint64>(value, 59);
    default: return value;
    }
}

double momentNumber(const QDate& date, const QTime& time)
{
    // UTC only so that the fields stay as given: a local time in a clock
    // change's gap would be moved.
    return momentNumber(QDateTime(date, time, Qt::UTC));
}

QDateTime momentDateTime(double moment, const QDateTime& present)
{
    if (!(moment > 0))
        return present;
    const QString d = numberText(moment).rightJustified(14, QLatin1Char('0'));
    const QDate date(d.mid(0, 4).toInt(), d.mid(4, 2).toInt(), d.mid(6, 2).toInt());
    const QTime time(d.mid(8, 2).toInt(), d.mid(10, 2).toInt(), d.mid(12, 2).toInt());
    if (d.size() != 14 || !date.isValid() || !time.isValid())
        return present;
    return QDateTime(date, time);
}

std::vector<FileFilter> fileFilters(const QString& filter)
{
    const QStringList parts = filter.split(QLatin1Char('|'));
    std::vector<FileFilter> out;
    for (int i = 0; i + 1 < parts.size(); i += 2)
        out.push_back({parts[i], parts[i + 1]});
    return out;
}

bool fileMatchesFilter(const QString& fileName, bool executable, const QString& pattern)
{
    if (pattern == QLatin1String("*.*") || pattern == QLatin1String("*"))
        return true;
    if (pattern.compare(QLatin1String("*.exe"), Qt::CaseInsensitive) == 0 && executable)
        return true;
    const QRegularExpression re(QRegularExpression::wildcardToRegularExpression(pattern),
                                QRegularExpression::CaseInsensitiveOption);
    return re.match(fileName).hasMatch();
}

}  // namespace orm
