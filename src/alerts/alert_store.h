// The Alerts and the mail settings in the settings store: "Settings/Alerts"
// says how many "Settings/Alert<n>" keys count, and the five mail values sit
// beside it.
#pragma once

#include "alerts/alert.h"
#include "alerts/alert_options.h"
#include "model/key_value_store.h"

#include <vector>

namespace orm {

QString alertKey(int alertIndex);  // "Settings/Alert<alertIndex + 1>"

// A stored count beyond this is not believed: the highest Alert<n> key present
// (at most this many) counts instead.
inline constexpr int MaxStoredAlerts = 1000;

// The number of Alerts the store says it holds, as LoadAlerts reads it.
int storedAlertCount(const KeyValueStore& store);

// Reads `Alerts` records, each value with its load default where the store
// lacks it or holds no number for a number (a key holding only rName comes
// back armed, with action, condition and exception 0); the five mail values
// without NUL characters; and the clause table. Never writes.
void LoadAlerts(const KeyValueStore& store, std::vector<Alert>& alerts, MailSettings& mail,
                AlertOptionTable& options);

// Writes the count, every value of every Alert in its fixed order, and the five
// mail values, then syncs. Keys of Alerts beyond the count stay. False when the
// store could not be synced (store.lastError()).
bool SaveAlerts(KeyValueStore& store, const std::vector<Alert>& alerts, const MailSettings& mail);

}  // namespace orm
