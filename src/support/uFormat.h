#pragma once

#include <QList>
#include <QString>
#include <variant>

/// Texts made from a format and arguments, numbers in the forms that pages and logs show.
class TFormat
{
public:
    using TArg = std::variant<qint64, quint64, double, QString>;

    /// One argument of Format; made from any integer, double or string.
    class TArgument
    {
    public:
        TArgument(int value) : FValue(static_cast<qint64>(value)) {}
        TArgument(uint value) : FValue(static_cast<quint64>(value)) {}
        TArgument(qint64 value) : FValue(value) {}
        TArgument(quint64 value) : FValue(value) {}
        TArgument(double value) : FValue(value) {}
        TArgument(const QString &value) : FValue(value) {}
        TArgument(const char *value) : FValue(QString::fromUtf8(value)) {}
        const TArg &Value() const { return FValue; }

    private:
        TArg FValue;
    };

    /// Forms: %s, %d, %u, %f, %n (thousands separators) with an optional precision ("%.2n",
    /// "%2.2u", "%5.5u": at least so many digits), and %% for a per cent sign. A "%" before any
    /// other character stands as it is. Throws EException when an argument is missing or of the
    /// wrong kind. Points and separators are those of the C locale: "1,234.50".
    static QString Format(const QString &format, const QList<TArgument> &args);

    /// At most 15 significant digits, trailing zeros dropped, a point, an exponent form such as
    /// 1E20 or 1.5E-7 where the value needs it.
    static QString FloatText(double value);
    /// "512 B", "1.5 KB": divided by 1024 while at least 1024, at most 8 times.
    static QString SizeText(double bytes);
    /// "01:02:03", with the number of days and a blank in front when there are any.
    static QString DurationText(qint64 seconds);
};
