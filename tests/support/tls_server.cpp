#include "tests/support/tls_server.h"

#include "platform/command_line_text.h"
#include "tests/support/processes.h"
#include "tests/support/rtmp_server.h"

#include <gtest/gtest.h>

namespace tollivar::test {

using namespace Qt::StringLiterals;

TlsServer::TlsServer()
{
    const QString key = m_sandbox.file(u"key.pem"_s);
    runToEnd({u"openssl"_s, u"req"_s, u"-x509"_s, u"-newkey"_s, u"ec"_s, u"-pkeyopt"_s,
              u"ec_paramgen_curve:prime256v1"_s, u"-nodes"_s, u"-keyout"_s, key, u"-out"_s,
              certificate(), u"-days"_s, u"2"_s, u"-subj"_s, u"/CN=127.0.0.1"_s, u"-addext"_s,
              u"subjectAltName=IP:127.0.0.1"_s});
    auto server = platform::ChildProcess::start(
        platform::joinCommandLine({u"openssl"_s, u"s_server"_s, u"-accept"_s, u"127.0.0.1:0"_s,
                                   u"-cert"_s, certificate(), u"-key"_s, key, u"-www"_s}));
    if (!server) {
        ADD_FAILURE() << "openssl cannot be started";
        return;
    }
    m_server = std::move(*server);
    // It names the port that the system chose: "ACCEPT 127.0.0.1:34567".
    LineReader lines(*m_server);
    QByteArray line = lines.next();
    while (!line.isEmpty() && !line.startsWith("ACCEPT ")) {
        line = lines.next();
    }
    m_port = line.mid(line.lastIndexOf(':') + 1).trimmed().toUShort();
}

TlsServer::~TlsServer() = default;

QString TlsServer::authority() const
{
    return u"127.0.0.1:%1"_s.arg(m_port);
}

QString TlsServer::certificate() const
{
    return m_sandbox.file(u"certificate.pem"_s);
}

} // namespace tollivar::test
