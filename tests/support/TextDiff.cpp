#include "TextDiff.h"

using namespace Qt::StringLiterals;

namespace
{

const QString NOTHING = u"(nothing)"_s;

} // namespace

QByteArray TextDiff(const QStringList& expected, const QStringList& found, const char* what)
{
    if (expected == found)
        return {};
    qsizetype first = 0;
    while (first < expected.size() && first < found.size() && expected[first] == found[first])
        ++first;

    QString text =
        u"%1 %2 of %3 differs\n  expected: %4\n  found:    %5\n  all that were found:"_s.arg(QLatin1String(what))
            .arg(first + 1)
            .arg(expected.size())
            .arg(expected.value(first, NOTHING), found.value(first, NOTHING));
    for (qsizetype i = 0; i < found.size(); ++i)
        text += u"\n  %1 %2"_s.arg(QLatin1String(i == first ? ">" : " "), found[i]);
    return text.toUtf8();
}
