#pragma once

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcessEnvironment>
#include <QStringList>

namespace tolvane::test {

// One run of the tolvane-probe binary.
struct ProbeRun {
    int exitCode = -1;
    QByteArray standardOutput;
    QJsonDocument document;  // standard output read as one JSON document
    QJsonObject json;        // the same when it is an object
};

// Runs the probe with `arguments` and waits for it (a minute at most).
ProbeRun runProbe(const QStringList &arguments, const QProcessEnvironment &environment =
                                                    QProcessEnvironment::systemEnvironment());

}  // namespace tolvane::test
