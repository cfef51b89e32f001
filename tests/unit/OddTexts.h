#pragma once

#include <QString>

#include <random>

// Texts that are nearly what a reader expects, the same ones in every run.
class OddTexts final
{
public:
    // A text with up to three signs removed, added or put in the place of others.
    QString Spoil(QString text)
    {
        for (int left = Pick(3); left >= 0; --left)
        {
            const int place = Pick(static_cast<int>(text.size()) + 1);
            const QChar sign = SIGNS.at(Pick(static_cast<int>(SIGNS.size())));
            switch (Pick(3))
            {
            case 0: text.remove(place, 1); break;
            case 1: text.insert(place, sign); break;
            default: text.replace(place, 1, sign);
            }
        }
        return text;
    }

    // A number from 0 to below limit.
    int Pick(int limit) { return static_cast<int>(m_random() % static_cast<unsigned int>(limit)); }

    // Digits of several scripts, what may stand around and between them, and blanks.
    inline static const QString SIGNS = QStringLiteral(u"0123456789 \t\v\u00a0\u0085\u3000:|,.;+-#*eExXaApPmM'_\u00b2"
                                                       u"\u0663\uff15\u2212\u20ac\u00e9") +
                                        QChar(0xd83d) + QChar(u'\0');

private:
    std::mt19937 m_random{1};
};
