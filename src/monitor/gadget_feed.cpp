#include "monitor/gadget_feed.h"

#include "model/number_text.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrlQuery>

namespace orm {

namespace {

const QString CrLf = QStringLiteral("\r\n");

struct CatalogueRow {
    int type;
    const char* key;
    const char* label;
    const char* units;
    bool numbered;  // key and label carry the Graph and Node numbers
};

// Global values (Page File, Speed Test and the like) have the same key in every Graph.
const CatalogueRow Catalogue[] = {
    {WebsiteType, "WEB", "Website ", "bps,Kbps,Mbps,Gbps", true},
    {LanType, "LAN", "LAN ", "bps,Kbps,Mbps,Gbps", true},
    {PingType, "PNG", "Ping ", "mS,S", true},
    {DriveSpaceType, "HDD", "Drive Space ", "bytes,Kbytes,Mbytes,Gbytes,Tbytes", true},
    {PageFileType, "PFR", "Page File", "bytes,Kbytes,Mbytes,Gbytes", false},
    {UpDownType, "UDTOT", "Total Up/Down ", "bps,Kbps,Mbps,Gbps", true},
    {DownloadNodeType, "DNL", "Download ", "bps,Kbps,Mbps,Gbps", true},
    {UploadType, "UPL", "Upload ", "bps,Kbps,Mbps,Gbps", true},
    {UpDnErrType, "ETOT", "Total Errors ", "Number", true},
    {DownErrType, "EDNL", "Download Errors ", "Number", true},
    {UpErrType, "EUPL", "Upload Errors ", "Number", true},
    {SpeedTestType, "SPD", "Internet Speed Test", "bps,Kbps,Mbps,Gbps", false},
    {DiskRWType, "HDA", "Disk Activity ", "Bps,KBps,MBps,GBps", true},
    {DiskReadType, "HDR", "Disk Read ", "Bps,KBps,MBps,GBps", true},
    {DiskWriteType, "HDW", "Disk Write ", "Bps,KBps,MBps,GBps", true},
    {SysUptimeType, "SYU", "System Uptime", "Seconds", false},
    {ProcessesType, "TPROC", "Processes", "Number", false},
    {ProcessType, "PROC", "Process Memory ", "bytes,Kbytes,Mbytes,Gbytes", true},
    {VMemoryType, "VRAM", "Virtual Memory", "bytes,Kbytes,Mbytes,Gbytes", false},
    {BatteryType, "BAT", "Battery", "Percent", false},
    {WifiType, "WIFI", "WIFI Signal", "Percent", false},
};

const CatalogueRow* catalogueRow(int type)
{
    for (const CatalogueRow& row : Catalogue)
        if (row.type == type)
            return &row;
    return nullptr;
}

// The folder may come with or without its trailing "/".
QString fileIn(const QString& folder, const QString& name)
{
    return folder.endsWith(QLatin1Char('/')) ? folder + name : folder + QLatin1Char('/') + name;
}

bool replaceFile(const QString& path, const QString& text)
{
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    const QByteArray bytes = text.toLocal8Bit();
    return f.write(bytes) == bytes.size();
}

QString xdgBase(const char* var, const char* fallback)
{
    const QString v = qEnvironmentVariable(var);
    return !v.isEmpty() ? v : QDir::homePath() + QLatin1Char('/') + QLatin1String(fallback);
}

// The first entry (files too, as the gadget may be a single file) in name order.
QString matchIn(const QString& base)
{
    if (base.isEmpty())
        return {};
    const QString gadgets = base + QStringLiteral("/Ormivane/Gadgets/");
    const QStringList names = QDir(gadgets).entryList({QStringLiteral("Ormivane*.Gadget")},
                                                      QDir::Dirs | QDir::Files | QDir::Hidden, QDir::Name);
    return names.isEmpty() ? QString() : gadgets + names.first() + QLatin1Char('/');
}

}  // namespace

void NodeCatalogueEntry(std::vector<Graph>& sensors, int graph, int node)
{
    if (graph < 0 || size_t(graph) >= sensors.size())
        return;
    std::vector<Node>& nodes = sensors[size_t(graph)].Nodes;
    if (node < 0 || size_t(node) >= nodes.size())
        return;
    Node& n = nodes[size_t(node)];
    n.GadgetScale = 1.0f;
    n.GadgetKey.clear();
    n.GadgetLine.clear();
    const CatalogueRow* row = catalogueRow(n.NodeType);
    if (!row)
        return;
    QString key = QLatin1String(row->key);
    QString label = QLatin1String(row->label);
    if (row->numbered) {
        const QString g = QString::number(graph + 1);
        const QString k = QString::number(node + 1);
        key += g + k;
        label += g + QLatin1Char('-') + k;
    }
    n.GadgetKey = key;
    n.GadgetLine = key + QLatin1Char('=') + label + QLatin1Char('=') + QLatin1String(row->units);
}

QString availText(const std::vector<Graph>& sensors)
{
    QString text;
    for (const Graph& g : sensors) {
        if (g.GraphType != VistaGadget)
            continue;
        for (const Node& n : g.Nodes)
            text += n.GadgetLine + CrLf;
    }
    return text;
}

bool WriteAvail(const std::vector<Graph>& sensors, const QString& gadgetFolder)
{
    bool anyGadget = false;
    for (const Graph& g : sensors)
        anyGadget = anyGadget || g.GraphType == VistaGadget;
    if (!anyGadget || gadgetFolder.isEmpty())
        return false;
    return replaceFile(fileIn(gadgetFolder, QStringLiteral("avail.txt")), availText(sensors));
}

QString gadgetUpdateLine(const Node& node, double value)
{
    return node.GadgetKey + QLatin1Char('=') + numberText(double(node.GadgetScale) * value) + CrLf;
}

bool writeGadgetUpdate(QString& gadgetFolder, const QString& text)
{
    if (text.isEmpty() || gadgetFolder.isEmpty())
        return false;
    if (!QFileInfo(gadgetFolder).isDir()) {
        gadgetFolder.clear();
        return false;
    }
    return replaceFile(fileIn(gadgetFolder, QStringLiteral("update.txt")), text);
}

GadgetBases defaultGadgetBases()
{
    return {xdgBase("XDG_DATA_HOME", ".local/share"), xdgBase("XDG_CONFIG_HOME", ".config")};
}

QString findGadgetFolder(const GadgetBases& bases)
{
    QString folder;
    for (const QString& base : {bases.dataHome, bases.configHome}) {
        const QString found = matchIn(base);
        if (!found.isEmpty())
            folder = found;
    }
    return folder;
}

QUrl gadgetDownloadUrl(const QString& host)
{
    QUrl url;
    url.setScheme(QStringLiteral("http"));
    url.setHost(host);
    url.setPath(QStringLiteral("/download.asp"));
    QUrlQuery query;
    query.addQueryItem(QStringLiteral("prodID"), QStringLiteral("OrmivaneGadget"));
    url.setQuery(query);
    return url;
}

QString FindGadget(const GadgetBases& bases, const GadgetPrompts& prompts, const QString& downloadHost)
{
    for (;;) {
        const QString folder = findGadgetFolder(bases);
        if (!folder.isEmpty())
            return folder;
        if (!prompts.askInstall || !prompts.askInstall())
            break;
        if (prompts.openDownloadPage)
            prompts.openDownloadPage(gadgetDownloadUrl(downloadHost));
        if (prompts.waitForInstall)
            prompts.waitForInstall();
    }
    if (prompts.showWarning)
        prompts.showWarning(GadgetMissingWarning);
    return {};
}

}  // namespace orm
