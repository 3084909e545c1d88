// ormivane: the monitor. Headless, it runs the tick, the logs and the stop
// signals without any window.
#include "console_line.h"
#include "drawing.h"
#include "print_option.h"
#include "run_mode.h"
#include "speed_test_server.h"
#include "metrics_setup.h"
#include "endpoint/listen_address.h"
#include "display/graph_history.h"
#include "model/ini_file_care.h"
#include "model/module_library.h"
#include "model/ini_store.h"
#include "monitor/log_commands.h"
#include "monitor/monitor.h"
#include "monitor/monitor_loop.h"
#include "model/paths.h"
#include "model/version.h"
#include "shell/module_power.h"
#include "shell/module_sound.h"
#include "shell/program_alert_host.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <cstdio>
#include <malloc.h>

using namespace orm;

int main(int argc, char* argv[])
{
    // Qt's helper threads (the X connection's reader, the bus, the host lookups)
    // allocate little: one malloc arena serves them all, where each would keep
    // resident pages of an arena of its own.
    mallopt(M_ARENA_MAX, 1);
    if (wantsSpeedTestServer(argc, argv))
        return runSpeedTestServer(argc, argv);
    // Drawing needs a GUI application even without windows (the pictures, the
    // printed page): they are drawn off-screen then, by the drawing module. A
    // run that draws nothing loads neither it nor any GUI library, platform
    // plugin or font.
    const RunMode mode = runMode(argc, argv);
    const bool withWindows = mode == RunMode::Windows;
    ModuleObject<Drawing> drawingModule("ormivane_drawing", NewDrawingEntry, "cannot draw");
    Drawing* const drawing = mode != RunMode::Counting ? drawingModule.get() : nullptr;
    if (mode != RunMode::Counting && !drawing)
        return 1;
    if (mode == RunMode::Drawing && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    std::optional<QCoreApplication> counting;
    QCoreApplication& app = drawing ? drawing->application(argc, argv, withWindows) : counting.emplace(argc, argv);
    QCoreApplication::setApplicationName(QString::fromLatin1(ProductName));
    QCoreApplication::setOrganizationName(QString::fromLatin1(CompanyName));
    QCoreApplication::setApplicationVersion(QStringLiteral(ORMIVANE_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Ormivane monitors this computer and its network connection: it samples each Node once a "
                       "second and logs the values into a daily log."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption headless(QStringLiteral("headless"), QStringLiteral("Run without windows."));
    const QCommandLineOption dataDir(QStringLiteral("data-dir"),
                                     QStringLiteral("Folder for logs and working files (default: %1).")
                                         .arg(defaultDataDir()),
                                     QStringLiteral("DIR"));
    const QCommandLineOption config(QStringLiteral("config"),
                                    QStringLiteral("Settings file (default: %1).").arg(defaultConfigFile()),
                                    QStringLiteral("FILE"));
    const QCommandLineOption ticks(QStringLiteral("ticks"), QStringLiteral("Stop after N ticks."),
                                   QStringLiteral("N"));
    const QCommandLineOption snapshot(QStringLiteral("snapshot"),
                                      QStringLiteral("At exit, save each Graph's picture into DIR (Graph<n>.png, "
                                                     "Graph<n>-icon<k>.ico)."),
                                      QStringLiteral("DIR"));
    // Taken out of the arguments before they are parsed, as it has two values.
    const QCommandLineOption print(QStringLiteral("print"),
                                   QStringLiteral("At exit, print Graph G (from 1) into the PDF file FILE."),
                                   QStringLiteral("G FILE"));
    const QCommandLineOption logHeaders(QStringLiteral("log-headers"),
                                        QStringLiteral("Print the record count and the columns of Log Graph N's range, "
                                                       "then exit."),
                                        QStringLiteral("N"));
    const QCommandLineOption exportLog(QStringLiteral("export-log"),
                                       QStringLiteral("Write LogExport.csv of Log Graph N's range into the data "
                                                      "folder, then exit."),
                                       QStringLiteral("N"));
    const QCommandLineOption metricsOption(
        QStringLiteral("metrics"),
        QStringLiteral("Serve the Prometheus metrics at http://[ADDR:]PORT/metrics (ADDR: the MetricsAddress "
                       "setting, 127.0.0.1 by default; port 0 takes a free one). Without it the MetricsPort "
                       "setting decides; its default 0 keeps the endpoint off."),
        QStringLiteral("[ADDR:]PORT"));
    parser.addOptions({headless, dataDir, config, ticks, snapshot, print, logHeaders, exportLog, metricsOption});
    parser.addPositionalArgument(QStringLiteral("words"),
                                 QStringLiteral("txtDebug writes a debug trace to Ormivane.txt in the data "
                                                "folder; VDDebugMode turns off the speed test minimum rule."),
                                 QStringLiteral("[txtDebug] [VDDebugMode]"));
    parser.addOption({QStringLiteral("speedtest-server"),
                      QStringLiteral("Run as the speed test endpoint on [ADDR:]PORT instead (see --speedtest-server "
                                     "--help)."),
                      QStringLiteral("[ADDR:]PORT")});
    QStringList arguments = QCoreApplication::arguments();
    std::optional<PrintRequest> printRequest;
    QString printError;
    if (!takePrintOption(arguments, printRequest, printError))
        return usageError(printError);
    parser.process(arguments);
    if (parser.isSet(print)) {  // only a form that takePrintOption does not know gets here: --print=G
        return usageError(QStringLiteral("--print takes two values, as in --print 1 graph.pdf"));
    }

    long maxTicks = 0;
    if (parser.isSet(ticks)) {
        bool ok = false;
        maxTicks = parser.value(ticks).toLong(&ok);
        if (!ok || maxTicks < 1)
            return usageError(QStringLiteral("--ticks needs a whole number above 0, not \"%1\"")
                                  .arg(parser.value(ticks)));
    }

    std::optional<ListenAddress> metricsAt;
    if (parser.isSet(metricsOption)) {
        metricsAt = parseListenAddress(parser.value(metricsOption));
        if (!metricsAt->error.isEmpty())
            return usageError(QStringLiteral("--metrics: ") + metricsAt->error);
    }

    LogCommand logCommand;
    const bool isLogCommand = parser.isSet(logHeaders) || parser.isSet(exportLog);
    if (isLogCommand) {
        if (parser.isSet(logHeaders) && parser.isSet(exportLog))
            return usageError(QStringLiteral("--log-headers and --export-log go one at a time"));
        const QString text = parser.value(parser.isSet(logHeaders) ? logHeaders : exportLog);
        bool ok = false;
        logCommand.kind = parser.isSet(logHeaders) ? LogCommand::Headers : LogCommand::Export;
        logCommand.graphNumber = text.toInt(&ok);
        logCommand.redraw = parser.isSet(snapshot);
        if (!ok || logCommand.graphNumber < 1)
            return usageError(QStringLiteral("a Graph number counts from 1, not \"%1\"").arg(text));
    }

    MonitorOptions options;
    options.dataDir = QDir(parser.isSet(dataDir) ? parser.value(dataDir) : defaultDataDir()).absolutePath();
    options.commandLine = QCoreApplication::arguments().mid(1).join(QLatin1Char(' '));
    options.execPath = QFileInfo(QCoreApplication::applicationFilePath()).absoluteFilePath();
    const QString configFile = parser.isSet(config) ? parser.value(config) : defaultConfigFile();

    // A folder named as the settings file would be made owner-only and then fail every save.
    if (const QString refused = unusableSettingsPath(configFile); !refused.isEmpty())
        return usageError(refused);
    // A log command writes nothing but the CSV: it makes no folder.
    if (!isLogCommand && !QDir().mkpath(options.dataDir))
        return usageError(QStringLiteral("cannot create the data folder %1").arg(options.dataDir));

    SystemClock clock;
    IniStore store(configFile);
    auto sources = SourceSet::forLinux();
    Q_UNUSED(headless);  // decided before the application was made
    // The desktop draws a Graph's picture while its window can be seen, unless
    // pictures are saved or printed at exit; without windows, every tick or never.
    const bool picturesAtExit = parser.isSet(snapshot) || printRequest;
    GraphHistoryFactory histories(options.commandLine);
    GraphViewFactory& views =
        drawing ? drawing->views(options.commandLine, options.dataDir, withWindows && !picturesAtExit) : histories;
    Monitor monitor(options, clock, store, *sources, views);
    if (drawing)
        drawing->bind(monitor.Sensors);
    histories.bind(monitor.Sensors);

    if (isLogCommand) {
        const int status = runLogCommand(monitor, logCommand, stdout, stderr);
        if (status == 0 && parser.isSet(snapshot) && !drawing->saveSnapshots(monitor, parser.value(snapshot))) {
            errorLine(QStringLiteral("cannot save the pictures into %1").arg(parser.value(snapshot)));
            return 1;
        }
        return status;
    }

    if (parser.isSet(snapshot)) {
        const QString folder = parser.value(snapshot);
        monitor.onUnload = [&monitor, drawing, folder] {
            if (!drawing->saveSnapshots(monitor, folder))
                errorLine(QStringLiteral("cannot save the pictures into %1").arg(folder));
        };
    }

    // The Alerts' actions: restart and shut-down through logind on the system bus.
    ModulePower power;
    ModuleSound sound;
    ProgramAlertHost alertHost(power, sound);
    bool printFailed = false;
    if (drawing)
        drawing->serveAlerts(monitor, alertHost, printRequest, printFailed);
    monitor.alertTester.setHost(&alertHost);

    // A page that could not be printed fails the run, so that a script can tell.
    const auto withPrint = [&printFailed](int status) { return status == 0 && printFailed ? 1 : status; };

    // The metrics endpoint opens once the monitor has started, and goes before it.
    const MetricsPlan metricsPlan = planMetrics(store, metricsAt ? &*metricsAt : nullptr);
    std::unique_ptr<MetricsEndpoint> metrics;

    if (withWindows) {
        return withPrint(drawing->runDesktop(monitor, store, maxTicks, alertHost, [&] {
            QString failure;
            metrics = openMetrics(monitor, metricsPlan, failure);
            if (!failure.isEmpty())
                monitor.notices.push_back({QLatin1String(ProductName), failure, true});
        }));
    }

    if (!monitor.startUp()) {
        printLine(stderr, monitor.startError());
        return 3;
    }
    for (const Notice& n : monitor.notices)
        printLine(n.warning ? stderr : stdout,
                  n.title + QStringLiteral(": ") + QString(n.text).replace(QLatin1Char('\n'), QLatin1Char(' ')));
    monitor.notices.clear();
    QString metricsFailure;
    metrics = openMetrics(monitor, metricsPlan, metricsFailure);

    MonitorLoop loop(monitor, maxTicks);
    loop.watchStopSignals();
    int status = 0;
    QObject::connect(&loop, &MonitorLoop::finished, &app, [&](int s) {
        status = s;
        QCoreApplication::quit();
    });
    loop.start();
    app.exec();

    if (!monitor.fatalError.isEmpty()) {
        errorLine(monitor.fatalError);
        return status ? status : 1;
    }
    return withPrint(status);
}
