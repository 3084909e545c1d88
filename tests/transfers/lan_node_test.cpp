// A LAN Node on a share that the test's mount table presents as
// //testhost/share: tested at start, copied out of the tick, measured.
#include "model/number_text.h"
#include "transfer_fixture.h"

using namespace orm;
using namespace orm::test;

namespace {

TEST_F(TransferFixture, ALanNodeOnAMountedShareMeasuresItsCopyAndLeavesItInTemp)
{
    const qint64 size = 3 * 1000 * 1000;
    ASSERT_TRUE(writeFile(shareDir() + QStringLiteral("/bench.bin"), QByteArray(int(size), 'L')));
    graph(0, 1, {lanFile(QStringLiteral("\\\\testhost\\share\\bench.bin"))});
    ASSERT_TRUE(start());
    ASSERT_TRUE(settle());
    ASSERT_TRUE(node(0, 0).WebsiteReady);

    tick();
    EXPECT_EQ(transfers().AsyncCopySource, QStringLiteral("\\\\testhost\\share\\bench.bin"));
    EXPECT_EQ(transfers().AsyncCopyDestination, transfers().transferName(0, 0));
    EXPECT_TRUE(transfers().asyncCopyPending()) << "the copy starts from its own timer, after the tick";
    EXPECT_FALSE(monitor->AsyncCopyDue);
    ASSERT_TRUE(settle());
    EXPECT_FALSE(node(0, 0).WebsiteBusy);
    EXPECT_EQ(node(0, 0).Bandwidth, size / 0.01);
    EXPECT_EQ(QFileInfo(transfers().transferName(0, 0)).size(), size);

    tick();
    EXPECT_EQ(views.made.at(0)->GetNodeValue(0, 0), size / 0.01);
    EXPECT_EQ(logLines().last().section(QLatin1Char(','), -1), numberText(size / 0.01));
    ASSERT_TRUE(settle());

    // The share goes away: the copy fails, is counted and written down, the Node reads 0.
    QFile(mountTable()).resize(0);
    tick();
    ASSERT_TRUE(settle());
    EXPECT_EQ(node(0, 0).ErrorCount, 1);
    EXPECT_EQ(node(0, 0).Bandwidth, 0);
    ASSERT_EQ(errLines().size(), 1);
    EXPECT_TRUE(errLines()[0].contains(QStringLiteral("URL=\\\\testhost\\share\\bench.bin Error - 53(0)")));
}

}  // namespace
