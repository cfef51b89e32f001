#include "LineHtml.h"

#include "Html.h"
#include "engine/RehearsalResult.h"

#include <algorithm>

QString LineHtml::Source(const RehearsalResult& run, int number)
{
    const auto line = std::ranges::lower_bound(run.lines, number, {}, &ScheduleLine::number);
    return line != run.lines.end() && line->number == number ? Html::Element("code", {}, Html::Text(line->text))
                                                             : QString();
}
