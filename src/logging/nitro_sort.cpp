#include "logging/nitro_sort.h"

#include <cmath>
#include <utility>

namespace orm {

void NitroSort(std::vector<QString>& items, int& low, int& high, const std::function<void()>& pump)
{
    if (low == -1)
        low = 0;
    if (high == -1)
        high = int(items.size()) - 1;
    if (low >= high)
        return;

    // The middle index is rounded half to even, as the original's whole-number assignment did.
    const int middle = int(std::nearbyint((double(low) + double(high)) / 2.0));
    const QString pivot = items[size_t(middle)];
    int i = low;
    int j = high;
    const auto walked = [&pump](int index) {
        if (pump && index % 1000 == 0)
            pump();
    };
    for (;;) {
        while (items[size_t(i)] < pivot) {
            ++i;
            walked(i);
        }
        while (pivot < items[size_t(j)]) {
            --j;
            walked(j);
        }
        if (i > j)
            break;
        items[size_t(i)].swap(items[size_t(j)]);  // the strings' data pointers change hands
        ++i;
        --j;
        if (i > j)
            break;
    }
    if (low < j) {
        int l = low, h = j;
        NitroSort(items, l, h, pump);
    }
    if (i < high) {
        int l = i, h = high;
        NitroSort(items, l, h, pump);
    }
}

void NitroSort(std::vector<QString>& items, const std::function<void()>& pump)
{
    int low = -1, high = -1;
    NitroSort(items, low, high, pump);
}

}  // namespace orm
