// The adapter table on this machine's own interfaces, with real traffic that
// never leaves the loopback interface.
#include "loopback_transfer.h"
#include "sources/adapters.h"
#include "sources/net_dev.h"

#include <QFile>
#include <QMap>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

using namespace orm;
using namespace orm::test;

namespace {

constexpr qint64 MiB = 1024 * 1024;
// What other programs on this machine may push over loopback meanwhile.
constexpr double OtherTrafficAllowance = 64.0 * MiB;

qint32 loopbackIndex()
{
    QFile file(QStringLiteral("/sys/class/net/lo/ifindex"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    return file.readAll().trimmed().toInt();
}

quint64 loopbackReceived()
{
    QFile file(QStringLiteral("/proc/net/dev"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    for (const NetDevRow& row : parseNetDev(file.readAll())) {
        if (row.name == QLatin1String("lo"))
            return row.rxBytes;
    }
    return 0;
}

const char* const ChildResultVariable = "ORM_NET_CHILD_RESULT";

}  // namespace

TEST(RealAdapters, LoopbackAddressAndRouteOnThisMachine)
{
    const qint32 lo = loopbackIndex();
    ASSERT_GT(lo, 0);

    LinuxAdapterPlatform platform;
    std::vector<AddressRow> addresses;
    ASSERT_FALSE(platform.addressRows(addresses).failed());
    bool found = false;
    for (size_t i = 0; i < addresses.size(); ++i) {
        if (i > 0) {
            EXPECT_LE(addresses[i - 1].Address, addresses[i].Address);
        }
        if (addresses[i].Address == Ipv4Bytes{127, 0, 0, 1}) {
            found = true;
            EXPECT_EQ(addresses[i].Index, lo);
            EXPECT_EQ(AddressToText(addresses[i].Mask), "255.0.0.0");
        }
    }
    EXPECT_TRUE(found);

    // The route to a loopback address leads out through lo.
    LinuxAdapterPlatform probeLoopback(QStringLiteral("/proc"), QStringLiteral("/sys"), QStringLiteral("127.0.0.1"));
    EXPECT_EQ(probeLoopback.bestInterfaceIndex(), lo);

    // The public route: no route at all is 0, any other answer must be an
    // adapter that holds an address.
    const qint32 best = platform.bestInterfaceIndex();
    if (best != 0) {
        EXPECT_TRUE(std::any_of(addresses.begin(), addresses.end(),
                                [&](const AddressRow& row) { return row.Index == best; }));
    }

    Adapters adapters(platform);
    adapters.GetAdapters(true);
    EXPECT_TRUE(adapters.initError.isEmpty()) << adapters.initError.toStdString();
    const int slot = adapters.slotOfIndex(lo);
    ASSERT_GE(slot, 0);
    EXPECT_EQ(adapters.AdapterTable[slot].IPAddress, "127.0.0.1 (localhost)");
    EXPECT_EQ(adapters.AdapterTable[slot].Description, "lo");
    EXPECT_EQ(adapters.AdapterTable[slot].TypeText, "Loopback       ");
    EXPECT_EQ(adapters.AdapterTable[slot].StatusText, "Unreachable         ");
    EXPECT_EQ(adapters.AdapterTable[slot].IsDefault, best == lo);
}

TEST(RealAdapters, LoopbackDeltasCountTheBytesMoved)
{
    LinuxAdapterPlatform platform;
    Adapters adapters(platform);
    adapters.GetAdapters(true);
    const int slot = adapters.slotOfIndex(loopbackIndex());
    ASSERT_GE(slot, 0);

    // A counter that read exactly 0 holds its delta at 0 for one more refresh;
    // a little traffic first makes sure this one does not.
    ASSERT_EQ(moveBytesOverLoopback(1), 1);
    adapters.GetAdapters(false);
    const quint64 before = loopbackReceived();

    const qint64 moved = moveBytesOverLoopback(5 * MiB);
    ASSERT_EQ(moved, 5 * MiB);
    adapters.GetAdapters(false);
    const quint64 after = loopbackReceived();

    const AdapterRecord& lo = adapters.AdapterTable[slot];
    EXPECT_GE(lo.InDelta, double(moved));
    EXPECT_GE(lo.OutDelta, double(moved));
    EXPECT_LE(lo.InDelta, moved * 1.10 + OtherTrafficAllowance);
    EXPECT_LE(lo.OutDelta, moved * 1.10 + OtherTrafficAllowance);
    EXPECT_GE(lo.InOctets, double(before + moved));
    EXPECT_LE(lo.InOctets, double(after));
}

// Runs in a network namespace of its own, started by the test below, where
// lo carries nothing but this test's traffic.
TEST(RealAdaptersChild, DISABLED_InPrivateNamespace)
{
    const char* resultPath = std::getenv(ChildResultVariable);
    if (!resultPath)
        GTEST_SKIP() << "started by PrivateNamespaceCountsExactlyOurTraffic";
    QFile result(QString::fromLocal8Bit(resultPath));
    ASSERT_TRUE(result.open(QIODevice::WriteOnly));
    auto put = [&](const char* key, const QString& value) {
        result.write(QByteArray(key) + '=' + value.toUtf8() + '\n');
    };
    if (::unshare(CLONE_NEWNET) != 0) {
        put("skip", QStringLiteral("no network namespace: ") + QString::fromLocal8Bit(std::strerror(errno)));
        return;
    }
    if (!bringLoopbackUp()) {
        put("skip", QStringLiteral("lo cannot be set up"));
        return;
    }

    LinuxAdapterPlatform platform;
    Adapters adapters(platform);
    adapters.GetAdapters(true);
    put("count", QString::number(adapters.AdapterCount()));
    put("default", QString::number(adapters.defaultSlot()));
    if (adapters.AdapterCount() != 1)
        return;
    const AdapterRecord& lo = adapters.AdapterTable[0];
    put("address", lo.IPAddress);
    put("initIn", QString::number(lo.InOctets, 'f', 0));

    put("moved1", QString::number(moveBytesOverLoopback(1 * MiB)));
    adapters.GetAdapters(false);
    put("in1", QString::number(lo.InOctets, 'f', 0));
    put("inDelta1", QString::number(lo.InDelta, 'f', 0));
    put("outDelta1", QString::number(lo.OutDelta, 'f', 0));

    put("moved2", QString::number(moveBytesOverLoopback(5 * MiB)));
    adapters.GetAdapters(false);
    put("inDelta2", QString::number(lo.InDelta, 'f', 0));
    put("outDelta2", QString::number(lo.OutDelta, 'f', 0));
}

TEST(RealAdapters, PrivateNamespaceCountsExactlyOurTraffic)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QByteArray resultPath = dir.filePath(QStringLiteral("result")).toLocal8Bit();

    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        ::setenv(ChildResultVariable, resultPath.constData(), 1);
        ::execl("/proc/self/exe", "net_adapters_test", "--gtest_also_run_disabled_tests",
                "--gtest_filter=RealAdaptersChild.DISABLED_InPrivateNamespace", static_cast<char*>(nullptr));
        ::_exit(127);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "child status " << status;

    QFile file(QString::fromLocal8Bit(resultPath));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    QMap<QString, QString> got;
    for (const QByteArray& line : file.readAll().split('\n')) {
        const qsizetype eq = line.indexOf('=');
        if (eq > 0)
            got.insert(QString::fromUtf8(line.left(eq)), QString::fromUtf8(line.mid(eq + 1)));
    }
    if (got.contains("skip"))
        GTEST_SKIP() << got["skip"].toStdString();

    ASSERT_EQ(got["count"], "1");  // only lo lives here
    EXPECT_EQ(got["default"], "0");
    EXPECT_EQ(got["address"], "127.0.0.1 (localhost)");

    // A fresh lo starts at 0, so the next refresh takes the counter again and
    // shows no traffic however much passed.
    EXPECT_EQ(got["initIn"], "0");
    const double moved1 = got["moved1"].toDouble();
    EXPECT_EQ(moved1, double(MiB));
    EXPECT_GE(got["in1"].toDouble(), moved1);
    EXPECT_EQ(got["inDelta1"], "0");
    EXPECT_EQ(got["outDelta1"], "0");

    // Then the deltas are the bytes moved plus little more than the headers.
    const double moved2 = got["moved2"].toDouble();
    EXPECT_EQ(moved2, double(5 * MiB));
    const double inDelta2 = got["inDelta2"].toDouble();
    EXPECT_GE(inDelta2, moved2);
    EXPECT_LE(inDelta2, moved2 * 1.10);
    EXPECT_EQ(got["outDelta2"].toDouble(), inDelta2);  // lo receives what it sends
}
