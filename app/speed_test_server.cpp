#include "speed_test_server.h"

#include "console_line.h"
#include "model/version.h"
#include "endpoint/listen_address.h"
#include "endpoint/speed_test_endpoint.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <cstdio>

using namespace orm;

bool wantsSpeedTestServer(int argc, char* argv[])
{
    for (int i = 1; i < argc; ++i)
        if (qstrcmp(argv[i], "--speedtest-server") == 0 || qstrncmp(argv[i], "--speedtest-server=", 19) == 0)
            return true;
    return false;
}

int runSpeedTestServer(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QString::fromLatin1(ProductName));
    QCoreApplication::setApplicationVersion(QStringLiteral(ORMIVANE_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("The speed test endpoint for Speed Test and Website Nodes."));
    parser.addHelpOption();
    const QCommandLineOption server(QStringLiteral("speedtest-server"),
                                    QStringLiteral("Serve the speed test on [ADDR:]PORT (ADDR 127.0.0.1 when none "
                                                   "is given; port 0 takes a free one)."),
                                    QStringLiteral("[ADDR:]PORT"));
    const QCommandLineOption variations(QStringLiteral("variations"),
                                        QStringLiteral("Serve the sizes of FILE (lines SIZE|SECONDS) instead of the "
                                                       "ladder from 500 KB to 100 MB."),
                                        QStringLiteral("FILE"));
    parser.addOptions({server, variations});
    parser.process(app);

    const ListenAddress at = parseListenAddress(parser.value(server));
    if (!at.error.isEmpty())
        return usageError(QStringLiteral("--speedtest-server: ") + at.error);

    QByteArray list = defaultSpeedTestLadder();
    if (parser.isSet(variations)) {
        QFile f(parser.value(variations));
        if (!f.open(QIODevice::ReadOnly))
            return usageError(QStringLiteral("--variations: cannot read %1: %2").arg(f.fileName(), f.errorString()));
        list = f.read(DownloadOptionsCap + 1);
    }
    const DownloadOptionsCheck check = checkDownloadOptions(list);
    if (!check.error.isEmpty())
        return usageError(QStringLiteral("--variations %1: %2").arg(parser.value(variations), check.error));

    SpeedTestEndpoint endpoint(list);
    const quint16 port = endpoint.listenAt(at);
    const QHostAddress address = at.address.isNull() ? QHostAddress(QHostAddress::LocalHost) : at.address;
    if (port == 0)
        return usageError(QStringLiteral("cannot listen on %1 port %2").arg(address.toString()).arg(at.port));
    std::printf("Speed test endpoint on http://%s:%u/ with %zu sizes\n",
                urlHostText(address).toLocal8Bit().constData(), port, endpoint.options().size());
    std::fflush(stdout);
    return app.exec();
}
