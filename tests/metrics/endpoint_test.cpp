// The metrics endpoint on loopback, in process: what it answers to good and
// bad requests, its token, and the limits that close a connection.
#include "endpoint/metrics_endpoint.h"
#include "http_client.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QTcpServer>
#include <QTcpSocket>
#include <gtest/gtest.h>
#include <functional>
#include <memory>

using namespace orm;
using namespace orm::test;

namespace {

const QByteArray Body = "# HELP x_total One.\n# TYPE x_total counter\nx_total 1\n";

class Endpoint : public ::testing::Test {
protected:
    void start(const QByteArray& token = {}, ConnectionLimits limits = {})
    {
        endpoint = std::make_unique<MetricsEndpoint>(
            [this](QByteArray& out) {
                ++expositions;
                out = Body;
            },
            token, limits);
        ASSERT_TRUE(endpoint->listenOn(QHostAddress::LocalHost, 0)) << endpoint->errorString().toStdString();
        port = endpoint->port();
    }

    Reply ask(const QByteArray& request, bool head = false)
    {
        Client c(port);
        c.send(request);
        const auto replies = c.await(1, head);
        return replies.empty() ? Reply{} : replies.front();
    }

    std::unique_ptr<MetricsEndpoint> endpoint;
    quint16 port = 0;
    int expositions = 0;
};

TEST_F(Endpoint, ServesTheExpositionAtMetricsOnly)
{
    start();
    const Reply ok = ask(get("/metrics?name[]=ignored"));
    EXPECT_EQ(ok.status, 200);
    EXPECT_EQ(ok.body, Body);
    EXPECT_EQ(ok.headers.at("content-type"), "text/plain; version=0.0.4; charset=utf-8");

    const Reply head = ask(get("/metrics", {}, "HEAD"), true);
    EXPECT_EQ(head.status, 200);
    EXPECT_EQ(head.headers.at("content-length").toInt(), Body.size());

    for (const char* path : {"/", "/metrics/", "/favicon.ico", "/metricsx", "//metrics"})
        EXPECT_EQ(ask(get(path)).status, 404) << path;
    for (const char* method : {"POST", "PUT", "DELETE", "OPTIONS", "PATCH"}) {
        const Reply r = ask(get("/metrics", "Content-Length: 2\r\n", method) + "ab");
        EXPECT_EQ(r.status, 405) << method;
        EXPECT_EQ(r.headers.count("allow") ? r.headers.at("allow") : QByteArray(), "GET, HEAD") << method;
    }
    EXPECT_EQ(endpoint->scrapes(), 2u);  // the GET and the HEAD
}

TEST_F(Endpoint, ATokenIsAskedForAsBearerAndNothingElsePasses)
{
    start("s3cret");
    const Reply none = ask(get("/metrics"));
    EXPECT_EQ(none.status, 401);
    EXPECT_EQ(none.headers.at("www-authenticate"), "Bearer realm=\"Ormivane\"");
    EXPECT_FALSE(none.body.contains("x_total"));
    for (const char* header : {"Authorization: Bearer wrong", "Authorization: Bearer s3cre", "Authorization: Bearer s3crets",
                               "Authorization: Basic s3cret", "Authorization: s3cret", "Authorization: Bearer",
                               "Authorization: Bearers3cret", "X-Token: s3cret"})
        EXPECT_EQ(ask(get("/metrics", QByteArray(header) + "\r\n")).status, 401) << header;
    for (const char* header : {"Authorization: Bearer s3cret", "authorization: bearer   s3cret  "})
        EXPECT_EQ(ask(get("/metrics", QByteArray(header) + "\r\n")).status, 200) << header;
    EXPECT_EQ(expositions, 2);  // a refused scrape costs no exposition

    // The hash of the token is what it is compared through.
    const QByteArray digest = QCryptographicHash::hash("s3cret", QCryptographicHash::Sha256);
    EXPECT_TRUE(bearerTokenMatches("Bearer s3cret", digest));
    EXPECT_FALSE(bearerTokenMatches("Bearer s3cret", {}));
}

TEST_F(Endpoint, OneConnectionAnswersRequestInTurnAndClosesWhenAsked)
{
    start();
    Client c(port);
    c.send(get("/metrics") + get("/nothing") + get("/metrics", {}, "POST"));
    const auto replies = c.await(3);
    ASSERT_EQ(replies.size(), 3u);
    EXPECT_EQ(replies[0].status, 200);
    EXPECT_EQ(replies[1].status, 404);
    EXPECT_EQ(replies[2].status, 405);
    EXPECT_FALSE(c.closed);

    c.received.clear();
    c.send(get("/metrics", "Connection: close\r\n"));
    EXPECT_TRUE(c.awaitClose());
    ASSERT_EQ(repliesIn(c.received).size(), 1u);
    EXPECT_EQ(repliesIn(c.received)[0].status, 200);
}

TEST_F(Endpoint, BadRequestsCloseTheirConnectionAndTheEndpointServesOn)
{
    ConnectionLimits limits;
    limits.requestTimeoutMs = 300;
    limits.idleTimeoutMs = 600;
    start({}, limits);
    const std::vector<QByteArray> bad = {
        QByteArray("\x00\x01\x02garbage\r\n\r\n", 14),
        "GET\r\n\r\n",
        "GET /metrics HTTP/1.1\r\nX-Big: " + QByteArray(200 * 1024, 'a') + "\r\n\r\n",
        "POST /metrics HTTP/1.1\r\nContent-Length: 100000000000\r\n\r\n" + QByteArray(128 * 1024, 'b'),
        "GET /metr",  // and never the rest
    };
    for (const QByteArray& request : bad) {
        Client c(port);
        c.send(request);
        EXPECT_TRUE(c.awaitClose()) << request.left(40).toStdString();
        EXPECT_TRUE(repliesIn(c.received).empty()) << request.left(40).toStdString();
    }
    // A connection that stays idle after its answer is closed as well.
    Client idle(port);
    idle.send(get("/metrics"));
    EXPECT_EQ(idle.await().size(), 1u);
    EXPECT_TRUE(idle.awaitClose());

    EXPECT_EQ(ask(get("/metrics")).status, 200);
}

TEST_F(Endpoint, ConnectionsBeyondTheLimitAreRefusedAndAHundredAtOnceAreServed)
{
    ConnectionLimits limits;
    limits.maxConnections = 3;
    start({}, limits);
    std::vector<std::unique_ptr<Client>> held;
    for (int i = 0; i < 3; ++i) {
        held.push_back(std::make_unique<Client>(port));
        held.back()->send(get("/metrics"));
        EXPECT_EQ(held.back()->await().size(), 1u);
    }
    Client refused(port);
    EXPECT_TRUE(refused.awaitClose());
    held.front()->socket.disconnectFromHost();
    held.erase(held.begin());
    pumpUntil([] { return false; }, 100);  // the server sees the close
    EXPECT_EQ(ask(get("/metrics")).status, 200);

    held.clear();
    endpoint.reset();
    start();
    std::vector<std::unique_ptr<Client>> many;
    for (int i = 0; i < 100; ++i) {
        many.push_back(std::make_unique<Client>(port));
        many.back()->send(get("/metrics"));
    }
    int ok = 0;
    for (auto& c : many) {
        const auto r = c->await();
        ok += r.size() == 1 && r[0].status == 200 && r[0].body == Body;
    }
    EXPECT_EQ(ok, 100);
}

TEST_F(Endpoint, APortInUseIsSaidAndTheFirstListenerStays)
{
    start();
    MetricsEndpoint second([](QByteArray& out) { out = "second"; }, {});
    EXPECT_FALSE(second.listenOn(QHostAddress::LocalHost, port));
    EXPECT_TRUE(second.errorString().contains(QStringLiteral("in use"))) << second.errorString().toStdString();
    EXPECT_EQ(second.port(), 0);
    EXPECT_EQ(ask(get("/metrics")).body, Body);
}

}  // namespace
