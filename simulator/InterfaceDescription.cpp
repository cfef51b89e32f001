#include "InterfaceDescription.h"

#include <QDBusMetaType>
#include <QFile>
#include <QXmlStreamReader>

#include <stdexcept>

namespace
{

const QString RESOURCE = QStringLiteral(":/interfaces/%1.xml");
const QString INTERFACE_TAG = QStringLiteral("interface");
const QString METHOD_TAG = QStringLiteral("method");
const QString SIGNAL_TAG = QStringLiteral("signal");
const QString ARGUMENT_TAG = QStringLiteral("arg");
const QString NAME = QStringLiteral("name");
const QString TYPE = QStringLiteral("type");
const QString DIRECTION = QStringLiteral("direction");
const QString OUT = QStringLiteral("out");

[[noreturn]] void Fail(const QString& interface, const QString& cause)
{
    throw std::runtime_error(qPrintable(interface + QStringLiteral(": ") + cause));
}

QString NameOf(const QXmlStreamReader& reader)
{
    return reader.attributes().value(NAME).toString();
}

QVariant NeutralValue(const QString& interface, const QString& type)
{
    const QMetaType metaType = QDBusMetaType::signatureToMetaType(type.toLatin1().constData());
    if (!metaType.isValid())
        Fail(interface, QStringLiteral("no neutral value of type \"%1\"").arg(type));
    return QVariant(metaType);
}

// The one <interface> element of the document.
QString InterfaceElement(const QString& document)
{
    const QString end = QStringLiteral("</interface>");
    const qsizetype first = document.indexOf(QStringLiteral("<interface "));
    const qsizetype last = document.indexOf(end, first);
    return document.mid(first, last - first + end.size());
}

} // namespace

InterfaceDescription::InterfaceDescription(const QString& interface)
    : m_name(interface)
{
    QFile file(RESOURCE.arg(interface));
    if (!file.open(QIODevice::ReadOnly))
        Fail(m_name, QStringLiteral("no description: ") + file.errorString());
    const QByteArray xml = file.readAll();
    Parse(xml);
    m_xml = InterfaceElement(QString::fromUtf8(xml));
}

void InterfaceDescription::Parse(const QByteArray& xml)
{
    QXmlStreamReader reader(xml);
    bool found = false;
    static_cast<void>(reader.readNextStartElement()); // the <node>
    while (reader.readNextStartElement())
    {
        if (reader.name() == INTERFACE_TAG && NameOf(reader) == m_name)
        {
            found = true;
            ReadMembers(reader);
        }
        else
            reader.skipCurrentElement();
    }
    if (reader.hasError())
        Fail(m_name, QStringLiteral("line %1: %2").arg(reader.lineNumber()).arg(reader.errorString()));
    if (!found)
        Fail(m_name, QStringLiteral("the description is that of another interface"));
}

void InterfaceDescription::ReadMembers(QXmlStreamReader& reader)
{
    while (reader.readNextStartElement())
    {
        if (reader.name() == METHOD_TAG)
        {
            const QString name = NameOf(reader);
            m_methods.insert(name, ReadMethod(reader));
            continue;
        }
        if (reader.name() == SIGNAL_TAG)
            m_signals.insert(NameOf(reader));
        reader.skipCurrentElement();
    }
}

InterfaceDescription::Method InterfaceDescription::ReadMethod(QXmlStreamReader& reader) const
{
    Method method;
    while (reader.readNextStartElement())
    {
        const QString type = reader.attributes().value(TYPE).toString();
        if (reader.name() == ARGUMENT_TAG && reader.attributes().value(DIRECTION) == OUT)
            method.neutralReply.append(NeutralValue(m_name, type));
        else if (reader.name() == ARGUMENT_TAG)
            method.signature += type;
        reader.skipCurrentElement();
    }
    return method;
}

const InterfaceDescription::Method* InterfaceDescription::FindMethod(const QString& name) const
{
    const auto method = m_methods.constFind(name);
    return method != m_methods.cend() ? &*method : nullptr;
}
