#include "LocalizedFormat.h"

#include <cmath>

namespace {

struct Conversion
{
    qsizetype begin = -1; // index of '%'
    qsizetype end = -1;   // one past the conversion character
    bool leftAlign = false, plusSign = false, spaceSign = false, zeroPad = false, group = false;
    int width = 0;
    int precision = -1;
    QChar type;
};

bool isLengthModifier(QChar c)
{
    return c == u'h' || c == u'l' || c == u'q' || c == u'L' || c == u'z' || c == u'j' || c == u't';
}

// Parses the conversion that starts at format[at] == '%'; returns one with begin == -1 if none.
Conversion parseConversion(const QString &format, qsizetype at)
{
    Conversion c;
    qsizetype i = at + 1;
    for (; i < format.size(); ++i) {
        const QChar f = format.at(i);
        if (f == u'-')
            c.leftAlign = true;
        else if (f == u'+')
            c.plusSign = true;
        else if (f == u' ')
            c.spaceSign = true;
        else if (f == u'0')
            c.zeroPad = true;
        else if (f == u'\'')
            c.group = true;
        else if (f != u'#')
            break;
    }
    while (i < format.size() && format.at(i).isDigit())
        c.width = c.width * 10 + format.at(i++).digitValue();
    if (i < format.size() && format.at(i) == u'.') {
        c.precision = 0;
        ++i;
        while (i < format.size() && format.at(i).isDigit())
            c.precision = c.precision * 10 + format.at(i++).digitValue();
    }
    while (i < format.size() && isLengthModifier(format.at(i)))
        ++i;
    if (i >= format.size())
        return {};
    const QChar type = format.at(i);
    if (!QStringLiteral("diufFeEgG@").contains(type))
        return {};
    c.type = type;
    c.begin = at;
    c.end = i + 1;
    return c;
}

QString formatArgument(const Conversion &c, std::variant<std::int64_t, double> argument,
                       QLocale locale)
{
    QLocale::NumberOptions options = locale.numberOptions();
    options.setFlag(QLocale::OmitGroupSeparator, !c.group);
    locale.setNumberOptions(options);

    const bool integral = c.type == u'd' || c.type == u'i' || c.type == u'u' ||
                          (c.type == u'@' && std::holds_alternative<std::int64_t>(argument));
    QString text;
    bool negative = false;
    if (c.type == u'@' && !integral) {
        const double value = std::get<double>(argument);
        negative = std::signbit(value);
        text = locale.toString(value, 'g', QLocale::FloatingPointShortest);
    } else if (integral) {
        const std::int64_t value = std::holds_alternative<std::int64_t>(argument)
                                       ? std::get<std::int64_t>(argument)
                                       : static_cast<std::int64_t>(std::get<double>(argument));
        negative = value < 0;
        text = locale.toString(static_cast<qlonglong>(value));
    } else {
        const double value = std::holds_alternative<double>(argument)
                                 ? std::get<double>(argument)
                                 : double(std::get<std::int64_t>(argument));
        negative = std::signbit(value);
        char qtFormat = 'f';
        if (c.type == u'e' || c.type == u'E')
            qtFormat = 'e';
        else if (c.type == u'g' || c.type == u'G')
            qtFormat = 'g';
        if (c.type.isUpper())
            qtFormat = char(qtFormat - 'a' + 'A');
        text = locale.toString(value, qtFormat, c.precision < 0 ? 6 : c.precision);
    }
    if (!negative && c.plusSign)
        text.prepend(locale.positiveSign());
    else if (!negative && c.spaceSign)
        text.prepend(u' ');
    if (text.size() < c.width) {
        const qsizetype padding = c.width - text.size();
        if (c.leftAlign)
            text.append(QString(padding, u' '));
        else if (c.zeroPad)
            text.insert(negative || c.plusSign || c.spaceSign ? 1 : 0,
                        QString(padding, locale.zeroDigit().at(0)));
        else
            text.prepend(QString(padding, u' '));
    }
    return text;
}

} // namespace

QString localizedStringWithFormat(const QString &format, std::variant<std::int64_t, double> argument,
                                  const QLocale &locale)
{
    QString result;
    result.reserve(format.size() + 16);
    bool argumentUsed = false;
    qsizetype i = 0;
    while (i < format.size()) {
        const QChar c = format.at(i);
        if (c != u'%') {
            result.append(c);
            ++i;
            continue;
        }
        if (i + 1 < format.size() && format.at(i + 1) == u'%') {
            result.append(u'%');
            i += 2;
            continue;
        }
        const Conversion conversion = argumentUsed ? Conversion{} : parseConversion(format, i);
        if (conversion.begin < 0) {
            result.append(c);
            ++i;
            continue;
        }
        result.append(formatArgument(conversion, argument, locale));
        argumentUsed = true;
        i = conversion.end;
    }
    return result;
}
