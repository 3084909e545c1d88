// Battery percent from a power-supply tree laid out as sysfs lays it out.
#include "sources/battery.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace orm;

namespace {

class FakeSysfs : public ::testing::Test {
protected:
    void supply(const QString& name, const std::vector<std::pair<const char*, const char*>>& files)
    {
        const QString folder = dir.path() + QStringLiteral("/class/power_supply/") + name;
        ASSERT_TRUE(QDir().mkpath(folder));
        for (const auto& [file, text] : files) {
            QFile f(folder + QLatin1Char('/') + QLatin1String(file));
            ASSERT_TRUE(f.open(QIODevice::WriteOnly));
            f.write(text);
        }
    }
    qint16 percent() const { return BatteryReader(dir.path()).BatteryLifePercent(); }

    QTemporaryDir dir;
};

}  // namespace

TEST(BatteryParse, SysfsNumbers)
{
    EXPECT_EQ(parseSysfsNumber("57\n"), 57);
    EXPECT_EQ(parseSysfsNumber("45120000\n"), 45120000);
    EXPECT_FALSE(parseSysfsNumber(""));
    EXPECT_FALSE(parseSysfsNumber("unknown\n"));
    EXPECT_EQ(sysfsText("Battery\n"), "Battery");
}

TEST_F(FakeSysfs, NoSupplyFolderOrOnlyMainsReadsZero)
{
    EXPECT_EQ(percent(), 0);
    supply("AC", {{"type", "Mains\n"}, {"online", "1\n"}});
    supply("ucsi-source-psy-USBC000:001", {{"type", "USB\n"}, {"capacity", "90\n"}});
    EXPECT_EQ(percent(), 0);
}

TEST_F(FakeSysfs, OneBatteryBesideMains)
{
    supply("AC", {{"type", "Mains\n"}, {"online", "1\n"}});
    supply("BAT0", {{"type", "Battery\n"}, {"present", "1\n"}, {"capacity", "57\n"},
                    {"energy_now", "30000000\n"}, {"energy_full", "50000000\n"}});
    EXPECT_EQ(percent(), 57);  // the capacity the system shows, not the ratio
}

TEST_F(FakeSysfs, TwoBatteriesCountByWhatTheyHold)
{
    supply("BAT0", {{"type", "Battery\n"}, {"capacity", "80\n"}, {"energy_now", "40000000\n"},
                    {"energy_full", "50000000\n"}});
    supply("BAT1", {{"type", "Battery\n"}, {"capacity", "25\n"}, {"energy_now", "5000000\n"},
                    {"energy_full", "20000000\n"}});
    EXPECT_EQ(percent(), 64);  // 45 of 70 Wh, where the mean of 80 and 25 is 52.5
}

TEST_F(FakeSysfs, TwoBatteriesWithoutChargeFiguresTakeTheMean)
{
    supply("BAT0", {{"type", "Battery\n"}, {"capacity", "80\n"}});
    supply("BAT1", {{"type", "Battery\n"}, {"capacity", "25\n"}, {"charge_now", "1000000\n"},
                    {"charge_full", "4000000\n"}});
    EXPECT_EQ(percent(), 52);  // 52.5, half to even
}

TEST_F(FakeSysfs, MissingCapacity)
{
    // No capacity: the charge figures stand in; without them the battery is left out.
    supply("BAT0", {{"type", "Battery\n"}, {"charge_now", "3000000\n"}, {"charge_full", "4000000\n"}});
    supply("BAT1", {{"type", "Battery\n"}, {"status", "Unknown\n"}});
    supply("BAT2", {{"type", "Battery\n"}, {"capacity", "unknown\n"}});
    EXPECT_EQ(percent(), 75);

    QTemporaryDir other;
    dir.swap(other);
    supply("BAT1", {{"type", "Battery\n"}, {"status", "Unknown\n"}});
    EXPECT_EQ(percent(), 0);
}

TEST_F(FakeSysfs, EmptySlotsAndDeviceBatteriesDontCount)
{
    supply("BAT0", {{"type", "Battery\n"}, {"capacity", "91\n"}});
    supply("BAT1", {{"type", "Battery\n"}, {"present", "0\n"}, {"capacity", "0\n"}});
    supply("hidpp_battery_0", {{"type", "Battery\n"}, {"scope", "Device\n"}, {"capacity", "5\n"}});
    EXPECT_EQ(percent(), 91);
}

TEST_F(FakeSysfs, OutOfRangeCapacityIsHeldToThePercentScale)
{
    supply("BAT0", {{"type", "Battery\n"}, {"capacity", "104\n"}});
    EXPECT_EQ(percent(), 100);
}

TEST(BatteryLive, ThisMachine)
{
    const qint16 p = BatteryReader().BatteryLifePercent();
    EXPECT_GE(p, 0);
    EXPECT_LE(p, 100);
}
