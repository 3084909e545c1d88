// The Graph and Node records: the whole monitored configuration lives in
// `Sensors`, a growable array of Graphs, each owning its `Nodes`.
#pragma once

#include <QDateTime>
#include <QString>
#include <QtGlobal>
#include <array>
#include <cstdint>
#include <limits>
#include <vector>

namespace orm {

// GraphType and NodeType share one enumeration: 1, 2, 3, 28, 29 are display
// kinds, 4 to 26 measured values, 27 nothing.
enum TypeCode : int {
    LineGraph = 1,
    BarGraph = 2,
    SystrayIcon = 3,
    WebsiteType = 4,
    CpuType = 5,
    RamType = 6,
    LanType = 7,
    PingType = 8,
    DriveSpaceType = 9,
    PageFileType = 10,
    UpDownType = 11,
    DownloadNodeType = 12,
    UploadType = 13,
    UpDnErrType = 14,
    DownErrType = 15,
    UpErrType = 16,
    SpeedTestType = 17,
    DiskRWType = 18,
    DiskReadType = 19,
    DiskWriteType = 20,
    SysUptimeType = 21,
    ProcessesType = 22,
    ProcessType = 23,
    VMemoryType = 24,
    BatteryType = 25,
    WifiType = 26,
    NoType = 27,
    TextGraph = 28,
    VistaGadget = 29,
};

// The default drive: "/" stands where the original had "C:".
inline const QString DefaultDrive = QStringLiteral("/");

struct Node {
    QString Name = QStringLiteral("New Node");
    qint32 GraphLineType = 1;
    qint32 NodeType = 4;
    qint16 NodeIndex = 0;
    bool LogData = true;
    qint16 PenWidth = 1;
    qint16 BarWidth = 2;
    qint32 PenType = 0;
    qint32 PenColor = 0;
    qint16 Measuring = 1;
    qint32 AdapterIndex = 0;
    QString ProcessMonitoring;
    QString DriveMonitoring = DefaultDrive;
    qint32 Averaging = 3;
    qint32 AveragingSamples = 10;
    double LastRawValue = 0;
    double LastSampleTime = 0;
    QString DownloadURL = QStringLiteral("http://");
    qint16 DownloadType = 0;
    qint32 VDDownloadSize = 0;
    QString LogItemView = QStringLiteral("SYS_TMR");
    bool NodeVisible = true;
    bool PingTranslate = false;
    qint16 PingPacketSize = 100;
    QString PingIP;
    QString SSID;
    bool WebsiteMaster = true;
    qint16 WebsiteSlaveToSensor = 0;
    qint16 WebsiteSlaveToNode = 0;
    qint16 CPUNumber = 0;
    // Ping bookkeeping; PingState4 is the last round trip, read by the log writer.
    qint32 PingState1 = 0;
    qint32 PingState2 = 0;
    qint32 PingState3 = 0;
    qint32 PingState4 = 0;
    qint16 ProcessIndex = 0;
    bool WebsiteTested = false;
    bool WebsiteReady = false;
    bool WebsiteBusy = false;
    double TransferStart = 0;
    double ResponseTime = 0;
    double PreviousResponseTime = 0;  // never assigned anywhere: kept so
    double ConnectTime = 0;
    double PreviousConnectTime = 0;
    double Bandwidth = 0;
    double PreviousBandwidth = 0;
    double ErrorCount = 0;
    bool WebsiteDue = false;
    bool TransferConnected = false;
    QString GadgetKey;
    float GadgetScale = 1.0f;
    QString GadgetLine;
    // Not stored: the value of the Node's latest evaluation, kept only while the
    // metrics endpoint is on; NaN until its Graph is first sampled.
    double NewestSample = std::numeric_limits<double>::quiet_NaN();
};

struct Graph {
    bool AutoRange = true;
    QString Description;
    qint32 GraphBackColor = 0;
    qint32 GraphExteriorGridColor = 0;
    qint32 GraphInteriorGridColor = 0;
    qint32 GraphNameColor = 0;
    qint32 GraphGridLabelColor = 0;
    qint32 GraphInteriorGridColorLight = 0;
    qint32 GraphCrossHairColor = 0;
    qint32 GraphType = 1;
    qint16 GraphIndex = 0;
    QString LegendUnits = QStringLiteral("Kbps");
    bool LogGraph = false;
    QString DataType = QStringLiteral("bps");
    double DataMagnitude = 3;
    double LegendMax = 0;
    QString Name;
    std::vector<Node> Nodes;
    bool Visible = true;
    qint32 LocX = 0;
    qint32 LocY = 0;
    qint32 LocWidth = 0;
    qint32 LocHeight = 0;
    double LogStart = 0;
    double LogEnd = 0;
    bool TopMost = false;
    bool Collapsed = false;
    bool DisableCrossHair = false;
    qint32 SampleEverySeconds = 5;
    qint32 TicksToSample = 0;
    qint16 Opacity = 255;
    bool Transparent = true;
    bool TransLegend = false;
    bool TransGrid = false;
    qint16 Opened = 0;
    bool DisplayAsBytesPerSecond = false;
    qint16 IconType = 0;
    double LogRecordCount = 0;
};

// The twelve default pen colours (0x00BBGGRR); a new Node takes entry index mod 12.
extern const std::array<qint32, 12> PenTable;

// The moment as the decimal number yyyymmddhhnnss.
double momentNumber(const QDateTime& t);

// The records as a load finds them when the store holds nothing for them.
Graph loadDefaultGraph(int graphIndex, const QDateTime& now);
Node loadDefaultNode(int nodeIndex);

// The records as AddNode and AddSensor make them.
Node newNode(int nodeIndex);
struct CascadePosition {
    qint32 x = 0;
    qint32 y = 0;
};
Graph newGraph(int graphIndex, bool logGraph, CascadePosition at, const QDateTime& now);

// Renumber GraphIndex and NodeIndex after a structural change.
void renumber(std::vector<Graph>& sensors);

}  // namespace orm
