#include "graph_view.h"

namespace orm {

void SampleHistoryView::WriteGraph(const std::vector<double>& values, const QString& label, int, int)
{
    if (label == QStringLiteral("||"))
        return;
    if (samples_.size() < values.size())
        samples_.resize(values.size());
    labels_.push_back(label);
    if (int(labels_.size()) > width_)
        labels_.erase(labels_.begin());
    for (size_t k = 0; k < values.size(); ++k) {
        auto& list = samples_[k];
        list.push_back(values[k]);
        if (int(list.size()) > width_)
            list.erase(list.begin());
    }
}

double SampleHistoryView::GetNodeValue(int node, int samplesBack) const
{
    if (node < 0 || size_t(node) >= samples_.size() || samplesBack < 0)
        return 0.0;
    const auto& list = samples_[size_t(node)];
    const long pos = long(list.size()) - samplesBack;  // 1-based position
    if (pos <= 0)
        return 0.0;
    return list[size_t(pos - 1)];
}

void SampleHistoryView::SetUpNodes(bool clearAllData)
{
    if (!clearAllData)
        return;
    labels_.clear();
    samples_.clear();
}

}  // namespace orm
