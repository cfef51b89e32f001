#pragma once

#include <QCommandLineParser>
#include <QStringList>

// The arguments of one command, and its help, which is made of what it accepts.
class CommandLine final
{
public:
    // command: its name. summary: what it does, a sentence or two. operands: what has to be given, as "FILE"; the last
    // one may come any number of times when it ends with "...", and be left out when it stands in brackets, "[FILE]".
    CommandLine(const QString& command, const QString& summary, const QStringList& operands);

    // Option without a value.
    void AddFlag(const QString& name, const QString& description);

    // Option with a value. value: what the help calls it; fallback: its value where it is not given.
    void AddValue(const QString& name, const QString& value, const QString& description, const QString& fallback = {});

    // Reads what follows the command's name. False when help was asked for, and printed. Throws ToolError on
    // arguments that are unknown, missing or too many.
    [[nodiscard]] bool Parse(const QStringList& arguments);

    [[nodiscard]] bool Has(const QString& name) const { return m_parser.isSet(name); }
    [[nodiscard]] QString Value(const QString& name) const { return m_parser.value(name); }

    // Value as a whole number. Throws ToolError when it is none from least to most.
    [[nodiscard]] int Number(const QString& name, int least, int most) const;

    [[nodiscard]] QString Operand(int index) const { return m_parser.positionalArguments().value(index); }
    [[nodiscard]] QStringList Operands() const { return m_parser.positionalArguments(); }

private:
    [[nodiscard]] QString Help() const;

    QCommandLineParser m_parser;
    const QString m_command;
    const QString m_summary;
    const QStringList m_operands;
    QList<QPair<QString, QString>> m_rows; // of the help: the option, what it means
};
