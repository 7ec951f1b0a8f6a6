#pragma once

#include "support/uDateTime.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <variant>

/// Money with four decimals, kept apart from double because literals are written by type.
struct TCurrency
{
    double Value = 0;
    bool operator==(const TCurrency &) const = default;
};

/// The system's dynamic value. The kinds are kept apart exactly, since how a value is written as a
/// literal is decided by its kind. Equality is of kind and value.
class TVariant
{
public:
    TVariant() = default; // null
    TVariant(bool value) : FValue(value) {}
    TVariant(int value) : FValue(static_cast<qint64>(value)) {}
    TVariant(uint value) : FValue(static_cast<qint64>(value)) {}
    TVariant(qint64 value) : FValue(value) {}
    TVariant(quint64 value) : FValue(value) {}
    TVariant(double value) : FValue(value) {}
    TVariant(TCurrency value) : FValue(value) {}
    TVariant(TDateTime value) : FValue(value) {}
    TVariant(const QString &value) : FValue(value) {}
    TVariant(const char16_t *value) : FValue(QString::fromUtf16(value)) {}
    TVariant(const char *value) : FValue(QString::fromUtf8(value)) {}
    TVariant(const QByteArray &value) : FValue(value) {}

    bool IsNull() const { return Is<std::monostate>(); }
    bool IsBool() const { return Is<bool>(); }
    bool IsInt() const { return Is<qint64>(); }
    bool IsUInt() const { return Is<quint64>(); }
    bool IsDouble() const { return Is<double>(); }
    bool IsCurrency() const { return Is<TCurrency>(); }
    bool IsDateTime() const { return Is<TDateTime>(); }
    bool IsString() const { return Is<QString>(); }
    bool IsBytes() const { return Is<QByteArray>(); }

    /// The value as its own kind; the kind must be the one asked for.
    template <typename T>
    const T &As() const
    {
        return std::get<T>(FValue);
    }

    /// The value as text: null is empty, booleans are "True" and "False", floats in the general
    /// format with a point, bytes are read as Latin-1 so that each byte stays one character.
    QString ToString() const;
    /// Booleans are 0 or 1; anything else the integer value of its text, or `def` if it has none.
    qint64 ToInt(qint64 def = 0) const;
    /// Throws EConvertError when the value has no number in it.
    double ToDouble() const;

    bool operator==(const TVariant &) const = default;

private:
    template <typename T>
    bool Is() const
    {
        return std::holds_alternative<T>(FValue);
    }

    std::variant<std::monostate, bool, qint64, quint64, double, TCurrency, TDateTime, QString,
                 QByteArray>
        FValue;
};

using TVariantList = QList<TVariant>;
