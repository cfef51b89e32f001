#include "Strokes.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>
#include <vector>

int Strokes::Between(const QString& left, const QString& right)
{
    const auto width = static_cast<size_t>(right.size()) + 1;
    std::vector<int> before(width);
    std::vector<int> row(width);
    std::iota(row.begin(), row.end(), 0);
    for (qsizetype i = 1; i <= left.size(); ++i)
    {
        const std::vector<int> twoBefore = std::exchange(before, row);
        row[0] = static_cast<int>(i);
        for (qsizetype j = 1; j <= right.size(); ++j)
        {
            const auto place = static_cast<size_t>(j);
            const int other = left[i - 1] == right[j - 1] ? 0 : 1;
            row[place] = std::min({row[place - 1] + 1, before[place] + 1, before[place - 1] + other});
            if (i > 1 && j > 1 && left[i - 1] == right[j - 2] && left[i - 2] == right[j - 1])
                row[place] = std::min(row[place], twoBefore[place - 2] + 1);
        }
    }
    return row.back();
}
