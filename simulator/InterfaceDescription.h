#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QVariantList>

class QXmlStreamReader;

// The methods and signals of one bus interface, read from its introspection file, which is their only description.
class InterfaceDescription final
{
public:
    struct Method
    {
        QString signature;         // of the arguments, joined
        QVariantList neutralReply; // 0, false or empty, one of each type that the method gives back
    };

    // Reads the embedded file of that interface. Throws std::runtime_error, with the cause, when there is none, when
    // it is malformed or describes another interface, or when a type is not one that can be answered.
    explicit InterfaceDescription(const QString& interface);

    [[nodiscard]] QString Name() const { return m_name; }

    // The <interface> element as text, for introspection over the bus.
    [[nodiscard]] QString Xml() const { return m_xml; }

    // Null when the interface has no such method.
    [[nodiscard]] const Method* FindMethod(const QString& name) const;

    [[nodiscard]] bool HasSignal(const QString& name) const { return m_signals.contains(name); }

private:
    void Parse(const QByteArray& xml);
    void ReadMembers(QXmlStreamReader& reader);
    Method ReadMethod(QXmlStreamReader& reader) const;

    QString m_name;
    QString m_xml;
    QHash<QString, Method> m_methods;
    QSet<QString> m_signals;
};
