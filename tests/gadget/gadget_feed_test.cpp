#include "core/gadget_feed.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace orm {
namespace {

QByteArray readAll(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

Graph graphOf(int type, std::initializer_list<int> nodeTypes)
{
    Graph g = loadDefaultGraph(0, QDateTime::currentDateTime());
    g.GraphType = type;
    for (int t : nodeTypes) {
        g.Nodes.push_back(loadDefaultNode(int(g.Nodes.size())));
        g.Nodes.back().NodeType = t;
    }
    return g;
}

// Gadget Graphs 1 and 3 around a Line Graph; the Page File key repeats, the CPU has none.
std::vector<Graph> sampleModel()
{
    std::vector<Graph> s{graphOf(VistaGadget, {PingType, CpuType, PageFileType}),
                         graphOf(LineGraph, {WebsiteType}),
                         graphOf(VistaGadget, {PageFileType, DriveSpaceType})};
    for (size_t g = 0; g < s.size(); ++g)
        for (size_t n = 0; n < s[g].Nodes.size(); ++n)
            NodeCatalogueEntry(s, int(g), int(n));
    return s;
}

TEST(GadgetFeed, CatalogueAndAvailFile)
{
    std::vector<Graph> s = sampleModel();
    QTemporaryDir dir;
    ASSERT_TRUE(WriteAvail(s, dir.path() + QLatin1Char('/')));
    EXPECT_EQ(readAll(dir.filePath(QStringLiteral("avail.txt"))),
              QByteArray("PNG11=Ping 1-1=mS,S\r\n"
                         "\r\n"
                         "PFR=Page File=bytes,Kbytes,Mbytes,Gbytes\r\n"
                         "PFR=Page File=bytes,Kbytes,Mbytes,Gbytes\r\n"
                         "HDD32=Drive Space 3-2=bytes,Kbytes,Mbytes,Gbytes,Tbytes\r\n"));

    // A type change renews the entry and the scale; a type without one clears it.
    Node& n = s[0].Nodes[0];
    n.GadgetScale = 8.0f;
    n.NodeType = ProcessType;
    NodeCatalogueEntry(s, 0, 0);
    EXPECT_EQ(n.GadgetLine.toStdString(), "PROC11=Process Memory 1-1=bytes,Kbytes,Mbytes,Gbytes");
    EXPECT_EQ(n.GadgetScale, 1.0f);
    n.NodeType = RamType;
    NodeCatalogueEntry(s, 0, 0);
    EXPECT_TRUE(n.GadgetKey.isEmpty() && n.GadgetLine.isEmpty());

    // No Gadget Graph, or no folder: nothing is written.
    QTemporaryDir other;
    EXPECT_FALSE(WriteAvail({graphOf(LineGraph, {PingType})}, other.path()));
    EXPECT_FALSE(WriteAvail(s, QString()));
    EXPECT_FALSE(QFile::exists(other.filePath(QStringLiteral("avail.txt"))));
}

TEST(GadgetFeed, UpdateFileReplacedUntilTheFolderGoes)
{
    std::vector<Graph> s = sampleModel();
    s[0].Nodes[0].GadgetScale = 0.5f;
    const QString text = gadgetUpdateLine(s[0].Nodes[0], 25) + gadgetUpdateLine(s[0].Nodes[1], 3.25) +
                         gadgetUpdateLine(s[2].Nodes[0], 1e15);
    EXPECT_EQ(text.toStdString(), "PNG11=12.5\r\n=3.25\r\nPFR=1E+15\r\n");

    QTemporaryDir dir;
    QString folder = dir.path();
    ASSERT_TRUE(writeGadgetUpdate(folder, text));
    ASSERT_TRUE(writeGadgetUpdate(folder, QStringLiteral("SPD=0\r\n")));
    EXPECT_EQ(readAll(dir.filePath(QStringLiteral("update.txt"))), QByteArray("SPD=0\r\n"));
    EXPECT_FALSE(writeGadgetUpdate(folder, QString()));  // empty: folder kept
    EXPECT_EQ(folder, dir.path());

    // A vanished folder is forgotten; nothing is written even when it comes back.
    folder = dir.path() + QStringLiteral("/Ormivane.Gadget/");
    EXPECT_FALSE(writeGadgetUpdate(folder, text));
    EXPECT_TRUE(folder.isEmpty());
    QDir(dir.path()).mkdir(QStringLiteral("Ormivane.Gadget"));
    EXPECT_FALSE(writeGadgetUpdate(folder, text));
    EXPECT_FALSE(QFile::exists(dir.path() + QStringLiteral("/Ormivane.Gadget/update.txt")));
}

class GadgetDetection : public ::testing::Test {
protected:
    QString makeGadget(const QString& base, const QString& name)
    {
        QDir().mkpath(base + QStringLiteral("/Ormivane/Gadgets/") + name);
        return base + QStringLiteral("/Ormivane/Gadgets/") + name + QLatin1Char('/');
    }
    QTemporaryDir data, config;
    GadgetBases bases{data.path(), config.path()};
};

TEST_F(GadgetDetection, LaterPlaceWinsAndOthersDoNotMatch)
{
    makeGadget(data.path(), QStringLiteral("Other.Gadget"));
    EXPECT_TRUE(findGadgetFolder(bases).isEmpty());
    const QString inData = makeGadget(data.path(), QStringLiteral("Ormivane.gadget"));
    EXPECT_EQ(findGadgetFolder(bases).toStdString(), inData.toStdString());
    const QString inConfig = makeGadget(config.path(), QStringLiteral("OrmivaneMeter.Gadget"));
    EXPECT_EQ(findGadgetFolder(bases).toStdString(), inConfig.toStdString());
}

TEST_F(GadgetDetection, PromptsUntilInstalledOrRefused)
{
    int asked = 0;
    QString warning, made;
    QUrl opened;
    GadgetPrompts p;
    p.askInstall = [&] { return ++asked == 2; };  // No, then Yes
    p.showWarning = [&](const QString& w) { warning = w; };
    p.openDownloadPage = [&](const QUrl& u) { opened = u; };
    p.waitForInstall = [&] { made = makeGadget(config.path(), QStringLiteral("Ormivane.Gadget")); };
    EXPECT_TRUE(FindGadget(bases, p, QStringLiteral("example.invalid")).isEmpty());
    EXPECT_EQ(warning, GadgetMissingWarning);

    warning.clear();
    EXPECT_EQ(FindGadget(bases, p, QStringLiteral("example.invalid")), made);
    EXPECT_EQ(asked, 2);
    EXPECT_TRUE(warning.isEmpty());
    EXPECT_EQ(opened.toString().toStdString(), "http://example.invalid/download.asp?prodID=OrmivaneGadget");
}

}  // namespace
}  // namespace orm
