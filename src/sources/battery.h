// The battery's remaining charge, from the power supplies in sysfs.
#pragma once

#include <QByteArray>
#include <QString>
#include <QtGlobal>
#include <optional>
#include <vector>

namespace orm {

// The files of one /sys/class/power_supply/<name> folder that matter here.
struct PowerSupply {
    QString name;
    QString type;   // "Battery", "Mains", "USB", ...
    QString scope;  // "Device" for the battery of a mouse or a headset
    bool present = true;
    std::optional<qint32> capacity;  // percent
    // Remaining and full charge, as energy (uWh) or, failing that, charge (uAh).
    std::optional<double> now;
    std::optional<double> full;
    bool energyUnits = true;
};

// A sysfs attribute as a whole number; nothing for an empty or non-numeric text.
std::optional<qint64> parseSysfsNumber(const QByteArray& text);

// A sysfs attribute as text, without its line end.
QString sysfsText(const QByteArray& text);

// Percent left of the system's batteries: supplies of type "Battery" that are
// present and don't power a device. With every battery giving its charge,
// the sum of what is left over the sum of full charges; otherwise the mean
// of their capacities. Nothing when no battery counts.
std::optional<qint16> batteryPercent(const std::vector<PowerSupply>& supplies);

class BatteryReader {
public:
    explicit BatteryReader(QString sysRoot = QStringLiteral("/sys"));

    // The supplies under <sysRoot>/class/power_supply, in name order.
    std::vector<PowerSupply> supplies() const;

    // The battery life percentage; 0 when the machine has no battery or its
    // figures can't be read.
    qint16 BatteryLifePercent() const;

private:
    QString root_;
};

}  // namespace orm
