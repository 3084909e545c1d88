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

void NodeHistory::fitNodes(int nodeCount)
{
    samples_.resize(size_t(qMax(nodeCount, 0)));
    const int width = labels_.count();
    for (SampleList& list : samples_) {
        while (list.count() > width)
            list.removeFirst();
        list.prepend(width - list.count(), NoSample);
    }
}

double SampleList::largest() const
{
    if (!largestKnown_) {
        largest_ = -std::numeric_limits<double>::infinity();
        const double* items = data();
        for (int i = 0; i < count(); ++i)
            if (items[i] > largest_)
                largest_ = items[i];
        largestKnown_ = true;
    }
    return largest_;
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
    const auto fit = [width](auto& list, const auto& filler) {
        while (list.count() > width)
            list.removeFirst();
        list.prepend(width - list.count(), filler);
    };
    fit(labels_, noLabel());
    for (SampleList& list : samples_)
        fit(list, NoSample);
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
