// NitroSort: the quicksort that puts log file names in date order. Strings are
// exchanged, never copied, and long lists let window events through.
#pragma once

#include <QString>
#include <functional>
#include <vector>

namespace orm {

// Sorts items[low..high] in place by plain comparison of the strings. A `low`
// or `high` of -1 stands for the list's first or last index and is replaced by
// it. `pump` runs whenever a walk reaches an index that is a multiple of 1000.
// Not stable: equal items may change places.
void NitroSort(std::vector<QString>& items, int& low, int& high, const std::function<void()>& pump = {});

// The whole list.
void NitroSort(std::vector<QString>& items, const std::function<void()>& pump = {});

}  // namespace orm
