#include "LookAlikes.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace
{

struct Row
{
    std::u16string_view written;
    QChar meant; // null: nothing
};

constexpr std::array TABLE{
    Row{u"\u2010\u2011\u2012\u2013\u2014\u2015\u2212\ufe58\ufe63", u'-'},
    Row{u"\u201c\u201d\u201e\u201f\u00ab\u00bb\u2033", u'"'},
    Row{u"\u2018\u2019\u201a\u201b\u2032\u00b4", u'\''},
    Row{u"\u00a0\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009\u200a\u202f\u205f\u3000", u' '},
    Row{u"\u00ad\u200b\u200c\u200d\u200e\u200f\u2060\ufeff", QChar()},
    Row{u"\u00a6\u2223\u2502\u2758\u01c0", u'|'},
    Row{u"\u2217\u2731\u204e\u22c6\u2022", u'*'},
    Row{u"\u2236\ua789\u02d0", u':'},
    Row{u"\u201a\u060c\u3001", u','},
    Row{u"\u2024\u3002", u'.'},
    // Of the Cyrillic and Greek letters those that look like Latin ones.
    Row{u"\u0410\u0391", u'A'},
    Row{u"\u0421", u'C'},
    Row{u"\u0415\u0395", u'E'},
    Row{u"\u041c\u039c", u'M'},
    Row{u"\u041e\u039f", u'O'},
    Row{u"\u0420\u03a1", u'P'},
    Row{u"\u0430", u'a'},
    Row{u"\u0441", u'c'},
    Row{u"\u0435", u'e'},
    Row{u"\u0456", u'i'},
    Row{u"\u043e\u03bf", u'o'},
    Row{u"\u0440", u'p'},
    Row{u"\u0443", u'y'},
};

constexpr char16_t FIRST_WIDE = 0xff01; // "!" and all of ASCII behind it
constexpr char16_t LAST_WIDE = 0xff5e;
constexpr char16_t WIDE = FIRST_WIDE - u'!';

} // namespace

QString LookAlikes::Plain(const QString& text)
{
    QString plain;
    for (const QChar sign : text)
    {
        const auto row = std::ranges::find_if(
            TABLE, [&](const Row& each) { return each.written.find(sign.unicode()) != std::u16string_view::npos; });
        if (row != TABLE.end())
            plain += row->meant.isNull() ? QString() : QString(row->meant);
        else if (sign.unicode() >= FIRST_WIDE && sign.unicode() <= LAST_WIDE)
            plain += QChar(sign.unicode() - WIDE);
        else if (sign.isDigit())
            plain += QString::number(sign.digitValue());
        else
            plain += sign;
    }
    return plain;
}

QString LookAlikes::Digits(const QString& text)
{
    QString digits = text;
    return digits.replace(u'O', u'0').replace(u'o', u'0').replace(u'l', u'1').replace(u'I', u'1');
}
