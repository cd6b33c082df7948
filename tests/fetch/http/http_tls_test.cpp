#include "fetch/http/http_client.h"
#include "tests/support/rtmp_server.h"
#include "tests/support/tls_server.h"

#include <gtest/gtest.h>

namespace tollivar::fetch {
namespace {

using namespace Qt::StringLiterals;

TEST(HttpTls, aServerWhoseCertificateNobodyVouchesForIsRefusedAndTheReasonSaysSo)
{
    const test::TlsServer server;
    platform::AutoResetEvent stop;

    const auto client =
        HttpClient::open({.address = u"https://%1/"_s.arg(server.authority())}, stop);

    ASSERT_FALSE(client);
    EXPECT_EQ(client.error().kind, platform::ErrorKind::TryAgain);
    EXPECT_EQ(client.error().text, u"SSL certificate problem: self-signed certificate"_s);
    // The server is not at fault: a client that is told to trust it comes through.
    test::runToEnd({u"openssl"_s, u"s_client"_s, u"-connect"_s, server.authority(), u"-CAfile"_s,
                    server.certificate(), u"-verify_return_error"_s, u"-verify_ip"_s,
                    u"127.0.0.1"_s});
}

} // namespace
} // namespace tollivar::fetch
