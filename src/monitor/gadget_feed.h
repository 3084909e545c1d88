// The sidebar gadget feed: a Gadget Graph draws nothing and hands its values to
// a separate desktop gadget through two text files in the gadget's folder:
// avail.txt (which values exist) and update.txt (the latest values).
#pragma once

#include "model/model.h"

#include <QString>
#include <QUrl>
#include <functional>
#include <vector>

namespace orm {

// Fills GadgetKey, GadgetScale (1.0) and GadgetLine of one Node from its type and
// place: "PNG11" and "PNG11=Ping 1-1=mS,S" for a Ping as Node 1 of Graph 1 (numbers
// count from 1). Types without an entry (CPU, RAM, codes outside 4 to 26) get an
// empty key and line. Bad indexes do nothing.
void NodeCatalogueEntry(std::vector<Graph>& sensors, int graph, int node);

// The text of avail.txt: each Node's GadgetLine and CR LF, for every Graph of
// type 29, in Graph then Node order.
QString availText(const std::vector<Graph>& sensors);

// Replaces avail.txt in the folder when at least one Gadget Graph exists and the
// folder is known. True when the file was written; file errors go unreported.
bool WriteAvail(const std::vector<Graph>& sensors, const QString& gadgetFolder);

// One line of update.txt: GadgetKey, "=", GadgetScale x value, CR LF.
QString gadgetUpdateLine(const Node& node, double value);

// End of DisplayData: replaces update.txt in the folder with the text. An empty
// text or an unknown folder writes nothing; a folder that has gone is forgotten
// (the feed stops until the next detection). True when the file was written.
bool writeGadgetUpdate(QString& gadgetFolder, const QString& text);

// The two places searched, each as the base below which "Ormivane/Gadgets/"
// lies: $XDG_DATA_HOME (~/.local/share) first, then $XDG_CONFIG_HOME (~/.config).
struct GadgetBases {
    QString dataHome;
    QString configHome;
};
GadgetBases defaultGadgetBases();

// The detection: an entry matching "Ormivane*.Gadget" (any letter case) in each
// base's Ormivane/Gadgets folder; a later place overrides an earlier one. The
// folder comes back with a trailing "/", or "" when nothing matches.
QString findGadgetFolder(const GadgetBases& bases);

// What the install prompt says and opens.
inline const QString GadgetInstallTitle = QStringLiteral("Install Ormivane Gadget");
inline const QString GadgetInstallQuestion = QStringLiteral(
    "You do not have the Ormivane Gadget installed. Would you like to install it now?");
inline const QString GadgetInstallWait = QStringLiteral(
    "Make sure that the Ormivane Gadget is installed and displayed on your SideBar, then click OK");
inline const QString GadgetMissingWarning = QStringLiteral(
    "Warning: SideBar Gadget cannot be found. Please install the Ormivane Gadget in order to use "
    "the Gadget Graph.");
// http://<host>/download.asp?prodID=OrmivaneGadget
QUrl gadgetDownloadUrl(const QString& host);

// The questions FindGadget asks; the shell answers them with its dialogs.
struct GadgetPrompts {
    std::function<bool()> askInstall;                  // Yes/No/Cancel box: true only for Yes
    std::function<void(const QUrl&)> openDownloadPage; // open the page in the browser
    std::function<void()> waitForInstall;              // the OK box after the page
    std::function<void(const QString&)> showWarning;   // lblSensorError
};

// Detection with the prompts: while nothing is found and the user answers Yes,
// open the download page, wait for the OK, and look again. Any other answer shows
// the warning and gives "".
QString FindGadget(const GadgetBases& bases, const GadgetPrompts& prompts, const QString& downloadHost);

}  // namespace orm
