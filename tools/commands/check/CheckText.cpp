#include "CheckText.h"

#include "base/Terminal.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace
{

const QString ERROR = QStringLiteral("error");
const QString WARNING = QStringLiteral("warning");

QString Severity(const Finding& finding)
{
    return FindingKinds::Row(finding.kind).isError ? ERROR : WARNING;
}

QString Name(const Finding& finding)
{
    return QString::fromLatin1(FindingKinds::Row(finding.kind).name);
}

QString Counted(int count, const char* what)
{
    return QStringLiteral("%1 %2%3").arg(count).arg(QLatin1String(what), count == 1 ? QString() : QStringLiteral("s"));
}

} // namespace

QString CheckText::Lines(const Result& result)
{
    QString text;
    for (const Finding& finding : result.findings.All())
    {
        const bool isError = FindingKinds::Row(finding.kind).isError;
        const QString severity =
            Terminal::Coloured(Severity(finding), isError ? Terminal::Colour::RED : Terminal::Colour::YELLOW);
        text += QStringLiteral("%1:%2: %3: %4 %5\n")
                    .arg(Terminal::Harmless(result.file), QString::number(finding.line), severity,
                         Terminal::Harmless(finding.Sentence()),
                         Terminal::Coloured(u'[' + Name(finding) + u']', Terminal::Colour::GREY));
    }
    return text + QStringLiteral("%1, %2, %3\n")
                      .arg(Counted(result.lines, "line"), Counted(result.findings.Errors(), "error"),
                           Counted(result.findings.Warnings(), "warning"));
}

QString CheckText::Json(const Result& result)
{
    QJsonArray findings;
    for (const Finding& finding : result.findings.All())
        findings.append(QJsonObject{{QStringLiteral("line"), finding.line},
                                    {QStringLiteral("severity"), Severity(finding)},
                                    {QStringLiteral("kind"), Name(finding)},
                                    {QStringLiteral("field"), finding.field},
                                    {QStringLiteral("text"), finding.text},
                                    {QStringLiteral("advice"), finding.advice}});
    const QJsonObject object{{QStringLiteral("file"), result.file},
                             {QStringLiteral("findings"), findings},
                             {QStringLiteral("lines"), result.lines},
                             {QStringLiteral("errors"), result.findings.Errors()},
                             {QStringLiteral("warnings"), result.findings.Warnings()}};
    return QString::fromUtf8(QJsonDocument(object).toJson());
}
