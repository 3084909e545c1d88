#include "monitor/gadget_feed.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orm;

static QByteArray readAll(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

static Graph graphOf(int type, std::initializer_list<int> nodeTypes)
{
    Graph g;
    g.GraphType = type;
    for (int t : nodeTypes)
        g.Nodes.emplace_back().NodeType = t;
    return g;
}

TEST(GadgetFeed, CatalogueAvailAndUpdateFiles)
{
    // Gadget Graphs 1 and 3 around a Line Graph; the Page File key repeats, the CPU has none.
    std::vector<Graph> s{graphOf(VistaGadget, {PingType, CpuType, PageFileType}), graphOf(LineGraph, {WebsiteType}),
                         graphOf(VistaGadget, {PageFileType, DriveSpaceType})};
    for (size_t g = 0; g < s.size(); ++g)
        for (size_t n = 0; n < s[g].Nodes.size(); ++n)
            NodeCatalogueEntry(s, int(g), int(n));
    QTemporaryDir dir;
    const QString avail = dir.filePath(QStringLiteral("avail.txt"));
    ASSERT_TRUE(WriteAvail(s, dir.path() + QLatin1Char('/')));
    EXPECT_EQ(readAll(avail),
              QByteArray("PNG11=Ping 1-1=mS,S\r\n\r\nPFR=Page File=bytes,Kbytes,Mbytes,Gbytes\r\n"
                         "PFR=Page File=bytes,Kbytes,Mbytes,Gbytes\r\nHDD32=Drive Space 3-2=bytes,Kbytes,Mbytes,Gbytes,Tbytes\r\n"));
    EXPECT_FALSE(WriteAvail({graphOf(LineGraph, {PingType})}, dir.path()));  // no Gadget Graph

    Node& n = s[0].Nodes[0];
    n.GadgetScale = 0.5f;
    const QString text = gadgetUpdateLine(n, 25) + gadgetUpdateLine(s[0].Nodes[1], 3.25) +
                         gadgetUpdateLine(s[2].Nodes[0], 1e15);
    EXPECT_EQ(text, "PNG11=12.5\r\n=3.25\r\nPFR=1E+15\r\n");
    QString folder = dir.path();
    ASSERT_TRUE(writeGadgetUpdate(folder, text));
    ASSERT_TRUE(writeGadgetUpdate(folder, QStringLiteral("SPD=0\r\n")));
    EXPECT_EQ(readAll(dir.filePath(QStringLiteral("update.txt"))), QByteArray("SPD=0\r\n"));  // replaced, not appended
    folder = dir.path() + QStringLiteral("/Ormivane.Gadget/");  // a folder that has gone is forgotten
    EXPECT_FALSE(writeGadgetUpdate(folder, text));
    EXPECT_TRUE(folder.isEmpty());

    // A type change renews the entry and the scale.
    n.NodeType = ProcessType;
    NodeCatalogueEntry(s, 0, 0);
    EXPECT_EQ(n.GadgetScale, 1.0f);
}
