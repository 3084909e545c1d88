// A graph window's sample history (gNodeData): list 0 holds the time labels,
// list k the raw samples of Node k-1, oldest first, one entry per plot column.
#pragma once

#include <QString>
#include <QtGlobal>
#include <cstddef>
#include <limits>
#include <vector>

namespace orm {

// An array-backed deque with 1-based positions: appending at the back and
// dropping the front are cheap, and the items stay contiguous so that a scan
// over a whole list is a plain array walk.
template <class T>
class ColumnList {
public:
    int count() const { return int(items_.size() - head_); }
    bool empty() const { return count() == 0; }
    bool holds(int position) const { return position >= 1 && position <= count(); }
    // Position 1 is the oldest entry; the caller checks `holds` first.
    const T& at(int position) const { return items_[head_ + size_t(position) - 1]; }
    const T& last() const { return items_.back(); }
    const T* data() const { return items_.data() + head_; }

    void append(T value) { items_.push_back(std::move(value)); }
    void removeFirst()
    {
        if (empty())
            return;
        ++head_;
        // Compact now and then; the capacity stays, so a steady history
        // allocates nothing per tick.
        if (head_ >= 64 && head_ * 2 >= items_.size()) {
            items_.erase(items_.begin(), items_.begin() + std::ptrdiff_t(head_));
            head_ = 0;
        }
    }
    void prepend(int times, const T& filler)
    {
        if (times <= 0)
            return;
        if (head_ >= size_t(times)) {
            head_ -= size_t(times);
            for (size_t i = 0; i < size_t(times); ++i)
                items_[head_ + i] = filler;
        } else {
            items_.insert(items_.begin() + std::ptrdiff_t(head_), size_t(times), filler);
        }
    }
    void clear()
    {
        items_.clear();
        head_ = 0;
    }

private:
    std::vector<T> items_;
    size_t head_ = 0;
};

// A Node's samples, which also know their largest, so that the auto range
// need not walk every column on every tick. NaN is never the largest.
class SampleList : public ColumnList<double> {
public:
    void append(double value)
    {
        ColumnList::append(value);
        if (largestKnown_ && value > largest_)
            largest_ = value;
    }
    void removeFirst()
    {
        // Only losing the largest itself means looking again.
        if (!empty() && largestKnown_ && at(1) == largest_)
            largestKnown_ = false;
        ColumnList::removeFirst();
    }
    void prepend(int times, double filler)
    {
        ColumnList::prepend(times, filler);
        if (times > 0 && largestKnown_ && filler > largest_)
            largest_ = filler;
    }
    void clear()
    {
        ColumnList::clear();
        largestKnown_ = false;
    }
    // The largest sample; minus infinity for an empty list or one of NaNs.
    double largest() const;

private:
    mutable double largest_ = 0;
    mutable bool largestKnown_ = false;
};

using LabelList = ColumnList<QString>;

class NodeHistory {
public:
    static constexpr double NoSample = -1;
    static QString noLabel() { return QStringLiteral("||"); }

    // Fresh, empty lists 0 to nodeCount and a zeroed oldYData.
    void reset(int nodeCount);
    // Node `node` (from 0) is gone: its list and line end go, later ones move down.
    void removeNode(int node);
    // Lists for exactly `nodeCount` Nodes, each as long as the label list: a
    // Node added later gets fillers in front, so that one position is one
    // moment in every list and a replay puts each curve where it was drawn.
    void fitNodes(int nodeCount);
    // The number of sample lists (the highest list index).
    int sampleListCount() const { return int(samples_.size()); }

    LabelList& labels() { return labels_; }
    const LabelList& labels() const { return labels_; }
    // Node k's samples, k from 1. A list is made on first touch, so reading an
    // absent one gives an empty list.
    SampleList& samples(int k);
    const SampleList& samples(int k) const;

    // One tick's sample of Node k (from 1), trimmed to `width` entries; the
    // first Node carries the time label along.
    void addSample(int k, double value, const QString& label, int width);

    // All lists to exactly `width` entries: the oldest dropped, or fillers put
    // in front ("||" for labels, -1 for samples). Each list is cut or filled by
    // itself, so that the newest entries stay together.
    void level(int width);

    // The raw stored sample `samplesBack` from the newest of Node `node` (from 0);
    // 0 when the list is not that long.
    double nodeValue(int node, int samplesBack) const;

    // The Y pixel at which each Node's line ended on the previous tick.
    std::vector<qint32>& oldYData() { return oldY_; }
    const std::vector<qint32>& oldYData() const { return oldY_; }

private:
    LabelList labels_;
    std::vector<SampleList> samples_;  // samples_[k - 1] is list k
    std::vector<qint32> oldY_;
};

}  // namespace orm
