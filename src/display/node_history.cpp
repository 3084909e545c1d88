#include "display/node_history.h"

namespace orm {

void NodeHistory::reset(int nodeCount)
{
    labels_.clear();
    samples_.assign(size_t(qMax(nodeCount, 0)), SampleList());
    oldY_.assign(size_t(qMax(nodeCount, 0)), 0);
}

void NodeHistory::removeNode(int node)
{
    if (node >= 0 && size_t(node) < samples_.size())
        samples_.erase(samples_.begin() + node);
    if (node >= 0 && size_t(node) < oldY_.size())
        oldY_.erase(oldY_.begin() + node);
}

SampleList& NodeHistory::samples(int k)
{
    if (k < 1)
        k = 1;
    if (size_t(k) > samples_.size())
        samples_.resize(size_t(k));
    return samples_[size_t(k) - 1];
}

const SampleList& NodeHistory::samples(int k) const
{
    static const SampleList none;
    if (k < 1 || size_t(k) > samples_.size())
        return none;
    return samples_[size_t(k) - 1];
}

void NodeHistory::addSample(int k, double value, const QString& label, int width)
{
    SampleList& list = samples(k);
    list.append(value);
    if (k == 1)
        labels_.append(label);
    if (list.count() > width) {
        list.removeFirst();
        if (k == 1)
            labels_.removeFirst();
    }
}

void NodeHistory::level(int width)
{
    const int count = labels_.count();
    if (count > width) {
        for (int i = 0; i < count - width; ++i) {
            labels_.removeFirst();
            for (SampleList& list : samples_)
                list.removeFirst();
        }
    } else if (count < width) {
        // Every list gets the same number of fillers, so a Node added later
        // stays as much shorter as it was.
        labels_.prepend(width - count, noLabel());
        for (SampleList& list : samples_)
            list.prepend(width - count, NoSample);
    }
}

double NodeHistory::nodeValue(int node, int samplesBack) const
{
    const SampleList& list = samples(node + 1);
    const int position = list.count() - samplesBack;
    if (position <= 0 || !list.holds(position))
        return 0.0;
    return list.at(position);
}

}  // namespace orm
