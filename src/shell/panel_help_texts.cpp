#include "shell/panel_help_texts.h"

namespace orm {

namespace {

QHash<QString, QString> buildTexts()
{
    QHash<QString, QString> t;
    auto add = [&t](const char* name, const char* text) {
        t.insert(QString::fromLatin1(name), QString::fromLatin1(text));
    };

    // Graph settings.
    add("txtSampleSeconds",
        "How many seconds pass between two samples of this Graph. 1 is the least.");
    add("vscSeconds", "Raises or lowers the seconds between two samples of this Graph.");
    add("chkAutoLimits",
        "When checked, the top of the scale and its units follow the data by themselves. "
        "Clear it to set the maximum and the units by hand.");
    add("txtMaxLimits",
        "The value at the top of the Graph's scale, in the units chosen beside it. "
        "Used when Auto Limits is off.");
    add("vscMaximum", "Raises or lowers the value at the top of the Graph's scale.");
    add("cmbDataMagnitude",
        "The units in which the Graph shows its values and its scale, for example Kbps or "
        "MBytes. Used when Auto Limits is off.");
    add("chkDisplayAsBytesPerSecond",
        "Shows network speeds in bytes per second instead of bits per second.");
    add("chkTopMost", "Keeps the Graph's window above all other windows.");
    add("chkTrans",
        "Makes the Graph's background transparent, so only its lines show on the desktop.");
    add("chkTransUnits", "Makes the legend and its units transparent too.");
    add("chkTransGrid", "Makes the grid lines of the Graph transparent too.");
    add("sldOpacity", "How solid the Graph's window is: to the left it fades, to the right it "
                      "is fully opaque.");
    add("chkDisableCrossHair",
        "Turns off the cross-hair that follows the mouse over the Graph and reads out values.");
    add("cmbIconType", "How the values are drawn in the notification area: bars, numbers or small graphs, with one or three Nodes per icon.");
    add("lblGraphColors(0)", "Click to choose the background colour of the Graph.");
    add("lblGraphColors(1)", "Click to choose the colour of the Graph's outer frame.");
    add("lblGraphColors(2)", "Click to choose the colour of the main grid lines.");
    add("lblGraphColors(3)", "Click to choose the colour of the Graph's name.");
    add("lblGraphColors(4)", "Click to choose the colour of the scale labels.");
    add("lblGraphColors(5)", "Click to choose the colour of the light grid lines between them.");
    add("lblGraphColors(6)", "Click to choose the colour of the cross-hair.");
    add("txtGraphDescription",
        "A description of this Graph, shown with its name on the Graph's window.");
    add("imgVisibleSensor", "Shows or hides this Graph's window.");

    // Display tiles: the kind of Graph.
    add("imgGraphType(0)", "Line Graph: the values scroll from right to left as lines.");
    add("imgGraphType(1)", "Bar Graph: one bar per Node shows its newest value.");
    add("imgGraphType(2)",
        "Systray Icons: each Node becomes a small live graph in the notification area.");
    add("imgGraphType(27)", "Text: the Graph keeps sampling and logging but draws no window of its own.");
    add("imgGraphType(28)",
        "Gadget: the Graph's values are passed to the sidebar gadget instead of a window.");

    // Node type tiles: what the selected Node measures.
    add("imgGraphType(3)", "Website: the download speed or response of a website.");
    add("imgGraphType(4)", "CPU: the load of a processor, in percent.");
    add("imgGraphType(5)", "Memory: the physical memory of the computer.");
    add("imgGraphType(6)", "LAN: the speed of copying a file from the local network.");
    add("imgGraphType(7)", "Ping: the round trip time to a host.");
    add("imgGraphType(8)", "Drives: the space on a drive.");
    add("imgGraphType(9)", "Pagefile: the page file of the computer.");
    add("imgGraphType(10)", "Total Up/Down: all traffic through a network adapter.");
    add("imgGraphType(11)", "Download: the traffic a network adapter receives.");
    add("imgGraphType(12)", "Upload: the traffic a network adapter sends.");
    add("imgGraphType(13)", "Error Total: all errors of a network adapter.");
    add("imgGraphType(14)", "Error Down: the receive errors of a network adapter.");
    add("imgGraphType(15)", "Error Up: the send errors of a network adapter.");
    add("imgGraphType(16)", "Speed Test: the speed of your Internet connection, tested now and then.");
    add("imgGraphType(17)", "Disk Activity: the bytes read from and written to the disks.");
    add("imgGraphType(18)", "Disk Read: the bytes read from the disks.");
    add("imgGraphType(19)", "Disk Write: the bytes written to the disks.");
    add("imgGraphType(20)", "Uptime: how long the computer has been running.");
    add("imgGraphType(21)", "Processes: the number of running processes.");
    add("imgGraphType(22)", "Single Process: the memory one process uses.");
    add("imgGraphType(23)", "Virtual Memory: the virtual memory of the computer.");
    add("imgGraphType(24)", "Battery: the charge left in the battery.");
    add("imgGraphType(25)", "Wifi Signal: the signal strength of a wireless network.");

    // Node settings.
    add("cmbLineDisplayType",
        "How the Node's line is drawn: a plain line, filled below it or filled above it.");
    add("cmbLineType", "The style of the Node's line: solid, dashed or dotted.");
    add("cmbLineWidth", "The thickness of the Node's line, or the width of its bar.");
    add("lblNodeColor", "Click to choose the colour of this Node's line or bar.");
    add("optAveraging(0)", "Peak Capture: shows the highest value of the last samples.");
    add("optAveraging(1)", "Average: shows the average of the last samples.");
    add("optAveraging(2)", "Lull Capture: shows the lowest value of the last samples.");
    add("optAveraging(3)", "Real Time: shows every sample as it is read.");
    add("txtAveragingSamples",
        "How many of the last samples Peak, Average and Lull Capture look at.");
    add("vscAveragingSample", "Raises or lowers the number of samples that are looked at.");
    add("optMeasure(0)", "Shows the total size.");
    add("optMeasure(1)", "Shows the part that is in use.");
    add("optMeasure(2)", "Shows the part that is still free.");
    add("cmbNetCard", "The network adapter whose traffic or errors this Node shows.");
    add("cmbDriveList", "The drive this Node watches.");
    add("cmbCPU", "The processor this Node shows the load of.");
    add("cmbSSID", "The wireless network whose signal strength this Node shows.");
    add("LstVwProcesses", "Check the process whose memory use this Node shows.");
    add("imgRefreshProcesses", "Reads the list of running processes again.");
    add("txtPingIP", "The host name or address that this Node pings.");
    add("cmbPingPacketSize", "The size of each ping packet, in bytes.");
    add("chkPingTranslate",
        "Shows the ping as a speed in Kbps, worked out from the round trip and the packet size, instead of in mSeconds.");
    add("imgResolve", "Tests the host: looks up its name and pings it three times. Click again to stop.");
    add("txtDownloadURL",
        "The address of the website (http:// or https://) or LAN file (\\\\host\\share\\file) that this "
        "Node downloads to measure it.");
    add("imgTestDownload", "Tests the address now: the website's root must answer, or the LAN file be copied.");
    add("txtSpeedTestServer",
        "The speed test endpoint, as host:port. Run one with ormivane --speedtest-server on any machine.");
    add("cmbWebsiteType",
        "What this Node shows of the download: its speed, the response time, the connection "
        "time or the number of errors.");
    add("optMasterSlave(0)",
        "Master: this Node downloads the website itself. Other Nodes can share its results.");
    add("optMasterSlave(1)",
        "Slave: this Node shows the results of a Master Website Node instead of downloading "
        "again.");
    add("cmbMasterSlave", "The Master Website Node whose results this Slave shows.");
    add("cmdForceTest", "Runs the test now instead of waiting for the next sample.");
    add("cmbDownloadOptions",
        "The size of the file the Speed Test downloads. Larger files take longer but measure "
        "fast connections better.");
    add("imgVisibleNode", "Shows or hides this Node's line on the Graph.");
    add("imgLog", "Turns the logging of this Node's values to the daily log on or off.");

    // Adding and deleting.
    add("imgAddSensor", "Adds a new Graph with one Node.");
    add("imgAddNode", "Adds a new Node to the selected Graph.");
    add("imgDeleteNode", "Deletes the selected Node from its Graph.");
    add("imgDeleteSensor", "Deletes the selected Graph with all of its Nodes.");

    // Node type categories.
    add("imgCategory(0)", "Internet Node types: website, LAN, ping, adapter traffic and errors, speed test and Wi-Fi signal.");
    add("imgCategory(1)", "Hardware Node types: processor, memory, drive space, disk activity, uptime and battery.");
    add("imgCategory(2)", "System Node types: page file, virtual memory, the number of processes and a single process.");

    // Texts that change while the program runs; the panel sets them.
    add("lblDataRetrieval", "");
    add("VistaTree", "");
    return t;
}

}  // namespace

const QHash<QString, QString>& panelHelpTexts()
{
    static const QHash<QString, QString> texts = buildTexts();
    return texts;
}

}  // namespace orm
