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
    // One supply folder; `files` reads as "type=Battery capacity=57".
    void supply(const QString& name, const QString& files)
    {
        const QString folder = dir.path() + QStringLiteral("/class/power_supply/") + name + QLatin1Char('/');
        ASSERT_TRUE(QDir().mkpath(folder));
        for (const QString& file : files.split(QLatin1Char(' '))) {
            QFile f(folder + file.section(QLatin1Char('='), 0, 0));
            ASSERT_TRUE(f.open(QIODevice::WriteOnly));
            f.write(file.section(QLatin1Char('='), 1).toUtf8() + '\n');
        }
    }
    qint16 percent() const { return BatteryReader(dir.path()).BatteryLifePercent(); }

    QTemporaryDir dir;
};

}  // namespace

TEST_F(FakeSysfs, OnlyPresentSystemBatteriesCount)
{
    EXPECT_EQ(percent(), 0);  // no power_supply folder at all
    supply("ucsi-source-psy-USBC000:001", "type=USB capacity=90");
    supply("BAT0", "type=Battery present=1 capacity=57 energy_now=30000000 energy_full=50000000");
    supply("BAT1", "type=Battery present=0 capacity=0");
    supply("hidpp_battery_0", "type=Battery scope=Device capacity=5");
    EXPECT_EQ(percent(), 57);  // the capacity the system shows, not the ratio
}

TEST_F(FakeSysfs, TwoBatteriesCountByWhatTheyHoldElseByTheMean)
{
    supply("BAT0", "type=Battery capacity=80");
    supply("BAT1", "type=Battery capacity=25 energy_now=5000000 energy_full=20000000");
    EXPECT_EQ(percent(), 52);  // 52.5, half to even
    supply("BAT0", "energy_now=40000000 energy_full=50000000");
    EXPECT_EQ(percent(), 64);  // 45 of 70 Wh
}

TEST_F(FakeSysfs, MissingOrOddCapacity)
{
    // No capacity: the charge figures stand in; without them the battery is left out.
    supply("BAT0", "type=Battery charge_now=3000000 charge_full=4000000");
    supply("BAT2", "type=Battery capacity=unknown");
    supply("BAT3", "type=Battery capacity=104");
    EXPECT_EQ(percent(), 88);  // 104 is held to 100: the mean of 75 and 100
}
