// Real traffic for the adapter tests, kept on the loopback interface.
#pragma once

#include <QCoreApplication>

namespace orm::test {

// The process's application object, made on first use.
QCoreApplication& ensureApp();

// Sends `bytes` from a client to a server on 127.0.0.1, running the event loop
// until the server has them all. Gives the count the server received.
qint64 moveBytesOverLoopback(qint64 bytes);

}  // namespace orm::test
