#include "sources/battery.h"
#include "sources/platform_file.h"

#include <QDir>
#include <QFile>
#include <algorithm>
#include <cmath>

namespace orm {

namespace {

// A battery's own percent: its capacity, else what its charge says.
std::optional<double> ownPercent(const PowerSupply& s)
{
    if (s.capacity)
        return double(*s.capacity);
    if (s.now && s.full && *s.full > 0)
        return std::clamp(*s.now / *s.full * 100.0, 0.0, 100.0);
    return std::nullopt;
}

}  // namespace

std::optional<qint64> parseSysfsNumber(const QByteArray& text)
{
    bool ok = false;
    const qint64 value = text.trimmed().toLongLong(&ok);
    if (!ok)
        return std::nullopt;
    return value;
}

QString sysfsText(const QByteArray& text)
{
    return QString::fromUtf8(text).trimmed();
}

std::optional<qint16> batteryPercent(const std::vector<PowerSupply>& supplies)
{
    std::vector<const PowerSupply*> batteries;
    for (const PowerSupply& s : supplies) {
        if (s.type == QLatin1String("Battery") && s.present && s.scope != QLatin1String("Device") && ownPercent(s))
            batteries.push_back(&s);
    }
    if (batteries.empty())
        return std::nullopt;

    double percent = 0;
    // Batteries of different sizes count by what they hold, when all say it
    // in the same unit.
    const bool byCharge = batteries.size() > 1 && std::all_of(batteries.begin(), batteries.end(), [&](const auto* b) {
        return b->now && b->full && *b->full > 0 && b->energyUnits == batteries.front()->energyUnits;
    });
    if (byCharge) {
        double now = 0, full = 0;
        for (const auto* b : batteries) {
            now += std::clamp(*b->now, 0.0, *b->full);
            full += *b->full;
        }
        percent = now / full * 100.0;
    } else {
        for (const auto* b : batteries)
            percent += *ownPercent(*b);
        percent /= double(batteries.size());
    }
    return qint16(std::nearbyint(percent));
}

BatteryReader::BatteryReader(QString sysRoot) : root_(std::move(sysRoot)) {}

std::vector<PowerSupply> BatteryReader::supplies() const
{
    std::vector<PowerSupply> out;
    const QDir dir(root_ + QStringLiteral("/class/power_supply"));
    const QStringList names = dir.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString& name : names) {
        const QString folder = dir.filePath(name) + QLatin1Char('/');
        const auto text = [&folder](const char* file) { return readPlatformFile(folder + QLatin1String(file)); };
        const auto number = [&text](const char* file) -> std::optional<qint64> {
            const auto t = text(file);
            return t ? parseSysfsNumber(*t) : std::nullopt;
        };
        PowerSupply s;
        s.name = name;
        if (const auto t = text("type"))
            s.type = sysfsText(*t);
        if (const auto t = text("scope"))
            s.scope = sysfsText(*t);
        if (const auto p = number("present"))
            s.present = *p != 0;
        if (const auto c = number("capacity"))
            s.capacity = qint32(std::clamp<qint64>(*c, 0, 100));
        auto energyNow = number("energy_now"), energyFull = number("energy_full");
        if (energyNow && energyFull) {
            s.now = double(*energyNow);
            s.full = double(*energyFull);
        } else if (auto chargeNow = number("charge_now"), chargeFull = number("charge_full"); chargeNow && chargeFull) {
            s.now = double(*chargeNow);
            s.full = double(*chargeFull);
            s.energyUnits = false;
        }
        out.push_back(s);
    }
    return out;
}

qint16 BatteryReader::BatteryLifePercent() const
{
    return batteryPercent(supplies()).value_or(0);
}

}  // namespace orm
