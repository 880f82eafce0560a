#pragma once

#include <QtGlobal>

#include <algorithm>
#include <vector>

// Summaries of nanosecond samples, in milliseconds.
namespace velora::bench {

inline double meanMs(const std::vector<qint64>& values) {
    if (values.empty())
        return 0;
    double sum = 0;
    for (const qint64 v : values)
        sum += static_cast<double>(v);
    return sum / static_cast<double>(values.size()) / 1e6;
}

inline double percentileMs(std::vector<qint64> values, double p) {
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    const auto at = static_cast<std::size_t>(p * static_cast<double>(values.size() - 1));
    return static_cast<double>(values[at]) / 1e6;
}

}  // namespace velora::bench
