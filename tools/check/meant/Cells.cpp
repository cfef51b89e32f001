#include "Cells.h"

#include "text/ScheduleFields.h"

namespace
{

constexpr QChar QUOTE = u'"';
constexpr QChar APOSTROPHE = u'\'';

// Reads one part after the other.
class Reader final
{
public:
    Reader(const QString& text, const QString& separators)
        : m_text(text)
        , m_separators(separators)
    {
    }

    Cells Read()
    {
        Cells cells;
        while (m_position <= m_text.size())
        {
            SkipBlanks();
            const qsizetype begin = m_position;
            QString part;
            if (!ReadQuoted(part))
                part = ReadPlain();
            else if (cells.quote < 0)
                cells.quote = begin;
            // The mark of a cell that is text, not a number.
            if (part.size() > 1 && part[0] == APOSTROPHE && part[1].isDigit())
            {
                part.remove(0, 1);
                cells.quote = cells.quote < 0 ? begin : cells.quote;
            }
            cells.parts.append(part.trimmed());
            ++m_position;
        }
        // A separator at the end adds no field.
        if (cells.parts.size() > 1 && cells.parts.last().isEmpty())
            cells.parts.removeLast();
        return cells;
    }

private:
    [[nodiscard]] bool IsSeparator(qsizetype position) const
    {
        return m_separators.contains(m_text[position]) && (m_text[position] != u' ' || position > 0);
    }

    void SkipBlanks()
    {
        while (m_position < m_text.size() && m_text[m_position].isSpace() &&
               (m_text[m_position] == u' ' || !IsSeparator(m_position)))
            ++m_position;
    }

    // False, and nothing read, where there is no whole quoted part.
    bool ReadQuoted(QString& part)
    {
        if (m_position >= m_text.size() || m_text[m_position] != QUOTE)
            return false;
        for (qsizetype i = m_position + 1; i < m_text.size(); ++i)
        {
            if (m_text[i] != QUOTE)
                part += m_text[i];
            else if (i + 1 < m_text.size() && m_text[i + 1] == QUOTE)
                part += m_text[i++];
            else
            {
                qsizetype end = i + 1;
                while (end < m_text.size() && m_text[end].isSpace() && !IsSeparator(end))
                    ++end;
                if (end < m_text.size() && !IsSeparator(end))
                    break;
                m_position = end;
                return true;
            }
        }
        part.clear();
        return false;
    }

    QString ReadPlain()
    {
        const qsizetype begin = m_position;
        while (m_position < m_text.size() && !IsSeparator(m_position))
            ++m_position;
        return m_text.mid(begin, m_position - begin);
    }

    const QString& m_text;
    const QString& m_separators;
    qsizetype m_position = 0;
};

} // namespace

Cells Cells::Of(const QString& text, const QString& separators)
{
    Cells cells = Reader(text, separators).Read();
    // The whole line in one pair of marks.
    if (cells.quote >= 0 && cells.parts.size() == 1)
    {
        const qsizetype quote = cells.quote;
        const QString inner = cells.parts.first();
        cells = Reader(inner, separators).Read();
        cells.quote = quote;
    }
    return cells;
}
