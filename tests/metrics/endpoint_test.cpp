// The metrics endpoint on loopback, in process: what it answers to good and
// bad requests, its token, and the limits that close a connection.
#include "endpoint/metrics_endpoint.h"
#include "http_client.h"

#include <gtest/gtest.h>
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

TEST_F(Endpoint, ServesTheExpositionAtMetricsOnlyAndAnswersRequestsInTurn)
{
    start();
    Client c(port);
    c.send(get("/metrics?name[]=ignored") + get("/metrics/") + get("/metrics", "Content-Length: 2\r\n", "POST") + "ab");
    const auto replies = c.await(3);
    ASSERT_EQ(replies.size(), 3u);
    EXPECT_EQ(replies[0].status, 200);
    EXPECT_EQ(replies[0].body, Body);
    EXPECT_EQ(replies[0].headers.at("content-type"), "text/plain; version=0.0.4; charset=utf-8");
    EXPECT_EQ(replies[1].status, 404);
    EXPECT_EQ(replies[2].status, 405);
    EXPECT_EQ(replies[2].headers.count("allow") ? replies[2].headers.at("allow") : QByteArray(), "GET, HEAD");
    EXPECT_FALSE(c.closed);

    c.received.clear();
    c.send(get("/metrics", "Connection: close\r\n", "HEAD"));
    EXPECT_TRUE(c.awaitClose());
    const auto head = repliesIn(c.received, true);
    ASSERT_EQ(head.size(), 1u);
    EXPECT_EQ(head[0].status, 200);
    EXPECT_EQ(head[0].headers.at("content-length").toInt(), Body.size());
    EXPECT_EQ(endpoint->scrapes(), 2u);  // the GET and the HEAD
}

TEST_F(Endpoint, ATokenIsAskedForAsBearerAndNothingElsePasses)
{
    start("s3cret");
    const Reply none = ask(get("/metrics"));
    EXPECT_EQ(none.status, 401);
    EXPECT_EQ(none.headers.at("www-authenticate"), "Bearer realm=\"Ormivane\"");
    EXPECT_FALSE(none.body.contains("x_total"));
    for (const char* header : {"Authorization: Bearer s3cre", "Authorization: Bearer s3crets", "Authorization: Basic s3cret",
                               "Authorization: Bearer", "Authorization: Bearers3cret"})
        EXPECT_EQ(ask(get("/metrics", QByteArray(header) + "\r\n")).status, 401) << header;
    EXPECT_EQ(ask(get("/metrics", "authorization: bearer   s3cret  \r\n")).status, 200);
    EXPECT_EQ(expositions, 1);  // a refused scrape costs no exposition
}

TEST_F(Endpoint, BadRequestsAndIdleOrExtraConnectionsAreClosedAndTheEndpointServesOn)
{
    ConnectionLimits limits;
    limits.requestTimeoutMs = 300;
    limits.idleTimeoutMs = 600;
    limits.maxConnections = 3;
    start({}, limits);
    const std::vector<QByteArray> bad = {
        QByteArray("\x00\x01\x02garbage\r\n\r\n", 14),
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

    std::vector<std::unique_ptr<Client>> held;
    for (int i = 0; i < 3; ++i) {
        held.push_back(std::make_unique<Client>(port));
        held.back()->send(get("/metrics"));
        EXPECT_EQ(held.back()->await().size(), 1u);
    }
    Client refused(port);
    refused.send(get("/metrics"));
    EXPECT_TRUE(refused.awaitClose());
    EXPECT_TRUE(repliesIn(refused.received).empty()) << "one connection more than the limit";
    for (auto& idle : held)
        EXPECT_TRUE(idle->awaitClose()) << "idle after its answer";
    EXPECT_EQ(ask(get("/metrics")).status, 200);
}

}  // namespace
