#include "app/uCheckUpdates.h"

#include "app/uHttpUtils.h"
#include "jobs/uWorkerThreads.h"
#include "support/uException.h"
#include "support/uMainThread.h"
#include "support/uRegExUtils.h"
#include "support/uXmlUtils.h"

namespace {

// Raises for a text of another form, such as one of two parts.
qint64 Number(const QString &version)
{
    const auto match = TRegExUtils::Match(version, "(\\d+).(\\d+).(\\d*)");
    if (!match.hasMatch())
        throw EException("\"" + version + "\" is not a version.");
    return match.captured(1).toLongLong() * 10000 + match.captured(2).toLongLong() * 100 +
           match.captured(3).toLongLong();
}

QString Child(const QDomElement &root, const char *name, const QString &def)
{
    const QDomElement child = root.firstChildElement(name);
    return child.isNull() ? def : child.text();
}

} // namespace

struct TCheckUpdates::TState
{
    TCheckUpdates *Owner = nullptr; // of the main thread; nullptr when it is gone
    QString Version, URL;
    TCheckUpdatesAfterExecuteEvent OnAfterExecute;
};

TCheckUpdates::TCheckUpdates(const QString &version, const QString &url)
    : FState(std::make_shared<TState>())
{
    FState->Owner = this;
    FState->Version = version;
    FState->URL = url;
}

TCheckUpdates::~TCheckUpdates()
{
    FState->Owner = nullptr;
}

void TCheckUpdates::SetOnAfterExecute(TCheckUpdatesAfterExecuteEvent event)
{
    FState->OnAfterExecute = std::move(event);
}

void TCheckUpdates::Execute()
{
    if (FState->URL.isEmpty())
        return;
    TThreadUtils::Start([state = FState, url = FState->URL] {
        QByteArray text;
        try {
            text = THttpUtils::Get(url);
        } catch (const std::exception &) {
            // Deliberate: without an answer there is no update, and nobody is told.
        }
        TMainThread::Synchronize([&] {
            if (state->Owner && state->OnAfterExecute)
                state->OnAfterExecute(state->Owner, Read(text, state->Version));
        });
    });
}

TCheckUpdatesResult TCheckUpdates::Read(const QByteArray &document, const QString &version)
{
    TCheckUpdatesResult result;
    QDomDocument xml;
    if (!xml.setContent(document))
        return result;
    const QDomElement root = xml.documentElement();
    try {
        result.Status = Number(version) < Number(Child(root, "version", "1.0.0"));
        result.Version = Child(root, "display_version", "1.0.0");
        result.URL = Child(root, "url", QString());
    } catch (const EException &) {
        result = {};
    }
    return result;
}
