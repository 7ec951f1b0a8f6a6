#include "support/uVariant.h"

#include "support/uException.h"
#include "support/uFormat.h"

namespace {

struct TToString
{
    QString operator()(std::monostate) const { return {}; }
    QString operator()(bool value) const { return value ? "True" : "False"; }
    QString operator()(qint64 value) const { return QString::number(value); }
    QString operator()(quint64 value) const { return QString::number(value); }
    QString operator()(double value) const { return TFormat::FloatText(value); }
    QString operator()(TCurrency value) const { return TFormat::FloatText(value.Value); }
    QString operator()(TDateTime value) const
    {
        if (!value.HasDate())
            return value.TimeText();
        return value.HasTime() ? value.DateTimeText() : value.DateText();
    }
    QString operator()(const QString &value) const { return value; }
    QString operator()(const QByteArray &value) const { return QString::fromLatin1(value); }
};

} // namespace

QString TVariant::ToString() const
{
    return std::visit(TToString(), FValue);
}

qint64 TVariant::ToInt(qint64 def) const
{
    if (IsInt())
        return As<qint64>();
    if (IsBool())
        return As<bool>() ? 1 : 0;
    bool ok = false;
    const qint64 value = ToString().trimmed().toLongLong(&ok);
    return ok ? value : def;
}

double TVariant::ToDouble() const
{
    if (IsDouble())
        return As<double>();
    if (IsCurrency())
        return As<TCurrency>().Value;
    if (IsDateTime())
        return As<TDateTime>().Days();
    if (IsBool())
        return As<bool>() ? 1 : 0;
    bool ok = false;
    const double value = ToString().trimmed().toDouble(&ok);
    if (!ok)
        throw EConvertError(
            TFormat::Format("\"%s\" is not a valid floating point value.", {ToString()}));
    return value;
}
