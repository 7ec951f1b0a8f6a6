#pragma once

#include <QByteArray>
#include <QString>
#include <exception>

/// Base of every exception of the system: a text for the user. Failures of the system's own making
/// are thrown as this class; descendants add fields.
class EException : public std::exception
{
public:
    explicit EException(const QString &message) { SetMessage(message); }

    const QString &Message() const { return FMessage; }
    const char *what() const noexcept override { return FWhat.constData(); }

protected:
    EException() = default;
    void SetMessage(const QString &message)
    {
        FMessage = message;
        FWhat = message.toUtf8();
    }

private:
    QString FMessage;
    QByteArray FWhat;
};

/// A text that does not stand for a value of the wanted type.
class EConvertError : public EException
{
public:
    using EException::EException;
};

/// The text of any exception, for places that show or forward what they caught.
QString ExceptionMessage(const std::exception &e);
