// The choices behind the Node panel that need no widget: which frames a Node
// type shows, the Website Masters a Slave may follow, the drive an entry of
// the drive list names, and the averaging window typed by the user.
#pragma once

#include "model/model.h"

#include <QString>
#include <QStringList>
#include <vector>

namespace orm {

// The frames of the Node panel that a type shows.
struct NodeFrames {
    bool measure = false;      // pctMeasureOptions: Total, Used, Available
    bool downloadUrl = false;  // txtDownloadURL: a Website's URL or the LAN file
    bool website = false;      // cmbWebsiteType and pctMasterSlave
    bool ping = false;         // framPingResponse
    bool netCard = false;      // cmbNetCard
    bool drive = false;        // cmbDriveList
    bool cpu = false;          // cmbCPU
    bool ssid = false;         // cmbSSID
    bool processes = false;    // LstVwProcesses
    bool speedTest = false;    // cmbDownloadOptions, cmdForceTest
};
NodeFrames framesFor(int nodeType);

// A Website Master Node that a Slave may follow, as cmbMasterSlave shows it.
struct MasterChoice {
    int graph = 0;
    int node = 0;
    QString text;  // "Graph name: Node name"
};

// Every Website Node with WebsiteMaster set, Graph by Graph, Node by Node,
// leaving out the Node (exceptGraph, exceptNode) itself.
std::vector<MasterChoice> websiteMasters(const std::vector<Graph>& sensors, int exceptGraph = -1,
                                         int exceptNode = -1);
// The entry for a Slave's stored indices, whatever stands there now: the
// Node's names when the indices are valid, else the bare numbers.
MasterChoice slaveTarget(const std::vector<Graph>& sensors, int graph, int node);

inline const QString NoWebsiteMasterText = QStringLiteral(
    "You must have a Master Website Node before you can create a Slave Website Node");

// The drive name of a cmbDriveList entry ("/home [916 GB] [label]"): the
// longest of `driveNames` that the entry begins with, followed by " [";
// failing that, the text before the first " [".
QString driveOfEntry(const QString& entry, const QStringList& driveNames);

// txtAveragingSamples: int(text), below 1 is 1.
int averagingSamplesOf(const QString& text);

// "Total Physical Memory:  " and the like with the whole MBytes of `bytes`.
QString memoryTotalText(const QString& caption, double bytes);

inline const QString TotalPhysicalCaption = QStringLiteral("Total Physical Memory:  ");
inline const QString TotalVirtualCaption = QStringLiteral("Total Virtual Memory:  ");
inline const QString TotalPagefileCaption = QStringLiteral("Total Pagefile:  ");

}  // namespace orm
