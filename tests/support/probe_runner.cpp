#include "probe_runner.h"

#include <QProcess>

namespace tolvane::test {

ProbeRun runProbe(const QStringList &arguments, const QProcessEnvironment &environment) {
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(TOLVANE_PROBE_PATH), arguments);
    process.waitForFinished(60000);
    ProbeRun run;
    run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.standardOutput = process.readAllStandardOutput();
    run.document = QJsonDocument::fromJson(run.standardOutput);
    run.json = run.document.object();
    return run;
}

}  // namespace tolvane::test
